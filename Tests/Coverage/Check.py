#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Compares what gcovr counted with what the project asks for.

    Check.py INTERACTION.json OTHERS.json

Libs/Interaction: every line and every branch, but for those of Exclusions.txt, which must all still be there.
Libs/SceneGraph, Libs/Host: more than 95 percent of the lines. Called by scripts/coverage.sh.
"""

import collections
import json
import pathlib
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent.parent
EXCLUSIONS = pathlib.Path(__file__).resolve().parent / "Exclusions.txt"
FEWEST_LINES = 95.0


def load(name):
    """The files of a report: for each its path and, by line, the count and the counts of the branches."""
    for file in json.loads(pathlib.Path(name).read_text(encoding="utf-8"))["files"]:
        lines = {}
        for line in file["lines"]:
            if not line["gcovr/noncode"]:
                lines[line["line_number"]] = (line["count"], [branch["count"] for branch in line["branches"] if not branch["throw"]])
        yield file["file"], lines


def load_exclusions():
    """Lines of the form 'FILE: text of the line'; the reason stands above in a comment."""
    return [tuple(part.strip() for part in line.split(":", 1))
            for line in EXCLUSIONS.read_text(encoding="utf-8").splitlines() if line and not line.startswith("#")]


def check_interaction(report):
    faults = []
    unused = collections.Counter(load_exclusions())
    lines = branches = excluded = 0
    for file, counted in load(report):
        text = (ROOT / file).read_text(encoding="utf-8").splitlines()
        for number, (count, taken) in sorted(counted.items()):
            lines += 1
            branches += len(taken)
            if count > 0 and all(taken):
                continue
            key = (pathlib.Path(file).name, text[number - 1].strip())
            if unused[key] > 0:
                unused[key] -= 1
                excluded += taken.count(0)
                continue
            what = "never run" if count == 0 else f"{taken.count(0)} of {len(taken)} branches never taken"
            faults.append(f"{file}:{number}: {what}: {key[1]}")
    faults += [f"{EXCLUSIONS.name}: needs no exclusion: {file}: {line}" for (file, line), left in unused.items() if left > 0]
    print(f"Libs/Interaction: {lines} lines, {branches} branches, of which {excluded} are excluded with a reason")
    return faults


def check_others(report):
    faults = []
    totals = collections.defaultdict(lambda: [0, 0, 0, 0])
    missing = collections.Counter()
    for file, counted in load(report):
        folder = "/".join(file.split("/")[:2])
        of_folder = totals[folder]
        for count, taken in counted.values():
            of_folder[0] += 1
            of_folder[1] += count > 0
            of_folder[2] += len(taken)
            of_folder[3] += sum(1 for branch in taken if branch > 0)
            missing[file] += count == 0
    for folder, (lines, run, branches, taken) in sorted(totals.items()):
        share = 100.0 * run / lines
        print(f"{folder}: {share:.1f} % of {lines} lines, {100.0 * taken / branches:.1f} % of {branches} branches")
        if share <= FEWEST_LINES:
            worst = ", ".join(f"{file} ({count})" for file, count in missing.most_common(8) if file.startswith(folder))
            faults.append(f"{folder}: {share:.1f} % of the lines, not more than {FEWEST_LINES:.0f} %; most are missing in {worst}")
    return faults


def main():
    faults = check_interaction(sys.argv[1]) + check_others(sys.argv[2])
    for fault in faults:
        print(f"coverage.sh: {fault}", file=sys.stderr)
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
