Whatever the machine refuses, reply and log name it; a method that answers 1 is done after a restart.

-- nic.cfg --
[TCP/IP]
DHCP=False
Address=10.0.0.5
Netmask=255.0.0.0
Gateway=10.0.0.1
SetDNSInfo=True
DNS-Server-Count=1
DNS-Server0=10.0.0.2
DNS-SuffixSearchOrder=a.example
Static-Route-Count=1
Route0=10.1.0.0 255.255.0.0 10.0.0.1
-- dhcp.cfg --
[TCP/IP]
MACAddress=080027654321
DHCP=True
DNS-Use-DHCP=True
-- rename.cfg --
[Networking]
ComputerName=A
-- method.json --
{"faults": [{"call": "wmi.method", "method": "METHOD", "result": "RESULT"}]}
-- route.json --
{"persistent_routes": [{"destination": "10.9.0.0", "mask": "255.255.0.0", "next_hop": "10.0.0.1", "metric": 1}],
 "faults": [{"call": "process.run", "contains": "METHOD", "result": "RESULT"}]}
-- try --
# try CONFIG METHOD [FAULTS]: what a run tells when METHOD answers 1, and a result of failure
for result in 1 ${result:-87}; do
  sed "s/METHOD/$2/; s/\"RESULT\"/$result/" ${3:-method.json} >m.json
  orvanta-config simulate $1 --machine m.json --verbose |
    grep -A1 -o -e 'Set[A-Z][a-zA-Z]*:[0-9]* - .*' -e 'ChangeCompName:.*' -e 'SystemError.*' -e 'Result .*' -e 'Status-Code.*' |
    grep -v -- -- | tr '\n' ';'; echo
done
-- console --
$ sh try rename.cfg Rename
Result            Reboot;
ChangeCompName:45 - Configuring computer name failed;SystemError=0x00000057;Result            Failure;Status-Code       87 (invalid argument);
$ result=-2147217406 sh try dhcp.cfg EnableDHCP
Result            Success;
SetDhcp:48 - Configuring DHCP failed;SystemError=0x80041002;Result            Failure;Status-Code       -2147217406 (no such object);
$ sh try dhcp.cfg SetDNSServerSearchOrder
Result            Success;
SetDns:60 - Configuring DNS via DHCP failed;SystemError=0x00000057;Result            Failure;Status-Code       87 (invalid argument);
$ sh try nic.cfg EnableStatic
SetGateway:52 - Configuring gateways failed;SystemError=0x00000054;Result            Failure;Status-Code       84 (no IP on the adapter, or DHCP is on);
SetStatic:68 - Configuring static IP addresses failed;SystemError=0x00000057;Result            Failure;Status-Code       87 (invalid argument);
$ sh try nic.cfg SetGateways
Result            Success;
SetGateway:52 - Configuring gateways failed;SystemError=0x00000057;Result            Failure;Status-Code       87 (invalid argument);
$ sh try nic.cfg SetDNSServerSearchOrder
Result            Success;
SetDns:68 - Configuring DNS servers failed;SystemError=0x00000057;Result            Failure;Status-Code       87 (invalid argument);
$ sh try nic.cfg SetDNSSuffixSearchOrder
Result            Success;
SetDnsSuffix:54 - Configuring DNS suffixes failed;SystemError=0x00000057;Result            Failure;Status-Code       87 (invalid argument);
$ sh try nic.cfg DELETE route.json
SetStaticRoute:149 - Failed to delete static route;SystemError=0x00000001;Result            Failure;Status-Code       1 (the route tool failed, or cannot be run);
SetStaticRoute:149 - Failed to delete static route;SystemError=0x00000057;Result            Failure;Status-Code       87 (the route tool failed, or cannot be run);
$ result=-2147217406 sh try nic.cfg ADD route.json
SetStaticRoute:151 - Failed to add static route;SystemError=0x00000001;Result            Failure;Status-Code       1 (the route tool failed, or cannot be run);
SetStaticRoute:151 - Failed to add static route;SystemError=0x80041002;Result            Failure;Status-Code       -2147217406 (the route tool failed, or cannot be run);
