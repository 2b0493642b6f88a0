# SPDX-License-Identifier: MIT
"""Compares the library's binary interface with the one recorded in abi/.

    scripts/abi [--record]      (--record: make the present interface the recorded one)

Three things are compared: the exported symbols (abi/symbols.txt), all of the version that goes with the
SONAME; types, layouts and signatures
(abi/QRNDOM.abi); and the order of virtual operations (abi/slots.txt, which is written by hand and
never recorded). Says what differs and ends with 1 if anything does.
"""

import pathlib
import re
import subprocess
import sys
from xml.etree import ElementTree

HOME = pathlib.Path(__file__).resolve().parent.parent.parent
ABI = HOME / "abi"
BUILD = HOME / "build" / "abi"
PACKAGES = ["g++", "cmake", "ninja-build", "libxerces-c-dev", "libicu-dev", "abigail-tools", "binutils"]


def run(*command, **options):
    result = subprocess.run(command, capture_output=True, text=True, cwd=HOME, **options)
    if result.returncode != 0:
        sys.exit(f"{' '.join(map(str, command))}\nended with {result.returncode}:\n"
                 f"{result.stdout[-3000:]}{result.stderr[-3000:]}")
    return result.stdout


def build():
    """The library as it is shipped, with debug information besides."""
    command = ["scripts/build", "the library with debug information", "half a minute", BUILD.name, "--",
               "-S", ".", "-B", BUILD, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Release",
               "-DCMAKE_CXX_COMPILER=g++", f'-DCMAKE_CXX_FLAGS=-g "-ffile-prefix-map={HOME}/="',
               "-DQRNDOM_BUILD_TESTS=OFF", "-DQRNDOM_BUILD_EXAMPLES=OFF"]
    if subprocess.run(command, cwd=HOME, check=False).returncode != 0:
        sys.exit(1)
    return BUILD / "libQRNDOM.so"


def demangled(symbols):
    symbols = sorted(symbols)
    return dict(zip(symbols, run("c++filt", input="\n".join(symbols)).splitlines()))


def exported_symbols(library):
    """{symbol: its version}, of what is no name of a version itself"""
    table = run("nm", "--dynamic", "--defined-only", "--format=posix", library)
    entries = [line.split()[:2] for line in table.splitlines()]
    return dict(name.partition("@@")[::2] for name, kind in entries if kind != "A")


def version_changes(library, symbols):
    """What does not have the version that goes with the SONAME, by which programs ask for it."""
    major = re.search(r"SONAME +lib\w+\.so\.(\d+)", run("objdump", "--private-headers", library)).group(1)
    return [f"{symbol}: {version or 'none'}" for symbol, version in sorted(symbols.items())
            if version != f"QRNDOM_{major}"]


def foreign_symbols(symbols):
    """What is exported but belongs to no public class: leaks of the engine, ICU, the standard library."""
    headers = "".join(path.read_text() for path in (HOME / "include").rglob("*.h"))
    classes = "|".join(re.findall(r"^(?:class|struct) (?:QRNDOM_API )?(\w+)(?: : [^;{]*)? \{", headers,
                                  re.MULTILINE))
    ours = re.compile(rf"(vtable for |typeinfo (name )?for )?({classes})(::|$)"
                      rf"|operator[^\w\s]+\((std::basic_ostream<.*>&, )?({classes})\b")
    return [name for name in demangled(symbols).values() if not ours.match(name)]


def symbol_changes(recorded, present):
    names = demangled(recorded | present)
    return ([f"is gone, and programs that use it no longer start:  {names[symbol]}"
             for symbol in sorted(recorded - present)] +
            [f"is new:  {names[symbol]}" for symbol in sorted(present - recorded)])


def dump(library, file):
    run("abidw", "--no-corpus-path", "--no-comp-dir-path", "--no-show-locs", "--no-parameter-names",
        "--no-elf-needed", "--drop-private-types", "--drop-undefined-syms", "--headers-dir", "include",
        "--exported-interfaces-only", "--suppressions", ABI / "suppressed.ini", "--out-file", file,
        library)


def facts(file):
    """{what: how it is} of a dump: sizes and members of our classes, results, values of enumerators."""
    root = ElementTree.parse(file).getroot()
    types = {node.get("id"): node for node in root.iter() if node.get("id")}

    def name_of(type_id):
        node = types.get(type_id)
        if node is None:
            return "a type of the standard library"
        if node.get("name"):
            return node.get("name")
        suffix = {"pointer-type-def": "*", "reference-type-def": "&"}.get(node.tag, "")
        prefix = "const " if node.get("const") == "yes" else ""
        return f"{prefix}{name_of(node.get('type-id'))}{suffix}"

    found = {}

    def read(node, scope):
        if node.tag in ("class-decl", "enum-decl"):
            scope = scope + [node.get("name")]
        name = "::".join(scope)
        if not scope or not name.startswith("Pel"):
            pass
        elif node.tag == "class-decl" and node.get("size-in-bits"):
            found[f"The size of {name}"] = f"{int(node.get('size-in-bits')) // 8} bytes"
        elif node.tag == "data-member" and node.get("layout-offset-in-bits"):
            member = node.find("var-decl")
            found[f"{name}::{member.get('name')}"] = (
                f"a {name_of(member.get('type-id'))} at byte {int(node.get('layout-offset-in-bits')) // 8}")
        elif node.tag == "member-function":
            function = node.find("function-decl")
            symbol = function.get("mangled-name")
            found[f"The result of {symbol}"] = name_of(function.find("return").get("type-id"))
            if int(node.get("vtable-offset", -1)) >= 0:
                found[f"The place of {symbol} among virtual operations"] = node.get("vtable-offset")
        elif node.tag == "enumerator":
            found[f"{name}::{node.get('name')}"] = node.get("value")
        for child in node:
            read(child, scope)

    read(root, [])
    return found


def type_changes(recorded, present):
    before, after = facts(recorded), facts(present)
    changes = [f"{what}: was {before[what]}, is {after.get(what, 'gone')}"
               for what in before if before[what] != after.get(what)]
    changes += [f"{what}: is new, {after[what]}" for what in after if what not in before]
    changes = run("c++filt", input="\n".join(changes)).splitlines()
    # What has no words here has abidiff's.
    judged = subprocess.run(["abidiff", "--no-show-locs", "--leaf-changes-only", recorded, present],
                            capture_output=True, text=True, check=False)
    if judged.returncode and not changes:
        changes = (judged.stdout + judged.stderr).splitlines()
    return changes


def expected_slots():
    """{class: (names of its virtual operations by slot, class that fills them or None)}"""
    slots = {}
    for line in (ABI / "slots.txt").read_text().splitlines():
        if line and not line.startswith("#"):
            classes, names = line.split(":")
            first, *rest = classes.split()
            slots[first] = (names.split(), None)
            for filler in rest:
                slots[first] = (names.split(), filler)
                slots[filler] = (names.split(), None)
    return slots


def compiled_slots():
    """{class: names of its virtual operations by slot}, by the compiler; None for an abstract one."""
    headers = [path for folder in ("include", "src") for path in sorted((HOME / folder).rglob("*.h"))]
    listing = BUILD / "classes.txt"
    run("g++", "-std=c++17", "-x", "c++", "-fsyntax-only", f"-fdump-lang-class={listing}", "-Iinclude",
        "-Isrc", f"-I{BUILD / 'include'}", "-",
        input="".join(f'#include "{path}"\n' for path in headers))
    slots = {}
    for name, table in re.findall(r"^Vtable for (\w+)\n(.*?)\n\n", listing.read_text(), re.M | re.S):
        entries = [re.sub(r".*\)|.*::", "", line) for line in table.splitlines()[3:]]
        # A destructor has two entries, without a name in an abstract class, but is one operation.
        destructor = [entry.startswith("~") or re.search(r"\s0$", entry) for entry in entries]
        slots[name] = [
            "destructor" if destructor[i] else None if entry == "__cxa_pure_virtual" else entry
            for i, entry in enumerate(entries) if not (i > 0 and destructor[i] and destructor[i - 1])]
    return slots


def slot_changes():
    changes = []
    compiled = compiled_slots()
    for name, (expected, filler) in expected_slots().items():
        if name not in compiled:
            changes.append(f"{name} has no virtual operations, or is gone")
            continue
        # Where the class itself leaves an operation open, the one that fills it names it.
        filling = compiled.get(filler, [])
        actual = [entry or (filling[i] if i < len(filling) else None)
                  for i, entry in enumerate(compiled[name])]
        for i in range(max(len(expected), len(actual))):
            wanted = expected[i] if i < len(expected) else "nothing"
            found = actual[i] if i < len(actual) else "nothing"
            if wanted != found:
                changes.append(f"{name}, slot {i}: should be {wanted}, is {found or 'abstract'}")
    return changes


def tell(heading, changes):
    if changes:
        print(f"{heading}:")
        print("".join(f"  {line}\n" for line in changes))
    return bool(changes)


def main(arguments):
    if arguments not in ([], ["--record"]):
        print(__doc__.split("\n", 2)[2].rstrip())
        return 0 if arguments[0] in ("-h", "--help") else 2
    run("scripts/install-packages", *PACKAGES)
    library = build()
    versions = exported_symbols(library)
    symbols = set(versions)
    wrong = tell("Exported, but not of a public class", foreign_symbols(symbols))
    wrong |= tell("Exported with another version than the SONAME's", version_changes(library, versions))
    wrong |= tell("Virtual operations out of order", slot_changes())

    if arguments == ["--record"]:
        if wrong:
            print("Nothing was recorded.")
            return 1
        (ABI / "symbols.txt").write_text("".join(f"{symbol}\n" for symbol in sorted(symbols)))
        dump(library, ABI / "QRNDOM.abi")
        print(f"Recorded {len(symbols)} symbols, and their types, in abi/")
        return 0

    recorded = set((ABI / "symbols.txt").read_text().split())
    wrong |= tell("Exported symbols", symbol_changes(recorded, symbols))
    dump(library, BUILD / "QRNDOM.abi")
    wrong |= tell("Types, layouts and signatures",
                  type_changes(ABI / "QRNDOM.abi", BUILD / "QRNDOM.abi"))
    if wrong:
        print("If that is meant, and users' programs need not go on working as they are, record it:"
              "  scripts/abi --record")
        return 1
    print(f"The binary interface is as recorded: {len(symbols)} symbols, {len(expected_slots())} classes "
          "with virtual operations in their order")
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
