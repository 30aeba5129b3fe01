When the library refuses a value or cannot question the machine there is no plan, but its error and the line.

-- deaf.json --
{"schema": 1, "faults": [{"call": "wmi.connect", "hresult": "0x800706BA"}]}
-- once.json --
{"schema": 1, "faults": [{"call": "wmi.connect", "nth": 1}]}
-- stuck.json --
{"schema": 1, "files": [{"path": "C:\\restore.cfg", "text": "[a]"}], "faults": [{"call": "file.move", "error": 32}]}
-- try --
# try LINES [OPTION...]: why there is no plan of LINES
lines=$1; shift
echo "$lines" | tr '|' '\n' >pc.cfg; orvanta-config plan pc.cfg "$@" | sed '1,/^$/d'
-- console --
$ sh try '[TCP/IP]|Static-Route-Count=1|Route1=1.1.1.1 255.0.0.0 no.where' | tail -n 2
  at STATIC_ROUTE 1.1.1.1 255.0.0.0 no.where from [TCP/IP] Route1, line 3
  the machine cannot resolve "no.where" [C509]
$ sh try '[Networking]|ComputerName=A' --machine deaf.json
No plan
  common\sys\OsVersion:129 - Error thrown from WMI initialization code.
  sys::OsVersionError, value 1, system error 0
$ sh try '[Networking]|ComputerName=A' --machine once.json --follow-restarts 1 | sed '/^Still/,$!d'
Still not true
  [Networking] line 2  ChangeCompName  Name=A {User=}
    is TEMPLATE, wanted A
    the run failed: common\sys\OsVersion:129 - Error thrown from WMI initialization code. (error = 0)
$ printf '[Global]\nConfig=Restore\n' | orvanta-config plan - --machine stuck.json --json | tr -s '\n ' ' '
{ "schema": 1, "commands": [], "dropped": [], "runs_now": 0, "error": { "class": "util::CFileIOError", "source": "common\\util\\FileUtils", "line": 51, "message": "File Move Failed ", "value": 0, "system_error": 32 }, "outcome": "failure", "changes": 0, "pause_ms": 0 } 
