#!/usr/bin/python3
"""Runs the stories and the console blocks, and holds every JSON document that they print, and every
example machine, against its schema.

check_schemas.py TOOL...

TOOL is the program, with what comes before its arguments. Prints what stories.py prints, and each
fault with the command that printed the document; ends with 1 if there is any, and where a schema was
held against nothing.
"""

import json
import pathlib
import subprocess
import sys
import tempfile

import jsonschema

ROOT = pathlib.Path(__file__).resolve().parent.parent

KINDS = ["machine", "plan", "simulate", "check", "verify", "fleet"]
# What a value means, which the reader and the schema alike refuse; all else of the text is right.
ADAPTERS = {
    "mac_address": ["08-00-27-12-34-56", "080027123456", "08:00:27:12:34", "08:00:27:12:34:5G"],
    "location_information": ["0/3/0", "(0,3,0)"],
    "ip_addresses": [["10.0.0.5/24"], ["10.0.0.300"], ["10.0.0.010"], [" 10.0.0.5"], ["10.0.0"],
                     ["10.0.0.5."], ["fe80::1/64"]],
    "subnet_masks": [["/24"], ["256"], ["255.0.0"]],
    "gateways": [["gw"]],
    "dns_servers": [["10.0.0.1", "dns.example"]],
}
DOMAINS = {
    "ous": [["Sales/Europe"], ["OU=Sales"], ["=,DC=corp"], ["LDAP://OU=Sales,DC=corp,DC=example"]],
    "accounts": [[{"user": "CORP\\joiner"}], [{"user": "joiner@corp.example"}]],
    "computers": [[{"dn": "PC1.corp.example"}]],
}
REFUSED = [
    *({"adapters": [{name: value}]} for name, values in ADAPTERS.items() for value in values),
    *({"directory": {"domains": [{name: value}]}} for name, values in DOMAINS.items() for value in values),
    *({"persistent_routes": [{name: "10.1.0.0/16"}]} for name in ["destination", "mask", "next_hop"]),
    {"hosts": [{"address": "10.0.0.1/8"}]}, {"faults": [{"nth": 0}]}, {"faults": [{"error": 0}]},
]
ACCEPTED = [
    {"adapters": [{"mac_address": mac}]} for mac in [None, "", "08:00:27:12:34:56", "0a:0B:27:12:34:56:78:9a"]
] + [
    {"adapters": [{"ip_addresses": ["fe80::1%4", "::ffff:10.0.0.1", "255.249.199.0"], "subnet_masks": ["64", "255.0.0.0", "128"]}]},
    {"adapters": [{"location_information": ""}, {"index": 8, "setting_id": "8", "pnp_device_id": "8", "location_information": "Port_#0001"}]},
    {"directory": {"domains": [{"ous": ["ou=Sales,dc=corp,dc=example", "DC=corp"]}]}},
    {"faults": [{"nth": 1}, {"nth": None}]},
]
# Keeps what a command with --json prints, beside its arguments; the stories run it as the tool.
KEEPER = """#!/bin/sh
kept={kept}/$$
case " $* " in
  *" --json "*) printf '%s\\n' "$@" >$kept.arguments; {tool} "$@" >$kept.json; code=$?
                cat $kept.json; exit $code ;;
esac
exec {tool} "$@"
"""


def run_stories(tool, folder):
    """Their exit code; keeps the documents in `folder`."""
    keeper = folder / "keeper"
    keeper.write_text(KEEPER.format(kept=folder, tool=" ".join(tool)))
    keeper.chmod(0o755)
    return subprocess.call([ROOT / "scripts/stories.py", keeper])


def documents(folder):
    """The kind of each document, where it comes from, and its text."""
    for path in sorted(ROOT.glob("examples/*.machine.json")):
        yield "machine", path.name, path.read_text()
    for path in sorted(folder.glob("*.json")):
        arguments = path.with_suffix(".arguments").read_text().split("\n")
        kind = "machine" if arguments[0] == "capture" else arguments[0]
        yield kind, " ".join(arguments), path.read_text(errors="replace")


def main(tool):
    held = dict.fromkeys(KINDS, 0)
    validators = {}
    for kind in KINDS:
        schema = json.loads(subprocess.check_output([*tool, "schema", kind]))
        jsonschema.Draft202012Validator.check_schema(schema)
        validators[kind] = jsonschema.Draft202012Validator(schema)
    faults = 0
    for body, isRight in [(body, False) for body in REFUSED] + [(body, True) for body in ACCEPTED]:
        text = json.dumps({"schema": 1, **body})
        read = subprocess.run([*tool, "capture", "--machine", "-"], input=text.encode(), capture_output=True)
        allowed = validators["machine"].is_valid(json.loads(text))
        if (read.returncode == 0, allowed) != (isRight, isRight):
            faults += 1
            print(f"{text}: reader {read.returncode}, schema {allowed}")
    with tempfile.TemporaryDirectory() as folder:
        code = run_stories(tool, pathlib.Path(folder))
        for kind, source, text in documents(pathlib.Path(folder)):
            if kind not in KINDS or not text.strip() or "--sarif" in source:
                continue
            held[kind] += 1
            for fault in validators[kind].iter_errors(json.loads(text)):
                faults += 1
                print(f"{source}: {fault.json_path}: {fault.message[:300]}")
    unheld = [kind for kind in KINDS if not held[kind]]
    print(held, *(f"{kind}: no story prints one" for kind in unheld))
    return 1 if faults or unheld else code


if __name__ == "__main__":
    sys.exit(main([str(pathlib.Path(sys.argv[1]).resolve()), *sys.argv[2:]]))
