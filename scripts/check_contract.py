#!/usr/bin/env python3
"""Checks that the contract suite calls every operation of every port.

check_contract.py              prints every operation that tests/contract/PortContractTest.cpp omits
check_contract.py --self-test  shows that an omission is found

An operation whose name more than one port has counts as called where its receiver is named after the
port: registry.Close(...), machine.Files().Erase(...).
"""

import collections
import pathlib
import re
import sys

PORT = re.compile(r"^class I(\w+) \{(.*?)^\};", re.MULTILINE | re.DOTALL)
OPERATION = re.compile(r"^  virtual [^;=~]*?\b(\w+)\(", re.MULTILINE)


def omissions(headers, suite):
    operations = [(port, name) for header in headers for port, body in PORT.findall(header)
                  for name in OPERATION.findall(body) if port != "Platform"]
    owners = collections.Counter(name for _, name in operations)
    for port, name in operations:
        receiver = rf"\b(?i:{port})(?:\(\))?" if owners[name] > 1 else ""
        if not re.search(rf"{receiver}(?:\.|->){name}\(", suite):
            yield f"I{port}::{name} is never called"


def self_test():
    headers = ["class IDoor {\n  virtual ~IDoor() = default;\n  virtual bool Open(int key) = 0;\n"
               "  virtual void\n      Lock() = 0;\n};\n", "class IBox {\n  virtual bool Open() = 0;\n};\n"]
    found = list(omissions(headers, "machine.Box().Open(); x->Lock();"))
    return [] if found == ["IDoor::Open is never called"] else [f"found {found}"]


def main():
    root = pathlib.Path(__file__).resolve().parent.parent
    if sys.argv[1:] == ["--self-test"]:
        findings = self_test()
    else:
        headers = [path.read_text() for path in sorted((root / "platform").glob("I*.h"))]
        suite = (root / "tests/contract/PortContractTest.cpp").read_text()
        findings = list(omissions(headers, suite))
    print(*findings, sep="\n", end="\n" if findings else "")
    return 1 if findings else 0


if __name__ == "__main__":
    sys.exit(main())
