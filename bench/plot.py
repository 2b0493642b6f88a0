# SPDX-License-Identifier: MIT
"""Draws the ratios to each library with their goals, and the growth of time with size, as SVG."""

import math
import statistics

WIDTH = 900
LIBRARIES = {"engine": "#1b6ca8", "libxml2": "#c05a1c", "tinyxml2": "#3a7d44", "pugixml": "#7b3fa0"}
COLOURS = {"read": "#1b6ca8", "walk": "#c05a1c", "write": "#3a7d44"}


def text(x, y, content, anchor="start", extra=""):
    return f'<text x="{x:.1f}" y="{y:.1f}" text-anchor="{anchor}" {extra}>{content}</text>'


def line(x1, y1, x2, y2, style):
    return f'<line x1="{x1:.1f}" y1="{y1:.1f}" x2="{x2:.1f}" y2="{y2:.1f}" {style}/>'


def scale(low, high, start, end):
    """A logarithmic axis."""
    span = math.log(high / low)
    return lambda value: start + (end - start) * math.log(max(value, low) / low) / span


def svg(height, body):
    return "\n".join([
        f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {WIDTH} {height:.0f}" '
        'font-family="sans-serif" font-size="13" fill="#222">',
        f'<rect width="{WIDTH}" height="{height:.0f}" fill="white"/>',
        *body,
        "</svg>\n",
    ])


def draw_ratios(rows, names):
    """`rows`: (label, {library: ratio with its goal}). Left of 1, QRNDOM is faster."""
    left, right, top, step = 260, 860, 60, 26
    bottom = top + step * len(rows)
    x = scale(0.02, 50, left, right)
    out = [text(20, 25, "Time of QRNDOM / time of another library", extra='font-weight="bold"')]
    for place, (library, colour) in enumerate(LIBRARIES.items()):
        centre = left + 130 * place
        out.append(f'<circle cx="{centre}" cy="42" r="5" fill="{colour}"/>')
        out.append(text(centre + 10, 46, names[library]))
    for tick in (0.03, 0.1, 0.3, 1, 3, 10, 30):
        style = 'stroke="#222"' if tick == 1 else 'stroke="#ddd"'
        out.append(line(x(tick), top, x(tick), bottom, style))
        out.append(text(x(tick), bottom + 18, f"{tick:g}", "middle"))
    for row, (label, ratios) in enumerate(rows):
        y = top + step * (row + 0.5)
        out.append(text(left - 10, y + 4, label, "end"))
        out.append(line(left, y, right, y, 'stroke="#eee"'))
        for library, ratio in ratios.items():
            colour = LIBRARIES[library]
            if ratio.goal:
                goal = x(ratio.goal)
                out.append(line(goal, y - 9, goal, y + 9, f'stroke="{colour}" stroke-width="3"'))
            middle = min(max(x(ratio.median), left), right)
            out.append(f'<circle cx="{middle:.1f}" cy="{y:.1f}" r="5" fill="{colour}"/>')
    out.append(text(left, bottom + 40, "dot: median; bar of its colour: goal, at most"))
    return svg(bottom + 55, out)


def draw_growth(results):
    height = 420
    left, right, top, bottom = 70, 740, 50, height - 60
    curves = {}
    for name, times in results.items():
        workload, size, library = name.split("/")
        if workload.startswith("grow_"):
            point = (float(size), statistics.median(times))
            curves.setdefault((workload[len("grow_"):], library), []).append(point)
    if not curves:
        return svg(height, [])
    points = [point for curve in curves.values() for point in curve]
    x = scale(min(p[0] for p in points), max(p[0] for p in points), left, right)
    y = scale(min(p[1] for p in points), max(p[1] for p in points), bottom, top)
    title = "Processor time (ms) by size of the document (MB)"
    out = [text(left - 50, 25, title, extra='font-weight="bold"')]
    for size in sorted({p[0] for p in points}):
        out.append(line(x(size), top, x(size), bottom, 'stroke="#ddd"'))
        out.append(text(x(size), bottom + 18, f"{size:g}", "middle"))
    for exponent in range(0, 6):
        if top <= y(10**exponent) < bottom:
            out.append(line(left, y(10**exponent), right, y(10**exponent), 'stroke="#ddd"'))
            out.append(text(left - 8, y(10**exponent) + 4, f"{10**exponent:,}", "end"))
    labels = []
    for (workload, library), curve in curves.items():
        dash = "" if library == "qrndom" else ' stroke-dasharray="6 4"'
        style = f'stroke="{COLOURS[workload]}" stroke-width="2" fill="none"{dash}'
        path = " ".join(f"{x(size):.1f},{y(time):.1f}" for size, time in sorted(curve))
        out.append(f'<polyline points="{path}" {style}/>')
        labels.append((y(max(curve)[1]), f"{workload}, {library}", COLOURS[workload]))
    place = 0.0
    for wanted, label, colour in sorted(labels):
        place = max(wanted, place + 15)
        out.append(text(right + 8, place + 4, label, extra=f'fill="{colour}"'))
    return svg(height, out)
