Texts are bytes of a code page in configuration files and on the machine, and UTF-8 in every report.

-- m.json --
{"schema": 1, "computer_name": "ZÜRICH", "membership": {"workgroup": "Zürich"}, "agent_folder": "C:\\Zürich",
 "decrypt": {"CÜ": "Jürgen", "CP": "pässword"},
 "adapters": [{"caption": "[00000007] Zürich", "dhcp_enabled": false, "ip_addresses": ["10.0.0.5"],
               "subnet_masks": ["255.0.0.0"], "dns_domain": "zürich", "dns_suffixes": ["zürich"]}],
 "services": [], "registry": [{"key": "HKEY_LOCAL_MACHINE\\Zürich", "name": "Zürich", "type": "REG_SZ", "data": "Zürich"}],
 "directory": {"domains": [{"dns_name": "zürich.example", "flat_name": "ZÜ",
   "accounts": [{"user": "Jürgen", "password": "pässword"}],
   "ous": ["OU=Zürich,DC=zürich,DC=example"], "computers": []}]}}
-- garbled --
# garbled FILE...: what in them is not UTF-8, or was taken for a code page twice
cat "$@" | iconv -f UTF-8 -t UTF-8 >/dev/null || echo not UTF-8
grep -o -e 'Ã..........' -e '...�...' "$@" | head -3
-- console --
$ printf '1252 \\200\\374\\235\n1251 \\306\n437 \\201\n932 \\223\\372\\226\\173\n65001 \\303\\274\n' >pages
$ while read -r page bytes; do printf "[a]\nb=$bytes\n" >a.cfg; orvanta-config simulate a.cfg --code-page $page --save-machine s.json >/dev/null; orvanta-config capture --machine s.json --code-page $page | grep -A1 tarvo.cfg | sed -n "2s/\xC2\x9D/(U+009D)/;2s/^ */$page /p"; done <pages
1252 "text": "[a]\nb=€ü(U+009D)\n"
1251 "text": "[a]\nb=Ж\n"
437 "text": "[a]\nb=ü\n"
932 "text": "[a]\nb=日本\n"
65001 "text": "[a]\nb=ü\n"
$ printf '[Networking]\nComputerName=Z\334R-1\nWorkgroup=False\nDNSDomain=z\374rich.example\nDSOrganizationalUnit=Z\374rich\nDomainUsername=C\334\nDomainPassword=CP\nZ\374rich=1\n[ConfigSettings]\nZ\374rich=Z\374rich\n[NicEntry Z\374]\nSetDNSInfo=True\nDNS-SuffixSearchOrder=z\374rich \235\n' >Zürich.cfg
$ orvanta-config check Zürich.cfg --machine m.json | grep -e : -e '[\^~]' -e x9D | grep -v hint
Zürich.cfg:2:14: error: "ZÜR-1" contains a letter other than A to Z [C216]
               ^~~~~
Zürich.cfg:4:11: error: "zürich.example" is not a domain name [C218]
            ^~~~~~~~~~~~~~
Zürich.cfg:8:1: warning: "Zürich" is not read [C106]
  ^~~~~~
Zürich.cfg:13:23: error: "zürich" is not a domain name [C218]
  DNS-SuffixSearchOrder=zürich \x9D
                        ^~~~~~
Zürich.cfg:13:30: error: "\x9D" is not a domain name [C218]
  DNS-SuffixSearchOrder=zürich \x9D
                               ^~~~
1 file checked: 4 errors, 1 warning
$ orvanta-config plan Zürich.cfg --machine m.json --follow-restarts 3 --html page --verbose | grep ü | awk '!shown[$1 $2 $3]++'
File     Zürich.cfg, placed as C:\tarvo.cfg
Check    4 errors, the first on line 2: "ZÜR-1" contains a letter other than A to Z; see orvanta-config check Zürich.cfg
Machine  m.json: ZÜRICH, workgroup Zürich, 1 adapter
  1  ChangeCompName  Name=ZÜR-1 {User=Jürgen}  [Networking] lines 2, 6-7
  3  JoinDomain      DNS Domain=zürich.example, Windows Domain= {User=Jürgen}  [Networking] lines 4-7
                     none -> zürich.example
                     in the OU Zürich
  4  ConfigureNic    adapter 7, Zürich  [NicEntry Zü] line 11
       SetDnsSuffix  DNS Suffixes=zürich,\x9D  line 13
                     zürich -> zürich,\x9D
  [Networking] Zürich, line 8: not used by the library
  adapter 7, Zürich  taken by [NicEntry Zü], PCI location 0/3/0, MAC address 08:00:27:12:34:56
  DOMAIN zürich.example from [Networking] DNSDomain, line 4            3 JoinDomain
  DOMAIN_OU Zürich from [Networking] DSOrganizationalUnit, line 5      3 JoinDomain
  NIC from [NicEntry Zü], line 11                                      4 ConfigureNic
  DNS_SUFFIX zürich from [NicEntry Zü] DNS-SuffixSearchOrder, line 13  4 SetDnsSuffix
  DNS_SUFFIX \x9D from [NicEntry Zü] DNS-SuffixSearchOrder, line 13    4 SetDnsSuffix
  1  JoinDomain      DNS Domain=zürich.example, Windows Domain= {User=Jürgen}  [Networking] lines 4-7
  2  ConfigureNic    adapter 7, Zürich  [NicEntry Zü] line 11
     ChangeCompName  Name=ZÜR-1 {User=Jürgen}  [Networking] lines 2, 6-7
  1  ConfigureNic    adapter 7, Zürich  [NicEntry Zü] line 11
                     not needed: zürich,\x9D already
     MoveOu          OU=Zürich  [Networking] lines 5-7
                     not needed: OU=Zürich,DC=zürich,DC=example already
  [Networking] line 8  Zürich
$ orvanta-config simulate Zürich.cfg --at 'C:\Zürich.cfg' --machine m.json --verbose --follow-restarts 3 | grep ü | awk '!shown[$1 $2 $3]++'
File     Zürich.cfg, placed as C:\Zürich.cfg
Check    4 errors, the first on line 2: "ZÜR-1" contains a letter other than A to Z; see orvanta-config check Zürich.cfg
Machine  m.json: ZÜRICH, workgroup Zürich, 1 adapter
Message 1 of 3  Internal/Configure, Filename=C:\Zürich.cfg
  1  rename the computer to ZÜR-1 as Jürgen
    Zürich  Zürich
  2  internal/Configure:115 Configure::HandleMessage(): config file=C:\Zürich.cfg
  2  internal/Configure:401 - NicEntry Zü, DNS-Use-DHCP = 
  2  ConfigBuilder::RunConfig(): about to execute class config::command::ChangeCompName (Name=ZÜR-1 {User=Jürgen})
Message 2 of 3  Internal/Configure, Filename=C:\Zürich.cfg
  1  join the domain zürich.example as zürich.example\Jürgen in OU=Zürich,DC=zürich,DC=example  refused: result 1332 (no account for the computer)
  2  join the domain zürich.example as zürich.example\Jürgen in OU=Zürich,DC=zürich,DC=example, making the computer account
  3  every adapter: DNS suffixes zürich, \x9D
  2  ConfigureNic::Execute(): about to execute class config::command::SetDnsSuffix (DNS Suffixes=zürich,\x9D)
Message 3 of 3  Internal/Configure, Filename=C:\Zürich.cfg
  1  move C:\Zürich.cfg to C:\Zürich\Zürich.cfg
    member of  workgroup Zürich -> domain zürich.example
  adapter 7, Zürich
    DNS suffixes  zürich -> zürich, \x9D
    C:\Zürich.cfg         238 bytes -> -
    C:\Zürich\Zürich.cfg  -         -> 238 bytes
  directory zürich.example
    ZÜR-1  - -> CN=ZÜR-1,OU=Zürich,DC=zürich,DC=example
$ orvanta-config roundtrip --machine m.json | grep ü
Machine  m.json: ZÜRICH, workgroup Zürich, 1 adapter
    member of  stayed    workgroup Zürich
  adapter 7, Zürich
    DNS suffixes  lost      zürich -> -
    DNS domain    lost      zürich -> -
$ for c in 'simulate --follow-restarts 3' 'plan --verbose' check 'check --sarif'; do orvanta-config $c Zürich.cfg --machine m.json --json; done >out 2>&1; orvanta-config roundtrip --machine m.json --json >>out; sh garbled out page; grep -c ü out
82
