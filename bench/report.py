#!/usr/bin/env python3
"""Makes docs/performance.md and its plot of the results of kvt_bench.

Usage: report.py RESULTS BUILD_DIR DOCUMENT PLOT

RESULTS is the JSON of a run of BUILD_DIR/bench/kvt_bench. What stands between the markers of
DOCUMENT is replaced by the tables; PLOT is written anew. Goals are stated here and nowhere else.
"""
import argparse
import json
import math
import pathlib
import platform
import re
import subprocess

import plot

BEGIN = "<!-- results: begin (made by scripts/bench, do not edit) -->\n"
END = "<!-- results: end -->\n"

WORKLOADS = ["W1", "W2", "W3", "W4", "W5", "W6"]
LARGE = WORKLOADS[2:]
GROWING = ["W3", "W4"]

CONTENDERS = {
    "kvt_str": "kvt_str",
    "sprintf": "one sprintf per line",
    "sscanf_line": "sscanf on a copy of the line",
    "sscanf_rest": "sscanf on the rest of the text",
    "simdjson": "simdjson",
    "simdjson_avx2": "simdjson, built for AVX2",
    "rapidjson": "RapidJSON",
    "nlohmann": "nlohmann-json",
    "protobuf": "protobuf binary",
    "protobuf_text": "protobuf text format",
}
SIMDJSON = ["simdjson", "simdjson_avx2"]  # the second one only where there is AVX2
JSON_LIBRARIES = [*SIMDJSON, "rapidjson", "nlohmann"]
BASELINE = {"encode": "sprintf", "decode": "sscanf_line"}
PACKAGES = [
    "libsimdjson-dev",
    "rapidjson-dev",
    "nlohmann-json3-dev",
    "libprotobuf-dev",
    "libbenchmark-dev",
]

NUMBERS = {"digit": "1 digit", "byte": "8 bits", "32_bits": "32 bits", "guid": "17 to 20 digits"}
CONVERTERS = {
    "kvt_str": "kvt_str",
    "kvt_str_general": "kvt_str's general form",
    "sprintf": "sprintf",
    "to_chars": "to_chars",
    "strtoul": "strtoul",
    "from_chars": "from_chars",
}

# How many times as fast as the baseline.
SPEED_GOALS = {
    "encode": dict(zip(WORKLOADS, [19, 15, 27, 17, 15, 17])),
    "decode": dict(zip(WORKLOADS, [4, 13, 22, 9, 8.5, 18])),
}
SIZE_GOAL = 0.5
GROWTH_GOAL = 70  # times the time, for 64 times the message
# Fixed once, like those above: 25 ns to write and 50 ns to read where the baselines took 385 and
# 282 ns.
ROTATION_GOALS = {"encode": 385 / 25, "decode": 282 / 50}
SEQUENCE_GOAL = 1.3

MOST_SPREAD = 0.03  # of half of the figures, on a machine at rest


class Results:
    """The medians of all groups of a run, in nanoseconds."""

    UNITS = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}
    # What the benchmark library adds to a name.
    ADDED = re.compile(r"/(manual_time|real_time|iterations:\d+|repeats:\d+|min_time:[\d.]+)")

    def __init__(self, groups):
        self.context = groups[0]["context"]
        self.times, self.counters, self.spreads = {}, {}, []
        self.repetitions = 0
        for line in (line for group in groups for line in group["benchmarks"]):
            name = self.ADDED.sub("", line["run_name"])
            if line.get("aggregate_name") == "median":
                self.times[name] = line["real_time"] * self.UNITS[line["time_unit"]]
                self.counters[name] = line
                self.repetitions = max(self.repetitions, line["repetitions"])
            elif line.get("aggregate_name") == "cv":
                self.spreads.append(line["real_time"])

    def __getitem__(self, name):
        return self.times[name]

    def spread(self, share):
        """What that share of the figures spread less than."""
        return sorted(self.spreads)[int(share * len(self.spreads))]

    def speed(self, way, workload, contender):
        """How many times as fast as the baseline."""
        return self[f"{way}/{workload}/{BASELINE[way]}"] / self[f"{way}/{workload}/{contender}"]

    def contenders(self, way):
        """Those of encode or decode, in their order."""
        return [name for name in CONTENDERS if f"{way}/W1/{name}" in self.times]


# --- Cells and tables -----------------------------------------------------------------------------


def digits(value):
    """A number with three digits."""
    return f"{value:.2f}" if value < 9.995 else f"{value:.1f}" if value < 99.95 else f"{value:.0f}"


def time_cell(nanoseconds):
    for unit in ("ns", "µs", "ms"):
        if nanoseconds < 999.5:
            return f"{digits(nanoseconds)} {unit}"
        nanoseconds /= 1e3
    return f"{digits(nanoseconds)} s"


def factor_cell(factor):
    return f"{digits(factor)}x" if factor >= 0.1 else f"{factor:.3f}x"


def lead_cell(factor):
    """A factor whose distance from 1 is what counts."""
    return f"{factor:.3f}x" if factor < 1.1 else factor_cell(factor)


def table(head, rows):
    lines = ["| " + " | ".join(head) + " |", "|---" + "|--:" * (len(head) - 1) + "|"]
    lines += ["| " + " | ".join(row) + " |" for row in rows]
    return "\n".join(lines)


def emphasized(cells):
    return [f"**{cell}**" for cell in cells]


def speed_table(results, way):
    rows = []
    for contender in results.contenders(way):
        times = [time_cell(results[f"{way}/{workload}/{contender}"]) for workload in WORKLOADS]
        cells = [CONTENDERS[contender], *times]
        rows.append(emphasized(cells) if contender == "kvt_str" else cells)
    factors = [factor_cell(results.speed(way, workload, "kvt_str")) for workload in WORKLOADS]
    rows.append([f"kvt_str, as fast as {CONTENDERS[BASELINE[way]]}", *factors])
    return table(["", *WORKLOADS], rows)


def bytes_table(results):
    rows = []
    for contender, name in CONTENDERS.items():
        if contender in ("sprintf", "sscanf_line", "sscanf_rest", *SIMDJSON):
            continue  # kvt_str's text, or RapidJSON's
        cases = [results.counters[f"encode/{workload}/{contender}"] for workload in WORKLOADS]
        rows.append([name, *(f"{case['bytes']:,.0f}" for case in cases)])
    return table(["bytes", *WORKLOADS], rows)


def size_table(results):
    def times(name):
        return [time_cell(results[name.format(workload)]) for workload in WORKLOADS]

    shares = [size_share(results, workload) for workload in WORKLOADS]
    rows = [
        ["measure the text", *times("size/{}/measure")],
        ["write it", *times("size/{}/write")],
        emphasized(["measure / write", *(f"{share:.2f}" for share in shares)]),
        ["memcpy of the text", *times("lines/{}/memcpy")],
        ["find the ends of its lines (SSE2)", *times("lines/{}/find")],
    ]
    return table(["", *WORKLOADS], rows)


def growth_table(results):
    rows = []
    for way in ("encode", "decode"):
        for workload in GROWING:
            names = [f"growth/{way}/{workload}/{times}x" for times in (1, 8, 64)]
            costs = [f"{results.counters[name]['ns_per_byte']:.3f} ns" for name in names]
            factor = growth_factor(results, way, workload)
            rows.append([f"{way} {workload}", *costs, f"**{factor:.1f}x**"])
    head = ["for each byte", "1x", "8x", "64x", "time for 64 times the message"]
    return table(head, rows)


def rotation_table(results):
    rows = []
    for way, baseline in BASELINE.items():
        for kind in ("END_JOB", "BEGIN_JOB"):
            ours, stdio, protobuf = (
                results[f"rotation/{way}/{kind}/{contender}"]
                for contender in ("kvt_str", baseline, "protobuf")
            )
            times = [f"**{time_cell(ours)}**", time_cell(stdio), time_cell(protobuf)]
            rows.append([f"{way} {kind}", *times, factor_cell(stdio / ours)])
    stdio = " or ".join(CONTENDERS[baseline] for baseline in BASELINE.values())
    return table(["", "kvt_str", stdio, "protobuf binary", "kvt_str, as fast as stdio"], rows)


def sequence_names(results):
    prefix = "sequence/whole/"
    return [name[len(prefix) :] for name in sorted(results.times) if name.startswith(prefix)]


def sequence_table(results):
    rows = []
    for name in sequence_names(results):
        whole, parts = results[f"sequence/whole/{name}"], results[f"sequence/parts/{name}"]
        messages = results.counters[f"sequence/whole/{name}"]["messages"]
        times = [time_cell(whole), time_cell(parts), f"**{whole / parts:.2f}x**"]
        rows.append([name.replace("_", " "), f"{messages:.0f}", *times])
    return table(["", "messages", "whole", "its parts", "whole / parts"], rows)


def numbers_table(results, operation):
    prefix = f"numbers/{operation}/"
    names = [name[len(prefix) :].split("/") for name in results.times if name.startswith(prefix)]
    numbers = [name for name in NUMBERS if [name, "kvt_str"] in names]
    converters = [name for name in CONVERTERS if [numbers[0], name] in names]
    rows = []
    for number in numbers:
        times = [time_cell(results[f"{prefix}{number}/{name}"]) for name in converters]
        rows.append([NUMBERS[number], f"**{times[0]}**", *times[1:]])
    return table([operation, *(CONVERTERS[name] for name in converters)], rows)


# --- Goals ----------------------------------------------------------------------------------------


def size_share(results, workload):
    return results[f"size/{workload}/measure"] / results[f"size/{workload}/write"]


def growth_factor(results, way, workload):
    """The time for 64 times the message, over that for one. The times are for as much text."""
    name = f"growth/{way}/{workload}"
    return 64 * results[f"{name}/64x"] / results[f"{name}/1x"]


def goal_row(goal, cases):
    """The row of a goal. `cases` has for each case its name, its figure and whether that is met."""
    missed = [name for name, _, met in cases if not met]
    verdict = "met" if not missed else "**not met**: " + ", ".join(missed)
    return [goal, "; ".join(f"{name} {figure}" for name, figure, _ in cases), verdict]


def speed_goal(results, way):
    goals = SPEED_GOALS[way]
    cases = []
    for workload, goal in goals.items():
        speed = results.speed(way, workload, "kvt_str")
        cases.append((workload, factor_cell(speed), speed >= goal))
    wanted = ", ".join(f"{goal:g}x" for goal in goals.values())
    return goal_row(f"{way} at least {wanted} as fast as {CONTENDERS[BASELINE[way]]}", cases)


def ahead_goal(results, way, whose, rivals, workloads):
    """That of being faster than rivals: shows the lead over the fastest of them."""
    cases = []
    for workload in workloads:
        measured = [name for name in rivals if f"{way}/{workload}/{name}" in results.times]
        best = min(measured, key=lambda name: results[f"{way}/{workload}/{name}"])
        lead = results[f"{way}/{workload}/{best}"] / results[f"{way}/{workload}/kvt_str"]
        over = "" if len(measured) == 1 else f" ({CONTENDERS[best]})"
        cases.append((workload, lead_cell(lead) + over, lead > 1))
    return goal_row(f"{way} ahead of {whose}", cases)


def rotation_goal(results, way):
    name, goal = f"rotation/{way}/END_JOB", ROTATION_GOALS[way]
    factor = results[f"{name}/{BASELINE[way]}"] / results[f"{name}/kvt_str"]
    figure = f"{factor_cell(factor)} ({time_cell(results[f'{name}/kvt_str'])})"
    text = f"{way} END_JOB in rotation at least {goal:.1f}x as fast as {CONTENDERS[BASELINE[way]]}"
    return goal_row(text, [("END_JOB", figure, factor >= goal)])


def size_goal(results):
    cases = []
    for workload in LARGE:
        share = size_share(results, workload)
        cases.append((workload, f"{share:.2f}", share <= SIZE_GOAL))
    return goal_row(f"measure in at most {SIZE_GOAL} of the time of a write", cases)


def growth_goal(results):
    cases = []
    for way in BASELINE:
        for workload in GROWING:
            factor = growth_factor(results, way, workload)
            cases.append((f"{way} {workload}", f"{factor:.1f}x", factor <= GROWTH_GOAL))
    return goal_row(f"64 times the message in at most {GROWTH_GOAL} times the time", cases)


def sequence_goal(results):
    cases = []
    for name in sequence_names(results):
        factor = results[f"sequence/whole/{name}"] / results[f"sequence/parts/{name}"]
        cases.append((name.replace("_", " "), f"{factor:.2f}x", factor <= SEQUENCE_GOAL))
    text = f"split a sequence in at most {SEQUENCE_GOAL} times the time of its parts"
    return goal_row(text, cases)


def goals_table(results):
    rows = [speed_goal(results, way) for way in BASELINE]
    for whose, rivals, workloads in (
        ("every JSON library", JSON_LIBRARIES, WORKLOADS),
        ("protobuf binary on W3, W5 and W6", ["protobuf"], ["W3", "W5", "W6"]),
        ("protobuf binary on the others, too", ["protobuf"], ["W1", "W2", "W4"]),
    ):
        rows += [ahead_goal(results, way, whose, rivals, workloads) for way in BASELINE]
    rows += [size_goal(results), growth_goal(results)]
    rows += [rotation_goal(results, way) for way in BASELINE]
    rows.append(sequence_goal(results))
    head = "| Goal | Measured | |\n|---|---|---|\n"
    return head + "\n".join("| " + " | ".join(row) + " |" for row in rows)


# --- Where it was measured ------------------------------------------------------------------------


def processor():
    for line in pathlib.Path("/proc/cpuinfo").read_text(encoding="utf-8").splitlines():
        if line.startswith("model name"):
            return line.split(":", 1)[1].strip()
    return platform.machine()


def version(package):
    command = ["dpkg-query", "--show", "--showformat=${Version}", package]
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def flags(build):
    cache = (build / "CMakeCache.txt").read_text(encoding="utf-8")
    values = dict(re.findall(r"^((?:CMAKE|KVT)_[A-Z_]+):[A-Z]+=(.*)$", cache, re.MULTILINE))
    of_type = values[f"CMAKE_CXX_FLAGS_{values['CMAKE_BUILD_TYPE'].upper()}"]
    portable = values["KVT_PORTABLE"].upper() in ("ON", "YES", "TRUE", "Y", "1")
    option = "; KVT_PORTABLE, without SSE2" if portable else ""
    return f"{values['CMAKE_CXX_FLAGS']} {of_type}".strip() + option


def caches(context):
    shown = []
    for cache in context["caches"]:
        kind = "" if cache["type"] == "Unified" else f" {cache['type'].lower()}"
        shown.append(f"L{cache['level']}{kind} {cache['size'] // 1024:,} kB")
    return ", ".join(shown)


def setting(results, build):
    context = results.context
    half, most = results.spread(0.5), results.spread(0.9)
    packages = ", ".join(f"{package} {version(package)}" for package in PACKAGES)
    compiler = context["compiler"].replace("GNU", "g++")
    return "\n".join(
        [
            f"- Processor: {processor()}, {context['num_cpus']} cores, "
            f"{context['mhz_per_cpu'] / 1000:.1f} GHz; {caches(context)}",
            f"- System: {platform.freedesktop_os_release()['PRETTY_NAME']}, "
            f"{' '.join(platform.libc_ver())}",
            f"- Compiler: {compiler}, {flags(build)}",
            f"- Packages: {packages}",
            f"- Medians of {results.repetitions} repetitions. Half of the figures spread by less "
            f"than {half:.1%}, nine of ten by less than {most:.1%} (standard deviation over mean).",
        ]
    )


def report(results, build, plot_name):
    sections = [
        f"### Where\n\n{setting(results, build)}",
        f"![Speeds of all contenders]({plot_name})",
        f"### Goals\n\n{goals_table(results)}",
        f"### Encode one message\n\n{speed_table(results, 'encode')}",
        f"### Decode one message\n\n{speed_table(results, 'decode')}",
        f"### Sizes of the documents\n\n{bytes_table(results)}",
        f"### Measure a text\n\n{size_table(results)}",
        f"### Growth\n\n{growth_table(results)}",
        f"### Small messages in rotation\n\n{rotation_table(results)}",
        f"### Sequences\n\n{sequence_table(results)}",
        f"### Numbers\n\n{numbers_table(results, 'put')}\n\n{numbers_table(results, 'scan')}",
    ]
    return "\n\n".join(sections)


def faster_simdjson(results):
    """The one whose times are the shorter ones, by their geometric mean."""
    measured = [name for name in SIMDJSON if name in results.contenders("decode")]
    times = {
        name: math.prod(results[f"decode/{workload}/{name}"] for workload in WORKLOADS)
        for name in measured
    }
    return min(measured, key=times.get)


def draw(results):
    panels = []
    plotted = ["kvt_str", faster_simdjson(results), "rapidjson", "nlohmann"]
    plotted += ["protobuf", "protobuf_text", "sscanf_rest"]
    for way in BASELINE:
        shown = [name for name in plotted if name in results.contenders(way)]
        bars = {
            workload: {CONTENDERS[name]: results.speed(way, workload, name) for name in shown}
            for workload in WORKLOADS
        }
        title = f"{way.capitalize()}: how many times as fast as {CONTENDERS[BASELINE[way]]}"
        panels.append((title, bars, SPEED_GOALS[way]))
    return plot.draw([CONTENDERS[name] for name in plotted], panels)


def main():
    parser = argparse.ArgumentParser(
        description="Makes docs/performance.md and its plot of the results of kvt_bench."
    )
    for name in ("results", "build_dir", "document", "plot"):
        parser.add_argument(name, metavar=name.upper(), type=pathlib.Path)
    arguments = parser.parse_args()
    files = sorted(arguments.results.glob("*.json"))
    results = Results([json.loads(file.read_text(encoding="utf-8")) for file in files])
    before, rest = arguments.document.read_text(encoding="utf-8").split(BEGIN)
    _, after = rest.split(END)
    tables = report(results, arguments.build_dir, arguments.plot.name)
    arguments.document.write_text(f"{before}{BEGIN}\n{tables}\n\n{END}{after}", encoding="utf-8")
    arguments.plot.write_text(draw(results), encoding="utf-8")
    if results.spread(0.5) > MOST_SPREAD:
        print("The machine was busy with other things: the figures spread much. Measure again.")


if __name__ == "__main__":
    main()
