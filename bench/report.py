# SPDX-License-Identifier: MIT
"""Makes the tables and the plots of scripts/bench from its results.

    report.py RESULTS BUILD [DOCS]

Prints the tables and draws RESULTS/performance.svg and growth.svg; with DOCS, also puts all there.
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
ORDER = ["read_file", "read_string", "messages", "walk", "children", "ranges", "tags", "attributes",
         "texts", "write_file", "write_string", "kept_read", "kept_read_without", "kept_save",
         "kept_save_without", "drop", "fill", "front", "csv", "memory", "grow_read",
         "grow_walk", "grow_write", "names_create", "names_attribute", "names_rename", "names_alike",
         "names_import"] + [
             f"loop_{name}" for name in ("remove_first", "remove_last", "remove_middle", "remove_records",
                                         "remove_nested", "rename_first", "rename_last", "append", "insert",
                                         "wrap", "move", "range")]
NAMES = {ENGINE: "engine", "libxml2": "libxml2", "tinyxml2": "TinyXML-2", "pugixml": "pugixml"}
WORKLOADS = [
    ("Read a catalogue", "read_file/catalogue", {ENGINE: 0.18, "libxml2": 0.45, "tinyxml2": 0.95}),
    ("Read long texts of many scripts", "read_file/scripts", {ENGINE: 0.30}),
    ("Read media types", "read_file/media_types", {ENGINE: 0.45}),
    ("Read 60,000 declared IDs, defaults", "read_file/declared", {ENGINE: 0.40}),
    ("Read small messages", "messages/good", {ENGINE: 0.12, "libxml2": 0.60}),
    ("The same, 5 % broken", "messages/mixed", {"libxml2": 1.0}),
    ("Walk every node", "walk/catalogue", {ENGINE: 1.8}),
    ("Children by index", "children/100000", {ENGINE: 3.5}),
    ("Child elements by range", "ranges/100000", {}),
    ("Read a typed attribute", "attributes/catalogue", {ENGINE: 2.0}),
    ("Text of an element", "texts/catalogue", {ENGINE: 2.0}),
    ("Write to a file", "write_file/catalogue", {ENGINE: 0.50}),
    ("Write into a string", "write_string/catalogue", {ENGINE: 0.35}),
    ("Fill 100,000 elements", "fill/100000", {ENGINE: 1.1}),
    ("Insert 100,000 in front", "front/100000", {}),
    ("100,000 rows to XML and back", "csv/100000", {"tinyxml2": 0.9}),
    ("Peak memory of reading", "memory/catalogue", {ENGINE: 1.05}),
]
# What a choice costs or saves: the workload with it, and the one without.
CHOICES = [
    ("Read a catalogue, its source kept / not kept", "kept_read", "catalogue", 1.15),
    ("Read media types, their source kept / not kept", "kept_read", "media_types", 1.15),
    ("Save one edit in a catalogue, layout kept / all of it", "kept_save", "catalogue", 0.5),
    ("Save one edit in media types, layout kept / all of it", "kept_save", "media_types", 0.5),
]
GROWTH = [
    ("Children by index, cost of each", "children", 100000, 1000, 1.3),
    ("Matches by index, cost of each", "tags", 100000, 1000, 1.3),
    ("Read, 200 MB / 20 MB", "grow_read", 200, 20, 11.0),
    ("Write, 200 MB / 20 MB", "grow_write", 200, 20, 11.0),
    ("Different names, cost of each", "names_create", 200000, 50000, 1.5),
    ("The same, at one of the table's first places", "names_alike", 50000, 12500, 1.5),
    ("Copies of such elements, cost of each", "names_import", 50000, 12500, 1.5),
]


class Ratio:
    """The median of a quotient and its quartiles, from every pair of the two measurements."""

    def __init__(self, label, values, others, divisor=1, goal=None):
        pairs = [value / other / divisor for value in values for other in others]
        self.low, self.median, self.high = (
            statistics.quantiles(pairs, n=4, method="inclusive") if len(pairs) > 1 else pairs * 3
        )
        self.label, self.goal = label, goal

    def cells(self, of=""):
        goal = f"at most {self.goal:.2f}" if self.goal else ""
        verdict = ("yes" if self.median <= self.goal else "**no**") if self.goal else ""
        label = f"{of} / {self.label}" if of else self.label
        return [label, f"{self.median:.2f}", f"{self.low:.2f} to {self.high:.2f}", goal, verdict]


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


def ratios_of(results, name, goals):
    """{library: Ratio} of a workload to each other library that was measured."""
    own = results.get(f"{name}/{OWN}")
    others = {library: results.get(f"{name}/{library}") for library in NAMES}
    return {library: Ratio(NAMES[library], own, times, 1, goals.get(library))
            for library, times in others.items() if own and times}


def growth_ratios(results):
    for label, name, large, small, goal in GROWTH:
        divisor = 1 if name.startswith("grow") else large / small
        first, second = (results.get(f"{name}/{size}/{OWN}") for size in (large, small))
        if first and second:
            yield Ratio(label, first, second, divisor, goal)


def choice_ratios(results):
    for label, name, document, goal in CHOICES:
        first, second = (results.get(f"{workload}/{document}/{OWN}") for workload in (name, f"{name}_without"))
        if first and second:
            yield Ratio(label, first, second, 1, goal)


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
    rows = [(label, ratios_of(results, name, goals)) for label, name, goals in WORKLOADS]
    rows = [(label, found) for label, found in rows if found]
    cells = [ratio.cells(label) for label, found in rows for ratio in found.values() if ratio.goal]
    cells += [ratio.cells() for ratios in (choice_ratios, growth_ratios) for ratio in ratios(results)]
    parts = [circumstances(build)]
    if cells:
        parts.append(aligned([["Measured", "Ratio", "Quartiles", "Goal", "Met"]] + cells))
    parts.append("Medians, in milliseconds of processor time (`memory`: KiB):\n\n" + all_times(results))
    report = "\n\n".join(parts)
    print("\n" + report)

    drawings = {"performance.svg": plot.draw_ratios(rows, NAMES), "growth.svg": plot.draw_growth(results)}
    for name, drawing in drawings.items():
        (results_folder / name).write_text(drawing, encoding="utf-8")
    print(f"\nThe plots are in {results_folder}")
    if len(sys.argv) > 3:
        docs = pathlib.Path(sys.argv[3])
        for name in drawings:
            shutil.copy(results_folder / name, docs / name)
        page = docs / "performance.md"
        begin, end = "<!-- results -->\n", "<!-- end of results -->\n"
        before, rest = page.read_text(encoding="utf-8").split(begin)
        after = rest.split(end)[1]
        page.write_text(f"{before}{begin}\n{report}\n\n{end}{after}", encoding="utf-8")
        print(f"{page} and its plots are made anew")


main()
