How a run ends is told in the reply, the status and the exit code, and by where the file is afterwards.

-- reading.json --
{"faults": [{"call": "wmi.connect", "hresult": "0x800706BA"}]}
-- lsa.json --
{"faults": [{"call": "lsa.open", "error": 5}]}
-- late.json --
{"files": [{"path": "C:\\Program Files\\Orvanta\\Agent\\tarvo.cfg", "text": "old"}]}
-- flag.json --
{"registry": [{"key": "HKEY_LOCAL_MACHINE\\Software\\Orvanta\\Client Service",
   "name": "NetworkDisabled", "type": "REG_DWORD", "data": 1}]}
-- no.json --
{"registry": [{"key": "HKEY_LOCAL_MACHINE\\Software\\Orvanta\\Client Service",
   "name": "NetworkDisabled", "type": "REG_DWORD", "data": 1}],
 "faults": [{"call": "registry.set", "error": 5}]}
-- member.json --
{"membership": {"workgroup": null, "domain": {"dns_name": "corp.example", "flat_name": "CORP"}}}
-- restore.json --
{"files": [{"path": "C:\\restore.cfg", "text": "[Global]\n"}]}
-- try --
# try LINES [OPTION...]: reply and changes of files after a run of LINES, a "|" between the lines
printf '%s' "$1" | tr '|' '\n' >pc.cfg; shift
orvanta-config simulate pc.cfg "$@" --verbose >out; code=$?
sed -n '/caught/,/^[^ ]/{/^  /p};/not exist/p' out
sed -n '/^Reply/,/^$/s/^  //p' out | tr -s ' \n' ' ,' | sed 's/Schedule-ID (empty),Task-Sequence-ID (empty)/no IDs/'; echo " exit code $code," $(grep -q 'C:.tarvo.*-> -' out && echo put away)
-- console --
$ sh try '[Global]|ScheduleId=1|TaskSequence=2'  --> Schedule-ID 1,Task-Sequence-ID 2,Result Success,status 1, exit code 0, put away
$ sh try '[Networking]|ComputerName=A'  --> no IDs,Result Reboot,status 1, exit code 0,
$ sh try '[Networking]|Workgroup=True|Domain=W' --machine member.json  --> no IDs,Result Reboot,status 1, exit code 0,
$ sh try '[Networking]|ComputerName=A|[global]|rebootafterconfig=FALSE'  --> no IDs,Result Failure,Status-Module Tarvo,Status-Code 3 (the file forbids the restart that it needs),status 1, exit code 1, put away
$ sh try '[Networking]|ComputerName=template|[Global]|RebootAfterConfig=False'  --> no IDs,Result Success,status 1, exit code 0, put away
$ sh try ''  --> Result Failure,Status-Module Tarvo,Status-Code 3 (the file is empty, unreadable or broken),status 1, exit code 1,
$ sh try '[TCP/IP]|DHCP=False|Netmask=255.0.0.0'
  0  internal/Configure:581 Configure::HandleMessage(): caught win32 error
       SetStatic:62 - Static IP addresses/masks list empty
       Value=2, SystemError=0x00000000
no IDs,Result Failure,Status-Module Win32,Status-Code 0 (no address or mask is given),status 1, exit code 1, put away
$ sh try '[TCP/IP]|DHCP=False|Address=nowhere'
  0  internal/Configure:607 Configure::HandleMessage(): caught general (win32) error
       common\ipc\IpAddress:58 - IPAddress::Connect Name Resolution Error
       Value=0, SystemError=0x00002AF9
no IDs,Result Failure,Status-Module Win32,Status-Code 11001 (no such host),status 1, exit code 1, put away
$ sh try '[Global]|Config=Restore|[Broken' --machine restore.json; grep 'move' out  # a damaged file hides no restore
status 1, exit code 0,
  2  move C:\restore.cfg to C:\tarvo.cfg
$ sh try '[Broken' --machine flag.json; grep registry: out  # what this message took, the next one finds
Result Failure,Status-Module Tarvo,Status-Code 3 (the file is empty, unreadable or broken),status 1, exit code 1,
  1  registry: delete HKEY_LOCAL_MACHINE\Software\Orvanta\Client Service\NetworkDisabled
  2  registry: set HKEY_LOCAL_MACHINE\Software\Orvanta\Client Service\NetworkDisabled to 1
$ sed 's/"data": 1/"data": 0/' flag.json >off.json; sh try '[Broken' --machine off.json; grep -c registry: out  # nor is more put back
Result Failure,Status-Module Tarvo,Status-Code 3 (the file is empty, unreadable or broken),status 1, exit code 1,
1
$ sh try '[Broken' --machine no.json; grep 'registry: set' out
Result Failure,Status-Module Tarvo,Status-Code 3 (the file is empty, unreadable or broken),status 1, exit code 1,
  2  registry: set HKEY_LOCAL_MACHINE\Software\Orvanta\Client Service\NetworkDisabled to 1  refused: error 5 (access denied)
$ sh try '[Global]|Config=Restore'  # without a restore file the file itself counts  --> no IDs,Result Success,status 1, exit code 0, put away
$ x=$(head -c 1048576 /dev/zero | tr '\0' 7); for k in 'Networking]|ComputerName' 'TCP/IP]|PCIBus' 'TCP/IP]|MACAddress' 'TCP/IP]|Static-Route-Count' 'Global]|ScheduleId'; do echo "[$k=$x" | tr '|' '\n' | orvanta-config simulate - | grep -o 'Result.*'; done | tr -s ' \n' ' '
Result Reboot Result Success Result Success Result Success Result Success 
$ sh try '[Global]' --set 'Filename=C:\other.cfg'
  0  internal/Configure:629 Configure::HandleMessage(): File C:\other.cfg does not exist
status 0, not handled, exit code 1,
$ sh try '[Global]' --machine late.json; grep 'C:.Prog' out
no IDs,Result Success,status 1, exit code 0, put away
  1  delete C:\Program Files\Orvanta\Agent\tarvo.cfg
  2  move C:\tarvo.cfg to C:\Program Files\Orvanta\Agent\tarvo.cfg
    C:\Program Files\Orvanta\Agent\tarvo.cfg  3 bytes -> 8 bytes
$ sh try '[Global]' --at 'C:\Program Files\Orvanta\Agent\tarvo.cfg'  --> no IDs,Result Success,status 1, exit code 0,
$ sh try '[Global]' --at 'c:/program files//orvanta/./AGENT/Tarvo.cfg'; grep -e delete -e move out || echo left  # the same file
no IDs,Result Success,status 1, exit code 0,
left
$ sh try '[Networking]|Workgroup=True|Domain=W' --machine lsa.json
  0  internal/Configure:607 Configure::HandleMessage(): caught general (win32) error
       Domain:121 -  - IsDomainMember returned error 
       Value=0, SystemError=0x00000005
no IDs,Result Failure,Status-Module Win32,Status-Code 5 (access denied),status 1, exit code 1, put away
$ sh try '[Networking]|ComputerName=A' --machine reading.json
  0  Toolbox-Main:103 Toolbox::DoMagic caught an unhandled exception
  0  Exception Details: common\sys\OsVersion:129 - Error thrown from WMI initialization code. (error = 0) 
status 0, not handled, exit code 1,
