The report of a round trip names failed messages and refused settings; its document holds the whole story.

-- m.json --
{"schema": 1, "computer_name": "A\u001B[31m", "adapters": [{"dhcp_enabled": false, "caption": "[00000007] \u001B[31mCard",
  "ip_addresses": ["10.0.0.5"], "subnet_masks": ["255.255.255.0"], "gateways": ["10.0.9.1"]}],
 "files": [{"path": "C:\\restore.cfg", "text": "[Proxy]\r\nPassword=s3cret\r\n"}]}
-- deaf.json --
{"faults": [{"call": "wmi.connect", "hresult": "0x800706BA"}]}
-- console --
$ orvanta-config roundtrip --machine m.json | cat -v
Machine  m.json: A\x1B[31m, workgroup WORKGROUP, 1 adapter
Capture  PrepForImage wrote 17 entries into C:\restore.cfg
Restore  Configure: file handed over, Failure (SetGateway:52 - Configuring gateways failed)

Settings, before -> after
  computer
    name       stayed    A\x1B[31m
    member of  stayed    workgroup WORKGROUP
  adapter 7, \x1B[31mCard
    DHCP       restored  off
    addresses  restored  10.0.0.5/255.255.255.0
    gateways   lost      10.0.9.1 -> -
      setting it was refused: result 71 (gateway outside the adapter's subnets)

Refused by the machine
  adapter 7: gateways 10.0.9.1  refused: result 71 (gateway outside the adapter's subnets)

1 of 5 settings did not come back.
$ orvanta-config roundtrip --machine deaf.json | grep -A2 '^Capture'
Capture  PrepForImage failed: common\sys\OsVersion:129 - Error thrown from WMI initialization code.
Restore  Configure: no file handed over, not handled (common\sys\OsVersion:129 - Error thrown from WMI initialization code. (error = 0))

$ orvanta-config roundtrip --machine m.json --json --save-machine after.json >out.json  --> [exit code 1]
$ python3 -c 'import json; t = json.load(open("out.json")); print(list(t), t["everything_came_back"], *t["settings"][3:5], t["captured"], len(t["capture"]["posted"]), [r["reply"].get("Result") for r in t["restore"]], t["machine"]["adapters"] == json.load(open("after.json"))["adapters"], sep="\n")'
['schema', 'everything_came_back', 'settings', 'captured', 'capture', 'restore', 'machine']
False
{'subject': 'adapter 7, \x1b[31mCard', 'adapter': 7, 'setting': 'addresses', 'before': ['10.0.0.5/255.255.255.0'], 'after': ['10.0.0.5/255.255.255.0'], 'outcome': 'restored', 'recorded': 'Address=10.0.0.5, Netmask=255.255.255.0', 'reason': None}
{'subject': 'adapter 7, \x1b[31mCard', 'adapter': 7, 'setting': 'gateways', 'before': ['10.0.9.1'], 'after': [], 'outcome': 'lost', 'recorded': 'Gateway=10.0.9.1', 'reason': "setting it was refused: result 71 (gateway outside the adapter's subnets)"}
{'path': 'C:\\restore.cfg', 'text': '[Proxy]\r\nPassword=***\r\n[Global]\r\nConfig=RestoreAfterCreate\r\nRebootAfterConfig=True\r\n[TCP/IP]\r\nAddress=10.0.0.5\r\nDHCP=False\r\nDNS-Domain=\r\nDNS-Enabled=False\r\nDNS-Hostname=\r\nDNS-Server-Count=0\r\nDescription=\x1b[31mCard\r\nDeviceID=4110\r\nGateway=10.0.9.1\r\nMACAddress=080027123456\r\nNetmask=255.255.255.0\r\nPCIBus=0\r\nPCIDevice=3\r\nPCIFunction=0\r\nVendorID=32902\r\n'}
1
[None, 'Failure']
True
