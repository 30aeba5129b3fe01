A plan foretells where its run will fail, why, and what is lost by it; what the machine file leaves unknown is taken to succeed.

-- unknown.json --
{"directory": null, "decrypt": null}
-- locked.json --
{"decrypt": null}
-- routed.json --
{"persistent_routes": [{}, {"destination": "10.2.0.0"}]}
-- refusing.json --
{"faults": [{"call": "process.run", "contains": "ADD", "result": 87}]}
-- no-program.json --
{"faults": [{"call": "process.run", "contains": "10.3.0.0", "error": 2}]}
-- wrong.json --
{"decrypt": {"U": "joiner", "BAD": "wrong"}}
-- locked-down.json --
{"membership": {"workgroup": null, "domain": {"dns_name": "corp.example", "flat_name": "CORP"}},
 "registry": [{"key": "HKEY_LOCAL_MACHINE\\Software\\Orvanta\\Client Service", "name": "NetworkDisabled", "type": "REG_DWORD", "data": 1}],
 "faults": [{"call": "service.start_type", "error": 5, "nth": 1}]}
-- six.json --
{"adapters": {"8": {"gateways": ["10.20.0.1", "fe80::1"]}}}
-- try --
# try LINES [OPTION...]: the plan of LINES below its machine, a "|" between the lines
lines=$1; shift
echo "$lines" | tr '|' '\n' | orvanta-config plan - "$@" | sed '1,/^Machine/d'
-- told --
# told LINES [OPTION...]: what its document says of the outcome, and of the commands that fail, are unknown or not reached
import json, subprocess, sys
done = subprocess.run(["orvanta-config", "plan", "-", "--json", "--detailed-exitcode", *sys.argv[2:]], input=sys.argv[1].replace("|", "\n").encode(), stdout=subprocess.PIPE)
plan = json.loads(done.stdout)
print(plan["outcome"], plan["changes"], plan["pause_ms"], "exit code", done.returncode)
for number, command in enumerate(plan["commands"], 1):
    for each in [command, *command.get("commands", [])]:
        if each["will_fail"] or "unknown" in each or not each["reached"]:
            print(number, each["class"].split(":")[-1], each["will_fail"], each.get("unknown"), each["reached"])
-- member.json --
{"membership": {"workgroup": null, "domain": {"dns_name": "corp.example", "flat_name": "CORP", "has_sid": true}}, "directory": null}
-- kept.json --
{"faults": [{"call": "file.move", "error": 5}]}
-- console --
$ sh try '[Networking]|Workgroup=False|DNSDomain=corp.example|DSOrganizationalUnit=Sales|ComputerName=B|[TCP/IP]|DHCP=True' | grep -e ^S -e will -e lost -e ^N
Summary  1 change, 1 restart, no pauses; fails at 3 JoinDomain
                     will fail: result 1326 (wrong user or password) [C512]
                     lost by it: the file is put away, the join never happens, the restart never comes
Never done: the run fails and the file is put away
$ sh try '[TCP/IP]|DHCP=False|Address=10.0.0.5|Netmask=255.0.0.0|Gateway=192.168.0.1|DNS-Use-DHCP=True|[NicEntry1]|DHCP=True|[NicEntry2]|DHCP=True' | grep -e ^S -e will -e lost -e ' now '
Summary  1 change, 0 restarts, 0.3 minutes of pauses; fails at 1 ConfigureNic
                   will fail: result 71 (gateway outside the adapter's subnets) [C206]
                   lost by it: the file is put away, 3 adapters are not fully configured
  20 s now for 1 static adapter
$ sh try '[TCP/IP]|Static-Route-Count=2|Route1=10.1.0.0 255.255.0.0 10.0.0.1 x 1|Route2=10.3.0.0 255.255.0.0 10.0.0.1 x 1' --machine routed.json | grep -A1 Route
  2  SetStaticRoute  - 10.2.0.0/255.255.0.0 via 10.0.0.1 metric 1  [TCP/IP] lines 3-4
                     + 10.3.0.0/255.255.0.0 via 10.0.0.1 metric 1
$ sh try '[TCP/IP]|DHCP=True' --machine six.json | tail -n 1
  fe80::1 of the machine's adapter 8 is taken for the name of a host, which fails the run [C517]
$ python3 told '[Networking]|Workgroup=False|DNSDomain=corp.example|DSOrganizationalUnit=Sales|DomainUsername=ENCIPHERED-USER|DomainPassword=ENCIPHERED-PASSWORD|ComputerName=B' --machine unknown.json
restart 2 0 exit code 2
3 JoinDomain None directory True
$ python3 told '[Networking]|Workgroup=False|DNSDomain=corp.example|DSOrganizationalUnit=Sales|DomainUsername=ENCIPHERED-USER|DomainPassword=ENCIPHERED-PASSWORD' --machine locked.json
restart 1 0 exit code 2
1 JoinDomain None decrypt True
$ python3 told '[Networking]|Workgroup=False|DNSDomain=corp.example|JoinDomainBeforeNameChange=True|ComputerName=B|[TCP/IP]|DHCP=True'
failure 0 0 exit code 1
1 JoinDomain {'answer': 'result 1326', 'meaning': 'wrong user or password', 'code': 'C512'} None True
2 Sleep None None False
3 ChangeCompName None None False
4 ConfigureNic None None False
4 SetDhcp None None False
5 Reboot None None False
$ python3 told '[Global]|RebootAfterConfig=False|[Networking]|ComputerName=B|Workgroup=False|DNSDomain=corp.example'
failure 1 0 exit code 1
2 Reboot {'answer': 'no restart', 'meaning': 'RebootAfterConfig=False forbids it', 'code': 'C302'} None True
3 JoinDomain None None False
4 Reboot None None False
$ python3 told '[TCP/IP]|Static-Route-Count=1|Route1=10.1.0.0 255.255.0.0 10.0.0.1 x 1' --machine refusing.json
failure 0 0 exit code 1
2 SetStaticRoute {'answer': 'exit code 87', 'meaning': 'Failed to add static route', 'code': None} None True
$ python3 told '[Networking]|ComputerName=B'  --> restart 1 0 exit code 2
$ python3 told '[TCP/IP]|DHCP=True|DNS-Use-DHCP=True'  --> nothing 0 0 exit code 0
$ python3 told '[TCP/IP]|MACAddress=080027654321|DHCP=True'  --> success 1 0 exit code 2
$ for o in '--machine none.json' --no-such-option; do echo '[TCP/IP]' | orvanta-config plan - --detailed-exitcode $o 2>&1 | cut -d: -f1-2; done; orvanta-config plan none.cfg --detailed-exitcode 2>&1
orvanta-config: none.json
orvanta-config: --no-such-option
orvanta-config: none.cfg: cannot be read: No such file or directory; name a file that you can read
[exit code 3]
$ sh try '[Networking]|Workgroup=False|DNSDomain=corp.example' --html page.html >out; grep -o '<p class="bad">will fail[^<]*' page.html
<p class="bad">will fail: result 1326 (wrong user or password) [C512]
$ sh try '[TCP/IP]|Static-Route-Count=2|Route1=10.1.0.0 255.255.0.0 10.0.0.1 x 1|Route2=10.3.0.0 255.255.0.0 10.0.0.1 x 1' --machine no-program.json | grep -e will -e lost
                     will fail: error 2 (no such file or OU)
                     lost by it: the file is put away, the routes are not all as wanted
$ sh try '[Networking]|Workgroup=False|DNSDomain=corp.example|DSOrganizationalUnit=Sales/Asia|DomainUsername=U|DomainPassword=BAD' --machine wrong.json | grep will
                 will fail: result 1326 (wrong user or password) [C506]
$ sh try '[TCP/IP]|DHCP=True|[NicEntry1]|[NicEntry2]|DHCP=True|[Networking]|ComputerName=B' | sed -n '/fully/,$p'
                     lost by it: the file is put away, the name stays, the restart never comes, 1 adapter is not fully configured
       SetDhcp       never done  line 5
Never done: the run fails and the file is put away
  4  ChangeCompName  Name=B {User=}  [Networking] line 7
                     TEMPLATE -> B
  5  Reboot
$ sh try '[ConfigSettings]|Server=a|; note' --detailed-exitcode
Summary  0 changes, 0 restarts, no pauses; succeeds

Runs now
  2 lines of [ConfigSettings] for the agent
$ python3 told '[ConfigSettings]|Server=a'
success 0 0 exit code 2
$ sh try '[Global]|ScheduleId=1' --machine locked-down.json | grep ^S
Summary  7 changes, 0 restarts, 0.1 minutes of pauses; succeeds
$ sh try '[Global]|ScheduleId=1' --machine locked-down.json | grep -o 'refused.*'  --> refused, and ignored: service Dhcp: automatic: result 5 (access denied)
$ sh try '[Global]|ScheduleId=1' --machine locked-down.json | grep leaves
  1  EnableNetworking  leaves corp.example, joins WrkGrp  registry value NetworkDisabled
$ sh try '[Networking]|Workgroup=False|DNSDomain=corp.example|DSOrganizationalUnit=Sales|DomainUsername=U|DomainPassword=P|ComputerName=B' --machine unknown.json --follow-restarts 3 | tail -2
End
  settled after 2 restarts
$ sh try '[Networking]|DSOrganizationalUnit=Sales' --machine member.json --follow-restarts 1
Summary  1 change, 0 restarts, no pauses; settled after 0 restarts

Runs now
  1  MoveOu  OU=Sales  [Networking] line 2
             OU=(unknown),DC=corp,DC=example -> OU=Sales,DC=corp,DC=example
             unknown on this machine whether the directory allows it; it is assumed to succeed
Run
  reply Success

End
  settled after 0 restarts
$ echo '{"schema": 1, "hosts": null, "adapters": [{}]}' >hosts
$ sh try '[TCP/IP]|DHCP=False|Address=10.0.0.300|Netmask=255.0.0.0' --machine hosts | grep -e Summary -e will
Summary  0 changes, 0 restarts, no pauses; fails at 1 ConfigureNic
                   will fail: result 66 (invalid address or mask) [C201]
$ sh try '[TCP/IP]|DHCP=False|Address=10.0.0.5|Netmask=255.0.0.0|Gateway=2001:db8::1' --machine hosts | grep -e Summary -e will
Summary  1 change, 0 restarts, 0.3 minutes of pauses; fails at 1 ConfigureNic
                   will fail: result 71 (gateway outside the adapter's subnets) [C231]
$ sh try '[TCP/IP]|DHCP=False|Address=10.0.0.5|Netmask=255.0.0.0|Gateway=fe80::1' --machine hosts | grep -e Summary -e taken
Summary  0 changes, 0 restarts, no pauses; fails: there is no plan
$ sh try '[TCP/IP]|DHCP=False|Address=pc.example|Netmask=255.0.0.0|Gateway=10.0.0.1, gw.example|SetDNSInfo=True|DNS-Server-Count=1|DNS-Server0=dns.example|Static-Route-Count=1|Route0=10.2.0.0 255.255.0.0 gw.example 0 5' --machine hosts --follow-restarts 1
Summary  4 changes, 0 restarts, 0.3 minutes of pauses; settled after 0 restarts

Runs now
  1  ConfigureNic    adapter 7, Intel(R) PRO/1000 MT Desktop Adapter  [TCP/IP] line 1
                     the next free one, no PCI location or MAC address given
       SetStatic     IP and Subnet Masks: {ip=(unknown),mask=255.0.0.0}  lines 2-4
                     dhcp -> (unknown)/255.0.0.0
                     unknown on this machine whether the host names resolve; it is assumed to succeed
       Sleep         Duration=20000 milliseconds
       SetGateway    Gateways=10.0.0.1,(unknown)  line 5
                     none -> 10.0.0.1,(unknown)
                     unknown on this machine whether the host names resolve; it is assumed to succeed
       SetDns        DNS Servers=(unknown)  line 8
                     none -> (unknown)
                     unknown on this machine whether the host names resolve; it is assumed to succeed
  2  SetStaticRoute  + 10.2.0.0/255.255.0.0 via (unknown) metric 5  [TCP/IP] line 10
                     unknown on this machine whether the host names resolve; it is assumed to succeed
Pauses
  20 s now for 1 static adapter
Run
  reply Success

End
  settled after 0 restarts
$ sh try '[TCP/IP]|DHCP=True' --machine kept.json
Summary  0 changes, 0 restarts, no pauses; fails at its end

Runs now
  1  ConfigureNic  adapter 7, Intel(R) PRO/1000 MT Desktop Adapter  [TCP/IP] line 1
                   the next free one, no PCI location or MAC address given
       SetDhcp     not needed: dhcp already  line 2
At the end the file cannot be put away, and the run fails
  will fail: error 5 (access denied)
$ sh try '[TCP/IP]|DHCP=True' --machine kept.json --follow-restarts 1 | sed -n '/^Run/,$p'
Runs now
  1  ConfigureNic  adapter 7, Intel(R) PRO/1000 MT Desktop Adapter  [TCP/IP] line 1
                   the next free one, no PCI location or MAC address given
       SetDhcp     not needed: dhcp already  line 2
At the end the file cannot be put away, and the run fails
  will fail: error 5 (access denied)
Run
  reply Failure

End
  failed after 0 restarts: common\util\FileUtils:51 - File Move Failed, system error 5
