What the user must mend is one line on standard error and exit code 2; nothing is written.

-- a.cfg --
[Networking]
ComputerName=A
-- bad.json --
{"schema": 1, "adapters": 7}
-- b.cfg --
[a]
 x=y
 [b
-- restore.json --
{"schema": 1, "files": [{"path": "C:\\restore.cfg", "text": "[a]\n[b"}]}
-- deaf.json --
{"schema": 1, "faults": [{"call": "file.read"}]}
-- try --
# try ARGUMENT...: what the tool says on standard error; anything else it does as well
orvanta-config "$@" 2>.err </dev/null
[ $? = 2 ] || echo "another exit code"
sed 's/^orvanta-config: //' .err
-- console --
$ sh try  --> a command is missing; see orvanta-config --help
$ sh try chekc a.cfg  --> chekc: unknown command; use check, or see orvanta-config --help
$ sh try --bogus  --> --bogus: unknown option; see orvanta-config --help
$ sh try simulate a.cfg --frob  --> --frob: unknown option of simulate; use --json, or see orvanta-config simulate --help
$ sh try simulate none.cfg  --> none.cfg: cannot be read: No such file or directory; name a file that you can read
$ sh try simulate .  --> .: is a directory; name a file in it
$ sh try simulate a.cfg a.cfg  --> a.cfg: unexpected argument; see orvanta-config simulate --help
$ sh try simulate "$(printf 'a\nb.cfg')"  --> a\nb.cfg: cannot be read: No such file or directory; name a file that you can read
$ sh try simulate - --machine -  --> --machine -: standard input holds the configuration file already; name a file for one of them
$ sh try check a.cfg - --machine -  --> --machine -: standard input holds the configuration file already; name a file for one of them
$ sh try schema machines  --> NAME: "machines" is not one of machine, plan, simulate, check, verify or fleet; see orvanta-config schema --help
$ sh try plan a.cfg --machine live  --> --machine live: only Windows tells what this computer is; name a machine file
$ sh try simulate a.cfg --message boot  --> --message: "boot" is not one of configure, prep-for-image or update-info; see orvanta-config simulate --help
$ sh try simulate a.cfg --set abc  --> --set abc: has no KEY=; write --set KEY=VALUE
$ sh try simulate a.cfg --at ''  --> --at: is empty; give a path such as C:\tarvo.cfg
$ sh try simulate a.cfg --follow-restarts=-1  --> --follow-restarts: "-1" is not a number from 0 to 1000; see orvanta-config simulate --help
$ sh try simulate a.cfg --machine no.json  --> no.json: cannot be read: No such file or directory; name a file that you can read
$ sh try simulate a.cfg --machine bad.json  --> bad.json: $.adapters: expected a list, found 7
$ sh try simulate a.cfg --save-machine -  --> --save-machine -: cannot go to standard output; name a file
$ sh try simulate a.cfg --save-machine no/m.json  --> no/m.json: cannot be written: No such file or directory; name a file in a folder that you can write to
$ sh try simulate a.cfg --save-machine .  --> .: is not a regular file; name a file to write
$ sh try simulate a.cfg --save-machine ./a.cfg  --> ./a.cfg: is the configuration file itself; write to another file
$ sh try plan --machin m.json a.cfg  --> --machin: unknown option of plan; use --machine, or see orvanta-config plan --help
$ sh try plan -v a.cfg  --> -v: unknown option of plan; use --verbose, or see orvanta-config plan --help
$ sh try plan a.cfg --machine  --> --machine: needs a value, M.json; see orvanta-config plan --help
$ sh try plan a.cfg --html --json  --> --html: needs a value, OUT.html; see orvanta-config plan --help
$ sh try plan a.cfg --html=a --html b  --> --html: can be given only once; see orvanta-config plan --help
$ sh try completion  --> completion: SHELL is missing; name bash, zsh, fish or powershell
$ sh try plan b.cfg  --> b.cfg:3:2: section header without "]"; close it, as in [Networking]
$ sh try plan /dev/null  --> /dev/null: is empty; name a configuration file with settings
$ printf '[Global]\nConfig=Restore\n' >c.cfg; sh try plan c.cfg --machine restore.json; rm c.cfg  --> the restore file on the machine:2:1: section header without "]"; close it, as in [Networking]
$ sh try plan a.cfg --machine deaf.json  --> a.cfg: cannot be read on the simulated machine; look at the faults in the machine file
$ sh try plan a.cfg --html -  --> --html -: cannot go to standard output; name a file
$ sh try plan a.cfg --html ./a.cfg  --> ./a.cfg: is the configuration file itself; write to another file
$ sh try plan a.cfg --machine deaf.json --html ./deaf.json  --> ./deaf.json: is the machine file itself; write to another file
$ sh try plan a.cfg --save-machine new --html ./new  --> ./new: is the saved machine itself; write to another file
$ echo *; cat a.cfg; orvanta-config --version
a.cfg b.cfg bad.json deaf.json examples restore.json try
[Networking]
ComputerName=A
orvanta-config 6.8.378
