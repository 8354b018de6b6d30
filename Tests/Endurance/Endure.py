#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Works with koviewer as a user does, for as long as one likes, and looks whether it holds more and more.

Random commands of the script language go to one koviewer without a display, in rounds. After each round everything is put
back: the same model, nothing selected, hidden or left in the history. The viewer says then what it holds, and that has to
be what it was. The commands depend on the seed alone.

Called by scripts/endure.sh; its --help says what the options are.
"""

import argparse
import collections
import os
import pathlib
import random
import re
import select
import subprocess
import sys
import tempfile
import time

MODELS = pathlib.Path("/usr/share/assimp/models")
HOME = MODELS / "glTF2/2CylinderEngine-glTF-Binary/2CylinderEngine.glb"
OTHERS = ("3DS/fels.3ds", "Collada/duck.dae", "Collada/teapots.DAE", "OBJ/spider.obj", "OBJ/WusonOBJ.obj",
          "PLY/Wuson.ply", "STL/Spider_binary.stl", "glTF/CesiumMilkTruck/CesiumMilkTruck.gltf")
PARTS = (1, 7, 40, 200, 1000)
# More than any round has: the library keeps what a selection needed, up to a limit, for the next one.
MOST_PARTS = 3000
WIDTH, HEIGHT = 960, 640
PART_NAMES = ("housing 1", "body_9", "nobody")

# Rounds until everything that is kept for later has been needed once.
WARM_UP = 4
# Seconds to wait for a round: with sanitizers on a busy machine some take a minute.
PATIENCE = 900
# Bytes that memory may grow by, and for each operation. The heap: lists that double when they are full; tables by container
# id, whose ids never come back; what Embree and the OpenGL driver keep. Resident: the heap is in pieces.
BOUNDS = {"allocated": (256 * 2 ** 10, 2), "resident": (32 * 2 ** 20, 2)}
# Operations of a round: short ones are more often back at the state that is compared.
SHORTEST, LONGEST = 60, 240
MOST_SETS = 8
NAMES = [f"Set {number}" for number in range(1, MOST_SETS + 1)] + [f"Kept {number}" for number in range(1, 5)]
# Commands that are never used, and why.
LEFT_OUT = {
    "exact": "changes what all commands after it mean",
    "expect-selection": "the checks of recordings need somebody who knows what is selected", "expect-hidden": "the same",
    "expect-locked": "the same", "expect-model": "the same"}
EDIT_KEYS = ("H", "I", "U", "K")
VIEW_KEYS = ("F", "G", "1", "2", "3", "4", "5", "6", "7", "P", "+", "-")
LOOK_KEYS = ("B", "O", "D")
SWITCHES = {"visualisation": "off", "overlay": "on", "parallel": "off", "dark": "off", "preselection": "on",
            "visible-only": "off", "measure": "off"}


class Failure(Exception):
    """Ends the program with one line."""


class User:
    """Makes up what a user does, from the seed alone."""

    def __init__(self, seed):
        self.random = random.Random(seed)
        self.width, self.height = WIDTH, HEIGHT
        self.sets = 0
        # What it does, and how often among all: as people use the viewer, but no part of it never.
        self.actions = (
            (18, self.point), (18, self.click), (10, self.turn), (4, self.pan), (9, self.wheel), (9, self.rectangle),
            (6, self.edit), (7, self.step_back), (4, self.select), (4, self.use_sets), (3, self.look), (4, self.view),
            (3, self.navigate), (3, self.fingers), (2, self.touchpad), (2, self.measure), (2, self.group),
            (1, self.click_visible), (1, self.resize), (1, self.picture), (1, self.camera), (1, self.switch), (1, self.hold), (1, self.interrupt),
            (1, self.present), (1, self.event))
        # Changes that only another model takes back: of the nodes, and of how many boxes there were at once.
        self.lasting = ((3, self.lock), (1, self.empty_group), (3, self.select_nodes))

    def chance(self, share):
        return self.random.random() < share

    def pixel(self):
        """Mostly near the middle, where the model is, and now and then outside."""
        x = self.random.gauss(self.width / 2, self.width / 5)
        y = self.random.gauss(self.height / 2, self.height / 5)
        return f"{round(x)} {round(y)}"

    def modifiers(self):
        return self.random.choices(("", " ctrl", " shift", " ctrl shift", " alt"), (12, 5, 3, 1, 1))[0]

    def node(self):
        depth = self.random.randint(1, 4)
        return "".join(f"/{self.random.randint(0, 5)}" for _ in range(depth))

    def nodes(self):
        return [self.node() for _ in range(self.random.randint(1, 3))]

    def point(self):
        return [f"move {self.pixel()}"]

    def click(self):
        if self.chance(0.1):
            return [f"doubleclick {self.pixel()}"]
        if self.chance(0.05):
            return [f"click {self.pixel()} {self.random.choice(('middle', 'right', 'back', 'forward', 'extra3'))}"]
        return [f"click {self.pixel()}{self.modifiers()}"]

    def turn(self):
        return [f"drag {self.pixel()} {self.pixel()} right"]

    def pan(self):
        return [f"drag {self.pixel()} {self.pixel()} " + self.random.choice(("middle", "right shift", "right ctrl"))]

    def wheel(self):
        return [f"wheel {self.pixel()} {self.random.randint(-4, 4)}" + self.random.choice(("", "", " shift"))]

    def rectangle(self):
        return [f"drag {self.pixel()} {self.pixel()} left " + self.random.choices(("shift", "ctrl shift"), (3, 1))[0]]

    def edit(self):
        key = self.random.choice(EDIT_KEYS)
        if key == "K":
            return self.new_set("key K")
        if self.chance(0.3):
            action = self.random.choice(("hide", "show", "isolate"))
            return [f"try {action} {node}" for node in self.nodes()]
        return [f"key {key}"]

    def step_back(self):
        if self.chance(0.6):
            return ["key Z ctrl"] * self.random.randint(1, 4)
        return ["key Z ctrl shift"] * self.random.randint(1, 3)

    def select(self):
        return [self.random.choice(("key A ctrl", "key A ctrl shift", "key N", "key PgUp", "key PgDown", "key Escape"))]

    def select_nodes(self):
        if self.chance(0.2):
            return [f"try toggle-node \"{self.random.choice(PART_NAMES)}\""]
        return [f"try {self.random.choice(('select', 'select-more', 'deselect'))} {node}" for node in self.nodes()]

    def new_set(self, command):
        # As many displays are kept for later as there ever were sets at once: so many are made in the first rounds.
        if self.sets == MOST_SETS:
            return [f"try set delete \"{name}\"" for name in NAMES] + ["forget-history"]
        self.sets += 1
        return [command]

    def use_sets(self):
        name, other = self.random.choice(NAMES), self.random.choice(NAMES)
        return self.random.choice((
            lambda: self.new_set("command new-set"),
            lambda: [f"try set {self.random.choice(('recall', 'add', 'replace', 'delete'))} \"{name}\""],
            lambda: [f"try set rename \"{name}\" \"{self.random.choice(NAMES[MOST_SETS:])}\""],
            lambda: [f"try set {self.random.choice(('union', 'intersection', 'difference'))} \"{name}\""],
            lambda: [f"try set {self.random.choice(('union', 'intersection', 'difference'))} \"{name}\" \"{other}\""]))()

    def look(self):
        return [f"key {self.random.choice(LOOK_KEYS)}"]

    def view(self):
        if self.chance(0.2):
            return [self.random.choice(("fit", "view front", "view bottom", "command fit-selection"))]
        return [f"key {self.random.choice(VIEW_KEYS)}"]

    def navigate(self):
        return [f"key {self.random.choice(('Left', 'Right', 'Up', 'Down'))}{self.random.choice((' shift', ' ctrl'))}"] * 3

    def fingers(self):
        if self.chance(0.5):
            return [f"touch {self.pixel()}", f"touch {self.pixel()}", "touch"]
        lines = [f"touch {self.pixel()}"] + [f"touch {self.pixel()} {self.pixel()}" for _ in range(4)]
        return lines + ([f"touch {self.pixel()}"] if self.chance(0.5) else []) + ["touch"]

    def touchpad(self):
        if self.chance(0.5):
            place = self.pixel()
            return ([f"gesture begin {place} 0"] + [f"gesture zoom {place} {self.random.uniform(-0.2, 0.2):.3f}" for _ in range(4)]
                    + [f"gesture end {place} 0"])
        place, modifier = self.pixel(), self.random.choice(("", " shift", " ctrl"))
        return ([f"scroll {place} 0 0 0 0 begin{modifier}"]
                + [f"scroll {place} {x} {y} {x} {y} update{modifier}" for x, y in ((8, 3), (-5, 16), (7, -9))]
                + [f"scroll {place} 0 0 0 0 end{modifier}"])

    def measure(self):
        lines = ["key M"] + [f"click {self.pixel()}" for _ in range(self.random.randint(1, 3))]
        lines += ["key C ctrl"] if self.chance(0.5) else []
        return lines + ["key Escape"] * self.random.randint(0, 3)

    def group(self):
        return ["key PgUp", "key Z ctrl"] if self.chance(0.5) else ["key PgDown"]

    def click_visible(self):
        if self.chance(0.2):
            return [f"try click-part \"{self.random.choice(PART_NAMES)}\"{self.modifiers()}"]
        return [f"try click-visible {self.random.randint(1, 12)}{self.modifiers()}"]

    def resize(self):
        self.width, self.height = self.random.choice(((WIDTH, HEIGHT), (640, 480), (1280, 800), (333, 777), (64, 48)))
        return [f"size {self.width} {self.height}"]

    def picture(self):
        return ["shot picture"]

    def camera(self):
        number = self.random.uniform
        return [f"camera {number(-1, 1):.3f} {number(-1, 1):.3f} {number(-1, 1):.3f} {number(0.1, 9):.3f} "
                f"{number(-180, 180):.1f} {number(-90, 90):.1f}" + self.random.choice(("", " fitted"))]

    def switch(self):
        return [f"switch {self.random.choice(tuple(SWITCHES))} {self.random.choice(('on', 'off'))}"]

    def hold(self):
        """Something is pressed and released later, or never."""
        lines = [self.random.choice(("keypress H", "keypress F repeat", "keypress Shift", f"press {self.pixel()}",
                                     f"press {self.pixel()} right", f"doublepress {self.pixel()}"))]
        return lines + self.point() + (["keyrelease H", f"release {self.pixel()}"] if self.chance(0.5) else [])

    def interrupt(self):
        return [self.random.choice(("leave", "focusout", "key Escape", "held"))]

    def present(self):
        return ["presenter on"] + self.point() + self.click() + ["key H", "presenter off"]

    def event(self):
        return [f"event {self.random.choice(('tool:select', 'tool:box', 'navigate:orbit', 'mode:measure', 'view:fit', 'nobody:knows'))} "
                + self.random.choice(("start", "process", "stop", "trigger"))]

    def lock(self):
        return ["key L"] if self.chance(0.5) else [f"try {self.random.choice(('lock', 'unlock'))} {' '.join(self.nodes())}"]

    def empty_group(self):
        return ["add-empty-group \"a group\" 0.5 1.2 0.5", "toggle-node \"a group\""]

    def work(self, actions):
        lines = []
        length = self.random.randint(SHORTEST, LONGEST)
        while len(lines) < length:
            lines += self.random.choices([action for _, action in actions], [weight for weight, _ in actions])[0]()
        return lines

    def put_back(self):
        """Everything as it was, but for the model and what lasts in it."""
        self.width, self.height = WIDTH, HEIGHT
        self.sets = 0
        lines = ["presenter off", "touch", "held", "focusout", "leave"] + ["key Escape"] * 4
        lines += [f"try set delete \"{name}\"" for name in NAMES]
        lines += ["show-all", "select"] + [f"switch {name} {state}" for name, state in SWITCHES.items()]
        # As many boxes are kept for later as there ever were at once: all parts with all groups around them.
        lines += ["command select-all", "command new-set"] + ["command select-parent", "try set union \"Set 1\""] * 5
        lines += ["try set recall \"Set 1\"", "try set delete \"Set 1\"", "select", "forget-history"]
        return lines + [f"size {WIDTH} {HEIGHT}", "view iso", "shot picture"]

    def warm_up(self):
        """Needs more at once than any round may, and everything once."""
        lines = [line for other in OTHERS for line in (f"open \"{MODELS / other}\"", "shot picture")]
        for parts in (MOST_PARTS, 0):
            lines += [f"generate {parts}" if parts else f"open \"{HOME}\"", "press 1 1 left shift",
                      f"move {WIDTH - 1} {HEIGHT - 1} shift", "shot picture", f"release {WIDTH - 1} {HEIGHT - 1}"]
            lines += ["command select-all"] + ["command new-set"] * MOST_SETS + ["shot picture", "switch visualisation on"]
            lines += ["shot picture", "switch visualisation off", "key M", "click 480 320", "click 400 300", "shot picture"]
            lines += self.put_back()
        return lines

    def round(self, number):
        """The lines of a round and its kind; the first ones need what others may."""
        if number == 0:
            return "warm-up", self.warm_up() + self.put_back()
        if number % 3 != 0:
            return "same-model", self.work(self.actions) + self.put_back()
        other = self.random.choices((f"open \"{HOME}\"", f"open \"{MODELS / self.random.choice(OTHERS)}\"",
                                     f"generate {self.random.choice(PARTS)}"), (1, 2, 2))[0]
        lines = [other] + self.work(self.actions + self.lasting)
        return "other-model", lines + self.put_back() + [f"open \"{HOME}\""] + self.put_back()


Report = collections.namedtuple("Report", "round kind seconds operations containers resident allocated files")


class Viewer:
    """A koviewer that carries out what it is told."""

    def __init__(self, program, folder, script):
        self.pictures = folder / "pictures"
        self.errors = open(folder / "errors", "w+", encoding="utf-8")  # pylint: disable=consider-using-with
        self.script = open(script, "w", encoding="utf-8")  # pylint: disable=consider-using-with
        # The user's settings stay out of it, and so do shaders that the driver kept from other runs.
        environment = {**os.environ, "XDG_CONFIG_HOME": str(folder), "XDG_CACHE_HOME": str(folder), "LC_ALL": "C.UTF-8"}
        self.process = subprocess.Popen(  # pylint: disable=consider-using-with
            [program, "--headless", "--script", "-", "--out", str(self.pictures), str(HOME)],
            stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=self.errors, encoding="utf-8", env=environment)

    def carry_out(self, kind, lines):
        """Returns what the viewer holds afterwards, by name; nothing when it ended or does not answer."""
        text = "\n".join(lines + [f"report {kind}"]) + "\n"
        # First: what was sent when it ended is the most interesting.
        self.script.write(text)
        self.script.flush()
        try:
            self.process.stdin.write(text)
            self.process.stdin.flush()
        except BrokenPipeError:
            return {}
        if not select.select([self.process.stdout], [], [], PATIENCE)[0]:
            self.process.kill()
            return {}
        words = self.process.stdout.readline().split()
        for picture in self.pictures.glob("*.png"):
            picture.unlink()
        return {name: int(number) for name, number in zip(words[1::2], words[2::2])}

    def end(self):
        """Raises a Failure unless it ended as it should: with a warning about a model at most."""
        try:
            self.process.stdin.close()
        except BrokenPipeError:
            pass
        status = self.process.wait()
        self.errors.seek(0)
        errors = [line for line in self.errors.read().splitlines() if not line.endswith(" is missing.")]
        if status != 0 or errors:
            raise Failure(f"koviewer ended with {status}: " + ("\n".join(errors) or "it said nothing"))


class Table:
    """Prints a row now and then: a short table, however long the run is."""

    def __init__(self, interval):
        self.interval = interval
        self.next = 0.0
        self.last = None
        print(f"{'round':>7} {'kind':12} {'seconds':>8} {'operations':>11} {'containers':>11} {'heap':>10} {'resident':>10} {'files':>6}")

    def add(self, report):
        if report.seconds >= self.next:
            self.print(report)
            self.next = report.seconds + self.interval

    def print(self, report):
        if report != self.last:
            print(f"{report.round:7,} {report.kind:12} {report.seconds:8,.0f} {report.operations:11,} {report.containers:11,} "
                  f"{mebibytes(report.allocated):>10} {mebibytes(report.resident):>10} {report.files:6}", flush=True)
        self.last = report


def mebibytes(number):
    return f"{number / 2 ** 20:,.2f}"


def require_same(report, first):
    """What is counted is the same whenever the state is; of the files the driver may close some of its own."""
    for name in ("containers", "files"):
        before, now = getattr(first, name), getattr(report, name)
        if now > before or (now < before and name == "containers"):
            raise Failure(f"{name}: {before:,} after round {first.round}, {now:,} after round {report.round} ({report.kind})")


def require_level(reports):
    """Memory does not grow: the least of the last third is compared with the most of the first, for each kind of round."""
    for kind in sorted({report.kind for report in reports}):
        of_kind = [report for report in reports if report.kind == kind]
        third = len(of_kind) // 3
        if third == 0:
            raise Failure(f"too short to tell: {len(of_kind)} rounds of the kind {kind}")
        operations = of_kind[-1].operations - of_kind[0].operations
        for name, (fixed, for_each) in BOUNDS.items():
            bound = fixed + for_each * operations
            before = max(getattr(report, name) for report in of_kind[:third])
            now = min(getattr(report, name) for report in of_kind[-third:])
            if now - before > bound:
                raise Failure(f"{name} grows: {mebibytes(before)} MiB in the first third of the rounds {kind}, "
                              f"{mebibytes(now)} MiB in the last, more than {mebibytes(bound)} MiB apart")


def run(options):
    user = User(options.seed)
    table = Table(0 if options.rounds else options.seconds / 20)
    reports = []
    operations = 0
    start = time.monotonic()
    with tempfile.TemporaryDirectory(prefix="endure-") as name:
        viewer = Viewer(options.viewer, pathlib.Path(name), options.script)
        while len(reports) < options.rounds if options.rounds else time.monotonic() - start < options.seconds:
            number = len(reports)
            kind, lines = user.round(number)
            holds = viewer.carry_out(kind, lines)
            if not holds:
                viewer.end()
                raise Failure(f"koviewer said nothing after round {number}")
            operations += len(lines)
            reports.append(Report(number, kind, time.monotonic() - start, operations, **holds))
            table.add(reports[-1])
            with options.reports.open("a" if number > 0 else "w", encoding="utf-8") as log:
                log.write(",".join(map(str, reports[-1])) + "\n")
            if number > WARM_UP:
                require_same(reports[-1], reports[WARM_UP])
        viewer.end()
    table.print(reports[-1])
    require_level(reports[WARM_UP:])
    print(f"endure.sh: nothing found in {len(reports):,} rounds with {operations:,} operations")


def check_commands(readme):
    """Every command that the viewer's README.md has in its table is used, or left out for a reason."""
    user = User(1)
    used = set()
    for number in range(200):
        used |= {line.removeprefix("try ").split()[0] for line in user.round(number)[1]}
    used |= {"report", "try"}
    section = readme.read_text(encoding="utf-8").split("\n## Without a display\n")[1].split("\n## ")[0]
    known = {word for row in re.findall(r"^\|(.*?[^\\])\|", section, re.MULTILINE)
             for words in re.findall(r"`([^`]*)`", row) for word in words.split()[:1]}
    for name in sorted(known - used - set(LEFT_OUT)):
        raise Failure(f"the command {name} is never used, and LEFT_OUT does not say why")
    for name in sorted(set(LEFT_OUT) & used | set(LEFT_OUT) - known | used - known):
        raise Failure(f"the command {name} is no longer what LEFT_OUT or {readme.name} says")
    print(f"endure.sh: {len(known & used)} commands are used, {len(LEFT_OUT)} left out")


def main():
    parser = argparse.ArgumentParser(prog="endure.sh")
    parser.add_argument("--viewer", help="the program koviewer")
    parser.add_argument("--seconds", type=float, default=60, help="how long")
    parser.add_argument("--rounds", type=int, help="how many rounds, in place of how long")
    parser.add_argument("--seed", type=int, default=1, help="what everything depends on")
    parser.add_argument("--script", type=pathlib.Path, default=pathlib.Path(os.devnull), help="where what was done is written to")
    parser.add_argument("--reports", type=pathlib.Path, default=pathlib.Path(os.devnull), help="where all rows are written to")
    parser.add_argument("--commands", type=pathlib.Path, metavar="README", help="check that every command of this README.md is used, and end")
    options = parser.parse_args()
    try:
        if options.commands:
            check_commands(options.commands)
        elif not options.viewer:
            parser.error("--viewer is missing")
        else:
            run(options)
    except Failure as failure:
        print(f"endure.sh: {failure}", file=sys.stderr)
        if options.script != pathlib.Path(os.devnull):
            print(f"endure.sh: seed {options.seed}; what was done: {options.script}", file=sys.stderr)
        return 1
    return 0


if __name__ == "__main__":
    sys.exit(main())
