#!/usr/bin/env python3
"""Packs a Windows build twice and checks the package: check_package.py BUILD_FOLDER VERSION

The same bytes both times, programs without symbols, symbols that fit them, documents whose links
lead somewhere, and the terms of what is linked in. Prints every fault and ends with 1 when there is
one."""

import argparse
import pathlib
import posixpath
import re
import subprocess
import sys
import tempfile
import zipfile

TOOLS = pathlib.Path(__file__).resolve().parent
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


def code_section(path):
    """Where the code of a program begins and how long it is."""
    return re.search(r"^ +\d+ \.text +(\w+) +(\w+)", objdump("-h", path), re.M).groups()


def program_faults(folder, program):
    symbols = folder / "symbols" / f"{program.name}.debug"
    if "no symbols" not in objdump("-t", program):
        yield f"{program.name} carries symbols"
    if not symbols.is_file():
        yield f"{program.name} has no symbols beside it"
    elif code_section(program) != code_section(symbols):
        yield f"{symbols.name} does not fit its program"
    elif ".debug_line" not in objdump("-h", symbols):
        yield f"{symbols.name} knows no lines"


def document_faults(folder, document):
    for link in LINK.findall(document.read_text(encoding="utf-8")):
        target = posixpath.normpath((document.parent / link).as_posix())
        if not pathlib.Path(target).exists():
            yield f"{document.relative_to(folder)} leads to {link}, which is not packed"


def package_faults(folder, version):
    programs = sorted(folder.glob("*.dll")) + sorted(folder.glob("*.exe"))
    names = [program.name for program in programs]
    if names != [f"orvanta-config-{version}.X64.dll", "orvanta-config.exe"]:
        yield f"holds the programs {names}"
    for program in programs:
        yield from program_faults(folder, program)
    for document in folder.rglob("*.md"):
        yield from document_faults(folder, document)
    for name, sentence in TERMS.items():
        licence = folder / "licences" / name
        if not licence.is_file() or sentence not in licence.read_text(encoding="utf-8"):
            yield f"licences/{name} is missing or holds other terms"


def check(build, version, scratch):
    name = f"orvanta-config-{version}"
    packages = [scratch / number / f"{name}.zip" for number in ("first", "second")]
    for package in packages:
        subprocess.run([sys.executable, TOOLS / "package.py", build, package], check=True)
    if packages[0].read_bytes() != packages[1].read_bytes():
        yield "packing twice gave other bytes"
    with zipfile.ZipFile(packages[0]) as package:
        if {entry.date_time for entry in package.infolist()} != {(1980, 1, 1, 0, 0, 0)}:
            yield "its files have times of their own"
        package.extractall(scratch)
    yield from package_faults(scratch / name, version)


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("build", type=pathlib.Path)
    parser.add_argument("version")
    arguments = parser.parse_args()
    with tempfile.TemporaryDirectory() as scratch:
        faults = list(check(arguments.build, arguments.version, pathlib.Path(scratch)))
    for fault in faults:
        print(f"package: {fault}", file=sys.stderr)
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
