#!/usr/bin/env python3
"""Packs what is handed out for Windows: package.py BUILD_FOLDER ZIP

The plug-in and the tool out of BUILD_FOLDER, their symbols, the documents and examples, and the
licences of everything that is linked in. One source packs to the same bytes every time.
"""

import pathlib
import sys
import zipfile

SOURCES = pathlib.Path(__file__).resolve().parent.parent
DOCUMENTS = ["CONTRIBUTING.md", "README.md", "docs/*.md", "examples/*"]
# Of the libraries inside the programs, by the name under which their terms are packed. The plug-in
# holds the first two, the tool all.
LICENCES = {
    "mingw-w64": "/usr/share/doc/mingw-w64-x86-64-dev/copyright",
    "gcc-runtime": "/usr/share/doc/gcc-mingw-w64-x86-64-win32-runtime/copyright",
    "GPL-3": "/usr/share/common-licenses/GPL-3",  # which the terms of gcc-runtime refer to
    "nlohmann-json": "/usr/share/doc/nlohmann-json3-dev/copyright",
    "CLI11": "/usr/share/doc/libcli11-dev/copyright",
}
FIRST_DAY_OF_ZIP = (1980, 1, 1, 0, 0, 0)


def contents(build, top):
    """The files to pack, by their names in the package."""
    packed = {f"licences/{name}.txt": pathlib.Path(path) for name, path in LICENCES.items()}
    for program in (f"{top}.X64.dll", "orvanta-config.exe"):
        packed[program] = build / program
        packed[f"symbols/{program}.debug"] = build / f"{program}.debug"
    for pattern in DOCUMENTS:
        for path in SOURCES.glob(pattern):
            packed[path.relative_to(SOURCES).as_posix()] = path
    return packed


def main():
    build, target = map(pathlib.Path, sys.argv[1:])
    top = target.stem  # orvanta-config-6.8.378
    files = contents(build, top)
    missing = [str(path) for path in files.values() if not path.is_file()]
    if missing:
        print("package.py: these are missing; `make package` builds and installs them:",
              *missing, sep="\n  ", file=sys.stderr)
        return 1
    target.parent.mkdir(parents=True, exist_ok=True)
    with zipfile.ZipFile(target, "w", zipfile.ZIP_DEFLATED, compresslevel=9) as package:
        for name, path in sorted(files.items()):
            entry = zipfile.ZipInfo(f"{top}/{name}", FIRST_DAY_OF_ZIP)
            entry.compress_type = zipfile.ZIP_DEFLATED
            entry.create_system = 3  # Unix, whichever system packs
            entry.external_attr = 0o644 << 16
            package.writestr(entry, path.read_bytes())
    print(f"{target}: {len(files)} files, {target.stat().st_size} bytes")
    return 0


if __name__ == "__main__":
    sys.exit(main())
