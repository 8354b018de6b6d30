#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Runs the benchmarks, each family in processes of its own, and sets the figures beside the budgets.

Called by scripts/bench.sh; its --help says what the options are.
"""

import argparse
import collections
import json
import math
import os
import pathlib
import re
import statistics
import subprocess
import sys
import tempfile

HERE = pathlib.Path(__file__).resolve().parent
BUILD = HERE.parent / "build" / "bench"
NANOSECONDS = {"ns": 1.0, "us": 1e3, "ms": 1e6, "s": 1e9}
SMALL = 100000
# What is the same in every run, whatever else the machine does.
COUNTED = ("allocations", "bytes")
CURVES = {"1": lambda size: 1, "lg N": lambda size: math.log2(size + 1), "N": lambda size: size,
          "N lg N": lambda size: size * math.log2(size + 1), "N^2": lambda size: size ** 2}


class Failure(Exception):
    """Ends the program with one line."""


def plain(name):
    """The name without what Google Benchmark appends about how it measured."""
    return re.sub(r"/(iterations:\d+|manual_time)(?=/|$)", "", name)


def split(name):
    """The family of a benchmark and its size, None where it has none."""
    family, _, last = plain(name).rpartition("/")
    return (family, int(last)) if last.isdigit() else (plain(name), None)


class Progress:
    """One line that changes on a terminal, one for each step elsewhere."""

    def __init__(self, count):
        self.count = count
        self.done = 0

    def step(self, what):
        self.done += 1
        line = f"[{self.done}/{self.count}] {what}"
        print(f"\r\033[K{line}" if sys.stdout.isatty() else line, end="" if sys.stdout.isatty() else "\n", flush=True)

    def finish(self):
        if sys.stdout.isatty():
            print("\r\033[K", end="", flush=True)


def list_families(program, pattern, small):
    """All benchmarks that the pattern names, by family, in the order of the program."""
    try:
        wanted = re.compile(pattern)
    except re.error as error:
        raise Failure(f"--filter {pattern} is no regular expression: {error}") from error
    names = subprocess.run([program, "--benchmark_list_tests"], capture_output=True, text=True, check=True).stdout
    families = collections.OrderedDict()
    for name in names.split():
        family, size = split(name)
        if wanted.search(plain(name)) and not (small and size is not None and size > SMALL):
            families.setdefault(family, []).append(name)
    if not families:
        raise Failure(f"no benchmark is called like {pattern}")
    return families


def run_family(program, names, seconds):
    """The entries of one process that runs these benchmarks."""
    pattern = "^(" + "|".join(re.escape(name) for name in names) + ")$"
    with tempfile.NamedTemporaryFile(suffix=".json") as result:
        command = [program, f"--benchmark_filter={pattern}", f"--benchmark_min_time={seconds}",
                   f"--benchmark_out={result.name}", "--benchmark_out_format=json"]
        finished = subprocess.run(command, capture_output=True, text=True)
        if finished.returncode != 0:
            last = (finished.stderr.strip() or "no message").splitlines()[-1]
            raise Failure(f"{split(names[0])[0]} ended with {finished.returncode}: {last}")
        return json.load(result)["benchmarks"]


def figures(entry):
    """What one run of one benchmark measured; times in nanoseconds."""
    standard = {"name", "run_name", "run_type", "family_index", "per_family_instance_index", "repetitions",
                "repetition_index", "threads", "iterations", "real_time", "cpu_time", "time_unit", "label"}
    values = {key: value for key, value in entry.items() if key not in standard and isinstance(value, (int, float))}
    # The time of the processor: the work waits for nothing, and others that run do not show in it.
    measured = entry["real_time"] if "manual_time" in entry["name"] else entry["cpu_time"]
    values["time"] = measured * NANOSECONDS[entry["time_unit"]]
    if "per_node" in values:
        values["per_node"] *= 1e9
    return values


def measure(program, families, runs, seconds):
    """The medians of all runs."""
    values = collections.OrderedDict()
    progress = Progress(len(families) * runs)
    for run in range(runs):
        for family, names in families.items():
            progress.step(family)
            if run > 0:
                # What takes longest needs no second opinion: it is long enough to be an average in itself.
                names = [name for name in names if (split(name)[1] or 0) <= SMALL]
                if not names:
                    continue
            for entry in run_family(program, names, seconds):
                if entry.get("error_occurred"):
                    raise Failure(f"{plain(entry['name'])}: {entry.get('error_message')}")
                for key, value in figures(entry).items():
                    values.setdefault(plain(entry["name"]), {}).setdefault(key, []).append(value)
    progress.finish()
    benchmarks = {name: {key: statistics.median(found) for key, found in of_one.items()}
                  for name, of_one in values.items()}
    return {"runs": runs, "seconds": seconds, "benchmarks": benchmarks}


def find_fits(benchmarks):
    """How the time of each family grows with the size: the curve with the smallest error in the squares."""
    points = {}
    for name, values in benchmarks.items():
        family, size = split(name)
        if size is not None:
            points.setdefault(family, []).append((size, values["time"]))

    def error(curve, of_family):
        factor = (sum(time * curve(size) for size, time in of_family)
                  / sum(curve(size) ** 2 for size, _ in of_family))
        return sum((time - factor * curve(size)) ** 2 for size, time in of_family)

    return {family: min(CURVES, key=lambda name, of_family=of_family: error(CURVES[name], of_family))
            for family, of_family in points.items() if len(of_family) > 2}


def describe_machine():
    """What is worth knowing about figures that are looked at later."""
    processor = "unknown"
    for line in pathlib.Path("/proc/cpuinfo").read_text(encoding="utf-8").splitlines():
        if line.startswith("model name"):
            processor = line.split(":", 1)[1].strip()
            break
    revision = subprocess.run(["git", "describe", "--always", "--dirty"], cwd=HERE, capture_output=True, text=True)
    return {"processor": processor, "load": round(os.getloadavg()[0], 2), "revision": revision.stdout.strip()}


def write_time(nanoseconds):
    for unit, factor in (("s", 1e9), ("ms", 1e6), ("us", 1e3)):
        if nanoseconds >= 10 * factor:
            return f"{nanoseconds / factor:.1f} {unit}"
    return f"{nanoseconds:.1f} ns"


def print_table(rows, output):
    """Aligns the columns, the first to the left."""
    widths = [max(len(row[column]) for row in rows) for column in range(len(rows[0]))]
    for number, row in enumerate(rows):
        cells = [cell.ljust(width) if column == 0 else cell.rjust(width)
                 for column, (cell, width) in enumerate(zip(row, widths))]
        print("  ".join(cells).rstrip(), file=output)
        if number == 0:
            print("  ".join("-" * width for width in widths), file=output)


def judge(budget, benchmarks):
    """The figure, the budget and the verdict in words; None when it was not measured."""
    needed = [budget["benchmark"]] + ([budget["by"]] if "by" in budget else [])
    if any(name not in benchmarks for name in needed):
        return None
    figure = benchmarks[budget["benchmark"]][budget["value"]]
    if "by" in budget:
        figure /= benchmarks[budget["by"]][budget["value"]]
    bound = next(key for key in ("below", "at most", "at least") if key in budget)
    number, _, unit = budget[bound].partition(" ")
    limit = float(number)
    holds = {"below": figure < limit, "at most": figure <= limit, "at least": figure >= limit}[bound]
    precision = len(number.partition(".")[2]) or (1 if unit == "ns" else 0)
    text = f"{figure:.{precision}f} {unit}".rstrip()
    return text, f"{bound} {budget[bound]}", "ok" if holds else "MISSED"


def load_budgets():
    return json.loads((HERE / "Budgets.json").read_text(encoding="utf-8"))


def print_budgets(result, output):
    """Returns whether a budget was missed."""
    rows = [("Work", "Figure", "Budget", "")]
    for budget in load_budgets():
        judged = judge(budget, result["benchmarks"])
        if judged is not None:
            rows.append((budget["work"], *judged))
    if len(rows) == 1:
        return False
    print_table(rows, output)
    print_machine(result, output)
    return any(row[3] == "MISSED" for row in rows)


def print_machine(result, output):
    """What the budgets were not made for: memory that is slower, or given out more slowly, than most have."""
    figures = [result["benchmarks"].get(name) for name in ("Machine/randomAccess", "Machine/firstTouch")]
    if None not in figures:
        access, touch = (write_time(figure["time"]) for figure in figures)
        print(f"On this machine a random access to memory takes {access}, the first access to a page {touch}.", file=output)


def print_figures(result, output):
    rows = [("Benchmark", "Time", "Each node", "Allocations", "Fit")]
    fits = find_fits(result["benchmarks"])
    for name, values in result["benchmarks"].items():
        rows.append((name, write_time(values["time"]),
                     write_time(values["per_node"]) if "per_node" in values else "",
                     f"{values['allocations']:.3g}" if "allocations" in values else "",
                     fits.get(split(name)[0], "")))
    print_table(rows, output)
    print_memory(result, output)


def print_memory(result, output):
    keys = ("bytes", "bytes_in_pools", "resident_bytes", "bytes_after_clear")
    rows = [("Bytes for each node", "Asked for", "In pools", "Resident", "After clearing")]
    for name, values in result["benchmarks"].items():
        if all(key in values for key in keys):
            rows.append((name, *(f"{values[key]:.0f}" for key in keys)))
    if len(rows) > 1:
        print(file=output)
        print_table(rows, output)


def run(arguments):
    program = arguments.program
    families = list_families(program, arguments.filter, arguments.quick)
    output = pathlib.Path(arguments.out)
    output.parent.mkdir(parents=True, exist_ok=True)
    output.touch()
    machine = describe_machine()
    if machine["load"] > 0.5:
        print(f"bench.sh: other programs run (load {machine['load']}); do not trust the figures")
    runs = arguments.runs or (1 if arguments.quick else 3)
    result = {"machine": machine, **measure(program, families, runs, 0.05 if arguments.quick else 0.2)}

    output.write_text(json.dumps(result, indent=1) + "\n", encoding="utf-8")
    with output.with_suffix(".txt").open("w", encoding="utf-8") as table:
        print_figures(result, table)
        print(file=table)
        print_budgets(result, table)
    if arguments.filter or arguments.quick:
        print_figures(result, sys.stdout)
        print()
    is_missed = print_budgets(result, sys.stdout)
    print(f"bench.sh: all figures are in {output.with_suffix('.txt')}, for --compare in {output}")
    return 3 if is_missed else 0


def check_counted(program):
    """Measures as little as it can and looks only at the budgets of what is counted."""
    budgets = [budget for budget in load_budgets() if budget["value"] in COUNTED]
    wanted = {budget["benchmark"] for budget in budgets}
    families = {family: [name for name in names if plain(name) in wanted]
                for family, names in list_families(program, "", False).items()}
    result = measure(program, {family: names for family, names in families.items() if names}, 1, 0)
    missing = sorted(wanted - set(result["benchmarks"]))
    if missing:
        raise Failure(f"Budgets.json names {missing[0]}, which does not exist")
    rows = [("Work", "Figure", "Budget", "")]
    rows += [(budget["work"], *judge(budget, result["benchmarks"])) for budget in budgets]
    print_table(rows, sys.stdout)
    return 3 if any(row[3] == "MISSED" for row in rows) else 0


def load(name):
    try:
        return json.loads(pathlib.Path(name).read_text(encoding="utf-8"))["benchmarks"]
    except (OSError, ValueError, KeyError, TypeError) as error:
        raise Failure(f"{name} holds no figures of bench.sh") from error


def compare(before_name, after_name):
    before, after = load(before_name), load(after_name)
    rows = [("Benchmark", "Before", "After", "Ratio", "Allocations")]
    for name, values in after.items():
        if name not in before:
            continue
        key = "per_node" if "per_node" in values and "per_node" in before[name] else "time"
        allocations = [one.get("allocations") for one in (before[name], values)]
        changed = None not in allocations and round(allocations[0], 2) != round(allocations[1], 2)
        rows.append((name, write_time(before[name][key]), write_time(values[key]),
                     f"{values[key] / before[name][key]:.2f}",
                     f"{allocations[0]:.3g} -> {allocations[1]:.3g}" if changed else ""))
    if len(rows) == 1:
        raise Failure(f"{before_name} and {after_name} have no benchmark in common")
    print_table(rows, sys.stdout)
    for name, only in ((before_name, set(before) - set(after)), (after_name, set(after) - set(before))):
        if only:
            print(f"{len(only)} more only in {name}")
    return 0


def count(text):
    if not text.isdigit() or int(text) == 0:
        raise argparse.ArgumentTypeError(f"{text} is no number of runs")
    return int(text)


def main():
    parser = argparse.ArgumentParser(prog="scripts/bench.sh", description="Measures the library.")
    parser.add_argument("--filter", default="", metavar="REGEX", help="only benchmarks with such names")
    parser.add_argument("--quick", action="store_true", help="one short run, at most 100,000 nodes: a first look")
    parser.add_argument("--runs", type=count, metavar="N", help="processes for each family, of which the median counts (3); more than "
                             "100,000 nodes only in the first")
    parser.add_argument("--out", default=BUILD / "Results" / "latest.json", metavar="FILE",
                        help="where the figures go; a table is written beside it (build/bench/Results/latest.json)")
    parser.add_argument("--compare", nargs=2, metavar=("BEFORE", "AFTER"), help="ratios of two such files; runs nothing")
    parser.add_argument("--counted", action="store_true",
                        help="check allocations and memory only, which no other program disturbs")
    parser.add_argument("--program", default=BUILD / "bin" / "koInteractionBenchmarks", help=argparse.SUPPRESS)
    arguments = parser.parse_args()
    if arguments.compare:
        return compare(*arguments.compare)
    if arguments.counted:
        return check_counted(arguments.program)
    return run(arguments)


if __name__ == "__main__":
    try:
        sys.exit(main())
    except Failure as failure:
        print(f"bench.sh: {failure}", file=sys.stderr)
        sys.exit(1)
    except OSError as error:
        print(f"bench.sh: {error.filename}: {error.strerror}", file=sys.stderr)
        sys.exit(1)
    except KeyboardInterrupt:
        print(file=sys.stderr)
        sys.exit(130)
