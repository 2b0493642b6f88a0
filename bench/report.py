# SPDX-License-Identifier: MIT
"""Makes the table and the plot of scripts/bench from its results.

    report.py RESULTS BUILD [DOCS]

Prints the table and draws RESULTS/performance.svg; with DOCS, also puts both there.
"""

import json
import pathlib
import re
import shutil
import statistics
import subprocess
import sys

import plot

OWN, ENGINE = "qrndom", "engine"
PEERS = ["libxml2", "tinyxml2", "pugixml"]
ORDER = ["read_file", "read_string", "walk", "write_file", "write_string", "drop", "children", "tags",
         "attributes", "texts", "fill", "memory", "grow_read", "grow_walk", "grow_write"]
CATALOGUE = [
    ("Read a file", "read_file/catalogue", 0.40),
    ("Write to a file", "write_file/catalogue", 0.60),
    ("Write into a string", "write_string/catalogue", 0.80),
    ("Walk every node", "walk/catalogue", 4.0),
    ("Read a typed attribute", "attributes/catalogue", 2.0),
    ("Fill 100,000 elements", "fill/100000", 1.1),
    ("Peak memory of reading", "memory/catalogue", 1.05),
]
GROWTH = [
    ("Children by index, cost of each", "children", 100000, 1000, 1.3),
    ("Matches by index, cost of each", "tags", 100000, 1000, 1.3),
    ("Read, 200 MB / 20 MB", "grow_read", 200, 20, 11.0),
    ("Write, 200 MB / 20 MB", "grow_write", 200, 20, 11.0),
]


class Ratio:
    """The median of a quotient and its quartiles, from every pair of the two measurements."""

    def __init__(self, label, values, others, divisor=1, goal=None):
        pairs = [value / other / divisor for value in values for other in others]
        self.low, self.median, self.high = (
            statistics.quantiles(pairs, n=4, method="inclusive") if len(pairs) > 1 else pairs * 3
        )
        self.label, self.goal = label, goal

    def cells(self):
        goal = f"at most {self.goal:.2f}" if self.goal else ""
        verdict = ("yes" if self.median <= self.goal else "**no**") if self.goal else ""
        return [self.label, f"{self.median:.2f}", f"{self.low:.2f} to {self.high:.2f}", goal, verdict]


def read_results(folder):
    """{"workload/document/library": [measurement of each repetition]}, in ms or KiB."""
    results = {}
    for file in ("workloads.json", "growth.json"):
        path = folder / file
        text = path.read_text() if path.exists() else ""
        for run in json.loads(text)["benchmarks"] if text.strip() else []:
            if run.get("error_occurred"):
                print(f"{run['name']}: {run['error_message']}", file=sys.stderr)
            elif run["run_type"] == "iteration":
                name = "/".join(run["name"].split("/")[:3])
                results.setdefault(name, []).append(run["cpu_time"])
    memory = folder / "memory.txt"
    for line in memory.read_text().splitlines() if memory.exists() else []:
        name, _, peak = line.split()
        results.setdefault(name, []).append(float(peak))
    return results


def ratios(results):
    def quotient(label, name, other, divisor=1, goal=None):
        if name in results and other in results:
            yield Ratio(label, results[name], results[other], divisor, goal)

    for label, name, goal in CATALOGUE:
        yield from quotient(f"{label} / engine", f"{name}/{OWN}", f"{name}/{ENGINE}", 1, goal)
        if name == "read_file/catalogue":
            yield from quotient(f"{label} / libxml2", f"{name}/{OWN}", f"{name}/libxml2", 1, 1.0)
    for label, name, large, small, goal in GROWTH:
        divisor = 1 if name.startswith("grow") else large / small
        first, second = f"{name}/{large}", f"{name}/{small}"
        yield from quotient(label, f"{first}/{OWN}", f"{second}/{OWN}", divisor, goal)


def aligned(rows):
    """A Markdown table whose columns line up in plain text too."""
    widths = [max(len(row[column]) for row in rows) for column in range(len(rows[0]))]
    pad = lambda row: "| " + " | ".join(cell.ljust(width) for cell, width in zip(row, widths)) + " |"
    ruler = "|" + "|".join("-" * (width + 2) for width in widths) + "|"
    return "\n".join([pad(rows[0]), ruler] + [pad(row) for row in rows[1:]])


def number(value):
    return f"{value:.0f}" if value >= 100 else f"{value:.3g}"


def natural(name):
    workload, document = name.split("/")
    return (ORDER.index(workload), int(document) if document.isdigit() else 0, document)


def all_times(results):
    """Medians of each workload, with the ratio to the engine where both were measured."""
    libraries = [OWN, ENGINE] + PEERS
    rows = [["Workload", "QRNDOM", "engine", "ratio", "quartiles"] + PEERS]
    for workload in sorted({name.rsplit("/", 1)[0] for name in results}, key=natural):
        found = [results.get(f"{workload}/{library}") for library in libraries]
        medians = [number(statistics.median(times)) if times else "" for times in found]
        ratio = Ratio("", found[0], found[1]).cells()[1:3] if found[0] and found[1] else ["", ""]
        rows.append([f"`{workload}`"] + medians[:2] + ratio + medians[2:])
    return aligned(rows)


def command(*words):
    return subprocess.run(words, capture_output=True, text=True, check=False).stdout.strip()


def circumstances(build):
    def first(pattern, path):
        match = re.search(pattern, pathlib.Path(path).read_text(), re.M)
        return match.group(1) if match else "unknown"

    compiler = first(r"^CMAKE_CXX_COMPILER:\w+=(.*)$", build / "CMakeCache.txt")
    revision = command("git", "rev-parse", "--short", "HEAD")
    changed = command("git", "status", "--porcelain", "--", "src", "include", "bench", "CMakeLists.txt")
    packages = ["libxerces-c-dev", "libxml2-dev", "libtinyxml2-dev", "libpugixml-dev"]
    versions = [command("dpkg-query", "-W", "-f", "${Package} ${Version}", name) for name in packages]
    return "\n".join([
        f"- Machine: {first(r'^model name.*: (.*)$', '/proc/cpuinfo')}, {command('nproc')} cores, "
        + first(r'^PRETTY_NAME="(.*)"$', "/etc/os-release"),
        f"- Compiler: {command(compiler, '--version').splitlines()[0]}, Release",
        "- Packages: " + ", ".join(filter(None, versions)),
        f"- Revision: {revision}" + (", with uncommitted changes" if changed else ""),
    ])


def main():
    results_folder, build = map(pathlib.Path, sys.argv[1:3])
    results = read_results(results_folder)
    if not results:
        sys.exit("No benchmark ran: does the filter fit a name?")
    found = list(ratios(results))
    parts = [circumstances(build)]
    if found:
        header = ["Measured", "Ratio", "Quartiles", "Goal", "Met"]
        parts.append(aligned([header] + [ratio.cells() for ratio in found]))
    parts.append("Medians, in milliseconds of processor time (`memory`: KiB):\n\n" + all_times(results))
    report = "\n\n".join(parts)
    print("\n" + report)

    drawing = results_folder / "performance.svg"
    drawing.write_text(plot.draw([ratio for ratio in found if ratio.goal], results), encoding="utf-8")
    print(f"\nThe plot is {drawing}")
    if len(sys.argv) > 3:
        docs = pathlib.Path(sys.argv[3])
        shutil.copy(drawing, docs / "performance.svg")
        page = docs / "performance.md"
        begin, end = "<!-- results -->\n", "<!-- end of results -->\n"
        before, rest = page.read_text(encoding="utf-8").split(begin)
        after = rest.split(end)[1]
        page.write_text(f"{before}{begin}\n{report}\n\n{end}{after}", encoding="utf-8")
        print(f"{page} and its plot are made anew")


main()
