A fleet is rehearsed row by row: each computer settles, or the report says why not.

-- rename.cfg --
[Networking]
ComputerName=PC-1
-- address.cfg --
[TCP/IP]
DHCP=False
Address=10.0.0.5
Netmask=255.0.0.0
Gateway=10.0.0.1
-- many.cfg --
[TCP/IP]
[NicEntry1]
[NicEntry2]
[NicEntry3]
-- broken.json --
{"schema": 1, "adapters": [{"index": "one"}]}
-- loops.json --
{"schema": 1, "faults": [{"call": "wmi.method", "method": "Rename", "result": 0}]}
-- corp.json --
{"domains": [{"dns_name": "corp.example", "flat_name": "CORP", "accounts": [{"user": "joiner", "password": "p"}]}]}
-- inventory.csv --
file,machine,computer_name,mac_address,pci_location,ip_address,subnet_mask,Asset
rename.cfg,,OLD-1,08:00:27:00:00:01,0/3/0,,,17
address.cfg,,PC-2,08:00:27:00:00:02,0/3/0,10.0.0.9,255.0.0.0,18
address.cfg,,PC-3,08:00:27:00:00:02,,,,"19, spare ""new"""
many.cfg,,PC-4,,,,,
absent.cfg,,PC-5,,,,,
rename.cfg,broken.json,,,,,,
rename.cfg,loops.json,,,,,,
rename.cfg,,PC-7,07:00:00:00:00:00,,,,
rename.cfg,,PC-8
"rename.cfg,,,,,,,
-- same --
# same A B: what two reports say alike, and what not
python3 -c 'import json, sys; a, b = (json.load(open(name)) for name in sys.argv[1:]); print(*[("same " if a[k] == b[k] else "other ") + k for k in a])' "$@"
-- join.cfg --
[Networking]
Workgroup=False
DNSDomain=corp.example
DomainUsername=ENCIPHERED-USER
DomainPassword=ENCIPHERED-PASSWORD
DSOrganizationalUnit=Sales
-- corp --
{"domains": [{"dns_name": "corp.example", "flat_name": "CORP", "accounts": [{"user": "joiner", "password": "p"}]}]}
-- console --
$ orvanta-config fleet inventory.csv | sed '/^Not/,/^$/d'
10 computers
  settled     4
  fails       1
  loops       1
  no_file     1
  no_machine  1
  bad_row     2

Causes
  1 x failed after 0 restarts: common\config\command\ConfigureNic:68 - ConfigureNic has not been been associated with a nic index [C501]: row 5
  1 x the file cannot be read: No such file or directory: row 6
  1 x broken.json: $.adapters[0].index: expected a whole number from 0 to 4294967295, found a text: row 7
  1 x would loop: after 1 restart machine and queue are as they were at start 1: row 8
  1 x 3 fields where the header has 8: row 10
  1 x field 1: a quote is never closed: row 11

Duplicates
  computer name PC-1: rows 2, 9
  MAC address 08:00:27:00:00:02: rows 3, 4
  IP address 10.0.0.5: rows 3, 4

Roll-out
  3 restarts, 1 min of pauses; 10 min in all with 1 computer at once and 3 min for a restart
$ orvanta-config fleet inventory.csv --json --at-once 4 --restart-minutes 10 >whole.json  --> [exit code 1]
$ grep -e minutes -e '"row":[34]' whole.json
  "minutes": 11,
    {"row":3,"file":"address.cfg","outcome":"settled","restarts":0,"pause_ms":20000,"cause":null,"computer_name":"PC-2","mac_addresses":["08:00:27:00:00:02"],"ip_addresses":["10.0.0.5"],"columns":{"Asset":"18"}},
    {"row":4,"file":"address.cfg","outcome":"settled","restarts":0,"pause_ms":20000,"cause":null,"computer_name":"PC-3","mac_addresses":["08:00:27:00:00:02"],"ip_addresses":["10.0.0.5"],"columns":{"Asset":"19, spare \"new\""}},
$ for i in 1 2 3; do orvanta-config fleet inventory.csv --shard $i/3 --json >$i.json; done  --> [exit code 1]
$ orvanta-config fleet --merge 1.json 2.json 3.json --at-once 4 --restart-minutes 10 --json >merged.json  --> [exit code 1]
$ sh same whole.json merged.json  --> same schema same rows same outcomes same causes same duplicates same restarts same pause_ms same minutes same computers
$ printf 'datei;name\na.cfg;x\n' >bad.csv; for a in bad.csv 'inventory.csv --shard 1/' 'inventory.csv --shard 4/3' '--merge whole.json rename.cfg'; do orvanta-config fleet $a; done
orvanta-config: bad.csv: has no column "file"; name each computer's configuration file in a column "file"
orvanta-config: --shard 1/: is not a part of a whole; write 2/8 for the second of eight
orvanta-config: --shard 4/3: is not a part of a whole; write 2/8 for the second of eight
orvanta-config: rename.cfg: is not a report of fleet --json; name the reports of the shards
[exit code 2]
$ printf 'file;Ort\nrename.cfg;M\374nchen\n' | orvanta-config fleet - --code-page 1252 --json | grep -o '"columns.*'  --> "columns":{"Ort":"München"}}
$ orvanta-config fleet inventory.csv --html fleet.html >text.txt; grep -c '<tr><td>' fleet.html; grep -o '<title>.*</title>' fleet.html; grep -c 'spare &quot;new&quot;' fleet.html
25
<title>Fleet of 10 computers</title>
1
$ printf '\357\273\277file;mac_address;pci_location;ip_address;machine;workgroup;domain\r\n\r\nrename.cfg;7;;;;;\r\nrename.cfg;;0/3;;;;\r\nrename.cfg;;;10.0.0.0/8;;;\r\n"rename.cfg"x;;;;;;\r\nrename.cfg;;;;absent.json;;\r\nrename.cfg;;;;;A;b.example\r\n;;;;;;\r\nrename.cfg;;;10.0.0.7;broken.json;;\r\n' | orvanta-config fleet - | sed -n '/^Not/,/^$/p'
Not settled
  row 3  rename.cfg  bad_row: column mac_address: expected a MAC address such as 08:00:27:12:34:56
  row 4  rename.cfg  bad_row: column pci_location: expected bus/device/function such as 0/25/0
  row 5  rename.cfg  bad_row: column ip_address: expected an address alone, such as 10.0.0.5; masks stand in subnet_masks
  row 6  rename.cfg  bad_row: field 1: text after the closing quote
  row 7  rename.cfg  no_machine: the machine file cannot be read: No such file or directory
  row 8  rename.cfg  bad_row: column domain: the row has a workgroup and a domain
  row 9    bad_row: column file: is empty
  row 10  rename.cfg  no_machine: broken.json: $.adapters[0].index: expected a whole number from 0 to 4294967295, found a text

$ printf 'file,machine,ip_address\nrename.cfg,loops.json,10.0.0.7\nrename.cfg,,10.0.0.7\n' | orvanta-config fleet - | sed -n '/^Dupl/,/^$/p'
Duplicates
  IP address 10.0.0.7: rows 2, 3

$ printf 'file\njoin.cfg\n' | orvanta-config fleet - | sed -n 2p
  settled  1
$ printf 'file\njoin.cfg\n' | orvanta-config fleet - --directory corp | sed -n '/^Causes/,/^$/p'
Causes
  1 x failed after 0 restarts: Domain:375 -  - JoinDomainAndOu error, system error 1326 [C506]: row 2

$ for directory in '{"domains": [{"ous": ["Sales"]}]}' '[1,' '}, "faults": [{"call": "*"}], "hosts": {'; do echo "$directory" >d.json; printf 'file\njoin.cfg\n' | orvanta-config fleet - --directory d.json; done
orvanta-config: d.json: $.domains[0].ous[0]: expected a distinguished name such as OU=Sales,DC=corp,DC=example
orvanta-config: d.json:2:1: malformed JSON: syntax error while parsing value - unexpected end of input; expected '[', '{', or a literal; correct it there
orvanta-config: d.json:1:1: malformed JSON: syntax error while parsing value - unexpected '}'; expected '[', '{', or a literal; correct it there
[exit code 2]
$ orvanta-config fleet --merge 1.json 1.json | sed -n '/^Dupl/,/^$/p'
Duplicates
  computer name PC-1: rows 2, 2
  computer name PC-4: rows 5, 5
  computer name TEMPLATE: rows 8, 8
  MAC address 08:00:27:00:00:01: rows 2, 2

