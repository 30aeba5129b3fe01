The simulated machine answers as Windows does: leases, blanks in distinguished names, spellings of paths.

-- static.cfg --
[TCP/IP]
DHCP=False
Address=192.168.10.9
Netmask=255.255.255.0
-- join.cfg --
[Networking]
Workgroup=False
DNSDomain=corp.example
DSOrganizationalUnit=Sales
DomainUsername=ENCIPHERED-USER
DomainPassword=ENCIPHERED-PASSWORD
-- hand.json --
{"adapters": {"7": {"static_dns": true}}}
-- static.json --
{"adapters": {"7": {"dhcp_enabled": false}}}
-- blanks.json --
{"directory": {"domains": [{"dns_name": "corp.example", "flat_name": "CORP",
  "accounts": [{"user": "joiner", "password": "s3cret"}], "ous": ["OU=Sales, DC=corp, DC=example"]}]}}
-- console --
$ orvanta-config simulate static.cfg | grep -e gateways -e 'DNS servers'
    gateways     192.168.10.1                -> -
    DNS servers  192.168.10.1                -> -
$ orvanta-config simulate static.cfg --machine hand.json | grep -e gateways -e 'DNS servers'  -->     gateways   192.168.10.1                -> -
$ orvanta-config simulate static.cfg --machine static.json | grep -c -e gateways -e 'DNS servers'
0
[exit code 1]
$ orvanta-config simulate join.cfg --machine blanks.json | grep -A2 Changes
Changes
  1  join the domain corp.example as corp.example\joiner in OU=Sales,DC=corp,DC=example  refused: result 1332 (no account for the computer)
  2  join the domain corp.example as corp.example\joiner in OU=Sales,DC=corp,DC=example, making the computer account
