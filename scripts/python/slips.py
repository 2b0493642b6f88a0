# SPDX-License-Identifier: MIT
"""Plants plausible slips in sources, one at a time, and lists those that no test sees.

    scripts/slips [--count N] [--seed N] [--skip TEST]... FILE...

A slip is a dropped line, a wrong comparison or operator, a bound off by one or a truth value turned round.
Each is planted in a copy of the sources, in build/slips, of which the tests run until one fails: first those
that are quick and have failed most. A slip that does not compile does not count.
Takes 5 to 60 s a slip.
"""

import argparse
import json
import os
import pathlib
import random
import re
import resource
import shutil
import signal
import subprocess
import sys

root = pathlib.Path(__file__).resolve().parent.parent.parent
copy = root / "build/slips/source"
build = root / "build/slips/build"

# What stands in a line, and what a slip makes of it.
changes = [
    (r" < ", " <= "), (r" <= ", " < "), (r" > ", " >= "), (r" >= ", " > "),
    (r" == ", " != "), (r" != ", " == "), (r" && ", " || "), (r" \|\| ", " && "),
    (r" \+ ", " - "), (r" - ", " + "), (r" \+ 1\b", ""), (r" - 1\b", ""), (r"\+\+", "--"), (r"\+=", "-="),
    (r"\btrue\b", "false"), (r"\bfalse\b", "true"), (r"\b([2-9]|[1-9]\d+)\b", lambda m: str(int(m[1]) + 1)),
    (r"if \(!", "if ("), (r"if \((?=[a-z])", "if (!"), (r"\bbreak;", ";"), (r"\bcontinue;", ";"),
]
droppable = re.compile(r"^\s+[\w:.>\-*&(\[\]]+( = |\(| \+= |\+\+|--).*;$")


def slips_in(file):
    """All slips: the line's number and what stands there then."""
    for number, line in enumerate(file.read_text().split("\n")):
        code = line.split("//")[0]
        if not line.startswith(" ") or not code.strip() or code.strip().startswith(("using", "static_assert")):
            continue
        if droppable.match(line):
            yield number, re.match(r"\s*", line)[0] + ";"
        for pattern, slip in changes:
            for found in re.finditer(pattern, code):
                put = slip(found) if callable(slip) else slip
                yield number, line[:found.start()] + put + line[found.end():]


def quietly(*words, seconds=900, processor=900):
    """Whether that ends well in time. Whatever it started ends with it."""
    def limit():
        resource.setrlimit(resource.RLIMIT_CPU, (processor, processor))
    process = subprocess.Popen([str(word) for word in words], stdout=subprocess.DEVNULL,
                               stderr=subprocess.DEVNULL, start_new_session=True, preexec_fn=limit)
    try:
        return process.wait(timeout=seconds) == 0
    except subprocess.TimeoutExpired:
        return False
    finally:
        try:
            os.killpg(process.pid, signal.SIGKILL)
        except ProcessLookupError:
            pass
        process.wait()


def compiles():
    return quietly("cmake", "--build", build)


def tests(skipped):
    shown = subprocess.run(["ctest", "--test-dir", build, "--show-only=json-v1"], check=True, text=True,
                           stdout=subprocess.PIPE).stdout
    names = [test["name"] for test in json.loads(shown)["tests"]]
    return [name for name in names if not any(part in name for part in skipped)]


# A slip may make a test go on for ever, and a machine with other work to do may make it slow: what counts
# is the processor's time, and the clock's only for tests that wait.
def first_failure(took, saw):
    def used():
        return resource.getrusage(resource.RUSAGE_CHILDREN).ru_utime
    for name in sorted(took, key=lambda one: took[one] / (1 + saw[one])):
        begin = used()
        if not quietly("ctest", "--test-dir", build, "-R", f"^{name}$", seconds=60 + 20 * took[name],
                       processor=int(5 + 5 * took[name])):
            saw[name] += 1
            return name
        took[name] = min(took[name], used() - begin)
    return None


def main():
    options = argparse.ArgumentParser(prog="scripts/slips", description=__doc__,
                                      formatter_class=argparse.RawTextHelpFormatter)
    options.add_argument("--count", type=int, default=20)
    options.add_argument("--seed", type=int, default=1)
    options.add_argument("--skip", action="append", default=["package_test", "gdb_test"])
    options.add_argument("file", nargs="+", type=pathlib.Path)
    chosen = options.parse_args()

    shutil.rmtree(copy, ignore_errors=True)
    shutil.copytree(root, copy, ignore=lambda folder, names: {"build", ".git"} & set(names))
    if not quietly("cmake", "-S", copy, "-B", build, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Release",
                   "-DCMAKE_CXX_FLAGS_RELEASE=-O1", "-DQRNDOM_BUILD_TESTS=ON",
                   *(f"-DCMAKE_{kind}_LINKER_FLAGS=-fuse-ld=gold" for kind in ("EXE", "SHARED", "MODULE")
                     if shutil.which("ld.gold"))) or not compiles():
        sys.exit("The copy in build/slips does not build")
    took = {name: 120 for name in tests(chosen.skip)}
    saw = dict.fromkeys(took, 0)
    if failed := first_failure(took, saw):
        sys.exit(f"{failed} fails without a slip")

    known = [(file.resolve().relative_to(root), number, slip) for file in chosen.file
             for number, slip in slips_in(file)]
    random.Random(chosen.seed).shuffle(known)
    planted = lived = 0
    for file, number, slip in known:
        if planted == chosen.count:
            break
        target = copy / file
        whole = target.read_text()
        lines = whole.split("\n")
        was, lines[number] = lines[number], slip
        target.write_text("\n".join(lines))
        if compiles():
            planted += 1
            failed = first_failure(took, saw)
            lived += failed is None
            print(f"{failed or 'LIVED':16} {file}:{number + 1}: {was.strip()}  ->  {slip.strip()}", flush=True)
        target.write_text(whole)
    print(f"{planted} slips of {len(known)} that there are, {lived} lived")


if __name__ == "__main__":
    main()
