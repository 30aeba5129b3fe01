#!/usr/bin/env python3
"""Prints every operation of a port that tests/contract/PortContractTest.cpp does not call, and ends
with 1 when there is one.

An operation whose name more than one port has counts as called where its receiver is named after the
port: registry.Close(...), machine.Files().Erase(...).
"""

import collections
import pathlib
import re
import sys

PORT = re.compile(r"^class I(\w+) \{(.*?)^\};", re.MULTILINE | re.DOTALL)
OPERATION = re.compile(r"^  virtual [^;=~]*?\b(\w+)\(", re.MULTILINE)


def main():
    root = pathlib.Path(__file__).resolve().parent.parent
    headers = "".join(path.read_text() for path in sorted((root / "platform").glob("I*.h")))
    suite = (root / "tests/contract/PortContractTest.cpp").read_text()
    operations = [(port, name) for port, body in PORT.findall(headers)
                  for name in OPERATION.findall(body) if port != "Platform"]
    owners = collections.Counter(name for _, name in operations)
    omitted = [f"I{port}::{name} is never called" for port, name in operations if not re.search(
        (rf"\b(?i:{port})(?:\(\))?" if owners[name] > 1 else "") + rf"(?:\.|->){name}\(", suite)]
    for line in omitted:
        print(line)
    return 1 if omitted or not operations else 0


if __name__ == "__main__":
    sys.exit(main())
