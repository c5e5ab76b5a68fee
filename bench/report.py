#!/usr/bin/env python3
"""Makes a report of the rows that the measurements print, one JSON object a line, on standard input.

report.py [--short] [--document FILE] FOLDER

Prints a table; leaves report.json and report.svg in the folder, and the table between the marks of
the document. Ends with 1 when a ratio is more than twice as bad as stated, or as its aim where none
is stated, and --short is given; and when there was nothing to report.
"""

import argparse
import html
import json
import math
import os
import platform
import sys

BEGIN, END = "<!-- bench begin", "<!-- bench end -->"


def shown(value, unit=""):
    if value is None:
        return "–"
    if unit == "us" and value >= 10000:
        value, unit = value / 1000, "ms"
    text = f"{value:,.0f}" if abs(value) >= 1000 else f"{value:.3g}"
    return text + (" µs" if unit == "us" else " " + unit if unit and unit != "ratio" else "")


def reached(row):
    """The value that the aim is for."""
    return row["ours"] if row["ratio"] is None else row["ratio"]


def times_off(row):
    """By what factor the aim is missed; up to 1 it is met, and without an aim it is."""
    return times_worse(row, row.get("aim"))


def times_worse(row, than):
    value = reached(row)
    if than is None or value == than:
        return 0
    if row["better"] == "higher":
        than, value = value, than
    return value / than if than else math.inf


def steepness(curve):
    """The power of x by which y grows from the first point to the last; 1 is linear."""
    x, y = curve["x"], curve["y"]
    return math.log(y[-1] / y[0]) / math.log(x[-1] / x[0])


def cells(row):
    if "skipped" in row:
        return [row["figure"], row.get("against") or "", "not measured: " + row["skipped"]] + [""] * 4
    unit, aim = row["unit"], row.get("aim")
    at = "≥" if row["better"] == "higher" else "≤"
    own = row["ratio"] is None
    low, high = (shown(value) for value in row["spread"])
    return [row["figure"], row["against"] or "", shown(row["ours"], unit),
            shown(row["theirs"], unit), shown(row["ratio"]), f"{low} to {high}",
            f"{at} {shown(aim, unit if own else '')}" + ("" if times_off(row) <= 1 else " missed")
            if aim is not None else ""]


TITLES = ["figure", "against", "ours", "theirs", "ratio", "half of the pairs", "aim"]


def as_text(rows):
    table = [TITLES] + [cells(row) for row in rows]
    widths = [max(len(line[i]) for line in table) for i in range(len(TITLES))]
    return "\n".join("  ".join(cell.ljust(width) for cell, width in zip(line, widths)).rstrip()
                     for line in table)


def as_markdown(rows, curves):
    lines = ["| " + " | ".join(TITLES) + " |", "|---|---|--:|--:|--:|--:|--:|"]
    lines += ["| " + " | ".join(cells(row)) + " |" for row in rows]
    if curves:
        lines += ["", "| how the cost grows | from | to | cost at both ends | grows with the power |",
                  "|---|--:|--:|--:|--:|"]
        for c in curves:
            lines.append(f"| {c['curve']} | {c['x'][0]:,} {c['x_unit']} | {c['x'][-1]:,} | "
                         f"{shown(c['y'][0], c['unit'])} to {shown(c['y'][-1], c['unit'])} | "
                         f"{steepness(c):.2f} |")
    return "\n".join(lines)


def svg(rows, curves):
    """The ratios as bars, aims as red lines; below them the curves, both axes logarithmic."""
    measured = [row for row in rows if row.get("ratio")]
    wide, bar, panel = 900, 24, 200
    widest = max([row["ratio"] for row in measured] + [2])
    height = bar * len(measured) + 40 + (panel + 40) * ((len(curves) + 2) // 3)
    out = [f'<svg xmlns="http://www.w3.org/2000/svg" width="{wide}" height="{height}" '
           'font-family="sans-serif" font-size="12"><rect width="100%" height="100%" fill="white"/>']

    def put(text, x, y, more=""):
        out.append(f'<text x="{x:.0f}" y="{y:.0f}" {more}>{html.escape(text)}</text>')

    scale = 380 / widest
    for i, row in enumerate(measured):
        y = 10 + bar * i
        put(f"{row['figure']} / {row['against']}"[:75], 450, y + 14, 'text-anchor="end" font-size="11"')
        color = "#c0793a" if times_off(row) > 1 else "#4a7fb0"
        out.append(f'<rect x="460" y="{y + 3}" width="{row["ratio"] * scale:.0f}" height="{bar - 8}" '
                   f'fill="{color}"/>')
        if row.get("aim"):
            x = 460 + row["aim"] * scale
            out.append(f'<path d="M{x:.0f} {y}v{bar - 2}" stroke="red" stroke-width="2"/>')
        put(shown(row["ratio"]), 464 + row["ratio"] * scale, y + 15)
    top = 30 + bar * len(measured)
    for i, curve in enumerate(curves):
        left, base = 20 + 295 * (i % 3), top + (panel + 40) * (i // 3) + panel
        xs, ys = [[math.log(value) for value in curve[axis]] for axis in "xy"]
        span = max(xs[-1] - xs[0], max(ys) - min(ys), 0.1)
        points = " ".join(f"{left + (x - xs[0]) / span * 160:.0f},{base - (y - min(ys)) / span * 160:.0f}"
                          for x, y in zip(xs, ys))
        out.append(f'<path d="M{left} {base - 160}v160h160" fill="none" stroke="#999"/>'
                   f'<path d="M{left} {base}l160 -160" stroke="#ccc" stroke-dasharray="4"/>'
                   f'<polyline points="{points}" fill="none" stroke="#4a7fb0" stroke-width="2"/>')
        put(f"{curve['curve']} (dashed: linear)", left, base - 168, 'font-size="11"')
        put(f"{curve['x'][0]:,} to {curve['x'][-1]:,} {curve['x_unit']}, "
            f"{shown(curve['y'][0], curve['unit'])} to {shown(curve['y'][-1], curve['unit'])}",
            left, base + 16, 'font-size="11"')
    return "\n".join(out + ["</svg>\n"])


def put_between_marks(path, text):
    with open(path, encoding="utf-8") as file:
        before, rest = file.read().split(BEGIN, 1)
    mark, rest = rest.split("\n", 1)
    after = rest.split(END, 1)[1]
    with open(path, "w", encoding="utf-8") as file:
        file.write(before + BEGIN + mark + "\n" + text + "\n" + END + after)


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--short", action="store_true")
    parser.add_argument("--document")
    parser.add_argument("folder")
    options = parser.parse_args()
    everything = []
    for line in sys.stdin:
        everything.append(json.loads(line))
        print(".", end="", file=sys.stderr, flush=True)
    print(file=sys.stderr)
    rows = [row for row in everything if "figure" in row]
    curves = [row for row in everything if "curve" in row]
    if not rows:
        sys.exit("bench: nothing was measured")

    print(as_text(rows))
    for curve in curves:
        print(f"{curve['curve']}, {curve['x'][0]:,} to {curve['x'][-1]:,} {curve['x_unit']}: "
              f"the cost grows with the power {steepness(curve):.2f}")
    os.makedirs(options.folder, exist_ok=True)
    with open(os.path.join(options.folder, "report.json"), "w", encoding="utf-8") as file:
        json.dump({"processors": os.cpu_count(), "system": platform.platform(), "rows": everything},
                  file, indent=1, ensure_ascii=False)
    with open(os.path.join(options.folder, "report.svg"), "w", encoding="utf-8") as file:
        file.write(svg(rows, curves))
    if options.document:
        put_between_marks(options.document, as_markdown(rows, curves))

    # Times are left out: only what was measured side by side can be judged on any machine.
    stated = lambda row: row.get("stated") or row.get("aim")
    gross = [row for row in rows if row.get("ratio") and times_worse(row, stated(row)) > 2]
    for row in gross:
        print(f"bench: {row['figure']} against {row['against']}: {shown(row['ratio'])}, "
              f"far from {shown(stated(row))}", file=sys.stderr)
    sys.exit(1 if options.short and gross else 0)


if __name__ == "__main__":
    main()
