With a machine, check also tells what the files need there, and what does not change needs nothing.

-- member.json --
{"schema": 1, "computer_name": "PC1", "membership": {"domain": {"dns_name": "corp.example", "flat_name": "CORP"}},
 "directory": {"domains": [{"dns_name": "corp.example", "flat_name": "CORP", "ous": ["OU=Sales,DC=corp,DC=example"]}]}}
-- placed.json --
{"schema": 1, "computer_name": "PC1", "membership": {"domain": {"dns_name": "corp.example", "flat_name": "CORP"}},
 "directory": {"domains": [{"dns_name": "corp.example", "flat_name": "CORP", "ous": ["OU=Sales,DC=corp,DC=example", "OU=IT,DC=corp,DC=example"],
  "computers": [{"name": "PC1", "dn": "CN=PC1,OU=Sales,DC=corp,DC=example"}]}]}}
-- none.json --
{"schema": 1}
-- nothing.json --
{"schema": 1, "directory": null, "decrypt": null}
-- off-bus.json --
{"schema": 1, "adapters": [{"index": 1, "pnp_device_id": "ROOT\\NET\\0000", "location_information": null,
  "mac_address": "02:00:4C:4F:4F:50"}, {"index": 7}]}
-- routes.json --
{"schema": 1, "adapters": [{"index": 7}], "persistent_routes": [
  {"destination": "0.0.0.0", "mask": "0.0.0.0", "next_hop": "10.0.0.1", "metric": 5},
  {"destination": "0.0.0.0", "mask": "0.0.0.0", "next_hop": "10.0.0.2", "metric": 5}]}
-- imaged.json --
{"schema": 1, "registry": [{"name": "NetworkDisabled"}], "membership": {"domain": {"dns_name": "corp.example", "flat_name": "CORP"}},
 "adapters": [{"index": 7, "dns_servers": ["10.0.0.1", "fec0::1"]}], "persistent_routes": [
  {"destination": "10.9.0.0", "mask": "255.255.0.0", "next_hop": "10.0.0.1", "metric": 5}]}
-- try --
# try MACHINE LINES: what is found in LINES, a "|" between the lines, on MACHINE
echo "$2" | tr '|' '\n' | orvanta-config check - --machine $1.json | grep -e ^standard -e nothing
-- console --
$ sh try member '[Global]|RebootAfterConfig=False|[Networking]|Workgroup=True|Domain=WG'
standard input:2:19: error: leaving the domain needs a restart: without it the run ends as a failure [C301]
$ sh try none '[Global]|RebootAfterConfig=False|[Networking]|Workgroup=True|Domain=WG'  --> 1 file checked: nothing found
$ sh try member '[Global]|RebootAfterConfig=False|[Networking]|ComputerName=pc1'  --> 1 file checked: nothing found
$ sh try member '[Global]|RebootAfterConfig=False|[Networking]|ComputerName=PC2'
standard input:2:19: error: the new name needs a restart: without it the run ends as a failure [C301]
$ sh try member '[Global]|RebootAfterConfig=False|[Networking]|Workgroup=False|Domain=CORP'  --> 1 file checked: nothing found
$ sh try none '[Global]|RebootAfterConfig=False|[Networking]|Workgroup=False|Domain=CORP'
standard input:2:19: error: the join needs a restart: without it the run ends as a failure [C301]
standard input:5:8: error: the machine has to join the domain, but no account is given: error 1326 [C512]
$ sh try nothing '[Global]|RebootAfterConfig=False|[Networking]|Workgroup=False|Domain=CORP'
standard input:2:19: error: the join needs a restart: without it the run ends as a failure [C301]
standard input:5:8: error: the machine has to join the domain, but no account is given: error 1326 [C512]
standard input:5:8: error: the directory has no domain "CORP" [C504]
$ for h in '[]' null; do printf '{"schema": 1, "adapters": [{}], "hosts": '$h'}' >h.json; sh try h '[TCP/IP]|SetDNSInfo=True|DNS-Server-Count=1|DNS-Server0=dns.example' | grep -c C509; done  # which names resolve is not known
1
0
[exit code 1]
$ sh try none '[Networking]|Domain=CORP|Workgroup=False|DomainUsername=A|DomainPassword=B'  # a directory and texts that are not known
standard input:4:1: error: without DSOrganizationalUnit the account does not reach the join [C303]
$ sh try nothing '[Networking]|Domain=CORP|Workgroup=False|DomainUsername=A|DomainPassword=B'
standard input:2:8: error: the directory has no domain "CORP" [C504]
standard input:4:1: error: without DSOrganizationalUnit the account does not reach the join [C303]
standard input:4:16: error: the machine does not have LibCrypto.dll [C507]
$ sh try off-bus '[TCP/IP]|MACAddress=02004C4F4F50'
standard input:1:1: warning: "TCP/IP" means adapter 1, which is not on the PCI bus and cannot be configured; adapter 7 is taken [C502]
$ sh try routes '[TCP/IP]|Static-Route-Count=1|Route0=10.2.0.0 255.255.0.0 10.0.0.1 0 5'
standard input:3:8: error: the machine has two default routes: deleting the second deletes both [C508]
$ sh try imaged '[Networking]|Workgroup=False|DNSDomain=corp.example|DSOrganizationalUnit=Sales|DomainUsername=A|DomainPassword=B'
standard input:1:1: error: the machine was imaged: the run makes it leave its domain, and nothing joins it again [C516]
$ sh try imaged '[Networking]|Workgroup=True|Domain=WG'  --> 1 file checked: nothing found
$ sh try imaged '[Global]|Config=RestoreAfterCreate|[TCP/IP]|Static-Route-Count=1|Route0=10.2.0.0 255.255.0.0 10.0.0.1 0 5|[NicEntry2]|SetDNSInfo=True|DNS-Server-Count=1|DNS-Server0=10.0.0.1|Static-Route-Count=1|Route0=10.2.0.0 255.255.0.0 10.0.0.1 0 5' | grep -v C50
standard input:3:1: error: fec0::1 of the machine's adapter 7 is taken for the name of a host, which fails the run [C517]
standard input:11:1: error: the routes of "NicEntry2" and of "TCP/IP" both delete the route of the machine to 10.9.0.0: the second time that fails the run [C312]
$ sh try none '[TCP/IP]|Static-Route-Count=1|Route0=10.2.0.0 255.255.0.0 10.0.0.1 0 5|[NicEntry2]|Static-Route-Count=1|Route0=10.2.0.0 255.255.0.0 10.0.0.1 0 5' | grep -v C50
standard input:6:1: error: the routes of "NicEntry2" and of "TCP/IP" undo each other: one run adds all of them, the next one deletes them; the one to 10.2.0.0 is added twice [C312]
$ for u in sales IT; do for f in '' 'Workgroup=False|DNSDomain=corp.example|'; do sh try placed "[Networking]|${f}DSOrganizationalUnit=$u"; done; done  # there already, and a move
1 file checked: nothing found
1 file checked: nothing found
standard input:2:22: error: no account is given for the move [C512]
  hint: add DomainUsername and DomainPassword; the directory moves nothing without them
standard input:4:22: error: no account is given for the move [C512]
  hint: add DomainUsername and DomainPassword; the directory moves nothing without them
