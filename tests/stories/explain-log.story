A log tells the story of each message, among the lines of others and wherever it begins and ends.

-- pc.cfg --
[Networking]
ComputerName=PC-1
[TCP/IP]
DHCP=False
Address=10.0.0.5
Netmask=255.255.255.0
Gateway=10.9.9.9
-- open.cfg --
[Networking
-- dead.machine.json --
{"faults": [{"call": "wmi.connect", "hresult": "0x800706BA"}]}
-- others.log --
12:00 app::Reader::HandleMessage(): caught nothing at x:1
12:00 x:7 Configure::HandleMessage: no line of the library
12:00 own Toolbox::DoMagic caught an unhandled exception
-- log.py --
import json, sys
for line in json.load(sys.stdin)["log"]:
    print("08:15", line["level"], line["text"], "\n08:15 7 ext::Job::run(): done")
-- console --
$ orvanta-config simulate pc.cfg --json | python3 log.py > agent.log
$ orvanta-config simulate open.cfg --json | python3 log.py >> agent.log
$ orvanta-config simulate --message prep-for-image --machine dead.machine.json --json | python3 log.py >> agent.log
$ orvanta-config simulate pc.cfg --machine dead.machine.json --json | python3 log.py >> agent.log
$ orvanta-config explain agent.log
Internal/Configure of C:\tarvo.cfg: failed
  did     ChangeCompName (Name=PC-1 {User=})
          ConfigureNic
          SetStatic (IP and Subnet Masks: {ip=10.0.0.5,mask=255.255.255.0}) on adapter 7
          Sleep (Duration=20000 milliseconds) on adapter 7
  failed  SetGateway (Gateways=10.9.9.9) on adapter 7
  at      SetGateway:52 - Configuring gateways failed
  why     gateway outside the adapter's subnets (invalid gateway IP address)
  remedy  give a gateway that one of the addresses and masks reaches

Internal/Configure of C:\tarvo.cfg: failed
  at      internal/Configure:124 - the file cannot be loaded
  why     the file is empty, unreadable or broken (code 3 of Configure)
  remedy  run "check"

Internal/PrepForImage: failed
  at      common\sys\OsVersion:129 - Error thrown from WMI initialization code.
  why     WMI does not answer (Value=1 of OsVersion)
  remedy  start the service Winmgmt

Internal/Configure: failed
  at      common\sys\OsVersion:129 - Error thrown from WMI initialization code.
  why     WMI does not answer (Value=1 of OsVersion)
  remedy  start the service Winmgmt
$ grep -A3 'cannot load' agent.log | orvanta-config explain - --json | tr -s '\n ' ' '
{ "schema": 1, "codes": [], "messages": [ { "type": "", "name": "", "file": null, "outcome": "failed", "failed_at": { "source": "internal/Configure", "line": 124, "text": "the file cannot be loaded", "value": 3, "system_error": null, "meaning": "the file is empty, unreadable or broken", "remedy": "run \"check\"" } }, { "type": "Internal", "name": "PrepForImage", "file": null, "outcome": "no failure logged", "failed_at": null } ] } 
$ sed -n '/about to execute.*SetGateway/,/SetGateway:52/p' agent.log | orvanta-config explain -
a message that began before the log: failed
  failed  SetGateway (Gateways=10.9.9.9)
  at      SetGateway:52 - Configuring gateways failed
$ orvanta-config explain others.log
others.log: no line of the library in it
[exit code 1]
