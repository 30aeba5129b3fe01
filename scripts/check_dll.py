#!/usr/bin/env python3
"""Checks a built plug-in DLL: its one undecorated export, imports from the system only, the header
flags that harden it, its version and its size, and that it names no folder of the computer that
built it. Prints every fault and ends with 1 when there is one."""

import argparse
import pathlib
import re
import struct
import subprocess
import sys

EXPORTS = ["GetToolboxAPI"]
# What every supported Windows brings along; the compiler's runtime is linked in.
SYSTEM_LIBRARIES = {
    "activeds.dll", "advapi32.dll", "kernel32.dll", "msvcrt.dll", "netapi32.dll", "ole32.dll",
    "oleaut32.dll", "secur32.dll", "user32.dll", "userenv.dll", "ws2_32.dll",
}
FLAGS = ["DYNAMIC_BASE", "HIGH_ENTROPY_VA", "NX_COMPAT"]
MAX_BYTES = 1024 * 1024
# The version resource: its key, and behind it the numbers, aligned, after their own signature.
VERSION_KEY = "VS_VERSION_INFO\0".encode("utf-16-le")
VERSION_SIGNATURE = struct.pack("<I", 0xFEEF04BD)


def file_version(content):
    """The file version that the properties of a file show, or None when it has none."""
    key = content.find(VERSION_KEY)
    start = content.find(VERSION_SIGNATURE, key)
    if key < 0 or not 0 <= start - key - len(VERSION_KEY) < 4:
        return None
    high, low = struct.unpack_from("<II", content, start + 8)
    return ".".join(str(number) for number in (high >> 16, high & 0xFFFF, low >> 16, low & 0xFFFF))


def content_faults(content, version, folder):
    found = file_version(content)
    if found != f"{version}.0":
        yield f"version {found} instead of {version}.0"
    if len(content) > MAX_BYTES:
        yield f"{len(content)} bytes, more than {MAX_BYTES}"
    if folder.encode() in content:
        yield f"holds the name of the folder {folder}"


def header_faults(headers):
    """Yields what is wrong in the text that `objdump -p` prints for a DLL."""
    names = re.search(r"^\[Ordinal/Name Pointer\] Table.*\n((?:\t\[.*\n)*)", headers, re.M)
    exports = re.findall(r"(\S+)$", names[1], re.M) if names else []
    if exports != EXPORTS:
        yield f"exports {exports} instead of {EXPORTS}"
    # An export without a name stands in the address table alone.
    addresses = re.search(r"^\tExport Address Table\s+([0-9a-f]+)$", headers, re.M)
    if addresses and int(addresses[1], 16) != len(exports):
        yield f"{int(addresses[1], 16)} export addresses for {len(exports)} names"
    imports = re.findall(r"^\tDLL Name: (.+)$", headers, re.M)
    if not imports:
        yield "no imports: not a DLL that objdump understands"
    for library in imports:
        if library.lower() not in SYSTEM_LIBRARIES:
            yield f"imports {library}"
    for flag in FLAGS:
        if not re.search(rf"^\s+{flag}$", headers, re.M):
            yield f"header flag {flag} is missing"
    if re.search(r"^\s+relocations stripped$", headers, re.M):
        yield "relocations are stripped, so it cannot be moved in memory"


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("dll", type=pathlib.Path)
    parser.add_argument("--version", required=True, help="what it must say it is")
    parser.add_argument("--folder", required=True, help="where its sources lie")
    parser.add_argument("--objdump", default="x86_64-w64-mingw32-objdump")
    arguments = parser.parse_args()
    headers = subprocess.run([arguments.objdump, "-p", arguments.dll], check=True,
                             capture_output=True, text=True).stdout
    found = [
        *header_faults(headers),
        *content_faults(arguments.dll.read_bytes(), arguments.version, arguments.folder),
    ]
    for fault in found:
        print(f"{arguments.dll}: {fault}", file=sys.stderr)
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
