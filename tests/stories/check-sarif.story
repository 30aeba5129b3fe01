SARIF for code-review tools: rules, places as file URIs, related places, fixes.

-- x/1.cfg --
[Networking]
ComputerName=PC-1
-- x/2.cfg --
[Networking]
ComputerName=PC-1
-- try --
import json, os, sys
told = json.load(sys.stdin)
run = told["runs"][0]
rules = run["tool"]["driver"].pop("rules")
print(told["version"], run["columnKind"], run["tool"])
for result in run["results"]:
    rule = rules[result["ruleIndex"]]
    print(rule["id"] == result["ruleId"], rule["defaultConfiguration"]["level"] == result["level"], rule["shortDescription"])
    print(json.dumps(result).replace(os.getcwd(), "/FOLDER"))
-- apply --
import json  # makes the fixes of a SARIF report in f.cfg, from the end
text = open("f.cfg", "rb").read().decode("cp1252")
mark = "\xef\xbb\xbf"  # counts in no column
for result in reversed(json.load(open("s"))["runs"][0]["results"]):
    edit = result["fixes"][0]["artifactChanges"][0]["replacements"][0]
    region = edit["deletedRegion"]
    starts = [len(mark)] + [i + 1 for i, c in enumerate(text) if c == "\n"]
    place = lambda end: starts[region[end + "Line"] - 1] + region[end + "Column"] - 1
    begin, end = (0, region["byteLength"]) if "byteLength" in region else (place("start"), place("end"))
    text = text[:begin] + edit.get("insertedContent", {"text": ""})["text"] + text[end:]
open("f.cfg", "wb").write(text.encode("cp1252"))
-- console --
$ mkdir 'a b'; printf '[TCP/IP]\nDHCP=No\nPCIBus=1\n' >'a b/50% #1.cfg'; printf '' >'a b/empty.cfg'
$ orvanta-config check 'a b' --sarif | python3 try
2.1.0 unicodeCodePoints {'driver': {'name': 'orvanta-config', 'version': '6.8.378'}}
True True {'text': 'a value is neither True nor False'}
{"ruleId": "C213", "ruleIndex": 43, "level": "error", "message": {"text": "\"No\" is neither True nor False and is read as True; write True or False"}, "locations": [{"physicalLocation": {"artifactLocation": {"uri": "a%20b/50%25%20%231.cfg"}, "region": {"startLine": 2, "startColumn": 6, "endColumn": 8}}}]}
True True {'text': 'a PCI location is incomplete and is not used'}
{"ruleId": "C211", "ruleIndex": 41, "level": "warning", "message": {"text": "PCIDevice is missing, so the location is not used; give PCIBus, PCIDevice and PCIFunction together, or none of them"}, "locations": [{"physicalLocation": {"artifactLocation": {"uri": "a%20b/50%25%20%231.cfg"}, "region": {"startLine": 3, "startColumn": 8, "endColumn": 9}}}]}
True True {'text': 'the file is empty'}
{"ruleId": "C002", "ruleIndex": 1, "level": "error", "message": {"text": "the file is empty; an empty file fails the run with code 3; write a section, or remove the file"}, "locations": [{"physicalLocation": {"artifactLocation": {"uri": "a%20b/empty.cfg"}}}]}
$ orvanta-config check "$PWD/x" --sarif | python3 try
2.1.0 unicodeCodePoints {'driver': {'name': 'orvanta-config', 'version': '6.8.378'}}
True True {'text': 'two files give the same computer name'}
{"ruleId": "C401", "ruleIndex": 86, "level": "error", "message": {"text": "computer name \"PC-1\" is also given in /FOLDER/x/1.cfg:2; give every computer a name of its own"}, "locations": [{"physicalLocation": {"artifactLocation": {"uri": "file:///FOLDER/x/2.cfg"}, "region": {"startLine": 2, "startColumn": 14, "endColumn": 18}}}], "relatedLocations": [{"physicalLocation": {"artifactLocation": {"uri": "file:///FOLDER/x/1.cfg"}, "region": {"startLine": 2, "startColumn": 14, "endColumn": 18}}}]}
$ printf '\357\273\277[TCP/IP]\r\nDHCP=False\r\nAddress=10.0.0.5 ; K\366ln\r\nNetmask=/24\r\nGatway=10.0.0.1' >f.cfg; cp f.cfg f0; orvanta-config check f.cfg --sarif >s; python3 apply; mv f.cfg f1; cp f0 f.cfg; orvanta-config check f.cfg --fix --write; cmp f.cfg f1
1 file checked: nothing found
