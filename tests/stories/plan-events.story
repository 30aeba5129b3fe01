Every event names its line, every section its adapter, and the account is not shown.

-- pc.cfg --
; the account's own lines
[Networking]
DomainPassword=ENCIPHERED-PASSWORD
DomainUsername=ENCIPHERED-USER
COMPUTERNAME=A
[TCP/IP]
SetDNSInfo=True
DNS-Server-Count=2
DNS-Server1=10.0.0.2,
  10.0.0.3
DNS-Server2=0.0.0.0
PCIBus=4
PCIDevice=0
PCIFunction=0
[NicEntry2]
[NicEntry3]
Description=last
MACAddress=12-34
-- console --
$ orvanta-config plan pc.cfg --verbose | sed -n '/^Adapters/,$p'
Adapters
  adapter 7, Intel(R) PRO/1000 MT Desktop Adapter        taken by [NicEntry2], PCI location 0/3/0, MAC address 08:00:27:12:34:56
  adapter 8, Intel(R) 82574L Gigabit Network Connection  taken by [TCP/IP], PCI location 4/0/0, MAC address 08:00:27:65:43:21
  adapter 12, Microsoft KM-TEST Loopback Adapter         not on the PCI bus, MAC address 02:00:4C:4F:4F:50
Events
  COMPUTER_NAME A from [Networking] ComputerName, line 5        1 ChangeCompName
  DOMAIN_USER *** from [Networking] DomainUsername, line 4      1 ChangeCompName
  DOMAIN_PASSWORD *** from [Networking] DomainPassword, line 3  1 ChangeCompName
  NIC from [TCP/IP], line 6                                     2 ConfigureNic
  NIC_PCI_BUS 4 from [TCP/IP] PCIBus, line 12                   2 ConfigureNic
  NIC_PCI_DEVICE 0 from [TCP/IP] PCIDevice, line 13             2 ConfigureNic
  NIC_PCI_FUNCTION 0 from [TCP/IP] PCIFunction, line 14         2 ConfigureNic
  DNS_SERVER 10.0.0.2 from [TCP/IP] DNS-Server1, line 9         2 SetDns
  DNS_SERVER 10.0.0.3 from [TCP/IP] DNS-Server1, line 9         2 SetDns
  DNS_SERVER 0.0.0.0 from [TCP/IP] DNS-Server2, line 11         -
  NIC from [NicEntry2], line 15                                 3 ConfigureNic
  NIC last from [NicEntry3] Description, line 17                4 ConfigureNic
  NIC_MAC_ADDRESS 12-34 from [NicEntry3] MACAddress, line 18    4 ConfigureNic
$ orvanta-config plan pc.cfg --verbose --json >out.json; python3 -c 'import json; t = json.load(open("out.json")); print(*t); print(*t["commands"][0:2], t["events"][2], t["events"][9], t["adapters"][2], t["runs_now"], sep="\n")'
schema commands dropped runs_now error outcome changes pause_ms restored restart_forbidden pauses adapters events
{'class': 'config::command::ChangeCompName', 'description': 'Name=A {User=joiner}', 'needed': True, 'reached': True, 'will_fail': None, 'current': 'TEMPLATE', 'wanted': 'A', 'events': [0, 1, 2]}
{'class': 'config::command::ConfigureNic', 'description': '', 'index': 8, 'bound_by': 'pci', 'pci_location': '4/0/0', 'mac_address': None, 'needed': True, 'reached': True, 'will_fail': None, 'events': [3, 4, 5, 6], 'commands': [{'class': 'config::command::SetDns', 'description': 'DNS Servers=10.0.0.2,10.0.0.3', 'needed': True, 'reached': True, 'will_fail': None, 'current': '', 'wanted': '10.0.0.2,10.0.0.3', 'events': [7, 8]}]}
{'kind': 'DOMAIN_PASSWORD', 'opens': False, 'value': '***', 'section': 'Networking', 'key': 'DomainPassword', 'line': 3, 'came_to_nothing': None}
{'kind': 'DNS_SERVER', 'opens': False, 'value': '0.0.0.0', 'section': 'TCP/IP', 'key': 'DNS-Server2', 'line': 11, 'came_to_nothing': '0.0.0.0 is no server'}
{'index': 12, 'pci_location': None, 'mac_address': '02:00:4C:4F:4F:50', 'not_eligible': 'not on the PCI bus', 'taken_by': []}
4
