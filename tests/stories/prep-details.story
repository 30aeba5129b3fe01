What of a machine is recorded for an image when the machine is odd, and what of the file is kept.

-- try --
# try MACHINE: how the message ends on a machine of Dhcp and this, and in one line the restore file afterwards
import json, subprocess, sys
command = ["orvanta-config", "simulate", "--message", "prep-for-image", "--json", "--machine", "-"]
machine = '{"schema": 1, "services": [{"name": "Dhcp"}]' + ("," + sys.argv[1] if sys.argv[1] else "") + "}"
told = json.loads(subprocess.run(command, stdout=subprocess.PIPE, input=machine.encode()).stdout)
files = {file["path"]: file["text"] for file in told["machine"]["files"]}
print("status", told["status"], "posted", len(told["posted"]), "flags", len(told["machine"]["registry"]),
      "Dhcp", told["machine"]["services"][0]["start"], "not copied" if files.get("C:\\tarvo.cfg") != files.get("C:\\restore.cfg") else "")
print(repr(files.get("C:\\restore.cfg")))
for line in told["log"]:
    if line["level"] == 0: print(line["text"])
-- console --
$ python3 try ''
status 1 posted 1 flags 1 Dhcp disabled 
'[Global]\r\nConfig=RestoreAfterCreate\r\nRebootAfterConfig=True\r\n'
$ python3 try '"adapters": [{"index": 12, "pnp_device_id": "ROOT\\NET"}, {"index": 6, "ip_enabled": false}, {"index": 7, "dns_servers": ["10.0.0.2"]}, {"index": 8}]'
status 1 posted 1 flags 1 Dhcp disabled 
'[Global]\r\nConfig=RestoreAfterCreate\r\nRebootAfterConfig=True\r\n[Interface1]\r\nAddress=0.0.0.0\r\nDHCP=True\r\nDNS-Domain=\r\nDNS-Enabled=True\r\nDNS-Hostname=\r\nDNS-Server-Count=1\r\nDescription=Intel(R) PRO/1000 MT Desktop Adapter\r\nDeviceID=4110\r\nMACAddress=080027123456\r\nNetmask=0.0.0.0\r\nPCIBus=0\r\nPCIDevice=3\r\nPCIFunction=0\r\nVendorID=32902\r\n[Interface2]\r\nAddress=0.0.0.0\r\nDHCP=True\r\nDNS-Domain=\r\nDNS-Enabled=False\r\nDNS-Hostname=\r\nDNS-Server-Count=0\r\nDescription=Intel(R) PRO/1000 MT Desktop Adapter\r\nDeviceID=4110\r\nMACAddress=080027123456\r\nNetmask=0.0.0.0\r\nPCIBus=0\r\nPCIDevice=3\r\nPCIFunction=0\r\nVendorID=32902\r\n'
$ python3 try '"adapters": [{"pnp_device_id": "PCIVEN_", "caption": "Card", "mac_address": null, "location_information": "slot 3", "dns_host_name": null}]'
status 1 posted 1 flags 1 Dhcp disabled 
'[Global]\r\nConfig=RestoreAfterCreate\r\nRebootAfterConfig=True\r\n[TCP/IP]\r\nAddress=0.0.0.0\r\nDHCP=True\r\nDNS-Domain=\r\nDNS-Enabled=False\r\nDNS-Hostname=\r\nDNS-Server-Count=0\r\nDescription=ard\r\nDeviceID=0\r\nMACAddress=\r\nNetmask=0.0.0.0\r\nPCIBus=4294967295\r\nPCIDevice=4294967295\r\nPCIFunction=4294967295\r\nVendorID=0\r\n'
$ python3 try '"adapters": [{"gateways": ["192.168.10.1"]}], "files": [ {"path": "C:\\tarvo.cfg", "text": "[Global]\r\nConfig=Restore\r\n"}, {"path": "C:\\restore.cfg", "text": "; first\r\n[tcp/ip]\r\n# of an old card\r\nGATEWAY = 10.0.0.1\r\nRoute0=x\r\n\r\n[Site]\r\nName=HQ\r\n"}]'
status 1 posted 1 flags 1 Dhcp disabled 
'; first\r\n[tcp/ip]\r\n# of an old card\r\nGATEWAY=192.168.10.1\r\nRoute0=x\r\nAddress=0.0.0.0\r\nDHCP=True\r\nDNS-Domain=\r\nDNS-Enabled=False\r\nDNS-Hostname=\r\nDNS-Server-Count=0\r\nDescription=Intel(R) PRO/1000 MT Desktop Adapter\r\nDeviceID=4110\r\nMACAddress=080027123456\r\nNetmask=0.0.0.0\r\nPCIBus=0\r\nPCIDevice=3\r\nPCIFunction=0\r\nVendorID=32902\r\n\r\n[Site]\r\nName=HQ\r\n[Global]\r\nConfig=RestoreAfterCreate\r\nRebootAfterConfig=True\r\n'
$ python3 try '"files": [{"path": "C:\\restore.cfg", "text": "[Site]\r\n"}], "faults": [{"call": "file.write", "error": 5}]'
status 1 posted 1 flags 1 Dhcp disabled 
'[Site]\r\n'
$ python3 try '"faults": [{"call": "file.write", "error": 3}]'
status 1 posted 1 flags 1 Dhcp disabled 
None
handlers\internal\PrepForImage:97 PrepForImage::Prepare(): caught general error
	common\util\FileUtils:63 - Failed to copy file 
	Value=0, SystemError=0x00000002
$ python3 try '"faults": [{"call": "file.write", "name": "Config", "error": 5}]'
status 1 posted 1 flags 1 Dhcp disabled 
'[Global]\r\nRebootAfterConfig=True\r\n'
$ python3 try '"adapters": [{}], "faults": [ {"call": "wmi.query", "contains": "Caption", "error": 5}]'
status 0 posted 0 flags 0 Dhcp automatic 
None
handlers\internal\PrepForImage:131 PrepForImage::HandleMessage(): caught general error
	Wmi:711 - Wmi query failed to get NIC caption
	Value=-2147024891, SystemError=0x00000000
$ python3 try '"faults": [{"call": "file.copy", "error": 5}]'
status 1 posted 1 flags 1 Dhcp disabled not copied
'[Global]\r\nConfig=RestoreAfterCreate\r\nRebootAfterConfig=True\r\n'
handlers\internal\PrepForImage:97 PrepForImage::Prepare(): caught general error
	common\util\FileUtils:63 - Failed to copy file 
	Value=0, SystemError=0x00000005
$ python3 try '"faults": [{"call": "registry.set", "error": 5}]'
status 0 posted 1 flags 0 Dhcp automatic 
'[Global]\r\nConfig=RestoreAfterCreate\r\nRebootAfterConfig=True\r\n'
handlers\internal\PrepForImage:131 PrepForImage::HandleMessage(): caught general error
	common\sys\Registry:306 - WriteDWord() - Write failed.
	Value=7, SystemError=0x00000000
