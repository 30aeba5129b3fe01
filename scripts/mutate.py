#!/usr/bin/env python3
"""Asks the tests whether they would notice: changes one condition or constant of the engine at a
time, builds, runs the portable tests, and tells what nobody noticed.

mutate.py [--count N] [--seed S] [--folder F ...]    tries N changes, drawn with the seed

Works on a copy below build/mutants. A change that does not compile does not count.
"""

import argparse
import pathlib
import random
import re
import shutil
import subprocess

ROOT = pathlib.Path(__file__).resolve().parent.parent
WORK = ROOT / "build/mutants"
ENGINE = ["common", "handlers", "toolbox"]
COPIED = ["bench", "cmake", "common", "docs", "examples", "fuzz", "handlers", "platform", "tests",
          "toolbox", "tool", "CMakeLists.txt", "CMakePresets.json"]
TESTS = ["unit", "scenario"]
LONGEST_TEST = 120  # seconds; a change may make a loop endless

# What is changed into what.
CHANGES = [
    (re.compile(r" == "), " != "),
    (re.compile(r" != "), " == "),
    (re.compile(r" < "), " <= "),
    (re.compile(r" > "), " >= "),
    (re.compile(r" <= "), " < "),
    (re.compile(r" >= "), " > "),
    (re.compile(r" && "), " || "),
    (re.compile(r" \|\| "), " && "),
    (re.compile(r"\btrue\b"), "false"),
    (re.compile(r"\bfalse\b"), "true"),
    (re.compile(r"(?<=[ (])!(?=[a-z])"), ""),
    (re.compile(r" \+ (?=\d)"), " - "),
    (re.compile(r"(?<=[ (\[{])(\d+)(?=[;,) \]}])"), lambda number: str(int(number.group(1)) + 1)),
]
TEXT_OR_COMMENT = re.compile(r'R"\(.*?\)"|"(?:[^"\\]|\\.)*"|\'(?:[^\'\\]|\\.)*\'|//.*|/\*.*?\*/')
NO_CODE = re.compile(r"^\s*(#|//|static_assert|template|using|namespace)")


def sites(path):
    """Every (line number, changed line) of a source."""
    for number, line in enumerate(path.read_text().splitlines()):
        if NO_CODE.match(line):
            continue
        hidden = TEXT_OR_COMMENT.sub(lambda text: "\0" * len(text.group()), line)
        for pattern, replacement in CHANGES:
            for match in pattern.finditer(hidden):
                new = replacement(match) if callable(replacement) else replacement
                yield number, line[: match.start()] + new + line[match.end():]


def run(command, seconds):
    """"" when the command succeeds, else how it ended."""
    try:
        done = subprocess.run(command, cwd=WORK / "source", timeout=seconds, check=False,
                              stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    except subprocess.TimeoutExpired:
        return "no end"
    return "" if done.returncode == 0 else "failed"


def build():
    return run(["cmake", "--build", WORK / "build", "--target", *TESTS], 900)


def test():
    for program in TESTS:
        ended = run([WORK / f"build/tests/{program}", "--gtest_fail_fast", "--gtest_brief=1",
                     "--gtest_filter=-Limits*:FaultSweepWith*"], LONGEST_TEST)
        if ended:
            return ended
    return ""


def prepare():
    source = WORK / "source"
    shutil.rmtree(source, ignore_errors=True)
    source.mkdir(parents=True)
    for name in COPIED:
        copy = shutil.copytree if (ROOT / name).is_dir() else shutil.copy2
        copy(ROOT / name, source / name)
    configured = run(["cmake", "-S", source, "-B", WORK / "build", "-G", "Ninja", "-DCONFIG_TESTS=ON",
                      "-DCMAKE_BUILD_TYPE=Debug", "-DCMAKE_CXX_FLAGS_DEBUG=-O0"], 300)
    if configured or build() or test():
        raise SystemExit("mutate.py: the tests do not pass before any change")


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawTextHelpFormatter)
    parser.add_argument("--count", type=int, default=60)
    parser.add_argument("--seed", type=int, default=1)
    parser.add_argument("--folder", nargs="*", default=ENGINE)
    arguments = parser.parse_args()
    prepare()
    source = WORK / "source"
    candidates = [(path, number, line) for folder in arguments.folder
                  for path in sorted((source / folder).rglob("*.cpp"))
                  for number, line in sites(path)]
    random.Random(arguments.seed).shuffle(candidates)
    killed, survivors = 0, []
    for path, number, line in candidates:
        if killed + len(survivors) == arguments.count:
            break
        original = path.read_text()
        lines = original.splitlines()
        before, lines[number] = lines[number], line
        path.write_text("\n".join(lines) + "\n")
        try:
            if build():
                continue
            if test():
                killed += 1
            else:
                survivors.append(f"{path.relative_to(source)}:{number + 1}\n  - {before.strip()}\n"
                                 f"  + {line.strip()}")
                print(survivors[-1], flush=True)
        finally:
            path.write_text(original)
    tried = killed + len(survivors)
    print(f"{len(candidates)} places; {tried} tried, {killed} noticed"
          f" ({100 * killed // max(tried, 1)} %), {len(survivors)} not")


if __name__ == "__main__":
    main()
