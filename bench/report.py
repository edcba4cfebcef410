"""Measures a build of the library and writes docs/performance.md: report.py <build folder>"""

import datetime
import platform
import re
import sys
from pathlib import Path

import measure
import page

TOP = Path(__file__).resolve().parent.parent


def cached(build, name):
    """A variable of CMake's cache."""
    return re.search(rf"^{name}:\w+=(.*)$", (build / "CMakeCache.txt").read_text(), re.MULTILINE)[1]


def about(compiler, context):
    processor = re.search(r"^model name\s*: (.*)$", Path("/proc/cpuinfo").read_text(), re.MULTILINE)
    system = re.search(r'^PRETTY_NAME="(.*)"$', Path("/etc/os-release").read_text(), re.MULTILINE)
    load = ", ".join(f"{value:.1f}" for value in context["load_avg"])
    return {
        "date": datetime.datetime.now(datetime.timezone.utc).strftime("%Y-%m-%d"),
        "machine": f"{processor[1] if processor else platform.machine()}, {context['num_cpus']} processors, "
                   f"load {load} before the run",
        "system": f"{system[1]}, Linux {platform.release()}",
        "compiler": measure.output_of(compiler, "--version").splitlines()[0] + ", preset `bench`, the flags of `release`",
        "command": "`script/bench`",
    }


def main(build):
    compiler = cached(build, "CMAKE_CXX_COMPILER")
    results = build / "results"
    results.mkdir(exist_ok=True)

    report = measure.measure_times(build, results)
    counts = measure.count_instructions(build, results)
    medians = measure.medians_of(report)
    comparisons = list(measure.comparisons(medians, counts))
    figures = [
        *measure.memory(build),
        *measure.shared_object(build, results),
        *measure.process_start(build),
        *measure.hex_views(build, results),
        *measure.headers(compiler, TOP / "include", results),
    ]

    docs = TOP / "docs"
    (docs / "images").mkdir(exist_ok=True)
    lines = page.page(about(compiler, report["context"]), comparisons, list(measure.growth(medians, counts)), figures)
    (docs / "performance.md").write_text("\n".join(lines) + "\n")
    (docs / "images/performance.svg").write_text("\n".join(page.plot(comparisons)) + "\n")


if __name__ == "__main__":
    main(Path(sys.argv[1]).resolve())
