An adapter is found by its PCI location, then by its MAC address; else the section takes the next free one.

-- try --
# try LINES: the adapters that the sections of LINES get, a "|" between the lines
echo "$1" | tr '|' '\n' | orvanta-config simulate - $2 --verbose | grep -o -e 'NIC index.*' -e 'ConfigureNic:68.*'
-- one.json --
{"schema": 1, "adapters": [{}]}
-- console --
$ sh try '[TCP/IP]|PCIBus=4|PCIDevice=0|PCIFunction=0|MACAddress=080027123456'  --> NIC index (Win32_NetworkAdapterConfiguration.Index)=8
$ sh try '[TCP/IP]|PCIBus=9|PCIDevice=0|PCIFunction=0|MACAddress=08-00-27-65-43-21'  --> NIC index (Win32_NetworkAdapterConfiguration.Index)=8
$ sh try '[TCP/IP]|PCIBus=4294967295|PCIDevice=0|PCIFunction=0'  # an unknown location  --> NIC index (Win32_NetworkAdapterConfiguration.Index)=7
$ sh try '[TCP/IP]|PCIBus=4'  --> NIC index (Win32_NetworkAdapterConfiguration.Index)=7
$ sh try '[TCP/IP]|MACAddress=02004C4F4F50'  # of an adapter that is not on PCI  --> NIC index (Win32_NetworkAdapterConfiguration.Index)=7
$ sh try '[NicEntry2]|x=y|[nicentry9]|x=y|[MyNicEntry1]|x=y|[Interface1]|x=y'  # in their order; two are not read
NIC index (Win32_NetworkAdapterConfiguration.Index)=7
NIC index (Win32_NetworkAdapterConfiguration.Index)=8
$ sh try '[NicEntry1]|x=y|[NicEntry2]|MACAddress=080027123456|[NicEntry3]|x=y'  # a match may be taken twice
NIC index (Win32_NetworkAdapterConfiguration.Index)=7
NIC index (Win32_NetworkAdapterConfiguration.Index)=7
NIC index (Win32_NetworkAdapterConfiguration.Index)=8
$ sh try '[NicEntry1]|x=y|[NicEntry2]|x=y' '--machine one.json'
NIC index (Win32_NetworkAdapterConfiguration.Index)=7
ConfigureNic:68 - ConfigureNic has not been been associated with a nic index
