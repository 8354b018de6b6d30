#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Changes the library in one place at a time and looks whether a test notices.

Each mutant is built in a copy of the sources under build/mutation, where the tests of Libs/Interaction run until one
fails. A mutant that all tests pass on has survived: it is killed by a new test, or explained in Explained.txt.
Called by scripts/mutate.sh; its --help says what the options are.
"""

import argparse
import collections
import os
import pathlib
import re
import shutil
import subprocess
import sys
import threading
import time

HERE = pathlib.Path(__file__).resolve().parent
ROOT = HERE.parent.parent
WORK = ROOT / "build" / "mutation"
SOURCES = pathlib.Path("Libs") / "Interaction"
EXPLAINED = HERE / "Explained.txt"

Mutant = collections.namedtuple("Mutant", "file line operator before after text")

COMPARISONS = {"==": ("!=",), "!=": ("==",), "<": ("<=", ">="), "<=": ("<",), ">": (">=", "<="), ">=": (">",)}
# A call, an assignment or a step, whole in one line.
STATEMENT = re.compile(r"^(\s+)(?!return\b|using\b|const\b|static\b|constexpr\b|auto\b|throw\b|delete\b|else\b|if\b|for\b|while\b|"
                       r"break\b|continue\b|case\b|default\b|typedef\b|class\b|struct\b|template\b|friend\b|virtual\b|explicit\b)"
                       r"(?:[\w:]+(?:<[^;]*>)?[\w.:>\-\[\]()*&, {}|!+=%\"/?]*?(?:\(.*\)|\+\+|--|(?:[-+|&]?=)[^=].*)|(?:\+\+|--)[\w.\->:]+);\s*(?://.*)?$")
DECLARATION = re.compile(r"^\s+(?:[\w:]+(?:<.*>)?[&*]?\s+)+[\w]+(?:\s*[={(].*)?;")


def code_lines(text):
    """The lines with comments and string literals blanked out, of the same length."""
    def blank(match):
        found = match.group(0)
        return re.sub(r"[^\n]", " ", found) if found.startswith("/") else found[0] + "_" * (len(found) - 2) + found[-1]
    return re.sub(r"/\*.*?\*/|//[^\n]*|\"(?:\\.|[^\"\\\n])*\"|'(?:\\.|[^'\\\n])'", blank, text, flags=re.S).split("\n")


def closing(code, start):
    """The place of the parenthesis that closes the one at start, None when that is in another line."""
    depth = 0
    for place in range(start, len(code)):
        depth += {"(": 1, ")": -1}.get(code[place], 0)
        if depth == 0:
            return place
    return None


def is_statement(code):
    return not code.rstrip().endswith("= delete;") and bool(STATEMENT.match(code)) and not (DECLARATION.match(code) and not re.match(r"^\s+(return|delete)\b", code))


def mutate_line(line, code):
    """All (operator, new line) of one line."""
    def put(start, end, text):
        return line[:start] + text + line[end:]

    for match in re.finditer(r"(?<![<>=!\-+*/&|:\[])(==|!=|<=|>=|<|>)(?![<>=])", code):
        sign = match.group(1)
        # Templates and streams are written without blanks or double.
        if sign in "<>" and not (code[match.start() - 1] == " " and code[match.end():match.end() + 1] == " "):
            continue
        for other in COMPARISONS[sign]:
            yield f"{sign} becomes {other}", put(match.start(), match.end(), other)
    for match in re.finditer(r"&&|\|\|", code):
        if match.group(0) == "&&" and not code[match.start() - 1] == " ":
            continue
        other = "||" if match.group(0) == "&&" else "&&"
        yield f"{match.group(0)} becomes {other}", put(match.start(), match.end(), other)
    for match in re.finditer(r"!(?=[\w(])", code):
        yield "! dropped", put(match.start(), match.end(), "")
    for match in re.finditer(r"\b(if|while) (?=\()", code):
        end = closing(code, match.end())
        if end is not None:
            condition = line[match.end() + 1:end]
            if ";" not in condition:
                # A single comparison is turned above.
                if re.search(r"&&|\|\|", condition) or not re.search(r"==|!=|!\w|[<>]=? ", condition):
                    yield "condition negated", put(match.end(), end + 1, f"(!({condition}))")
                yield "condition false", put(match.end(), end + 1, "(false)")
                if match.group(1) == "if":
                    yield "condition true", put(match.end(), end + 1, "(true)")
    for match in re.finditer(r"(?<![\w.])(\d+)(U|u)?(?![\w.])", code):
        value = int(match.group(1))
        yield f"{value} becomes {value + 1}", put(match.start(1), match.end(1), str(value + 1))
        if value > 1:
            yield f"{value} becomes {value - 1}", put(match.start(1), match.end(1), str(value - 1))
    for match in re.finditer(r"(?<![\w.])(\d+\.\d+(?:e-?\d+)?|\d+e-?\d+)F?\b", code, re.I):
        yield "number changed", put(match.start(1), match.end(1), f"{float(match.group(1)) * 1.5 + 0.25}")
    for match in re.finditer(r"\b(true|false)\b", code):
        other = "false" if match.group(1) == "true" else "true"
        yield f"{match.group(1)} becomes {other}", put(match.start(), match.end(), other)
    for match in re.finditer(r" ([-+|&]) ", code):
        other = {"+": "-", "-": "+", "|": "&", "&": "|"}[match.group(1)]
        yield f"{match.group(1)} becomes {other}", put(match.start(1), match.end(1), other)
    for match in re.finditer(r"\+\+|--", code):
        yield "step turned", put(match.start(), match.end(), "--" if match.group(0) == "++" else "++")
    for match in re.finditer(r"[\w:]*FieldMask\b(?!\w|\()", code):
        yield "mask without bits", put(match.start(), match.end(), "osg::BitVector(0)")
        yield "mask of all", put(match.start(), match.end(), "osg::FieldBits::AllFields")
    for match in re.finditer(r"\"(_+)\"|\"\"", code):
        yield "text changed", put(match.end() - 1, match.end(), '~"')
    for match in re.finditer(r"\breturn ([^;{}]+);", code):
        value = line[match.start(1):match.end(1)]
        if value not in ("true", "false", "{}"):
            yield "returns nothing", put(match.start(1), match.end(1), "{}")
    if is_statement(code):
        yield "statement dropped", re.match(r"\s*", line).group(0) + ";"
    if re.match(r"^\s+(return|break|continue);", code):
        yield "jump dropped", re.match(r"\s*", line).group(0) + ";"


def find_mutants(file):
    text = (ROOT / file).read_text(encoding="utf-8")
    lines = text.split("\n")
    code = code_lines(text)
    for number, line in enumerate(lines):
        stripped = code[number].strip()
        if not stripped or stripped.startswith("#") or re.match(r"(namespace|using|friend|template|static_assert)\b", stripped):
            continue
        for operator, after in mutate_line(line, code[number]):
            changed = lines[:number] + [after] + lines[number + 1:]
            yield Mutant(file, number + 1, operator, line.strip(), after.strip(), "\n".join(changed))
        following = number + 1
        if is_statement(code[number]) and following < len(lines) and is_statement(code[following]) \
                and re.match(r"\s*", line).group(0) == re.match(r"\s*", lines[following]).group(0) and line != lines[following]:
            changed = lines[:number] + [lines[following], line] + lines[following + 1:]
            yield Mutant(file, number + 1, "swapped with the next", line.strip(), lines[following].strip(), "\n".join(changed))


def load_explained():
    """Survivors that nobody can kill: for each the patterns of file, operator and line; the reason stands above."""
    return [[re.compile(part.strip()) for part in line.split(" @ ", 2)]
            for line in EXPLAINED.read_text(encoding="utf-8").splitlines() if line and not line.startswith("#")]


def is_explained(mutant, explained):
    texts = (mutant.file.name, mutant.operator, mutant.before)
    return any(all(pattern.fullmatch(text) for pattern, text in zip(patterns, texts)) for patterns in explained)


class Worker:
    """One copy of the sources with one build."""

    def __init__(self, number, tests, is_checked):
        self.folder = WORK / (f"checked{number}" if is_checked else f"copy{number}")
        self.is_checked = is_checked
        self.build = self.folder / "build"
        self.tests = tests

    def prepare(self):
        source = self.folder / "source"
        files = subprocess.run(["git", "ls-files", "-z", "--cached", "--others", "--exclude-standard"], cwd=ROOT, capture_output=True,
                               check=True).stdout.decode().split("\0")
        for name in filter(None, files):
            target = source / name
            if not (ROOT / name).is_file():
                continue
            target.parent.mkdir(parents=True, exist_ok=True)
            if not target.exists() or target.read_bytes() != (ROOT / name).read_bytes():
                shutil.copy(ROOT / name, target)
        self.run(["cmake", "-G", "Ninja", "-S", source, "-B", self.build, "-DCMAKE_BUILD_TYPE=Debug",
                  "-DCMAKE_CXX_FLAGS=-O0 -g0 -D_GLIBCXX_ASSERTIONS", "-DKOINTERACTION_BUILD_VIEWER=OFF",
                  "-DCMAKE_CXX_COMPILER_LAUNCHER=ccache", f"-DKOINTERACTION_DEBUG_CONTAINERS={'ON' if self.is_checked else 'OFF'}"],
                 600)
        listed = subprocess.run(["ctest", "--test-dir", self.build, "-N"], capture_output=True, text=True, check=True).stdout
        available = re.findall(r"Test +#\d+: (\S+)", listed)
        self.tests = [test for test in available if any(re.fullmatch(pattern, test) for pattern in self.tests)]
        self.run(["ninja", "-C", self.build, "koInteraction"] + self.tests, 3600)
        for test in list(self.tests):
            program = self.build / "bin" / test
            if not program.exists() or self.check(program, 600) != "passed":
                raise SystemExit(f"mutate.sh: {test} does not pass on the library as it is")

    def run(self, command, seconds):
        finished = subprocess.run([str(part) for part in command], capture_output=True, text=True, timeout=seconds)
        if finished.returncode != 0:
            raise SystemExit(f"mutate.sh: {command[0]} failed: {(finished.stdout + finished.stderr)[-2000:]}")

    def check(self, program, seconds):
        environment = dict(os.environ, QT_QPA_PLATFORM="offscreen", RC_PARAMS="max_success=100",
                           KOINTERACTION_MODEL_OPERATIONS="20000")
        try:
            finished = subprocess.run([str(program), "--gtest_fail_fast", "--gtest_brief=1"], cwd=program.parent,
                                      env=environment, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, timeout=seconds)
        except subprocess.TimeoutExpired:
            return "too slow"
        return "passed" if finished.returncode == 0 else "failed"

    def order(self, file):
        """The tests of the class first: they notice most."""
        name = file.stem
        return sorted(self.tests, key=lambda test: (not test.startswith(name), test.endswith("ModelTest"), test))

    def judge(self, mutant):
        target = self.folder / "source" / mutant.file
        original = (ROOT / mutant.file).read_text(encoding="utf-8")
        try:
            target.write_text(mutant.text, encoding="utf-8")
            try:
                built = subprocess.run(["ninja", "-C", str(self.build), "koInteraction"] + (self.tests if mutant.file.suffix == ".h" else []),
                                       capture_output=True, text=True, timeout=900,
                                       env=dict(os.environ, CCACHE_DISABLE="1"))
            except subprocess.TimeoutExpired:
                return "does not compile"
            if built.returncode != 0:
                return "does not compile"
            for test in self.order(mutant.file):
                verdict = self.check(self.build / "bin" / test, 60)
                if verdict != "passed":
                    return f"killed by {test}" + (" (too slow)" if verdict == "too slow" else "")
            return "survived"
        finally:
            target.write_text(original, encoding="utf-8")


def main():
    parser = argparse.ArgumentParser(prog="scripts/mutate.sh", description="Looks whether the tests notice changes of the library.")
    parser.add_argument("--file", action="append", metavar="NAME", help="only this source, without its folder; may be given again")
    parser.add_argument("--jobs", type=int, default=1, metavar="N", help="copies that work side by side (1)")
    parser.add_argument("--list", action="store_true", help="print the mutants and build nothing")
    parser.add_argument("--again", action="store_true", help="only those that survived the last time")
    parser.add_argument("--checked", action="store_true", help="with the checked containers of the standard library")
    parser.add_argument("--tests", action="append", metavar="REGEX", help="names of the tests that run; may be given again")
    arguments = parser.parse_args()

    files = sorted(path.relative_to(ROOT) for path in (ROOT / SOURCES).glob("*.cpp"))
    files += [SOURCES / "SpareNodes.h"]
    if arguments.file:
        unknown = sorted(set(arguments.file) - {file.name for file in files})
        if unknown:
            raise SystemExit(f"mutate.sh: there is no source {unknown[0]}")
        files = [file for file in files if file.name in arguments.file]
    mutants = [mutant for file in files for mutant in find_mutants(file)]
    results_file = WORK / "results.txt"
    if arguments.again:
        survived = {tuple(line.split(" @ ")[1:4]) for line in results_file.read_text(encoding="utf-8").splitlines() if line.startswith("survived")}
        mutants = [mutant for mutant in mutants if (str(mutant.file.name), mutant.operator, mutant.before) in survived]
    if arguments.list:
        for mutant in mutants:
            print(f"{mutant.file.name}:{mutant.line}: {mutant.operator}: {mutant.before}  ->  {mutant.after}")
        print(f"{len(mutants)} mutants")
        return 0

    tests = arguments.tests or [r"(QtEventMapper\w*|Interaction(Event|Manager)\w*|\w*InteractionContext\w*|AbstractInteractionTool\w*|"
                                r"\w*SelectionVisualisation\w*|LazyPicker\w*|NodeSelectionModel\w*|SelectionManager\w*|SpareNodes\w*|AllocationFailure)Test"]
    WORK.mkdir(parents=True, exist_ok=True)
    workers = [Worker(number, tests, arguments.checked) for number in range(arguments.jobs)]
    for worker in workers:
        print(f"mutate.sh: building {worker.folder.name}", flush=True)
        worker.prepare()
    explained = load_explained()
    queue = collections.deque(mutants)
    lock = threading.Lock()
    counts = collections.Counter()
    found = []
    start = time.monotonic()
    results = results_file.open("w", encoding="utf-8")

    def work(worker):
        while True:
            with lock:
                if not queue:
                    return
                mutant = queue.popleft()
            verdict = worker.judge(mutant)
            kind = "killed" if verdict.startswith("killed") else verdict
            if kind == "survived" and is_explained(mutant, explained):
                kind = "explained"
            with lock:
                counts[kind] += 1
                done = sum(counts.values())
                results.write(f"{verdict} @ {mutant.file.name} @ {mutant.operator} @ {mutant.before} @ {mutant.after} @ {mutant.line}\n")
                results.flush()
                if kind == "survived":
                    found.append(mutant)
                    print(f"survived: {mutant.file.name}:{mutant.line}: {mutant.operator}: {mutant.before}  ->  {mutant.after}", flush=True)
                if done % 25 == 0:
                    rest = (time.monotonic() - start) / done * (len(mutants) - done) / 60
                    print(f"[{done}/{len(mutants)}] {dict(counts)}, {rest:.0f} min left", flush=True)

    threads = [threading.Thread(target=work, args=(worker,)) for worker in workers]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()
    results.close()
    print(f"mutate.sh: {len(mutants)} mutants: " + ", ".join(f"{counts[kind]} {kind}" for kind in sorted(counts)))
    return 3 if found else 0


if __name__ == "__main__":
    sys.exit(main())
