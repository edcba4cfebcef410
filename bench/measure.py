"""Runs the benchmark programs of a build folder and reads what they measured."""

import json
import os
import random
import re
import shutil
import statistics
import subprocess
import time
from dataclasses import dataclass
from pathlib import Path


@dataclass
class Figure:
    """One thing measured, and what it may be at most: None where there is no limit."""

    what: str
    value: float
    at_most: float | None
    unit: str = ""

    @property
    def met(self):
        return self.at_most is None or self.value <= self.at_most


@dataclass
class Comparison:
    """The library's time for a workload over another's, and the same of the instructions."""

    workload: str
    against: str
    time: float
    at_most: float | None
    instructions: float

    @property
    def met(self):
        return self.at_most is None or self.time <= self.at_most


@dataclass
class Growth:
    """The dump of one input: time and instructions a byte, and the time a byte of a copy of its text."""

    size: str
    time: float
    copy_time: float | None
    instructions: float


def output_of(*command, **options):
    return subprocess.run(command, check=True, stdout=subprocess.PIPE, text=True, **options).stdout


def instructions_of(*command):
    """How many instructions a program executes, from its first to its last, the dynamic loader's too."""
    run = subprocess.run(
        ["valgrind", "--tool=callgrind", "--callgrind-out-file=/dev/null", *command],
        check=True, stdout=subprocess.DEVNULL, stderr=subprocess.PIPE, text=True)
    return int(re.search(r"Collected : (\d+)", run.stderr)[1])


# The workloads ------------------------------------------------------------------------------------


def measure_times(build, results):
    """The report of one run: many short repetitions of every benchmark, in random order."""
    report = results / "times.json"
    # rang asks TERM whether there are colours at all.
    subprocess.run(
        [build / "bench/hueline-bench",
         "--benchmark_enable_random_interleaving=true", "--benchmark_repetitions=101", "--benchmark_min_time=0.005",
         "--benchmark_report_aggregates_only=true", f"--benchmark_out={report}", "--benchmark_out_format=json"],
        check=True, env={**os.environ, "TERM": "xterm"})
    return json.loads(report.read_text())


def count_instructions(build, results):
    """The instructions of one call of every benchmark, by its name."""
    profiles = results / "callgrind"
    shutil.rmtree(profiles, ignore_errors=True)
    profiles.mkdir()
    subprocess.run(
        ["valgrind", "--quiet", "--tool=callgrind", f"--callgrind-out-file={profiles}/out",
         build / "bench/hueline-bench", "--count-instructions"],
        check=True, env={**os.environ, "TERM": "xterm"})

    counts = {}
    for profile in profiles.iterdir():
        text = profile.read_text()
        if trigger := re.search(r"^desc: Trigger: Client Request: (.*)$", text, re.MULTILINE):
            counts[trigger[1]] = int(re.search(r"^(?:totals|summary): (\d+)", text, re.MULTILINE)[1])
    overhead = counts.pop("overhead")
    return {name: count - overhead for name, count in counts.items()}


def medians_of(report):
    """The median of each benchmark by section, workload and peer, and its limit."""
    medians = {}
    # They ran in random order; this is the one in which the program names them.
    for run in sorted(report["benchmarks"], key=lambda run: run["family_index"]):
        if run["aggregate_name"] == "median":
            # What the name goes on with says how often it ran.
            section, workload, peer = run["run_name"].split("/")[:3]
            medians[section, workload, peer] = run["cpu_time"], run.get("at_most")
    return medians


def comparisons(medians, counts):
    for (section, workload, peer), (time, at_most) in medians.items():
        if section == "workload" and peer != "hueline":
            ours = f"{section}/{workload}/hueline"
            yield Comparison(
                workload, peer,
                time=medians[section, workload, "hueline"][0] / time,
                at_most=at_most,
                instructions=counts[ours] / counts[f"{section}/{workload}/{peer}"])


def growth(medians, counts):
    units = {"KiB": 2**10, "MiB": 2**20, "GiB": 2**30}
    for (section, size, peer), (time, _) in medians.items():
        if section == "growth" and peer == "hueline":
            number, unit = size.split()
            size_bytes = int(number) * units[unit]
            copy_time, _ = medians.get((section, size, "copy"), (None, None))
            yield Growth(
                size,
                time=time / size_bytes,
                copy_time=copy_time and copy_time / size_bytes,
                instructions=counts[f"{section}/{size}/hueline"] / size_bytes)


# Everything else ----------------------------------------------------------------------------------


def memory(build):
    given, made, peak, allocations = map(int, output_of(build / "bench/hueline-bench-memory").split())
    return [
        Figure("peak memory of a dump of 64 MiB, against input and output", peak / (given + made), 1.04),
        Figure("allocations of a dump", allocations, 1),
    ]


def shared_object(build, results):
    library = build / "libhueline.so"
    stripped = results / "stripped.so"
    subprocess.run(["strip", "-o", stripped, library], check=True)
    relocations = re.findall(r"^[0-9a-f]+ .* R_", output_of("readelf", "--relocs", "--wide", library), re.MULTILINE)
    return [
        Figure("stripped shared object", stripped.stat().st_size / 1024, 96, "KiB"),
        Figure("dynamic relocations", len(relocations), 125),
    ]


def process_start(build):
    program = build / "bench/hueline-bench-start"
    without = instructions_of(program)
    return [
        Figure("instructions of a process that starts, against the same without the library",
               instructions_of(f"{program}-hueline") / without, 1.085),
        Figure("the same for a library in which there is nothing", instructions_of(f"{program}-nothing") / without, None),
    ]


def hex_views(build, results):
    """The whole run of a process that writes the view of 64 MiB to a file, against that of the tools."""
    program = build / "bench/hueline-bench-hexview"
    sample = results / "64MiB"
    sample.write_bytes(random.Random(1).randbytes(64 * 2**20))

    def seconds(*command):
        view = results / "view"
        view.unlink(missing_ok=True)
        with view.open("wb") as out:
            start = time.monotonic()
            subprocess.run([*command, sample], check=True, stdout=out)
            return time.monotonic() - start

    for tool, layout in ((["xxd"], "xxd"), (["hexdump", "-C"], "hexdump")):
        runs = [(seconds(program, layout), seconds(*tool)) for _ in range(7)]
        ours, theirs = (statistics.median(times) for times in zip(*runs))
        yield Figure(f"time of a hex view of 64 MiB to a file, against `{' '.join(tool)}`", ours / theirs, 0.10)
    plain, colored = map(float, output_of(program, "memory").split())
    yield Figure("a hex view in memory", plain, 2, "ns a byte")
    yield Figure("the same in colour", colored, 1000 / 150, "ns a byte")
    sample.unlink()


def headers(compiler, include, results):
    """What a translation unit pays for a header, against the two standard headers that it cannot do without."""

    def cost(name, *includes):
        source = results / f"{name}.cpp"
        source.write_text("".join(f"#include <{header}>\n" for header in includes))
        options = ["-std=c++17", f"-I{include}", source]
        lines = output_of(compiler, "-E", "-P", *options).count("\n")
        # The command of the compiler proper, without the driver around it.
        driver = subprocess.run([compiler, "-###", "-fsyntax-only", *options], check=True, capture_output=True, text=True)
        proper = next(line for line in driver.stderr.splitlines() if "cc1" in line)
        return lines, instructions_of(*(word.strip('"') for word in proper.split()))

    lines, instructions = cost("standard", "string", "vector")
    for header in ("kestry/hueline_stream.hpp", "kestry/hueline_classic.hpp"):
        its_lines, its_instructions = cost("header", header)
        yield Figure(f"lines of `<{header}>`, against `<string>` and `<vector>`", its_lines / lines, 1.05)
        yield Figure("instructions of the compiler's front end, the same", its_instructions / instructions, 1.05)
    fmt_lines, fmt_instructions = cost("fmt", "fmt/color.h")
    yield Figure("lines of `<fmt/color.h>`, against the same two", fmt_lines / lines, None)
    yield Figure("instructions of the compiler's front end, the same", fmt_instructions / instructions, None)
