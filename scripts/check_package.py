#!/usr/bin/env python3
"""Packs a Windows build twice and checks the package: check_package.py BUILD_FOLDER VERSION

The same bytes both times; programs that import from the system only, hardened, with their version
and without symbols or the name of the source folder; the plug-in with one undecorated export and at
most 1 MB; symbols that fit; documents whose links lead somewhere; the terms of what is linked in.
Prints every fault and ends with 1 when there is one."""

import pathlib
import posixpath
import re
import struct
import subprocess
import sys
import tempfile
import zipfile

SOURCES = pathlib.Path(__file__).resolve().parent.parent
EXPORTS = {".dll": ["GetToolboxAPI"], ".exe": []}
MAX_DLL_BYTES = 1024 * 1024
# What every supported Windows brings along; the compiler's runtime is linked in.
SYSTEM_LIBRARIES = {
    "activeds.dll", "advapi32.dll", "kernel32.dll", "msvcrt.dll", "netapi32.dll", "ole32.dll",
    "oleaut32.dll", "secur32.dll", "shell32.dll", "user32.dll", "userenv.dll", "ws2_32.dll",
}
FLAGS = ["DYNAMIC_BASE", "HIGH_ENTROPY_VA", "NX_COMPAT"]
# The version resource: its key, padding, the signature of the numbers, then theirs.
VERSION = re.compile("VS_VERSION_INFO\0".encode("utf-16-le") + b"\0{0,3}\xbd\x04\xef\xfe.{4}(.{8})",
                     re.DOTALL)
# A sentence that nothing but the right terms holds.
TERMS = {
    "CLI11.txt": "University of Cincinnati",
    "GPL-3.txt": "GNU GENERAL PUBLIC LICENSE",
    "gcc-runtime.txt": "GCC RUNTIME LIBRARY EXCEPTION",
    "mingw-w64.txt": "mingw-w64-crt/crt/",
    "nlohmann-json.txt": "Niels Lohmann",
}
LINK = re.compile(r"\]\(([^)#:]+)\)")


def objdump(option, path):
    command = ["x86_64-w64-mingw32-objdump", option, path]
    return subprocess.run(command, check=True, capture_output=True, text=True).stdout


def header_faults(headers, exports):
    """Yields what is wrong in the text that `objdump -p` prints for a program."""
    names = re.search(r"^\[Ordinal/Name Pointer\] Table.*\n((?:\t\[.*\n)*)", headers, re.M)
    found = re.findall(r"(\S+)$", names[1], re.M) if names else []
    # An export without a name appears in the address table only.
    addresses = re.search(r"^\tExport Address Table\s+([0-9a-f]+)$", headers, re.M)
    if found != exports or int(addresses[1] if addresses else "0", 16) != len(exports):
        yield f"exports {found} instead of {exports}, or one without a name"
    imports = {name.lower() for name in re.findall(r"^\tDLL Name: (.+)$", headers, re.M)}
    if not imports or imports - SYSTEM_LIBRARIES:
        yield f"imports {imports - SYSTEM_LIBRARIES or 'nothing'}"
    for flag in FLAGS:
        if not re.search(rf"^\s+{flag}$", headers, re.M):
            yield f"header flag {flag} is missing"
    if re.search(r"^\s+relocations stripped$", headers, re.M):
        yield "relocations are stripped, so it cannot be moved in memory"


def program_faults(program, version):
    content = program.read_bytes()
    resource = VERSION.search(content)
    minor, major, build = struct.unpack("<HHxxH", resource[1]) if resource else (0, 0, 0)
    if f"{major}.{minor}.{build}" != version:
        yield f"version {major}.{minor}.{build} instead of {version}"
    if program.suffix == ".dll" and len(content) > MAX_DLL_BYTES:
        yield f"{len(content)} bytes, more than {MAX_DLL_BYTES}"
    if str(SOURCES).encode() in content:
        yield f"holds the name of the folder {SOURCES}"
    yield from header_faults(objdump("-p", program), EXPORTS[program.suffix])
    if "no symbols" not in objdump("-t", program):
        yield "carries symbols"
    symbols = objdump("-h", program.parent / "symbols" / f"{program.name}.debug")
    code = re.compile(r"^ +\d+ \.text +(\w+) +(\w+)", re.M)
    if code.search(symbols)[0] != code.search(objdump("-h", program))[0]:
        yield "has symbols that do not fit"
    if ".debug_line" not in symbols:
        yield "has symbols that know no lines"


def package_faults(folder, version):
    programs = sorted(folder.glob("*.dll")) + sorted(folder.glob("*.exe"))
    names = [program.name for program in programs]
    if names != [f"orvanta-config-{version}.X64.dll", "orvanta-config.exe"]:
        yield f"holds the programs {names}"
    for program in programs:
        yield from (f"{program.name} {fault}" for fault in program_faults(program, version))
    for document in folder.rglob("*.md"):
        for link in LINK.findall(document.read_text(encoding="utf-8")):
            if not pathlib.Path(posixpath.normpath((document.parent / link).as_posix())).exists():
                yield f"{document.relative_to(folder)} leads to {link}, which is not packed"
    for name, sentence in TERMS.items():
        licence = folder / "licences" / name
        if not licence.is_file() or sentence not in licence.read_text(encoding="utf-8"):
            yield f"licences/{name} is missing or holds other terms"


def check(build, version, scratch):
    name = f"orvanta-config-{version}"
    packages = [scratch / number / f"{name}.zip" for number in ("first", "second")]
    for package in packages:
        subprocess.run([SOURCES / "scripts/package.py", build, package], check=True)
    if packages[0].read_bytes() != packages[1].read_bytes():
        yield "packing twice gave other bytes"
    with zipfile.ZipFile(packages[0]) as package:
        if {entry.date_time for entry in package.infolist()} != {(1980, 1, 1, 0, 0, 0)}:
            yield "its files have times of their own"
        package.extractall(scratch)
    yield from package_faults(scratch / name, version)


def main():
    with tempfile.TemporaryDirectory() as scratch:
        faults = list(check(*sys.argv[1:], pathlib.Path(scratch)))
    print(*faults, sep="\n", end="\n" if faults else "")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
