A finding shows its line, a caret below what is at fault and a hint; the document holds the same.

-- two.cfg --
[Networking]
DomainPassword=s3cret
DomainPassword=other
-- allowed.cfg --
; orvanta: allow C107 because every image holds it
[TCP/IP]
SetDNSInfo=True
DNS-Server-Count=1
# Orvanta: allow C202, C203 because the name is in the hosts file
DNS-Server0=10.0.0.2
  dns.example
DNS-Domain=corp.example
; orvanta: allow C214
[Global]
; orvanta: allow
ScheduleId=7
Config=x
-- continued.cfg --
[TCP/IP]
DHCP=False
Address=10.0.0.5
; orvanta: allow C204 because it is a test
  10.0.0.255
Netmask=255.0.0.0
-- console --
$ printf '[TCP/IP]\r\nDHCP=False\r\nAddress = 10.0.0.5,10.0.0.6\r\n\tNetmask=255.255.255.0 255.0.255.0\r\n' >a.cfg; orvanta-config check a.cfg
a.cfg:4:24: error: "255.0.255.0" is not a valid netmask: the 1 bits must be contiguous [C205]
   Netmask=255.255.255.0 255.0.255.0
                         ^~~~~~~~~~~
  hint: write a mask such as 255.255.255.0
1 file checked: 1 error
[exit code 1]
$ printf '[Global]\nScheduleId=7\n' | orvanta-config check -  --> 1 file checked: nothing found
$ printf '[Printers]\n[Global]\nConfig=x\n' | orvanta-config check - --json | tr -s '\n ' ' '
{ "schema": 1, "findings": [ { "file": "standard input", "line": 1, "column": 1, "severity": "note", "code": "C102", "message": "section \"Printers\" is not read", "hint": "remove it, unless another program reads it" }, { "file": "standard input", "line": 3, "column": 8, "severity": "warning", "code": "C214", "message": "\"x\" asks for nothing", "hint": "write Restore or RestoreAfterCreate, or leave it out" } ], "files": 1 } 
$ orvanta-config check two.cfg | grep '^  Domain'
  DomainPassword=***
  DomainPassword=***
$ printf '[Glob\033[31mal]\nA\tB\007=%%s%%n\n[Global]\nConfig=\033[31m\n' | orvanta-config check - | cat -v | grep -e x1B -e ^1
standard input:1:1: note: section "Glob\x1B[31mal" is not read [C102]
  [Glob\x1B[31mal]
standard input:4:8: warning: "\x1B[31m" asks for nothing [C214]
  Config=\x1B[31m
1 file checked: 1 warning, 1 note
$ x=$(head -c 5000 /dev/zero | tr '\0' x); printf "[Networking]\nComputerName=$x\nDSOrganizationalUnit=$x\\\\a\n" | orvanta-config check - | awk 'length > 190 { print length }'
$ (echo '[Global]'; seq -f 'Oddity%g=1' 150; echo ComputerName=A) | orvanta-config check - | sed -n '1,2p;$p'  # a hundred of a severity at most
standard input:1:1: note: 50 more findings are not shown [C016]
  hint: correct these first and check again
1 file checked: 1 error, 100 warnings, 1 note
$ python3 -c 'import pty; pty.spawn(["sh", "-c", "(sleep 1; echo [Global]; echo ScheduleId=7) | orvanta-config check - examples/server.cfg"])' | tr '\r' '\n' | cat -v | uniq | grep .  # on a terminal
checked 1 of 2 files
^[[K2 files checked: nothing found
$ orvanta-config check examples | tail -1  --> 4 files checked: nothing found
$ for e in office-pc laptop server; do orvanta-config check examples/$e.cfg --machine examples/$e.machine.json; done | uniq -c
      3 1 file checked: nothing found
$ orvanta-config check allowed.cfg | grep -v '^  '  # what is allowed
allowed.cfg:9:1: warning: this comment allows nothing that is found [C023]
allowed.cfg:11:1: warning: this comment allows nothing that is found [C023]
allowed.cfg:13:8: warning: "x" asks for nothing [C214]
1 file checked: 3 warnings
$ for a in '' --strict '--ignore C214 --ignore C023 --strict' '--ignore c214'; do orvanta-config check allowed.cfg $a >out 2>&1; echo $? $(tail -n 1 out); done
0 1 file checked: 3 warnings
1 1 file checked: 3 warnings
0 1 file checked: nothing found
2 orvanta-config: --ignore c214: is no finding's code; write a code such as C202
$ orvanta-config check continued.cfg | grep -v '^  '
continued.cfg:4:1: error: the machine gets this comment [C022]
1 file checked: 1 error
$ orvanta-config check allowed.cfg two.cfg --json >old.json; (echo; echo '[Global]'; echo Config=x; cat two.cfg; echo DomainPassword=third) >new.cfg; cp new.cfg two.cfg; orvanta-config check allowed.cfg two.cfg --baseline old.json | grep -v '^  '
two.cfg:3:8: warning: "x" asks for nothing [C214]
two.cfg:7:1: error: DomainPassword is on line 5 already, and only that one counts [C010]
2 files checked: 1 error, 1 warning
$ for t in 'no JSON' '{"findings": [{}]}'; do echo "$t" >old.json; orvanta-config check two.cfg --baseline old.json; done
orvanta-config: old.json: holds no findings; write it with orvanta-config check FILE... --json > old.json
orvanta-config: old.json: holds no findings; write it with orvanta-config check FILE... --json > old.json
[exit code 2]
