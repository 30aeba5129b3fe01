What a file asks for is compared with the machine as it is, lists in full, and what no machine tells is unknown.

-- pc.cfg --
[Networking]
ComputerName=template
Workgroup=False
Domain=CORP
DSOrganizationalUnit=Sales/Europe
DomainUsername=AAAA
DomainPassword=BBBB
[TCP/IP]
DHCP=False
Address=10.0.0.5, 10.0.0.6
Netmask=255.0.0.0, 255.0.0.0
Gateway=10.0.0.1
SetDNSInfo=True
DNS-Server-Count=2
DNS-Server1=10.0.0.2
DNS-Server2=10.0.0.3
DNS-SuffixSearchOrder=corp.example
Static-Route-Count=1
Route1=10.1.0.0 255.255.0.0 10.0.0.1 0 5
[NicEntry2]
DHCP=True
DNS-Use-DHCP=True
[NicEntry3]
DHCP=True
-- pc.machine.json --
{"membership": {"workgroup": null, "domain": {"dns_name": "corp.example", "flat_name": "CORP", "has_sid": true}}, "directory": null,
 "adapters": {"7": {"dhcp_enabled": false, "ip_addresses": ["10.0.0.6", "10.0.0.5", "fe80::1"],
   "subnet_masks": ["255.0.0.0", "255.0.0.0", "64"], "gateways": ["10.0.0.1"],
   "dns_servers": ["10.0.0.3", "10.0.0.2"], "dns_suffixes": ["corp.example"], "static_dns": true}},
 "persistent_routes": [{"destination": "0.0.0.0", "mask": "0.0.0.0", "next_hop": "10.0.0.1", "metric": 1},
   {"destination": "10.1.0.0", "mask": "255.255.0.0", "next_hop": "10.0.0.1", "metric": 5}],
 "files": [{"path": "C:\\restore.cfg", "text": "[Global]\r\nConfig=Restore\r\n"}]}
-- other.machine.json --
{"pending_computer_name": "PC-1"}
-- directory.machine.json --
{"membership": {"workgroup": null, "domain": {"dns_name": "corp.example", "flat_name": "CORP", "has_sid": true}},
 "directory": {"domains": [{"dns_name": "corp.example", "flat_name": "CORP", "ous": ["OU=Sales,DC=corp,DC=example"],
   "computers": [{"name": "TEMPLATE", "dn": "CN=TEMPLATE,OU=Sales,DC=corp,DC=example"}]}]}}
-- faulty.cfg --
[TCP/IP]
DHCP=False
Address=10.0.0.300
Netmask=255.0.0.0
Gateway=gw.example
-- six.machine.json --
{"adapters": {"7": {"dhcp_enabled": false, "ip_addresses": ["fe80::1", "10.0.0.5"],
   "subnet_masks": ["64", "255.0.0.0"], "gateways": ["fe80::9", "10.0.0.1"], "dns_servers": ["fe80::2"]}}}
-- empty.cfg --
[Interface1]
DHCP=True
-- name.cfg --
[Networking]
ComputerName=PC-1
Workgroup=True
Domain=OFFICE
-- console --
$ orvanta-config verify pc.cfg --machine pc.machine.json
File     pc.cfg
Machine  pc.machine.json: TEMPLATE, domain corp.example, 3 adapters

computer
  name               holds    template  line 2
  domain             holds    CORP  line 4
  OU                 unknown  OU=Europe,OU=Sales,DC=corp,DC=example  line 5
  DomainUsername     unknown  ***  line 6
  DomainPassword     unknown  ***  line 7
adapter 7, Intel(R) PRO/1000 MT Desktop Adapter
  addresses          holds    10.0.0.5/255.0.0.0,10.0.0.6/255.0.0.0  line 9
  gateways           holds    10.0.0.1  line 12
  DNS servers        differs  10.0.0.2,10.0.0.3, found 10.0.0.3,10.0.0.2  line 15
  suffixes           holds    corp.example  line 17
computer
  persistent routes  holds    10.1.0.0/255.255.0.0 via 10.0.0.1 metric 5  line 19
adapter 8, Intel(R) 82574L Gigabit Network Connection
  addressing         differs  dhcp, found static  line 21
  DNS servers        holds    dhcp  line 22
[NicEntry3]
  adapter            differs  an adapter of its own, found none  line 23

3 of 13 settings differ.
[exit code 1]
$ printf '[Networking]\nDSOrganizationalUnit=Sales/Europe\n' | orvanta-config verify - --machine directory.machine.json | tail -n 4
computer
  OU                 differs  OU=Europe,OU=Sales,DC=corp,DC=example, found OU=Sales,DC=corp,DC=example  line 2

1 of 1 setting differs.
$ printf '[Networking]\nComputerName=PC-1\nWorkgroup=True\nDomain=OFFICE\n' | orvanta-config verify - --machine other.machine.json --json | tr -s '\n ' ' '
{ "schema": 1, "holds": false, "settings": [ { "subject": "computer", "setting": "name", "wanted": "PC-1", "found": "TEMPLATE (PC-1 after the restart)", "holds": false, "line": 2 }, { "subject": "computer", "setting": "workgroup", "wanted": "OFFICE", "found": "WORKGROUP", "holds": false, "line": 4 } ] } 
$ printf '[TCP/IP]\nDHCP=True\n' | orvanta-config verify - --machine other.machine.json | tail -n 3
  addressing         holds    dhcp  line 2

Nothing differs.
$ printf '[TCP/IP]\nDHCP=False\n[NicEntry2]\nStatic-Route-Count=1\nRoute1=nowhere 255.0.0.0 10.0.0.1 0 1\n' >refused.cfg; orvanta-config verify refused.cfg --machine other.machine.json
File     refused.cfg
Check    2 errors, the first on line 2: the addressing is static, but Address is not given; see orvanta-config check refused.cfg
Machine  other.machine.json: TEMPLATE, workgroup WORKGROUP, 3 adapters

adapter 7, Intel(R) PRO/1000 MT Desktop Adapter
  addresses          differs  none, found dhcp  line 2
computer
  persistent routes  unknown  (unknown)/255.0.0.0 via 10.0.0.1 metric 1  line 5

1 of 2 settings differs.
[exit code 1]
$ orvanta-config verify pc.cfg
orvanta-config: verify: --machine is missing; name the machine file to compare with
[exit code 2]
$ orvanta-config verify faulty.cfg --machine six.machine.json
orvanta-config: faulty.cfg: a run would refuse it: IPAddress::Connect Name Resolution Error; see orvanta-config check faulty.cfg --machine six.machine.json
[exit code 2]
$ orvanta-config verify empty.cfg --machine six.machine.json
File     empty.cfg
Check    1 error on line 1: section "Interface1" holds an adapter's settings, but is not read; see orvanta-config check empty.cfg
Machine  six.machine.json: TEMPLATE, workgroup WORKGROUP, 3 adapters

Nothing is asked for.
$ orvanta-config verify pc.cfg --machine other.machine.json | grep -e domain -e OU
Machine  other.machine.json: TEMPLATE, workgroup WORKGROUP, 3 adapters
  domain             differs  CORP, found none  line 4
  OU                 differs  Sales/Europe, found no domain  line 5
$ orvanta-config verify name.cfg --machine pc.machine.json | grep workgroup
  workgroup          differs  OFFICE, found domain corp.example  line 4
