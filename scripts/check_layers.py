#!/usr/bin/env python3
"""Checks that includes run in the allowed directions (see docs/architecture.md), that code for one
compiler or system stays in the few files that are for it, and that the build compiles every source.

check_layers.py [ROOT]         prints every violation below ROOT, ends with 1 if there is any
check_layers.py --self-test    shows that each rule catches its violation
"""

import pathlib
import re
import sys
import tempfile

UTIL_LEVEL = ["base", "common/err", "common/logging", "common/lang"]
SYS_LEVEL = ["common/ipc", "common/util", *UTIL_LEVEL]
CONFIG_LEVEL = ["common/proc", "common/sys", *SYS_LEVEL]
HANDLER_LEVEL = ["common/config", *CONFIG_LEVEL]
PRODUCT_LEVEL = ["handlers", *HANDLER_LEVEL]
ADAPTERS = ["platform/simulated", "platform/windows"]
PROGRAM_LEVEL = ["toolbox", *PRODUCT_LEVEL, "platform", *ADAPTERS]
SUPPORT_ROOMS = ["tool/agent", "tool/cli", "tool/machine", "tool/io"]
READING_ROOMS = ["tool/check", "tool/roundtrip", *SUPPORT_ROOMS]
COMMAND_ROOMS = ["tool/plan", *READING_ROOMS]
EVERYTHING = [*PROGRAM_LEVEL, "tool", "tool/commands", *COMMAND_ROOMS]

# Folder (with all below it, unless these stand here too): the other folders it may include.
ALLOWED = {
    "base": [],
    "common/err": ["base"],
    "common/logging": ["base"],
    "common/lang": ["base", "platform"],
    "common/util": [*UTIL_LEVEL, "platform"],
    "common/ipc": ["common/util", *UTIL_LEVEL, "platform"],
    "common/sys": [*SYS_LEVEL, "platform"],
    "common/proc": ["common/sys", *SYS_LEVEL, "platform"],
    "common/config": CONFIG_LEVEL,
    "handlers": HANDLER_LEVEL,
    "toolbox": PRODUCT_LEVEL,
    "platform": ["base"],
    "platform/simulated": ["base", "platform"],
    "platform/windows": ["base", "platform"],
    "tool": [*PROGRAM_LEVEL, "tool/commands", *COMMAND_ROOMS],
    "tool/io": PROGRAM_LEVEL,
    "tool/agent": [*PROGRAM_LEVEL, "tool/io"],
    "tool/cli": [*PROGRAM_LEVEL, "tool/io"],
    "tool/machine": [*PROGRAM_LEVEL, "tool/cli", "tool/io"],
    "tool/check": [*PROGRAM_LEVEL, *SUPPORT_ROOMS],
    "tool/roundtrip": [*PROGRAM_LEVEL, *SUPPORT_ROOMS],
    "tool/plan": [*PROGRAM_LEVEL, *READING_ROOMS],
    "tool/commands": [*PROGRAM_LEVEL, *COMMAND_ROOMS],
    "tests": EVERYTHING,
    "fuzz": [*EVERYTHING, "tests"],
    "bench": [*EVERYTHING, "tests"],
}
PRODUCT = ("base", "common", "handlers", "toolbox", "platform")
HEADER_BARRED_FROM_PRODUCT = "platform/ScopedPlatform.h"  # but for its own body
SCOPED_PLATFORM_BODY = "platform/Platform.cpp"
LOCK_PORT = "platform/ICriticalSection.h"  # of the ports, common/lang knows this one, and alone
LOCK_HEADERS = [LOCK_PORT, "platform/IPlatform.h"]

# Libraries, by the folders that may use them.
LIBRARIES = {
    "nlohmann": ["platform/simulated", "tool", "tests", "fuzz"],
    "CLI": ["tool/cli"],
    "gtest": ["tests"],
    "gmock": ["tests"],
    "benchmark": ["bench"],
}
# Every other header with a folder or a suffix in its name belongs to some system.
SYSTEM_FOLDERS = ("platform/windows", "tests/contract/windows")
SYSTEM_HEADERS = {
    "bench/CompositeBench.cpp": ["glib.h"],
    "bench/Readers.cpp": ["INIReader.h", "SimpleIni.h", "glib.h"],
    "tests/scenario/SecretsTest.cpp": ["sanitizer/allocator_interface.h"],
    "common/util/ClassName.cpp": ["cxxabi.h"],
    "tool/io/HostSystem_posix.cpp": ["fcntl.h", "iconv.h", "sys/stat.h", "unistd.h"],
    "tool/io/HostSystem_windows.cpp": ["fcntl.h", "io.h", "shellapi.h", "sys/stat.h"],
}

# Code for one compiler or system, and the files that may hold it.
SPECIAL = re.compile(
    r"^\s*#\s*(if|ifdef|ifndef|elif|pragma\s+(?!once))"
    r"|\b(asm|__(?!FILE__|LINE__|VA_ARGS__|cpp_|func__|has_include)\w+)\b"
)
SPECIAL_FILES = [  # a folder stands for all that lies in it
    "bench",  # libraries that may be absent
    "common/sys/Wmi.h",
    "common/util/ClassName.cpp",
    "platform/windows/WindowsHeader.h",
    "tests/contract/windows",
    "tests/scenario/SecretsTest.cpp",
    "tool/cli/Completion.cpp",  # names of another shell's functions
]

INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]')


def folder_of(path):
    """The entry of ALLOWED that `path` belongs to, or None."""
    parents = [str(parent) for parent in pathlib.PurePosixPath(path).parents]
    return next((parent for parent in parents if parent in ALLOWED), None)


def is_below(path, folders):
    return any(path.startswith(folder + "/") for folder in folders)


def own_fault(root, path, folder, name):
    """What is wrong with including one of the project's own headers, or None."""
    if not (root / name).is_file() or ".." in name:
        return "is not written from the root"
    target = folder_of(name)
    if target != folder and target not in ALLOWED[folder]:
        return f"runs against the direction: {folder} may not include {target}"
    if name == HEADER_BARRED_FROM_PRODUCT and is_below(path, PRODUCT):
        if path != SCOPED_PLATFORM_BODY:
            return "is for tests and the tool, not for the product"
    if name == LOCK_PORT and not is_below(path, ("common/lang", "platform", "tests")):
        return "is for common/lang alone"
    if folder == "common/lang" and target == "platform" and name not in LOCK_HEADERS:
        return f"runs against the direction: {folder} may include the port of its lock only"
    return None


def system_fault(path, name):
    """What is wrong with including a header that is not the project's own, or None."""
    library = name.split("/")[0]
    if library in LIBRARIES:
        return None if is_below(path, LIBRARIES[library]) else "is a library it must not use"
    is_standard = "/" not in name and "." not in name
    if is_standard or is_below(path, SYSTEM_FOLDERS) or name in SYSTEM_HEADERS.get(path, []):
        return None
    return "is a system header, which belongs in platform/windows"


def check_file(root, path):
    folder = folder_of(path)
    lines = (root / path).read_text(encoding="utf-8").splitlines()
    includes = [(i, *m.groups()) for i, m in enumerate(map(INCLUDE.match, lines), 1) if m]
    for line, quote, name in includes:
        is_own = quote == '"'
        fault = own_fault(root, path, folder, name) if is_own else system_fault(path, name)
        if fault:
            yield f"{path}:{line}: {name} {fault}"
    for line, text in enumerate(lines, 1):
        if SPECIAL.search(text) and not is_below(path + "/", SPECIAL_FILES):
            yield f"{path}:{line}: is for one compiler or system: {text.strip()}"
    own_header = path.removesuffix(".cpp") + ".h"
    if path.endswith(".cpp") and (root / own_header).is_file():
        if not includes or includes[0][2] != own_header:
            yield f"{path}:1: its own header does not come first"


def check_folder(root, top):
    build = (root / top / "CMakeLists.txt").read_text(encoding="utf-8")
    listed = set(re.findall(r"[\w./-]+", build))
    for file in sorted(f for f in (root / top).rglob("*") if f.suffix in (".cpp", ".h")):
        path = file.relative_to(root).as_posix()
        if folder_of(path):
            yield from check_file(root, path)
        else:
            yield f"{path}:1: its folder has no place in the layers"
        if file.suffix == ".cpp" and file.relative_to(root / top).as_posix() not in listed:
            yield f"{path}:1: {top}/CMakeLists.txt does not list it"


def check(root):
    for top in sorted({folder.split("/")[0] for folder in ALLOWED}):
        yield from check_folder(root, top)


# A file that breaks one rule each, and what must be said about it.
VIOLATIONS = [
    ("common/sys/Wmi.cpp", '#include "common/config/Rule.h"', "may not include common/config"),
    ("common/config/Queue.cpp", '#include "platform/IWmi.h"', "may not include platform"),
    ("common/util/Text.cpp", '#include "common/ipc/Address.h"', "may not include common/ipc"),
    ("common/sys/Wmi.cpp", '#include "platform/windows/Com.h"', "may not include platform/windows"),
    ("platform/windows/Port.cpp", '#include "common/err/Error.h"', "may not include common/err"),
    ("platform/IWmi.h", '#include "common/err/Error.h"', "may not include common/err"),
    ("base/Text.h", '#include "common/err/Error.h"', "may not include common/err"),
    ("tool/main.cpp", '#include "tests/Support.h"', "may not include tests"),
    ("tool/check/Check.cpp", '#include "tool/plan/Plan.h"', "may not include tool/plan"),
    ("handlers/Handler.cpp", '#include "platform/ScopedPlatform.h"', "may not include platform"),
    ("common/lang/Lock.h", '#include "platform/IWmi.h"', "the port of its lock only"),
    ("common/sys/Wmi.cpp", '#include "platform/ICriticalSection.h"', "for common/lang alone"),
    ("common/sys/Wmi.cpp", '#include "platform/ScopedPlatform.h"', "not for the product"),
    ("common/sys/Wmi.cpp", "#include <windows.h>", "system header"),
    ("tests/SomeTest.cpp", "  #  include <sys/stat.h>", "system header"),
    ("common/sys/Wmi.cpp", "#include <nlohmann/json.hpp>", "must not use"),
    ("tool/check/Check.cpp", "#include <CLI/CLI.hpp>", "must not use"),
    ("common/sys/Wmi.cpp", '#include "Wmi.h"', "not written from the root"),
    ("common/sys/Wmi.cpp", '#include "common/sys/../err/Error.h"', "not written from the root"),
    ("common/err/Error.cpp", "#include <string>", "does not come first"),
    ("common/sys/Wmi.cpp", "#if defined(_WIN32)", "one compiler or system"),
    ("common/sys/Wmi.cpp", "#pragma GCC poison x", "one compiler or system"),
    ("tests/SomeTest.cpp", "int x = __builtin_clz(1);", "one compiler or system"),
    ("platform/IWmi.h", "[[maybe_unused]] int __attribute__((x)) y;", "one compiler or system"),
    ("common/other/Thing.h", "", "no place in the layers"),
    ("tests/ForgottenTest.cpp", "", "does not list it"),
]
LAWFUL = {
    "common/config/Rule.h": '#include "common/err/Error.h"',
    "common/err/Error.cpp": '#include "common/err/Error.h"\n\n#include <string>',
    "common/err/Error.h": "#include <cstdint>",
    "common/err/Site.h": "#pragma once\nconst char* file = __FILE__;",
    "common/util/ClassName.cpp": "#if defined(__GNUC__)",
    "common/ipc/Address.h": '#include "platform/IWmi.h"',
    "common/lang/CriticalSection.h": '#include "platform/ICriticalSection.h"',
    "platform/ICriticalSection.h": "",
    "platform/IWmi.h": "",
    "platform/Platform.cpp": '#include "platform/ScopedPlatform.h"',
    "platform/ScopedPlatform.h": "",
    "platform/windows/Com.h": '#include <windows.h>\n#include "platform/IWmi.h"',
    "base/Text.h": "#include <string>",
    "platform/simulated/Port.cpp": '#include "base/Text.h"',
    "tool/plan/Plan.h": "",
    "tests/Support.h": '#include <gtest/gtest.h>\n#include "platform/windows/Com.h"',
}


def findings_in(files):
    with tempfile.TemporaryDirectory() as folder:
        root = pathlib.Path(folder)
        for top in {folder.split("/")[0] for folder in ALLOWED}:
            (root / top).mkdir()
            listed = [path.removeprefix(top + "/") for path in files if "Forgotten" not in path]
            (root / top / "CMakeLists.txt").write_text("\n".join(listed), encoding="utf-8")
        for path, text in files.items():
            (root / path).parent.mkdir(parents=True, exist_ok=True)
            (root / path).write_text(text, encoding="utf-8")
        return list(check(root))


def self_test():
    wrong = [f"lawful: {finding}" for finding in findings_in(LAWFUL)]
    for path, text, expected in VIOLATIONS:
        findings = findings_in({**LAWFUL, path: text})
        if len(findings) != 1 or not findings[0].startswith(path) or expected not in findings[0]:
            wrong.append(f"{path}: {text}: expected '{expected}', got {findings}")
    return wrong


def main():
    arguments = sys.argv[1:]
    if arguments == ["--self-test"]:
        findings = self_test()
    else:
        findings = list(check(pathlib.Path(arguments[0] if arguments else ".")))
    print(*findings, sep="\n", end="\n" if findings else "")
    return 1 if findings else 0


if __name__ == "__main__":
    sys.exit(main())
