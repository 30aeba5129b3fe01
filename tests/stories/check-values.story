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
$ for k in LDAP://OU=Sales corp.example/Sales 'Sales, Europe' 'OU=Sales\\, Europe' Sales/100%% Dept.A/B Sales/v2.1 'Sales//Europe' '#Sales' OU=,OU=Sales OU=Sales, Sales/OU=Europe OU=A+B 'ou = A , OU=Floor #2' 'OU="A, B",2.5.4.11=C'; do printf "[Networking]\nDSOrganizationalUnit=$k\nDomainUsername=1\nDomainPassword=2\n" | orvanta-config check - | grep -e error: -e warning:; done
standard input:2:22: error: "LDAP://OU=Sales" begins with LDAP:, which the library puts before it [C219]
standard input:2:22: error: "corp.example/Sales" begins with a domain, which is read as a unit [C219]
standard input:2:22: error: "Sales, Europe" contains ",", which is special in a distinguished name [C219]
standard input:2:22: warning: "Sales/100%" contains "%" [C232]
standard input:2:22: error: "#Sales" contains "#", which is special in a distinguished name [C219]
standard input:2:22: error: "OU=,OU=Sales" is not a distinguished name [C219]
standard input:2:22: error: "OU=Sales," is not a distinguished name [C219]
standard input:2:22: error: "Sales/OU=Europe" is not a distinguished name [C219]
standard input:2:22: error: "OU=A+B" is not a distinguished name [C219]
[exit code 1]
$ for k in OU=Sales,DC=other,DC=example OU=A,,DC=corp OU=Sales,dc=corp,dc=example 'OU=Sales, dc=Corp, DC=example' Sales; do printf "[Networking]\nWorkgroup=False\nDNSDomain=corp.example\nDSOrganizationalUnit=$k\nDomainUsername=1\nDomainPassword=2\n" | orvanta-config check - | grep -e error: -e hint; done
standard input:4:22: error: "OU=Sales,DC=other,DC=example" is not in the domain corp.example [C219]
  hint: leave out its domain, or write DC=corp,DC=example
standard input:4:22: error: "OU=A,,DC=corp" is not a distinguished name [C219]
  hint: write a path with "/" such as Sales/Europe, or OU=Europe,OU=Sales
standard input:4:22: error: "OU=Sales,dc=corp,dc=example" is not in the domain corp.example [C219]
  hint: leave out its domain, or write DC=corp,DC=example
[exit code 1]
$ printf '[Networking]\nWorkgroup=False\nDomain=CORP\nDSOrganizationalUnit=OU=Sales,DC=corp,DC=example\nDomainUsername=1\nDomainPassword=2\n' | orvanta-config check -  # its DNS name is not known
1 file checked: nothing found
$ printf '[TCP/IP]\nSetDNSInfo=True\nDNS-SuffixSearchOrder=a..example b%%.example .c corp\n' | orvanta-config check - | grep -e error: -e warning:
standard input:3:23: error: "a..example" is not a domain name [C218]
standard input:3:34: warning: "b%.example" contains "%" [C232]
standard input:3:45: error: ".c" is not a domain name [C218]
$ printf '[Networking]\nOU=Sales\nHostname=A\nUser=1\nDomainPassword=2\nWorkgroup=OFFICE\n[TCP/IP]\nMAC=1\n[TCP/IP2]\nIP=1\n' | orvanta-config check - | grep -e hint -e :
standard input:2:1: error: "OU" is not read [C104]
  hint: did you mean DSOrganizationalUnit?
standard input:3:1: error: "Hostname" is not read [C104]
  hint: did you mean ComputerName?
standard input:4:1: error: "User" is not read [C104]
  hint: did you mean DomainUsername?
standard input:6:11: error: "OFFICE" is neither True nor False and is read as False [C213]
  hint: write Workgroup=True and Domain=OFFICE
standard input:8:1: error: "MAC" is not read [C104]
  hint: did you mean MACAddress?
standard input:9:1: error: section "TCP/IP2" is not read [C101]
  hint: did you mean [NicEntry2]?
1 file checked: 6 errors
$ printf '[Networking]\nMAC=1\n[TCP/IP]\nhostname=A\n' | orvanta-config check - | grep -e hint -e error:
standard input:2:1: error: "MAC" is not read in section "Networking" [C105]
  hint: move it to [TCP/IP] as MACAddress
standard input:4:1: error: "hostname" is not read in section "TCP/IP" [C105]
  hint: move it to [Networking] as ComputerName
$ printf '[Networking]\nWorkgroup=True\nDNSDomain=corp.example\n' | orvanta-config check - | grep -e hint -e error:
standard input:2:11: error: Workgroup is True, but "Domain" does not name the workgroup [C225]
  hint: write Workgroup=False to join the domain, or name the workgroup
