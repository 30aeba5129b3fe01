What a plan shows is what the run does, also when two sections name one adapter; a plan changes nothing.

-- flagged.json --
{"registry": [{}], "files": [{"path": "C:\\restore.cfg", "text": "[Networking]\nComputerName=B\n"},
  {"path": "C:\\tarvo.cfg", "text": "[Global]\nConfig=Restore\n"}]}
-- restore.cfg --
[Global]
Config=restore
[TCP/IP]
DHCP=False
-- try --
# try FILE [OPTION...]: the commands of the plan that the run does, when they are the same
import json, subprocess, sys
told = [json.loads(subprocess.run(["orvanta-config", command, "--json", *sys.argv[1:]], stdout=subprocess.PIPE).stdout)
        for command in ("plan", "simulate")]
planned = []
for command in told[0]["commands"][: told[0]["runs_now"]]:
    for each in [command] + [inner for inner in command.get("commands", []) if inner["needed"]]:
        planned.append("%s (%s)" % (each["class"], each["description"]))
run = [line["text"].split(" execute class ")[1] for line in told[1]["log"] if " execute class " in line["text"]]
print(len(run), "commands" if run == planned else [planned, run])
-- sections --
# sections FIRST SECOND: three sections for two adapters, which ask for these suffixes
for section in "TCP/IP 080027123456 $1" "NicEntry1 080027654321 $2" "NicEntry2 080027123456 a.example"; do
  set -- $section
  printf '[%s]\nMACAddress=%s\nDHCP=False\nAddress=10.20.0.15\nNetmask=255.255.0.0\nGateway=10.20.0.1\n' $1 $2
  printf 'SetDNSInfo=True\nDNS-SuffixSearchOrder=%s\n' $3
done
-- console --
$ for e in office-pc laptop server; do python3 try examples/$e.cfg --machine examples/$e.machine.json; done | tr '\n' ','  --> 8 commands,6 commands,10 commands,
$ for e in first-boot office-pc server; do python3 try examples/$e.cfg; done | tr '\n' ','  --> 1 commands,8 commands,9 commands,
$ for a in '' a.example b.example; do for b in '' a.example b.example; do sh sections "$a" $b >n.cfg; python3 try n.cfg; done; done | tr '\n' ','
10 commands,10 commands,11 commands,10 commands,10 commands,12 commands,11 commands,11 commands,11 commands,
$ orvanta-config plan restore.cfg --machine flagged.json --save-machine after.json | sed '1,/^$/d'
A restore file is pending: it takes the place of this one and is planned.

Runs now
  1  EnableNetworking  registry value NetworkDisabled
  2  ChangeCompName    Name=B {User=}  [Networking] line 2
                       TEMPLATE -> B
  -- restart 1, for the new name: the run stops here --
Pauses
  3 s now for the networking services
$ python3 -c 'import json; a, b = json.load(open("flagged.json")), json.load(open("after.json")); print([name for name in a if a[name] != b[name]], b["registry"], b["files"])'
['registry', 'files'] [{'key': 'HKEY_LOCAL_MACHINE\\Software\\Orvanta\\Client Service', 'name': 'NetworkDisabled', 'type': 'REG_DWORD', 'data': 1}] [{'path': 'C:\\restore.cfg', 'text': '[Networking]\nComputerName=B\n'}, {'path': 'C:\\tarvo.cfg', 'text': '[Global]\nConfig=restore\n[TCP/IP]\nDHCP=False\n'}]
