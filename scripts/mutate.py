#!/usr/bin/env python3
"""Asks the tests whether they would notice: plants one fault at a time in a copy of the sources,
builds, runs the portable tests and the stories, and says what nobody noticed.

mutate.py [--count N] [--seed S] [--skip K] [--copies C] [--folder F ...] [--matrix FILE]

Tries N faults, drawn with the seed, after passing over the first K; a fault that does not compile does
not count. C copies below build/mutants share the work. The quick tests run first, and the first that
notices a fault ends its turn; --matrix runs them all, and writes, as JSON, which test noticed which.
"""

import argparse
import collections
import json
import pathlib
import random
import re
import shutil
import subprocess
import threading

ROOT = pathlib.Path(__file__).resolve().parent.parent
WORK = ROOT / "build/mutants"
PRODUCT = ["base", "common", "handlers", "toolbox"]
SWEEPS = "*Sweep*:Property*:Limits*:*Limits.*"
# What is built, and what then runs, the quickest first.
STAGES = [
    ("unit", ["tests/unit"]),
    ("orvanta-config", ["scripts/stories.py", "orvanta-config"]),
    ("scenario", ["tests/scenario", f"--gtest_filter=-{SWEEPS}"]),
    ("scenario", ["tests/scenario", f"--gtest_filter={SWEEPS}"]),
]
# A fault may make a loop endless, or wait for ever.
BOUNDED = ["prlimit", "--cpu=300", "timeout", "3600"]

# What is put in place of what, within a line.
REPLACED = [
    ("comparison", re.compile(r" == "), " != "),
    ("comparison", re.compile(r" != "), " == "),
    ("limit", re.compile(r" < "), " <= "),
    ("limit", re.compile(r" > "), " >= "),
    ("limit", re.compile(r" <= "), " < "),
    ("limit", re.compile(r" >= "), " > "),
    ("logic", re.compile(r" && "), " || "),
    ("logic", re.compile(r" \|\| "), " && "),
    ("flag", re.compile(r"\btrue\b"), "false"),
    ("flag", re.compile(r"\bfalse\b"), "true"),
    ("logic", re.compile(r"(?<=[ (])!(?=[a-z])"), ""),
    ("constant", re.compile(r" \+ (?=\d)"), " - "),
    ("constant", re.compile(r"(?<=[ (\[{])(\d+)(?=[;,) \]}])"), lambda m: str(int(m[1]) + 1)),
    ("condition dropped", re.compile(r"(?<=\bif \()[^;{]*?(?=\) [\w{*])"), "true"),
    ("condition dropped", re.compile(r" (?:&&|\|\|) [\w.:>!-]+(?:\([\w.:, >-]*\))?(?=[ );])"), ""),
    ("arguments swapped", re.compile(r"(?<=\()(\w+), (\w+)(?=[,)])"), lambda m: f"{m[2]}, {m[1]}"),
]
TEXT_OR_COMMENT = re.compile(r'R"\(.*?\)"|"(?:[^"\\]|\\.)*"|\'(?:[^\'\\]|\\.)*\'|//.*|/\*.*?\*/')
NO_CODE = re.compile(r"^\s*(#|//|static_assert|template|using|namespace|case |default:)")
STATEMENT = re.compile(r"^(\s+)(?!return|break|continue|using|case|default|\})\S.*;$")
CALL = re.compile(r"^\s+[\w.:>-]+\(.*\);$")
TABLE_TEXT = re.compile(r'(?<=")\w+(?=")')
# The line that a log line or an error record names is a mere label.
LABEL = re.compile(r"kSource|Site\b|^\s+k\w+ = \d+,")


def faults(path):
    """Every (kind, line number, the lines that replace it and how many they replace) of a source."""
    lines = path.read_text().splitlines()
    for number, line in enumerate(lines):
        if NO_CODE.match(line):
            continue
        hidden = TEXT_OR_COMMENT.sub(lambda text: "\0" * len(text.group()), line)
        is_label = any(LABEL.search(text) for text in lines[max(number - 1, 0):number + 1])
        for kind, pattern, replacement in REPLACED:
            for match in pattern.finditer(hidden):
                if kind == "constant" and is_label:
                    continue
                new = replacement(match) if callable(replacement) else replacement
                changed = line[:match.start()] + new + line[match.end():]
                if "\0" not in new and changed != line:
                    yield kind, number, [changed], 1
        if hidden.lstrip().startswith("{") and not is_label:
            for match in TABLE_TEXT.finditer(line):
                yield "table", number, [line[:match.end()] + "x" + line[match.end():]], 1
        if CALL.match(hidden):
            yield "call omitted", number, [";"], 1
        if STATEMENT.match(hidden):
            for early in ("return;", "return {};"):
                yield "early return", number, [early, line], 1
            following = lines[number + 1] if number + 1 < len(lines) else ""
            if CALL.match(line) and STATEMENT.match(following) and indent(following) == indent(line):
                yield "swapped", number, [following, line], 2


def indent(line):
    return len(line) - len(line.lstrip())


class Copy:
    """One copy of the project, built and tested on one core."""

    def __init__(self, number, matrix):
        self.source = WORK / str(number) / "source"
        self.build = WORK / str(number) / "build"
        self.matrix = matrix

    def run(self, command):
        """The exit code and what was printed."""
        done = subprocess.run([*BOUNDED, *command], cwd=self.source, check=False,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
        return done.returncode, done.stdout.decode("utf-8", "replace")

    def noticed_by(self):
        """The names of the tests that fail; None when the fault does not compile."""
        names = set()
        for target, (program, *arguments) in STAGES:
            if self.run(["ninja", "-C", self.build, "-j1", target])[0] != 0:
                return None
            if program == "scripts/stories.py":
                command = [program, self.build / arguments[0]]
            else:
                command = [self.build / program, "--gtest_brief=1", *arguments]
                command += [] if self.matrix else ["--gtest_fail_fast"]
            code, printed = self.run(command)
            if code == 0:
                continue
            found = re.findall(r"^\[  FAILED  \] ([\w/.]+)|^--- (\S+)", printed, re.MULTILINE)
            names.update(map("".join, found) if found else [f"{program} ended with {code}"])
            if not self.matrix:
                break
        return names

    def prepare(self):
        self.source.mkdir(parents=True, exist_ok=True)
        tracked = subprocess.run(["git", "ls-files", "-z"], cwd=ROOT, check=True, capture_output=True)
        for name in filter(None, tracked.stdout.decode().split("\0")):
            target = self.source / name
            target.parent.mkdir(parents=True, exist_ok=True)
            if not target.exists() or target.read_bytes() != (ROOT / name).read_bytes():
                shutil.copy2(ROOT / name, target)
        self.run(["cmake", "-S", self.source, "-B", self.build, "-G", "Ninja",
                  "-DCONFIG_TESTS=ON", "-DCONFIG_UNITY=OFF", "-DCMAKE_BUILD_TYPE=Debug", "-DCMAKE_CXX_FLAGS_DEBUG=-O0 -g0 -w"])
        if self.noticed_by() != set():
            raise SystemExit("mutate.py: the tests do not pass before any fault")

    def plant(self, fault):
        """Who notices the fault; None when it does not compile."""
        path, _, number, new, count = fault
        file = self.source / path
        original = file.read_text()
        lines = original.splitlines()
        lines[number:number + count] = new
        file.write_text("\n".join(lines) + "\n")
        try:
            return self.noticed_by()
        finally:
            file.write_text(original)


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawTextHelpFormatter)
    for name, default in (("count", 60), ("seed", 1), ("skip", 0), ("copies", 2)):
        parser.add_argument(f"--{name}", type=int, default=default)
    parser.add_argument("--folder", nargs="*", default=PRODUCT)
    parser.add_argument("--matrix", type=pathlib.Path)
    arguments = parser.parse_args()
    places = [(path.relative_to(ROOT), *fault) for folder in arguments.folder
              for path in sorted((ROOT / folder).rglob("*.cpp")) for fault in faults(path)]
    # As many faults of each kind as of any other: calls and constants would drown the rest.
    kinds = collections.defaultdict(list)
    random.Random(arguments.seed).shuffle(places)
    for place in places:
        kinds[place[1]].append(place)
    drawn = [kinds[kind][i] for i in range(len(places)) for kind in sorted(kinds)
             if i < len(kinds[kind])]

    rest = enumerate(drawn[arguments.skip:], arguments.skip + 1)
    matrix, last, lock = {}, arguments.skip, threading.Lock()

    def work(copy):
        nonlocal last
        while True:
            with lock:
                last, fault = next(rest, (last, None)) if len(matrix) < arguments.count else (last, None)
            if fault is None:
                return
            names = copy.plant(fault)
            path, kind, number, new, _ = fault
            name = f"{path}:{number + 1} {kind}: {' '.join(text.strip() for text in new)}"
            with lock:
                if names is not None:
                    matrix[name] = sorted(names)
                if names == set():
                    print(name, flush=True)

    workers = []
    for number in range(arguments.copies):
        copy = Copy(number, arguments.matrix)
        copy.prepare()
        workers.append(threading.Thread(target=work, args=[copy]))
    for worker in workers:
        worker.start()
    for worker in workers:
        worker.join()
    if arguments.matrix:
        arguments.matrix.write_text(json.dumps(matrix, indent=1) + "\n")
        alone = collections.Counter(names[0] for names in matrix.values() if len(names) == 1)
        for name, faults_alone in alone.most_common():
            print(f"{faults_alone} noticed by {name} alone")
    noticed = sum(map(bool, matrix.values()))
    print(f"{len(matrix)} tried of the first {last}, {noticed} noticed"
          f" ({100 * noticed // max(len(matrix), 1)} %), {len(matrix) - noticed} not")


if __name__ == "__main__":
    main()
