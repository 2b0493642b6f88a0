# SPDX-License-Identifier: MIT
"""Checks that the library's files include only what their folder may.

    scripts/check-includes      (ends with 1, and names file and line, if one does not)
"""

import pathlib
import re
import sys

HOME = pathlib.Path(__file__).resolve().parent.parent.parent

# Every folder may include itself, the standard library, and what stands here. The public headers are
# folders as well, in groups; only PelPlatform* may know the operating system, only PelXercesFields.h the
# engine's own classes of nodes. The "processor" is what compilers give of its instructions.
ALLOWED = {
    "public core": [],
    "public handles": ["public core"],
    "public services": ["public core", "public handles"],
    "public filer": ["public core", "public handles"],
    "public umbrella": ["public core", "public handles", "public services", "public filer"],
    "core": ["public core", "platform", "ICU"],
    "platform": ["public core", "operating system"],
    "model": ["public core", "public handles", "core"],
    "fields": ["engine", "engine's nodes"],
    "xerces": ["public core", "public handles", "core", "platform", "model", "fields", "engine"],
    "reading": ["public core", "public handles", "public services", "core", "platform", "fields", "xerces",
                "engine", "processor"],
    "output": ["public core", "public handles", "public services", "core", "platform", "xerces",
               "engine"],
    "services": ["public core", "public handles", "public services", "core", "platform", "xerces",
                 "reading", "output", "engine"],
    "filer": ["public core", "public handles", "public filer", "core"],
    "diag": ["public core", "public handles", "core"],
}

PUBLIC = {
    "PelDOM.h": "public core",
    "PelString.h": "public core",
    "export.h": "public core",
    "PelDOMMessage.h": "public core",
    "PelDOMReader.h": "public services",
    "PelDOMUtilites.h": "public services",
    "PelDOMWriter.h": "public services",
    "PelDOMFiler.h": "public filer",
    "QRNDOM.h": "public umbrella",
}


def folder_of(path):
    """The folder, or group, of a path such as "qrndom/PelDOM.h", "core/PelLog.h" or "xercesc/dom/DOM.hpp"."""
    folder, _, name = path.rpartition("/")
    if folder == "qrndom":
        return PUBLIC.get(name, "public handles")
    if path.startswith("core/PelPlatform"):
        return "platform"
    if path == "xerces/PelXercesFields.h":
        return "fields"
    if path.startswith("xercesc/dom/impl/"):
        return "engine's nodes"
    if path.startswith(("xercesc/", "unicode/")):
        return "engine" if path.startswith("xercesc/") else "ICU"
    if folder in ALLOWED:
        return folder
    if path == "emmintrin.h":
        return "processor"
    return "standard library" if re.fullmatch(r"\w+", path) else "operating system"


def wrong_includes(file, name):
    own = folder_of(name)
    if own not in ALLOWED:
        return [f"{file}: its folder is not known; add it in scripts/check-includes"]
    wrong = []
    for number, line in enumerate(file.read_text().splitlines(), 1):
        found = re.match(r'\s*#\s*include\s*(["<])([^">]+)', line)
        if not found:
            continue
        quote, path = found.groups()
        other = folder_of(path)
        inside = other in ALLOWED and not other.startswith("public")
        if (quote == '"') != inside:
            wrong.append(f'{file}:{number}: "..." is for "folder/File.h" under src, <...> for all else')
        elif other not in (own, "standard library") and other not in ALLOWED[own]:
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
