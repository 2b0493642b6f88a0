# SPDX-License-Identifier: MIT
"""Draws the ratios against their goals, and the growth of time with size, as one SVG."""

import math
import statistics

WIDTH, HEIGHT = 1000, 420
COLOURS = {"read": "#1b6ca8", "walk": "#c05a1c", "write": "#3a7d44"}


def text(x, y, content, anchor="start", extra=""):
    return f'<text x="{x:.1f}" y="{y:.1f}" text-anchor="{anchor}" {extra}>{content}</text>'


def line(x1, y1, x2, y2, style):
    return f'<line x1="{x1:.1f}" y1="{y1:.1f}" x2="{x2:.1f}" y2="{y2:.1f}" {style}/>'


def scale(low, high, start, end):
    """A logarithmic axis."""
    span = math.log(high / low)
    return lambda value: start + (end - start) * math.log(max(value, low) / low) / span


def ratio_panel(ratios):
    left, right, top = 240, 480, 50
    step = (HEIGHT - top - 60) / max(len(ratios), 1)
    bottom = top + step * len(ratios)
    x = scale(0.1, 20, left, right)
    out = [text(20, 25, "Ratios and their goals", extra='font-weight="bold"')]
    for tick in (0.1, 0.3, 1, 3, 10):
        out.append(line(x(tick), top, x(tick), bottom, 'stroke="#ddd"'))
        out.append(text(x(tick), bottom + 18, f"{tick:g}", "middle"))
    for row, ratio in enumerate(ratios):
        y = top + step * (row + 0.5)
        colour = "#1b6ca8" if ratio.median <= ratio.goal else "#b3261e"
        out.append(text(left - 10, y + 4, ratio.label, "end"))
        out.append(line(x(ratio.goal), y - 9, x(ratio.goal), y + 9, 'stroke="#222" stroke-width="3"'))
        out.append(line(x(ratio.low), y, x(ratio.high), y, f'stroke="{colour}" stroke-width="3"'))
        out.append(f'<circle cx="{x(ratio.median):.1f}" cy="{y:.1f}" r="5" fill="{colour}"/>')
    out.append(text(left, bottom + 38, "dot: median, with quartiles; bar: goal, at most"))
    return out


def growth_panel(results):
    left, right, top, bottom = 570, 880, 50, HEIGHT - 60
    curves = {}
    for name, times in results.items():
        workload, size, library = name.split("/")
        if workload.startswith("grow_"):
            point = (float(size), statistics.median(times))
            curves.setdefault((workload[len("grow_"):], library), []).append(point)
    if not curves:
        return []
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
    return out


def draw(ratios, results):
    body = ratio_panel(ratios) + growth_panel(results)
    return "\n".join([
        f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {WIDTH} {HEIGHT}" '
        'font-family="sans-serif" font-size="13" fill="#222">',
        f'<rect width="{WIDTH}" height="{HEIGHT}" fill="white"/>',
        *body,
        "</svg>\n",
    ])
