# SPDX-License-Identifier: MIT
"""Checks that the library's files include only what their folder may.

    scripts/check-includes      (ends with 1, and names file and line, if one does not)

docs/pictures/folders.dot says which folder may include which.
"""

import pathlib
import re
import sys

HOME = pathlib.Path(__file__).resolve().parent.parent.parent
PICTURE = HOME / "docs/pictures/folders.dot"

PUBLIC = {
    "PelDOM.h": "public core",
    "PelString.h": "public core",
    "export.h": "public core",
    "PelDOMMessage.h": "public core",
    "PelDOMReader.h": "public services",
    "PelDOMUtilites.h": "public services",
    "PelDOMWriter.h": "public services",
    "PelDOMXPath.h": "public services",
    "PelDOMFiler.h": "public filer",
}

# What only some files may include, whatever their folder.
SINGLE = {
    "operating system": r"core/PelPlatform",
    "engine's nodes": r"xerces/engine/PelXercesFields\.h",
    "processor": r"read/scan/",
}


def reachable():
    """Of each folder in the picture, all that its arrows lead to, itself among them."""
    arrows = {}
    for begin, end in re.findall(r'^ *"([^"]+)" -> "([^"]+)"', PICTURE.read_text(), re.MULTILINE):
        arrows.setdefault(begin, set()).add(end)
        arrows.setdefault(end, set())
    for begin in arrows:
        found, open_ends = set(), list(arrows[begin])
        while open_ends:
            end = open_ends.pop()
            if end not in found:
                found.add(end)
                open_ends += arrows[end]
        if begin in found:
            sys.exit(f"{PICTURE.name}: the arrows lead from {begin} back to it")
        yield begin, found | {begin}


MAY_INCLUDE = dict(reachable())


def folder_of(path):
    """The folder, or group, of a path such as "qrndom/PelDOM.h", "core/PelLog.h" or "xercesc/dom/DOM.hpp"."""
    folder, _, name = path.rpartition("/")
    if path == "qrndom/QRNDOM.h":
        return "umbrella"
    if folder == "qrndom":
        return PUBLIC.get(name, "public handles")
    if path.startswith("xercesc/dom/impl/"):
        return "engine's nodes"
    if path.startswith("xercesc/"):
        return "engine"
    if path.startswith("unicode/"):
        return "ICU"
    if path == "emmintrin.h":
        return "processor"
    if folder in MAY_INCLUDE:
        return folder
    return "standard library" if re.fullmatch(r"\w+", path) else "operating system"


def is_allowed(own, name, other):
    if other in SINGLE:
        return re.match(SINGLE[other], name) is not None
    if own == "umbrella":
        return other.startswith("public")
    return other == "standard library" or other in MAY_INCLUDE[own]


def wrong_includes(file, name):
    own = folder_of(name)
    if own not in MAY_INCLUDE and own != "umbrella":
        return [f"{file}: its folder is not known; add it to {PICTURE.name}"]
    wrong = []
    for number, line in enumerate(file.read_text().splitlines(), 1):
        found = re.match(r'\s*#\s*include\s*(["<])([^">]+)', line)
        if not found:
            continue
        quote, path = found.groups()
        other = folder_of(path)
        inside = other in MAY_INCLUDE and not other.startswith(("public", "engine", "ICU"))
        if (quote == '"') != inside:
            wrong.append(f'{file}:{number}: "..." is for "folder/File.h" under src, <...> for all else')
        elif not is_allowed(own, name, other):
            wrong.append(f"{file}:{number}: {own} may not include {path} ({other})")
    return wrong


def main():
    wrong, count = [], 0
    for folder in ("include", "src"):
        for file in sorted((HOME / folder).rglob("*")):
            if file.is_file():
                count += 1
                name = file.relative_to(HOME / folder).as_posix().removesuffix(".in")
                wrong += wrong_includes(file, name)
    print("\n".join(line.replace(f"{HOME}/", "") for line in wrong) or
          f"{count} files include what they may")
    return 1 if wrong else 0


if __name__ == "__main__":
    if sys.argv[1:]:
        print(__doc__.split("\n", 2)[2].rstrip())
        sys.exit(0 if sys.argv[1] in ("-h", "--help") else 2)
    sys.exit(main())
