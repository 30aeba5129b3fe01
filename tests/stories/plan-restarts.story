A plan that follows restarts tells how it ends, and of every wish that is not fulfilled then, why.

-- plain.json --
{"schema": 1, "adapters": [{"dhcp_enabled": true, "location_information": "PCI bus 1, device 0, function 0"},
   {"index": 8, "mac_address": "08:00:27:00:00:01"}],
 "directory": {"domains": [{"dns_name": "corp.example", "flat_name": "CORP", "accounts": [{"user": "", "password": ""}]}]},
 "faults": []}
-- stubborn.json --
{"faults": [{"call": "wmi.method", "method": "Rename", "result": 0}]}
-- two.json --
{"schema": 1, "adapters": [{"dhcp_enabled": false, "ip_addresses": ["10.0.0.5", "10.0.0.6"],
   "subnet_masks": ["255.0.0.0", "255.0.0.0"]}]}
-- leaving.json --
{"schema": 1, "computer_name": "PC1", "membership": {"domain": {"dns_name": "corp.example", "flat_name": "CORP"}}, "registry": [{}]}
-- try --
# try N LINES MACHINE [FAULT]: replies, end and unfulfilled wishes of LINES through at most N restarts
sed "s/\"faults\": \[\]/\"faults\": [$4]/" $3.json >m.json
echo "$2" | tr '|' '\n' | orvanta-config plan - --machine m.json --follow-restarts $1 >out; code=$?
echo $(grep '^  reply' out) exit code $code
sed -n '/^End/,${/^  /p}' out | sed -z 's/\n    /: /g'
-- console --
$ sh try 3 '[Global]' plain
reply Success exit code 0
  settled after 0 restarts
$ sh try 0 '[Networking]|ComputerName=B' plain
reply Reboot exit code 0
  a restart is due after 0 restarts; a larger --follow-restarts shows more
  [Networking] line 2  ChangeCompName  Name=B {User=}: is TEMPLATE, wanted B: it waits for a restart
$ sh try 1 '[Networking]|Workgroup=No|Domain=corp.example|DSOrganizationalUnit=|ComputerName=B' plain
reply Reboot reply Reboot exit code 0
  a restart is due after 1 restart; a larger --follow-restarts shows more
$ printf '[Networking]\nComputerName=B\n' | orvanta-config plan - --machine stubborn.json --follow-restarts 9 --json | sed -n '/"restarts"/,/"steps"/p;/"not_true"/,$p' | tr -s '\n ' ' '
 "restarts": 1, "ending": "loops", "loops_to": 0, "steps": [ "not_true": [ { "section": "Networking", "lines": "line 2", "what": "ChangeCompName", "description": "Name=B {User=}", "current": "TEMPLATE", "wanted": "B", "reason": "every start does it again, to no effect" } ] } 
$ sh try 9 '[Networking]|ComputerName=B' plain '{"call": "wmi.method", "method": "Rename", "result": 0, "nth": 1}'
reply Reboot reply Reboot reply Success exit code 0
  settled after 2 restarts
$ sh try 3 '[Global]|RebootAfterConfig=False|[Networking]|Workgroup=No|Domain=corp.example|DSOrganizationalUnit=|ComputerName=B' plain
reply Failure exit code 1
  failed after 0 restarts: a restart is due, which RebootAfterConfig=False forbids
  [Networking] line 7  ChangeCompName  Name=B {User=}: is TEMPLATE, wanted B: it waits for a restart
  [Networking] line 5  JoinDomain  DNS Domain=corp.example, Windows Domain= {User=}: is none, wanted corp.example: the run failed: a restart is due, which RebootAfterConfig=False forbids
$ sh try 3 '[TCP/IP]|DHCP=False|Address=10.0.0.5|Netmask=255.0.0.0|Gateway=10.0.0.1|DNS-Use-DHCP=True' plain '{"call": "wmi.method", "method": "SetGateways", "result": 84}'
reply Failure exit code 1
  failed after 0 restarts: SetGateway:52 - Configuring gateways failed, system error 84
  [TCP/IP] line 5  SetGateway  Gateways=10.0.0.1: is none, wanted 10.0.0.1: the run failed: SetGateway:52 - Configuring gateways failed, system error 84
$ sh try 3 '[TCP/IP]|SetDNSInfo=True|DNS-SuffixSearchOrder=a|[NicEntry2]|SetDNSInfo=True|DNS-SuffixSearchOrder=b|DNS-Server-Count=1|DNS-Server1=0.0.0.0|[Networking]|DSOrganizationalUnit=Sales' plain
reply Success exit code 0
  settled after 0 restarts, but not all of the file is true
  [TCP/IP] line 3  SetDnsSuffix  DNS Suffixes=a: is b, wanted a: the run did it, and something after it or the machine undid it
  [Networking] line 10  MoveOu  OU=Sales: is no domain, wanted Sales: the computer belongs to no domain
  [NicEntry2] line 8  DNS_SERVER  0.0.0.0: 0.0.0.0 is no server
$ sh try 3 '[NicEntry1]|[NicEntry2]|[NicEntry3]' plain
reply Failure exit code 1
  failed after 0 restarts: common\config\command\ConfigureNic:68 - ConfigureNic has not been been associated with a nic index
  [NicEntry3] line 3  ConfigureNic: no adapter is left; no PCI location or MAC address given; passed over: adapter 7 is taken by [NicEntry1], adapter 8 is taken by [NicEntry2]
$ sh try 3 '[TCP/IP]|Address=10.0.0.5,| 10.0.0.6|Netmask=255.0.0.0|SetDNSInfo=True|[Interface1]|DHCP=True|[Networking]|DomainPassword=AB|AB=|DNSDomain=x' plain
reply Success exit code 0
  settled after 0 restarts, but not all of the file is true
  [TCP/IP] lines 2, 4  Address, Netmask: not used by the library; see orvanta-config check
  [Interface1] line 7  DHCP: not used by the library; see orvanta-config check
  [Networking] line 11  DNSDomain: not used by the library; see orvanta-config check
$ sh try 3 '[TCP/IP]|DHCP=False|Address=10.0.0.5|Netmask=255.0.0.0' two
reply Success exit code 0
  settled after 0 restarts, but not all of the file is true
  [TCP/IP] lines 2-4  SetStatic  IP and Subnet Masks: {ip=10.0.0.5,mask=255.0.0.0}: is 10.0.0.5/255.0.0.0,10.0.0.6/255.0.0.0, wanted 10.0.0.5/255.0.0.0: the first address is right already, and no other is compared
$ sh try 3 '[TCP/IP]|PCIBus=1|PCIDevice=0|PCIFunction=0|DHCP=True|[NicEntry1]|PCIBus=1|PCIDevice=0|PCIFunction=0|DHCP=False|Address=10.0.0.5|Netmask=255.0.0.0' plain
reply Success exit code 0
  settled after 0 restarts, but not all of the file is true
  [TCP/IP] line 5  SetDhcp: is static, wanted dhcp: no run did it (not needed: dhcp already), and something else changed it
$ sh try 3 '[Networking]|Workgroup=No|Domain=corp.example' leaving
reply Success exit code 0
  settled after 0 restarts, but not all of the file is true
  [Networking] line 3  JoinDomain  DNS Domain=corp.example, Windows Domain= {User=}: is none, wanted corp.example: no run did it (the computer belongs to this domain already), and something else changed it
$ sh try 3 '[TCP/IP]|DHCP=False|Address=10.0.0.5,10.0.0.6|Netmask=255.0.0.0,255.0.0.0' plain
reply Success exit code 0
  settled after 0 restarts
