# SPDX-License-Identifier: MIT
"""Reads hostile documents, a process for each, and fails when one takes more than is promised.

    scripts/hostile [--megabytes N,...] [--table FILE] [SHAPE...]

Promised is, for a read and its process: 2 s of processor time and 1 s for each MB of input, 96 MiB
and 300 bytes for each byte. What takes long is read at half its size too, to see how it
grows.
SHAPE is a part of a shape's name.
"""

import argparse
import pathlib
import re
import subprocess
import sys
import tempfile

root = pathlib.Path(__file__).resolve().parent.parent.parent
build = root / "build/release"


def run(*words):
    return subprocess.run([str(word) for word in words], check=True, text=True, stdout=subprocess.PIPE)


def measure(tool, shape, size):
    """Bytes of input, seconds, KiB and message of one read."""
    with tempfile.TemporaryDirectory(prefix="qrndom-hostile.") as folder:
        run(tool, "write", shape, size, folder)
        files = pathlib.Path(folder).iterdir()
        total = sum(file.stat().st_size for file in files)
        main = pathlib.Path(folder) / "main.xml"
        done = subprocess.run([str(tool), "read", str(main)], text=True, stdout=subprocess.PIPE,
                              stderr=subprocess.PIPE)
        if done.returncode != 0 or done.stderr:
            return total, 0.0, 0, f"DIED {done.returncode} {done.stderr[:80]}"
        seconds, kibibytes, message = done.stdout.rstrip("\n").split(" ", 2)
        return total, float(seconds), int(kibibytes), message.split("main.xml:")[-1].replace(f"{folder}/", "")


def table(rows):
    """A line for each shape, with what it takes at each size."""
    lines = ["| document | MB: s, MiB | growth | ends in |", "|---|---|---|---|"]
    for shape in dict.fromkeys(row[0] for row in rows):
        own = [row for row in rows if row[0] == shape]
        takes = "; ".join(f"{total / 1e6:.2f}: {seconds:.2f}, {kibibytes / 1024:.0f}"
                          for _, total, _, seconds, kibibytes, _ in own)
        message = re.sub(r"^(.*/)?[0-9]*:?[0-9]*:", "", own[-1][2]).strip()
        lines.append(f"| {shape} | {takes} | {own[-1][5]} | {message[:60]} |")
    return "\n".join(lines) + "\n"


def main():
    options = argparse.ArgumentParser(prog="scripts/hostile", description=__doc__,
                                      formatter_class=argparse.RawTextHelpFormatter)
    options.add_argument("--megabytes", default="1,20")
    options.add_argument("--table", type=pathlib.Path)
    options.add_argument("--tool", type=pathlib.Path)
    options.add_argument("shape", nargs="*")
    chosen = options.parse_args()
    tool = chosen.tool or build / "bench/hostile"
    if not chosen.tool:
        subprocess.run(["cmake", "--preset", "release", "-DQRNDOM_BUILD_BENCHMARKS=ON"], cwd=root,
                       check=True, stdout=subprocess.DEVNULL)
        subprocess.run(["cmake", "--build", build, "--target", "hostile"], check=True,
                       stdout=subprocess.DEVNULL)
    shapes = [shape for shape in run(tool, "list").stdout.splitlines()
              if not chosen.shape or any(part in shape for part in chosen.shape)]
    broken = 0
    rows = []
    for shape in shapes:
        for megabytes in map(float, chosen.megabytes.split(",")):
            size = int(megabytes * 1_000_000)
            total, seconds, kibibytes, message = measure(tool, shape, size)
            holds = (seconds <= 2 + total / 1e6 and kibibytes <= 96 * 1024 + 300 * total / 1024
                     and not message.startswith("DIED"))
            growth = f"x{seconds / measure(tool, shape, size // 2)[1]:.1f}" if seconds > 0.3 else ""
            broken += not holds
            rows.append((shape, total, message, seconds, kibibytes, growth))
            print(f"{shape:60.60} {total / 1e6:6.2f} MB {seconds:7.2f} s {growth:>5} "
                  f"{kibibytes / 1024:7.1f} MiB  {message[:70]}{'' if holds else '   BROKEN'}", flush=True)
    if chosen.table:
        chosen.table.write_text(table(rows))
    print(f"{len(rows)} reads of {len(shapes)} shapes, {broken} broke the promise")
    return 1 if broken else 0


if __name__ == "__main__":
    sys.exit(main())
