#!/usr/bin/env python3
"""Runs the stories in tests/stories and the console blocks of the documents.

stories.py [--accept] [--only WORD] TOOL...

TOOL is the program, with what comes before its arguments (a Wine wrapper, say). A story that prints
something else is shown as a difference, and the exit code is 1; --accept rewrites the story instead:
read the difference before you commit it. --only runs the files whose path holds WORD.

A story is one text file: a description, whose first line says in plain words what it shows, then
sections. "-- NAME --" opens a file; "-- console --", the last one, holds command lines after "$ "
and their output, with "[exit code N]" where it is not 0; a single line of output may stand behind its
command and "  --> ". The shell runs them in a folder of their own, with the project's `examples` in
it, standard error included. A machine file without "schema"
lists what differs from the tool's built-in example: objects are merged into it, "adapters" by the
index, null takes a field away, and anything else replaces what was there.

In a document a console block is indented by four blanks, no exit code is shown, and "$ cat NAME" with
what follows makes that file, unless it is there. Then the "- run: " lines of its workflows run, once
for each value of the matrix that they name; one that ends with another exit code than 0 and 1 differs.
"""

import argparse
import concurrent.futures
import difflib
import json
import pathlib
import re
import shlex
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parent.parent
BLOCK = re.compile(r"(?:^    \$ .*\n)(?:^    .*\n|^\n(?=    ))*", re.MULTILINE)
RUN = re.compile(r"^( *- run: )(.*)$", re.MULTILINE)


def merged(base, change):
    """`base` with all that `change` says."""
    if not isinstance(change, dict):
        return change
    if isinstance(base, list):  # adapters, by their index
        known = {str(item["index"]): item for item in base}
        for index, item in change.items():
            known[index] = merged(known.get(index, {"index": int(index)}), item)
        return list(known.values())
    result = dict(base) if isinstance(base, dict) else {}
    for name, value in change.items():
        if value is None and name in result:
            del result[name]
        else:
            result[name] = merged(result.get(name), value)
    return result


class Runner:
    def __init__(self, tool, folder):
        self.commands = folder / "bin"
        self.commands.mkdir()
        program = self.commands / "orvanta-config"
        program.write_text(f'#!/bin/sh\nexec {shlex.join(tool)} "$@"\n')
        program.chmod(0o755)
        subprocess.run([program, "capture", "--json", "--save-machine", "example.json"], check=True,
                       cwd=folder, stdout=subprocess.DEVNULL)
        self.example = json.loads((folder / "example.json").read_text())  # with its passwords

    def run(self, line, folder):
        """What one command line prints, and a line for its exit code unless that is 0."""
        done = subprocess.run(["/bin/sh", "-c", line], cwd=folder, stdin=subprocess.DEVNULL,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT, check=False,
                              env={"PATH": f"{self.commands}:/usr/bin:/bin", "LC_ALL": "C.UTF-8",
                                   "HOME": str(folder)})
        printed = done.stdout.decode("utf-8", "backslashreplace")
        if printed and not printed.endswith("\n"):
            printed += "\n"
        return printed, f"[exit code {done.returncode}]\n" if done.returncode else ""

    def transcript(self, console, folder, is_document=False):
        """`console` with what its commands print now."""
        result = ""
        for command in re.split(r"^(?=\$ )", console, flags=re.MULTILINE):
            first, _, rest = command.partition("\n")
            file = re.fullmatch(r"\$ cat (\S+)", first) if is_document else None
            if file and not (folder / file[1]).exists():
                (folder / file[1]).write_text(rest)
            if first.startswith("$ "):
                first, arrow, _ = first.partition("  --> ")
                line = first[2:].replace("build/native/orvanta-config", "orvanta-config")
                printed, ending = self.run(line, folder)
                shown = printed + ("" if is_document else ending)
                result += first + (arrow if arrow and shown.count("\n") == 1 else "\n") + shown
        return result

    def story(self, text, folder):
        """The story with its current output."""
        parts = re.split(r"^-- (\S+) --\n", text, flags=re.MULTILINE)
        if len(parts) < 3 or parts[-2] != "console" or not parts[0].strip():
            raise ValueError("a story is a description, its files and a console")
        for name, content in zip(parts[1:-2:2], parts[2:-2:2]):
            if name.endswith(".json"):
                machine = json.loads(content)
                if isinstance(machine, dict) and "schema" not in machine:
                    content = json.dumps(merged(self.example, machine))
            (folder / name).parent.mkdir(parents=True, exist_ok=True)
            (folder / name).write_bytes(content.encode("utf-8", "surrogateescape"))
        return text[: len(text) - len(parts[-1])] + self.transcript(parts[-1], folder)

    def document(self, text, folder):
        """The document with the current output of its console blocks."""
        def block(match):
            console = re.sub(r"^    ", "", match.group(), flags=re.MULTILINE)
            if "orvanta-config " not in console or "$ make" in console:
                return match.group()
            now = self.transcript(console.rstrip("\n") + "\n", folder, is_document=True)
            return re.sub(r"^(?=.)", "    ", now, flags=re.MULTILINE)

        def step(match):
            name = re.search(r"\$\{\{ matrix\.(\w+) \}\}", match[2])
            values = re.search(rf"^ +{name[1]}: \[(.*)\]$", text, re.MULTILINE)[1] if name else ""
            for value in values.split(", "):
                line = match[2].replace(name[0], value) if name else match[2]
                printed, ending = self.run(line, folder)
                if ending not in ("", "[exit code 1]\n"):
                    return match[0] + "\n" + printed + ending
            return match[0]

        return RUN.sub(step, BLOCK.sub(block, text))

    def now(self, path):
        text = path.read_bytes().decode("utf-8", "surrogateescape")
        with tempfile.TemporaryDirectory() as folder:
            (pathlib.Path(folder) / "examples").symlink_to(ROOT / "examples")
            run = self.story if path.suffix == ".story" else self.document
            return text, run(text, pathlib.Path(folder))


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawTextHelpFormatter)
    parser.add_argument("--accept", action="store_true")
    parser.add_argument("--only", default="")
    parser.add_argument("tool", nargs=argparse.REMAINDER)
    arguments = parser.parse_args()
    paths = [path for pattern in ("tests/stories/*.story", "README.md", "docs/*.md")
             for path in sorted(ROOT.glob(pattern)) if arguments.only in str(path)]
    tool = [str(pathlib.Path(part).resolve()) if "/" in part else part for part in arguments.tool]
    failed = 0
    with tempfile.TemporaryDirectory() as folder, concurrent.futures.ThreadPoolExecutor(2) as pool:
        runner = Runner(tool, pathlib.Path(folder))
        for path, (before, now) in zip(paths, pool.map(runner.now, paths)):
            if before == now:
                continue
            failed += 1
            name = str(path.relative_to(ROOT))
            sys.stdout.writelines(line if line.endswith("\n") else line + "\n" for line in
                                  difflib.unified_diff(before.splitlines(True), now.splitlines(True),
                                                       name, "what it prints now"))
            if arguments.accept:
                path.write_bytes(now.encode("utf-8", "surrogateescape"))
    print(f"{len(paths) - failed} passed, {failed} failed")
    return 1 if failed and not arguments.accept or not paths else 0


if __name__ == "__main__":
    sys.exit(main())
