Each value is refused for what is wrong with it.

-- a.cfg --
[NicEntry1]
MACAddress=010027123456
[NicEntry2]
MACAddress=000000000000
[NicEntry3]
DHCP=False
Address=127.0.0.1
Netmask=255.0.0.0
[NicEntry4]
DHCP=False
Address=10.0.0.5
Netmask=255.0.0.00
[NicEntry5]
DHCP=False
Address=10.0.0.6
Netmask=0.0.0.0
[Networking]
ComputerName=4711
Workgroup=True
Domain=SIXTEEN-LETTERS-
-- console --
$ orvanta-config check a.cfg | grep -e 'error: ' -e 'C203'
a.cfg:2:12: error: "010027123456" is not the address of a single adapter [C212]
a.cfg:4:12: error: "000000000000" is not the address of a single adapter [C212]
a.cfg:7:9: error: "127.0.0.1" is a loopback address [C204]
a.cfg:12:9: error: "255.0.0.00" is read as another mask [C203]
a.cfg:16:9: error: "0.0.0.0" is not a valid netmask: it has no 1 bits [C205]
a.cfg:18:14: error: "4711" consists of digits only [C216]
a.cfg:20:8: error: "SIXTEEN-LETTERS-" has 16 characters [C217]
$ for k in ComputerName=-PC ComputerName=PC- 'DNSDomain=corp.example\nDSOrganizationalUnit=ou=Sales'; do printf "[Networking]\n$k\n" | orvanta-config check - | grep error:; done
standard input:2:14: error: "-PC" starts with a hyphen [C216]
standard input:2:14: error: "PC-" ends with a hyphen [C216]
standard input:2:11: error: without "Workgroup" DNSDomain joins nothing [C226]
standard input:3:22: error: "ou=Sales" contains "=", but no "OU=" in capitals: it is read as a path [C219]
