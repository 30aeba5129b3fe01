#!/usr/bin/env python3
"""Checks that includes run in the allowed directions (see docs/architecture.md), that code for one
compiler or system stays in the few files that are for it, and that the build compiles every source.

check_layers.py                prints every violation, ends with 1 if there is any
check_layers.py --self-test    shows that each rule catches its violation
"""

import functools
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent

# Folder (with all below it, unless these have a row too): the folders it may include. It may also
# include what they may, but for the ports in the folders of NEEDS_LEAVE.
BELOW = {
    "base": [],
    "platform": ["base"],
    "platform/simulated": ["platform"],
    "platform/windows": ["platform"],
    "common/err": ["base"],
    "common/logging": ["base"],
    "common/lang": ["base", "platform"],
    "common/util": ["common/err", "common/logging", "common/lang", "platform"],
    "common/ipc": ["common/util", "platform"],
    "common/sys": ["common/ipc", "platform"],
    "common/proc": ["common/sys", "platform"],
    "common/config": ["common/proc"],
    "handlers": ["common/config"],
    "toolbox": ["handlers"],
    "tool/io": ["toolbox", "platform/simulated", "platform/windows"],
    "tool/agent": ["tool/io"],
    "tool/cli": ["tool/io"],
    "tool/explain": ["tool/io"],
    "tool/machine": ["tool/cli", "tool/explain"],
    "tool/check": ["tool/agent", "tool/machine"],
    "tool/roundtrip": ["tool/agent", "tool/machine"],
    "tool/plan": ["tool/check", "tool/roundtrip"],
    "tool/commands": ["tool/plan"],
    "tool/fleet": ["tool/plan"],
    "tool": ["tool/commands", "tool/fleet"],
    "tests": ["tool"],
    "fuzz": ["tests"],
    "bench": ["tests"],
}
NEEDS_LEAVE = ("common", "handlers", "toolbox")

# Headers, or libraries by their folder, and the only folders or files that may include them.
LOCK_PORT = "platform/ICriticalSection.h"
USERS = [
    ([LOCK_PORT], ["common/lang", "platform", "tests"]),
    (["platform/ScopedPlatform.h"], ["platform/Platform.cpp", "tool", "tests", "fuzz", "bench"]),
    (["nlohmann"], ["platform/simulated", "tool", "tests", "fuzz"]),
    (["CLI"], ["tool/cli"]),
    (["gtest", "gmock"], ["tests"]),
    (["benchmark", "glib.h", "INIReader.h", "SimpleIni.h"], ["bench"]),
    (["sanitizer"], ["tests/scenario/SecretsTest.cpp"]),
    (["cxxabi.h"], ["common/util/ClassName.cpp"]),
    (["fcntl.h", "sys/stat.h"], ["tool/io/HostSystem_posix.cpp", "tool/io/HostSystem_windows.cpp"]),
    (["iconv.h", "unistd.h"], ["tool/io/HostSystem_posix.cpp"]),
    (["io.h", "shellapi.h"], ["tool/io/HostSystem_windows.cpp"]),
]
# Any other header with a folder or a suffix in its name belongs to some system.
SYSTEM_FOLDERS = ["platform/windows", "tests/contract/windows"]

# Code for one compiler or system, and the folders or files that may hold it.
SPECIAL = re.compile(
    r"^\s*#\s*(if|ifdef|ifndef|elif|pragma\s+(?!once))"
    r"|\b(asm|__(?!FILE__|LINE__|VA_ARGS__|cpp_|func__|has_include)\w+)\b"
)
SPECIAL_PLACES = [
    "bench",  # libraries that may be absent
    "common/sys/Wmi.h",
    "common/util/ClassName.cpp",
    "platform/windows/WindowsHeader.h",
    "tests/contract/windows",
    "tests/scenario/SecretsTest.cpp",
    "tool/cli/Completion.cpp",  # names of another shell's functions
]

INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]')


def is_in(path, places):
    return any((path + "/").startswith(place + "/") for place in places)


def folder_of(path):
    """The row of BELOW that `path` belongs to, or None."""
    parents = [str(parent) for parent in pathlib.PurePosixPath(path).parents]
    return next((parent for parent in parents if parent in BELOW), None)


@functools.cache
def reach(folder):
    """All that the folder may include."""
    rows = set(BELOW[folder])
    found = rows.union(*map(reach, rows), [folder])
    return found - {"platform"} | rows if is_in(folder, NEEDS_LEAVE) else found


def include_fault(path, quote, name):
    """What is wrong with including `name`, or None."""
    folder, target = folder_of(path), folder_of(name)
    is_own = quote == '"'
    if is_own and (not (ROOT / name).is_file() or ".." in name):
        return "is not written from the root"
    if is_own and target not in reach(folder):
        return f"runs against the direction: {folder} may not include {target}"
    if folder == "common/lang" and is_own and target == "platform":
        return None if name in (LOCK_PORT, "platform/IPlatform.h") else "is not the port of its lock"
    for headers, users in USERS:
        if name in headers or name.split("/")[0] in headers:
            return None if is_in(path, users + SYSTEM_FOLDERS) else f"is only for {users}"
    if is_own or not re.search("[/.]", name) or is_in(path, SYSTEM_FOLDERS):
        return None
    return "is a system header, which belongs in platform/windows"


@functools.cache
def listed(top):
    build = (ROOT / top / "CMakeLists.txt").read_text(encoding="utf-8")
    return set(re.findall(r"[\w./-]+", build))


def faults(path, text):
    """Everything that is wrong with a source."""
    if not folder_of(path):
        yield f"{path}:1: its folder has no place in the layers"
        return
    top, _, name = path.partition("/")
    if path.endswith(".cpp") and name not in listed(top):
        yield f"{path}:1: {top}/CMakeLists.txt does not list it"
    for number, line in enumerate(text.splitlines(), 1):
        include = INCLUDE.match(line)
        fault = include and include_fault(path, *include.groups())
        if fault:
            yield f"{path}:{number}: {include[2]} {fault}"
        if SPECIAL.search(line) and not is_in(path, SPECIAL_PLACES):
            yield f"{path}:{number}: is for one compiler or system: {line.strip()}"


# What breaks one rule each, and what must be said about it.
VIOLATIONS = [
    ("common/sys/Wmi.cpp", '#include "common/config/Event.h"', "may not include common/config"),
    ("common/config/ConfigBuilder.cpp", '#include "platform/IWmi.h"', "may not include platform"),
    ("platform/IWmi.h", '#include "common/err/GeneralError.h"', "may not include common/err"),
    ("common/lang/Lock.h", '#include "platform/IWmi.h"', "not the port of its lock"),
    ("common/sys/Wmi.cpp", '#include "platform/ScopedPlatform.h"', "is only for"),
    ("common/sys/Wmi.cpp", "#include <nlohmann/json.hpp>", "is only for"),
    ("tests/unit/SysTest.cpp", "  #  include <windows.h>", "system header"),
    ("common/sys/Wmi.cpp", '#include "Wmi.h"', "not written from the root"),
    ("common/sys/Wmi.cpp", "#pragma GCC poison x", "one compiler or system"),
    ("platform/IWmi.h", "[[maybe_unused]] int __attribute__((x)) y;", "one compiler or system"),
    ("common/other/Thing.h", "", "no place in the layers"),
    ("tests/ForgottenTest.cpp", "", "does not list it"),
]


def self_test():
    for path, text, expected in VIOLATIONS:
        found = list(faults(path, text))
        if len(found) != 1 or expected not in found[0]:
            yield f"{path}: {text}: expected '{expected}', got {found}"


def check():
    for top in sorted({folder.split("/")[0] for folder in BELOW}):
        for file in sorted(f for f in (ROOT / top).rglob("*") if f.suffix in (".cpp", ".h")):
            yield from faults(file.relative_to(ROOT).as_posix(), file.read_text(encoding="utf-8"))


def main():
    findings = list(self_test() if sys.argv[1:] == ["--self-test"] else check())
    print(*findings, sep="\n", end="\n" if findings else "")
    return 1 if findings else 0


if __name__ == "__main__":
    sys.exit(main())
