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
-- query.machine.json --
{"faults": [{"call": "wmi.query", "hresult": "0x80041010"}]}
-- unknown.machine.json --
{"faults": [{"call": "wmi.query", "hresult": "0x80041234"}]}
-- many.cfg --
[TCP/IP]
[NicEntry1]
[NicEntry2]
[NicEntry3]
-- route.cfg --
[TCP/IP]
Static-Route-Count=1
Route0=10.1.0.0 255.255.0.0 10.0.0.1
-- route.machine.json --
{"faults": [{"call": "process.run", "result": 87}]}
-- kept.machine.json --
{"faults": [{"call": "file.move", "error": 32}]}
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
$ orvanta-config simulate pc.cfg --machine query.machine.json >causes.log
[exit code 1]
$ orvanta-config simulate pc.cfg --machine unknown.machine.json >>causes.log
[exit code 1]
$ orvanta-config simulate route.cfg --machine route.machine.json --verbose >>causes.log
[exit code 1]
$ orvanta-config simulate many.cfg --verbose >>causes.log
[exit code 1]
$ orvanta-config explain causes.log
a message that began before the log: failed
  at      Wmi:182 - Wmi query failed to get computer name
  why     no such WMI class (WBEM_E_INVALID_CLASS)
  remedy  repair WMI (winmgmt /verifyrepository)

a message that began before the log: failed
  at   Wmi:182 - Wmi query failed to get computer name
  why  the machine answered 0x80041234

Internal/Configure of C:\tarvo.cfg: failed
  did     ConfigureNic
  failed  SetStaticRoute
  at      SetStaticRoute:151 - Failed to add static route
  why     the route tool failed, or cannot be run; the machine answered 87 (Value=5 of SetStaticRoute)
  remedy  run its command by hand; the answer is its exit code, or why Windows cannot run it

Internal/Configure of C:\tarvo.cfg: failed
  did     ConfigureNic
          ConfigureNic
  failed  ConfigureNic
  at      common\config\command\ConfigureNic:68 - ConfigureNic has not been been associated with a nic index
  why     the machine has no adapter for the section (Value=0 of ConfigureNic)
  remedy  correct MACAddress or the PCI location, or take the section out of the file
$ sed '/about to execute.*SetGateway/q' agent.log | orvanta-config explain -  # the log ends here, or the agent did
Internal/Configure of C:\tarvo.cfg: no failure logged
  did         ChangeCompName (Name=PC-1 {User=})
              ConfigureNic
              SetStatic (IP and Subnet Masks: {ip=10.0.0.5,mask=255.255.255.0}) on adapter 7
              Sleep (Duration=20000 milliseconds) on adapter 7
  last begun  SetGateway (Gateways=10.9.9.9) on adapter 7
$ orvanta-config simulate route.cfg --machine kept.machine.json --verbose | orvanta-config explain -
Internal/Configure of C:\tarvo.cfg: failed
  did         ConfigureNic
  last begun  SetStaticRoute
  at          common\util\FileUtils:51 - File Move Failed
  why         in use (ERROR_SHARING_VIOLATION)
  remedy      close the program that has the file open, and send the message again
