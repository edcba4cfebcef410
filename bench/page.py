"""Writes what was measured as a page and a plot."""

import math
import re
from xml.sax.saxutils import escape


def number(value):
    """Three digits that count; small ones in full, 0.00412 for example."""
    if value >= 100 or value == int(value):
        return f"{value:.0f}"
    return f"{value:.{max(0, 2 - math.floor(math.log10(value)))}f}"


def limit(at_most):
    return "" if at_most is None else f"{at_most:g}"


def verdict(figure):
    return "" if figure.at_most is None else "yes" if figure.met else "**no**"


def table(head, rows):
    yield "| " + " | ".join(head) + " |"
    yield "|" + "---|" * len(head)
    for row in rows:
        yield "| " + " | ".join(row) + " |"


def page(about, comparisons, growth, figures):
    """The lines of docs/performance.md."""
    missed = sum(not one.met for one in [*comparisons, *figures])
    limits = sum(one.at_most is not None for one in [*comparisons, *figures])
    yield "# Performance"
    yield ""
    yield "Written by `script/bench`; every number on this page was measured in one run of it:"
    yield ""
    yield from table(["", ""], about.items())
    yield ""
    yield f"Of {limits} limits, {limits - missed} are met."
    yield ""
    yield "## Side by side"
    yield ""
    yield "Absolute times mean little on a shared machine. A figure here is the median processor time of the library over"
    yield "the median of what stands beside it, out of many short repetitions in random order: below 1 the library is faster."
    yield "Some of the others are libraries, some are floors: the bare system calls, insertions or copies that the result"
    yield "needs and nothing more. The last column is the same ratio for the instructions that the two execute outside the"
    yield "kernel, where one that moves 32 bytes counts as much as one that moves none."
    yield ""
    yield "The smallest workloads consist of little but calls of a shared object. Two rows say what the calls alone cost, without"
    yield "limits of their own: where a limit of the same workload is missed, it is below them."
    yield ""
    yield "![Each ratio on a logarithmic scale, with its limit](images/performance.svg)"
    yield ""
    yield from table(
        ["workload", "against", "time", "at most", "met", "instructions"],
        ([one.workload, one.against, number(one.time), limit(one.at_most), verdict(one), number(one.instructions)]
         for one in comparisons))
    yield ""
    yield "## Growth"
    yield ""
    yield "A long dump, by the size of its input: the time for a byte over the time for a byte of the smallest, the same for"
    yield "a copy of a text as long as the dump, and instructions. Where the time for a byte grows it is the memory's: the"
    yield "caches end, and for a text of 32 MiB or more the C library takes every page fresh from the kernel."
    yield ""
    first = growth[0]
    yield from table(
        ["input", "time for a byte", "time for a byte of the copy", "instructions for a byte"],
        ([one.size, number(one.time / first.time),
          number(one.copy_time / first.copy_time) if one.copy_time else "", number(one.instructions)]
         for one in growth))
    yield ""
    yield "## Memory, size, load and headers"
    yield ""
    yield from table(
        ["", "measured", "at most", "met"],
        ([one.what, f"{number(one.value)} {one.unit}".strip(), f"{limit(one.at_most)} {one.unit}".strip(), verdict(one)]
         for one in figures))


def plot(comparisons):
    """The lines of an SVG: a bar for each ratio, and a line across it at its limit.

    Written here because gnuplot's SVG of the same chart has five times the bytes, and takes the names for markup.
    """
    names, width, row = 560, 460, 18
    lowest, highest = 0.001, 10.0
    top, height = 30, 30 + row * len(comparisons) + 10

    def x(ratio):
        share = math.log(max(ratio, lowest) / lowest) / math.log(highest / lowest)
        return names + width * min(share, 1.0)

    yield (f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {names + width + 70} {height}" '
           'font-family="sans-serif" font-size="11">')
    yield '<rect width="100%" height="100%" fill="#ffffff"/>'
    for mark in (0.001, 0.01, 0.1, 1, 10):
        color = "#404040" if mark == 1 else "#d0d0d0"
        yield f'<line x1="{x(mark):.1f}" x2="{x(mark):.1f}" y1="{top - 8}" y2="{height - 10}" stroke="{color}"/>'
        yield f'<text x="{x(mark):.1f}" y="{top - 14}" text-anchor="middle">{mark:g}</text>'
    for index, one in enumerate(comparisons):
        y = top + row * index
        color = "#9aa5b1" if one.at_most is None else "#3b8f5a" if one.met else "#c2453d"
        name = escape(re.sub("`", "", f"{one.workload} — {one.against}"))
        yield f'<text x="{names - 8}" y="{y + 11}" text-anchor="end">{name}</text>'
        yield f'<rect x="{names}" y="{y + 2}" width="{x(one.time) - names:.1f}" height="{row - 6}" fill="{color}"/>'
        if one.at_most is not None:
            at = x(one.at_most)
            yield f'<line x1="{at:.1f}" x2="{at:.1f}" y1="{y}" y2="{y + row - 2}" stroke="#000000" stroke-width="2"/>'
        yield f'<text x="{names + width + 8}" y="{y + 11}">{number(one.time)}</text>'
    yield "</svg>"
