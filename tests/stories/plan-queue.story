What a plan shows: what is needed and why, on which adapter, what waits, what is dropped or asks for nothing.

-- member.json --
{"schema": 1, "computer_name": "PC1", "membership": {"domain": {"dns_name": "corp.example", "flat_name": "CORP"}},
 "directory": {"domains": [{"dns_name": "corp.example", "flat_name": "CORP", "ous": ["OU=Sales,DC=corp,DC=example"],
   "computers": [{"name": "PC1", "dn": "CN=PC1,OU=Sales,DC=corp,DC=example"}]}]}}
-- try --
# try LINES [OPTION...]: the plan of LINES, a "|" between the lines
lines=$1; shift
echo "$lines" | tr '|' '\n' | orvanta-config plan - "$@" | sed '1,/^$/d'
-- console --
$ sh try '[Networking]|Workgroup=No|Domain=corp.example|DSOrganizationalUnit=Sales|DomainUsername=ENCIPHERED-USER|DomainPassword=ENCIPHERED-PASSWORD|ComputerName=B|[TCP/IP]|DHCP=False|Address=10.0.0.5|Netmask=255.0.0.0|DNS-Use-DHCP=True|[NicEntry1]|PCIBus=0|PCIDevice=9|PCIFunction=0|MACAddress=00|DHCP=False|Address=10.20.0.15|Netmask=255.255.0.0|[NicEntry2]|DHCP=True'
Runs now
  1  ChangeCompName  Name=B {User=joiner}  [Networking] lines 5-7
                     TEMPLATE -> B
  -- restart 1, for the new name: the run stops here --
Waits for the restart, and is planned anew then
  3  JoinDomain      DNS Domain=corp.example, Windows Domain= {User=joiner}  [Networking] lines 3-6
                     none -> corp.example
                     in the OU Sales
  4  ConfigureNic    adapter 7, Intel(R) PRO/1000 MT Desktop Adapter  [TCP/IP] line 8
                     the next free one, no PCI location or MAC address given
       SetStatic     IP and Subnet Masks: {ip=10.0.0.5,mask=255.0.0.0}  lines 9-11
                     dhcp -> 10.0.0.5/255.0.0.0
       Sleep         Duration=20000 milliseconds
       SetDns        DNS via DHCP  line 12
                     -> dhcp, whatever it is now
  5  ConfigureNic    adapter 8, Intel(R) 82574L Gigabit Network Connection  [NicEntry1] lines 13-17
                     the next free one, no adapter at PCI location 0/9/0 or with MAC address 00
                     passed over: adapter 7 is taken by [TCP/IP]
       SetStatic     IP and Subnet Masks: {ip=10.20.0.15,mask=255.255.0.0}  lines 18-20
                     not needed: 10.20.0.15/255.255.0.0 already
       Sleep         Duration=20000 milliseconds
  6  ConfigureNic    no adapter is left  [NicEntry2] line 21
                     no PCI location or MAC address given
                     passed over: adapter 7 is taken by [TCP/IP], adapter 8 is taken by [NicEntry1], adapter 12 is not on the PCI bus
                     will fail: no adapter is left (the machine has none for the section) [C501]
                     lost by it: the file is put away, the restart never comes, 1 adapter is not fully configured
       SetDhcp       never done  line 22
Never done: the run fails and the file is put away
  7  Reboot
Pauses
  40 s after the restart
$ sh try '[TCP/IP]|DHCP=False|Netmask=255.0.0.0,255.0.0.0|[NicEntry1]|DHCP=False|Address=10.0.0.5,10.0.0.6|Netmask=255.0.0.0' | grep -A1 SetStatic
       SetStatic   IP and Subnet Masks: {mask=255.0.0.0}{mask=255.0.0.0}  lines 2-3
                   -> /255.0.0.0,/255.0.0.0, whatever it is now
--
       SetStatic   IP and Subnet Masks: {ip=10.0.0.5,mask=255.0.0.0}{ip=10.0.0.6}  lines 5-7
                   10.20.0.15/255.255.0.0 -> 10.0.0.5/255.0.0.0,10.0.0.6
$ sh try '[Global]|RebootAfterConfig=False|[Networking]|ComputerName=B|Workgroup=No|Domain=d|[NicEntry1]|MACAddress=02004C4F4F50|DHCP=True' | grep -e forbids -e lost -e ^N -e MAC
  -- restart, which RebootAfterConfig=False forbids: the run fails here -- [C302]
  lost by it: the file is put away, the restart never comes, the join never happens
Never done: the run fails and the file is put away
                     the next free one, no adapter with MAC address 02004C4F4F50 available: adapter 12 is not on the PCI bus
$ sh try '[Networking]|ComputerName=template|[TCP/IP]|SetDNSInfo=True|DNS-Server-Count=1|DNS-Server1=0.0.0.0'
Runs now
  1  ConfigureNic    adapter 7, Intel(R) PRO/1000 MT Desktop Adapter  [TCP/IP] line 3
                     the next free one, no PCI location or MAC address given
Dropped
     ChangeCompName  Name=template {User=}  [Networking] line 2
                     not needed: TEMPLATE already
Asks for nothing
  DNS_SERVER 0.0.0.0 from [TCP/IP] DNS-Server1, line 6: 0.0.0.0 is no server
$ sh try '[Networking]|Workgroup=True|Domain=W' | grep '^  '
  1  JoinWorkgroup  Workgroup=W {User=}  [Networking] line 3
                    WORKGROUP -> W
$ sh try '[Networking]|Workgroup=True|Domain=W' --machine member.json | grep '^  '
  1  JoinWorkgroup  Workgroup=W {User=}  [Networking] line 3
                    none -> W
                    leaves corp.example, joins W
  -- restart 1, for leaving the domain: the run stops here --
$ sh try '[Networking]|DSOrganizationalUnit=Sales' --machine member.json | grep '^  '
  nothing
     MoveOu  OU=Sales  [Networking] line 2
             not needed: OU=Sales,DC=corp,DC=example already
$ sh try '[TCP/IP]|DHCP=True|[NicEntry1]|MACAddress=08-00-27-65-43-21|DHCP=True|DNS-Use-DHCP=True|[NicEntry2]|PCIBus=0|PCIDevice=3|PCIFunction=0|MACAddress=080027654321' | grep -e 'adapter ' -e found
  1  ConfigureNic  adapter 7, Intel(R) PRO/1000 MT Desktop Adapter  [TCP/IP] line 1
  2  ConfigureNic  adapter 8, Intel(R) 82574L Gigabit Network Connection  [NicEntry1] lines 3-4
                   found by its MAC address 08-00-27-65-43-21
  3  ConfigureNic  adapter 7, Intel(R) PRO/1000 MT Desktop Adapter  [NicEntry2] lines 7-11
                   found by its PCI location 0/3/0; [TCP/IP] has it too
$ sh try '[NicEntry]|MACAddress=080027654321|DHCP=False|Address=10.20.0.15 10.20.0.16|Netmask=255.255.0.0 255.255.0.0|Gateway=10.20.0.1|SetDNSInfo=True|DNS-Server-Count=1|DNS-Server1=10.0.0.2|DNS-SuffixSearchOrder=a.example b.example' | grep -A1 -e ' Set[SG]'
       SetStatic     IP and Subnet Masks: {ip=10.20.0.15,mask=255.255.0.0}{ip=10.20.0.16,mask=255.255.0.0}  lines 3-5
                     not needed: is 10.20.0.15/255.255.0.0, wanted 10.20.0.15/255.255.0.0,10.20.0.16/255.255.0.0
--
       SetGateway    Gateways=10.20.0.1  line 6
                     none -> 10.20.0.1
$ sh try '[TCP/IP]|SetDNSInfo=True|DNS-SuffixSearchOrder=a.example|[NicEntry1]|SetDNSInfo=True|DNS-SuffixSearchOrder=a.example' | grep -e none -e needed  # suffixes are the whole machine's
                     none -> a.example
                     not needed: a.example already
$ sh try '[TCP/IP]|MACAddress=080027123456|DHCP=False|Address=10.0.0.5|Netmask=255.0.0.0|[NicEntry1]|MACAddress=080027123456|DHCP=True' | grep -e found -e '->'
                   found by its MAC address 080027123456
                   dhcp -> 10.0.0.5/255.0.0.0
                   found by its MAC address 080027123456; [TCP/IP] has it too
       SetDhcp     static -> dhcp  line 8
$ sh try '[TCP/IP]|DHCP=False|Netmask=255.0.0.0' | grep -A1 Static
       SetStatic   IP and Subnet Masks: {mask=255.0.0.0}  lines 2-3
                   -> /255.0.0.0, whatever it is now
                   will fail: the library refuses (Static IP addresses/masks list empty) [C307]
                   lost by it: the file is put away, 1 adapter is not fully configured
