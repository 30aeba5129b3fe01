The document of a simulation: its fields, each kind of change, and the earlier messages.

-- rename.cfg --
[Global]
ScheduleId=7
[Networking]
ComputerName=PC-42
-- imaging.json --
{"schema": 1, "services": [{"name": "Dhcp"}]}
-- fields --
import json, sys
told = json.load(sys.stdin)
print(*told, sep=", ")
for item in told.get("earlier", []) + [told]:
    print({name: item[name] for name in item if name not in ("schema", "log", "changes", "earlier", "machine")})
    kinds = {}
    for change in item["changes"]: kinds.setdefault((change["call"], change.get("method")), change)
    print(*kinds.values(), sep="\n")
-- console --
$ orvanta-config simulate rename.cfg --json --follow-restarts 3 | python3 fields
schema, status, reply, log, changes, sent, posted, restarts, earlier, machine
{'status': 1, 'reply': {'Schedule-ID': '7', 'Task-Sequence-ID': '', 'Result': 'Reboot'}, 'sent': [], 'posted': [], 'restarts': 0}
{'call': 'wmi.method', 'path': 'Win32_ComputerSystem.Name="TEMPLATE"', 'method': 'Rename', 'arguments': {'Name': 'PC-42', 'UserName': None, 'Password': None}, 'result': 0}
{'status': 1, 'reply': {'Schedule-ID': '7', 'Task-Sequence-ID': '', 'Result': 'Success'}, 'sent': [], 'posted': [], 'restarts': 1}
{'call': 'file.move', 'source': 'C:\\tarvo.cfg', 'destination': 'C:\\Program Files\\Orvanta\\Agent\\tarvo.cfg'}
$ orvanta-config simulate --message prep-for-image --machine imaging.json --json --deliver-posted | python3 fields | tail -n +2
{'status': 1, 'reply': {}, 'sent': [], 'posted': [{'type': 'Internal', 'name': 'Configure', 'values': [['Filename', 'C:\\tarvo.cfg']]}], 'restarts': 0}
{'call': 'file.write', 'path': 'C:\\restore.cfg', 'section': 'Global', 'key': 'Config', 'value': 'RestoreAfterCreate'}
{'call': 'file.copy', 'source': 'C:\\restore.cfg', 'destination': 'C:\\tarvo.cfg'}
{'call': 'registry.set', 'key': 'HKEY_LOCAL_MACHINE\\Software\\Orvanta\\Client Service', 'name': 'NetworkDisabled', 'data': 1}
{'call': 'service.start_type', 'service': 'Dhcp', 'start': 'disabled', 'result': 0}
{'status': 1, 'reply': {'Schedule-ID': '', 'Task-Sequence-ID': '', 'Result': 'Success'}, 'sent': [], 'posted': [], 'restarts': 0}
{'call': 'registry.delete', 'key': 'HKEY_LOCAL_MACHINE\\Software\\Orvanta\\Client Service', 'name': 'NetworkDisabled'}
{'call': 'service.start_type', 'service': 'Dhcp', 'start': 'automatic', 'result': 0}
{'call': 'service.start', 'service': 'Dhcp', 'result': 1056}
{'call': 'sleep', 'milliseconds': 3000}
{'call': 'file.move', 'source': 'C:\\tarvo.cfg', 'destination': 'C:\\Program Files\\Orvanta\\Agent\\tarvo.cfg'}
$ orvanta-config simulate examples/laptop.cfg --machine examples/laptop.machine.json --json | python3 fields | tail -n +3
{'call': 'wmi.method', 'path': 'Win32_ComputerSystem.Name="TEMPLATE"', 'method': 'JoinDomainOrWorkgroup', 'arguments': {'Name': 'corp.example', 'UserName': 'corp.example\\joiner', 'Password': '***', 'AccountOU': 'OU=Europe,OU=Sales,DC=corp,DC=example', 'FJoinOptions': 257}, 'result': 1332}
{'call': 'sleep', 'milliseconds': 8000}
{'call': 'wmi.method', 'path': 'Win32_ComputerSystem.Name="TEMPLATE"', 'method': 'Rename', 'arguments': {'Name': 'LAPTOP-118', 'UserName': 'CORP\\joiner', 'Password': '***'}, 'result': 0}
{'call': 'wmi.method', 'path': 'Win32_NetworkAdapterConfiguration.Index=7', 'method': 'EnableDHCP', 'arguments': {}, 'result': 0}
{'call': 'wmi.method', 'path': 'Win32_NetworkAdapterConfiguration.Index=7', 'method': 'SetDNSServerSearchOrder', 'arguments': {}, 'result': 0}
$ orvanta-config simulate examples/server.cfg --machine examples/server.machine.json --json | python3 fields
schema, status, reply, log, changes, sent, posted, restarts, machine
{'status': 1, 'reply': {'Schedule-ID': '', 'Task-Sequence-ID': '', 'Result': 'Success'}, 'sent': [], 'posted': [], 'restarts': 0}
{'call': 'registry.delete', 'key': 'HKEY_LOCAL_MACHINE\\Software\\Orvanta\\Client Service', 'name': 'NetworkDisabled'}
{'call': 'service.start_type', 'service': 'Dhcp', 'start': 'automatic', 'result': 0}
{'call': 'service.start', 'service': 'Dhcp', 'result': 0}
{'call': 'sleep', 'milliseconds': 3000}
{'call': 'wmi.method', 'path': 'Win32_NetworkAdapterConfiguration.Index=4', 'method': 'EnableStatic', 'arguments': {'IPAddress': ['192.0.2.10', '192.0.2.11'], 'SubNetMask': ['255.255.255.0', '255.255.255.0']}, 'result': 0}
{'call': 'wmi.method', 'path': 'Win32_NetworkAdapterConfiguration.Index=4', 'method': 'SetGateways', 'arguments': {'DefaultIPGateway': ['192.0.2.1']}, 'result': 0}
{'call': 'wmi.method', 'path': 'Win32_NetworkAdapterConfiguration.Index=9', 'method': 'SetDNSServerSearchOrder', 'arguments': {'DNSServerSearchOrder': ['10.1.0.53']}, 'result': 0}
{'call': 'process.run', 'command': 'route DELETE 172.16.0.0', 'result': 0}
{'call': 'file.move', 'source': 'C:\\tarvo.cfg', 'destination': 'C:\\Program Files\\Orvanta\\Agent\\tarvo.cfg'}
