Before an image the settings are recorded, Configure is asked for later, and networking is turned off.
Also through the plug-in.

-- m.json --
{"adapters": [{"index": 8, "caption": "[00000008] Intel(R) 82574L Gigabit Network Connection",
   "pnp_device_id": "PCI\\VEN_8086&DEV_10D3&SUBSYS_A01F8086&REV_00\\4&1C3D25BB&0&00E0",
   "location_information": "PCI bus 4, device 0, function 0", "dhcp_enabled": false, "dns_host_name": "TEMPLATE",
   "ip_addresses": ["10.20.0.15", "10.20.0.16"], "subnet_masks": ["255.255.0.0", "255.255.0.0"],
   "gateways": ["10.20.0.1", "10.20.0.2"], "dns_servers": ["10.0.0.1", "10.0.0.2"],
   "dns_suffixes": ["a.example", "b.example"], "static_dns": true}]}
-- console --
$ orvanta-config simulate --message prep-for-image --machine m.json | sed -n '/^Changes/,/^Machine/p;/^  registry/,$p'
Changes
   1  write C:\restore.cfg: [Global] Config=RestoreAfterCreate
   2  write C:\restore.cfg: [Global] RebootAfterConfig=True
   3  write C:\restore.cfg: [Global] RebootAfterConfig=True
   4  write C:\restore.cfg: [TCP/IP] Address=10.20.0.15
   5  write C:\restore.cfg: [TCP/IP] DHCP=False
   6  write C:\restore.cfg: [TCP/IP] DNS-Domain=
   7  write C:\restore.cfg: [TCP/IP] DNS-Enabled=True
   8  write C:\restore.cfg: [TCP/IP] DNS-Hostname=TEMPLATE
   9  write C:\restore.cfg: [TCP/IP] DNS-Server-Count=2
  10  write C:\restore.cfg: [TCP/IP] DNS-Server0=10.0.0.1,10.0.0.2
  11  write C:\restore.cfg: [TCP/IP] DNS-SuffixSearchOrder=a.exampleb.example
  12  write C:\restore.cfg: [TCP/IP] Description=Intel(R) 82574L Gigabit Network Connection
  13  write C:\restore.cfg: [TCP/IP] DeviceID=4307
  14  write C:\restore.cfg: [TCP/IP] Gateway=10.20.0.1
  15  write C:\restore.cfg: [TCP/IP] MACAddress=080027123456
  16  write C:\restore.cfg: [TCP/IP] Netmask=255.255.0.0
  17  write C:\restore.cfg: [TCP/IP] PCIBus=4
  18  write C:\restore.cfg: [TCP/IP] PCIDevice=0
  19  write C:\restore.cfg: [TCP/IP] PCIFunction=0
  20  write C:\restore.cfg: [TCP/IP] VendorID=32902
  21  copy C:\restore.cfg to C:\tarvo.cfg
  22  registry: set HKEY_LOCAL_MACHINE\Software\Orvanta\Client Service\NetworkDisabled to 1
  23  service Dhcp: disabled
  24  service NetBT: disabled
  25  service LmHosts: disabled
  26  service NwlnkNb: disabled
Posted
  Internal/Configure
    Filename  C:\tarvo.cfg
Reply
  status  1

Machine, before -> after
  registry
    HKEY_LOCAL_MACHINE\Software\Orvanta\Client Service\NetworkDisabled  - -> 1
  files
    C:\restore.cfg  - -> 440 bytes
    C:\tarvo.cfg    - -> 440 bytes
