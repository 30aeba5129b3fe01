A finding shows its line, a caret below what is at fault and a hint; the document holds the same.

-- two.cfg --
[Networking]
DomainPassword=s3cret
DomainPassword=other
-- console --
$ printf '[TCP/IP]\r\nDHCP=False\r\nAddress = 10.0.0.5,10.0.0.6\r\n\tNetmask=255.255.255.0 255.0.255.0\r\nGatway=10.0.0.1\r\n' >a.cfg; orvanta-config check a.cfg
a.cfg:4:24: error: "255.0.255.0" is not a valid netmask: the 1 bits must be contiguous [C205]
   Netmask=255.255.255.0 255.0.255.0
                         ^~~~~~~~~~~
  hint: write a mask such as 255.255.255.0
a.cfg:5:1: error: "Gatway" is not read [C104]
  Gatway=10.0.0.1
  ^~~~~~
  hint: did you mean Gateway?
1 file checked: 2 errors
[exit code 1]
$ printf '[Global]\nScheduleId=7\n' | orvanta-config check -
1 file checked: nothing found
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
$ orvanta-config check examples | tail -1
4 files checked: nothing found
$ for e in office-pc laptop server; do orvanta-config check examples/$e.cfg --machine examples/$e.machine.json; done | uniq -c
      3 1 file checked: nothing found
