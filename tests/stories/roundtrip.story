What an image gives back of a machine, and the reason for everything that it does not.

-- try --
# try [ADAPTER [MACHINE]]: what does not come back of a server whose only adapter, and which, is like that
import json, subprocess, sys
adapter = dict(dhcp_enabled=False, ip_addresses=["10.0.0.5"], subnet_masks=["255.255.255.0"], gateways=["10.0.0.1"])
second = dict(adapter, index=9, pnp_device_id="PCI\\2", location_information="PCI bus 9, device 9, function 9",
              mac_address="00:00:00:00:00:09", ip_addresses=["10.9.0.5"], gateways=[])
adapter.update(eval(f"dict({sys.argv[1]})"))
machine = dict(schema=1, adapters=[adapter], services=[dict(name="Dhcp"), dict(name="NetBT", start="system")])
restore = lambda text: [dict(path="C:\\restore.cfg", text=text)]
machine.update(eval(f"dict({sys.argv[2] if len(sys.argv) > 2 else ''})"))
json.dump(machine, open("m.json", "w"))
told = subprocess.run(["orvanta-config", "roundtrip", "--machine", "m.json"], stdout=subprocess.PIPE)
text = told.stdout.decode().split("\nSettings, before -> after\n")[1].replace("\n      ", ": ")
for line in text.splitlines():
    if line[:3] == "   " and "  stayed  " not in line and "  restored  " not in line or "adapter 9, " in line or line[:1] == "E":
        print(line)
if told.returncode != ("  lost  " in text or "  changed  " in text): print("exit code", told.returncode)
-- console --
$ python3 try ''  --> Everything came back.
$ python3 try 'dhcp_enabled=True, dns_servers=["10.0.0.2", "10.0.0.3"], dns_domain="corp.example"'
    addresses    given     10.0.0.5/255.255.255.0 -> DHCP gives it again
    gateways     given     10.0.0.1 -> DHCP gives it again
    DNS servers  given     10.0.0.2, 10.0.0.3 -> DHCP gives it again
    DNS domain   given     corp.example -> DHCP gives it again
Everything came back.
$ python3 try 'pnp_device_id="PCI", caption="x", mac_address=None, location_information="slot 3"'  --> Everything came back.
$ python3 try 'ip_addresses=["10.0.0.5", "FE80::1"], subnet_masks=["255.255.255.0", "64"]'  --> Everything came back.
$ python3 try 'ip_addresses=["10.0.0.5", "10.7.0.5"], subnet_masks=["255.255.255.0", "255.255.0.0"], gateways=["10.7.0.1"]'
    addresses  changed   10.0.0.5/255.255.255.0, 10.7.0.5/255.255.0.0 -> 10.0.0.5/255.255.255.0: only the first is recorded (Address=10.0.0.5, Netmask=255.255.255.0)
    gateways   lost      10.7.0.1 -> -: setting it was refused: result 71 (gateway outside the adapter's subnets)
$ python3 try 'ip_addresses=[], subnet_masks=[], gateways=[]'  -->     addresses  changed   - -> 0.0.0.0/0.0.0.0: recorded as Address=0.0.0.0, Netmask=0.0.0.0
$ python3 try 'ip_addresses=["2001:db8::5"]'
    DHCP       lost      off -> on: setting it was refused: result 66 (invalid address or mask)
    addresses  lost      2001:db8::5/255.255.255.0 -> -: recorded as Address=255.255.255.255, Netmask=255.255.255.0; setting it was refused: result 66 (invalid address or mask)
    gateways   lost      10.0.0.1 -> -: Configure failed: SetStatic:68 - Configuring static IP addresses failed
$ python3 try 'dhcp_enabled=True, gateways=["fe80::1"], dns_suffixes=["a.example"]'
    addresses     given   10.0.0.5/255.255.255.0 -> DHCP gives it again
    gateways      given   fe80::1 -> DHCP gives it again
    DNS suffixes  lost    a.example -> -: nothing was recorded, for PrepForImage failed: common\ipc\IpAddress:58 - IPAddress::Connect Name Resolution Error; fe80::1 of adapter 7 is no IPv4 address and no known host
$ python3 try 'dns_servers=["10.0.0.2", "10.0.0.3"], static_dns=True, dns_suffixes=["a.example", "b.example"]' 'files=restore("[tcp/ip]\r\nSetDNSInfo=True\r\n")'
    DNS suffixes  changed   a.example, b.example -> a.exampleb.example: recorded run together (DNS-SuffixSearchOrder=a.exampleb.example)
$ python3 try 'dns_servers=["::1"]'  -->     DNS servers  lost      ::1 -> -: not recorded, for they are not set by hand
$ python3 try '' 'adapters=[adapter, second]'
  adapter 9, Intel(R) PRO/1000 MT Desktop Adapter
    DHCP       lost      off -> on
    addresses  lost      10.9.0.5/255.255.255.0 -> -: section [Interface1] is not read back
$ python3 try '' 'adapters=[dict(second, pnp_device_id="ROOT\\NET"), adapter]'
  adapter 9, Intel(R) PRO/1000 MT Desktop Adapter
    DHCP       lost      off -> on
    addresses  lost      10.9.0.5/255.255.255.0 -> -: not recorded, for the adapter is not on PCI (ROOT\NET)
    DHCP       lost      off -> on
    addresses  lost      10.0.0.5/255.255.255.0 -> -
    gateways   lost      10.0.0.1 -> -: section [Interface1] is not read back; adapter 9, which is not recorded, used up [TCP/IP]
$ python3 try 'ip_enabled=False, gateways=[], ip_addresses=[], subnet_masks=[]'  -->     DHCP  lost      off -> on: not recorded, for the adapter is not IP-enabled
$ python3 try '' 'persistent_routes=[{}], files=restore("[TCP/IP]\r\nStatic-Route-Count=1\r\nRoute0=10.1.0.0 255.255.0.0 10.0.0.1 x 1\r\n"), faults=[dict(call="process.run", result=87)]'
    10.1.0.0/255.255.0.0 via 10.0.0.1  lost      metric 1 -> -: setting it was refused: exit code 87
$ python3 try 'gateways=[]' 'files=restore("[TCP/IP]\r\nGateway=10.0.0.99\r\n")'
    gateways   changed   - -> 10.0.0.99: Gateway=10.0.0.99 was left in the file by an earlier record
$ python3 try '' 'adapters=[adapter, dict(second, dhcp_enabled=True, ip_addresses=[])], files=restore("[NicEntry]\r\nMACAddress=000000000009\r\nDHCP=False\r\nAddress=10.8.0.1\r\nNetmask=255.0.0.0\r\n")'
  adapter 9, Intel(R) PRO/1000 MT Desktop Adapter
    DHCP       changed   on -> off: set by another section of the file
    addresses  changed   - -> 10.8.0.1/255.0.0.0: recorded as Address=0.0.0.0, Netmask=255.255.255.0; set by another section of the file
$ python3 try '' 'files=restore("[Networking]\r\nComputerName=OTHER\r\n")'
    name       changed   TEMPLATE -> OTHER: set by a section that was in the file already
$ python3 try '' 'services=[dict(name="LmHosts", start="manual"), dict(name="NwlnkNb", start="disabled", running=False), dict(name="Other", start="disabled")]'
    LmHosts  changed   manual, running -> automatic, running
    NwlnkNb  changed   disabled, stopped -> automatic, running: Configure makes it automatic, whatever it was
$ python3 try '' 'faults=[dict(call="service.start_type", error=5, nth=3), dict(call="service.start", error=1069, service="NetBT")]'
    Dhcp   lost      automatic, running -> disabled, stopped: setting it was refused: result 5 (access denied)
    NetBT  changed   system, running -> system, stopped: starting it was refused: result 1069
$ python3 try '' 'faults=[dict(call="registry.delete", error=5)]'
    Dhcp   lost      automatic, running -> disabled, stopped
    NetBT  lost      system, running -> disabled, stopped: Configure did not find the flag NetworkDisabled
    NetworkDisabled  changed   - -> set: Configure did not take it
$ python3 try '' 'faults=[dict(call="registry.set", error=5)]'
Everything came back, but a message failed.
exit code 1
$ python3 try '' 'faults=[dict(call="file.copy", error=5)]'  --> Everything came back.
$ python3 try '' 'faults=[dict(call="file.write", error=5)]'
    DHCP       lost      off -> on
    addresses  lost      10.0.0.5/255.255.255.0 -> -
    gateways   lost      10.0.0.1 -> -: recording it was refused: error 5 (access denied)
$ python3 try '' 'membership=dict(domain=dict(dns_name="corp.example", flat_name="CORP")), faults=[dict(call="file.write", name=n, error=5) for n in ("Gateway", "Config")]'
    member of  changed   domain corp.example -> workgroup WrkGrp: the file does not say Config=RestoreAfterCreate
    gateways   lost      10.0.0.1 -> -: recording it was refused: error 5 (access denied)
$ python3 try '' 'faults=[dict(call="file.move", error=32, nth=1)]'
    DHCP       lost     off -> on
    addresses  lost     10.0.0.5/255.255.255.0 -> -
    gateways   lost     10.0.0.1 -> -: Configure failed: common\util\FileUtils:51 - File Move Failed  (error = 32)
    Dhcp   lost     automatic, running -> disabled, stopped
    NetBT  lost     system, running -> disabled, stopped: Configure failed: common\util\FileUtils:51 - File Move Failed  (error = 32)
    NetworkDisabled  changed  - -> set: Configure did not take it
