No password is shown in any form; only a saved machine keeps those of the machine file, for its owner.

-- m.json --
{"decrypt": {"CU": "joiner", "CP": "s3cret-plain"}, "directory": {"domains": [{"dns_name": "corp.example",
   "flat_name": "CORP", "accounts": [{"user": "joiner", "password": "s3cret-plain"}]}]},
 "registry": [{"name": "DefaultPassword", "type": "REG_SZ", "data": "s3cret-registry"}]}
-- pc.cfg --
[Networking]
Workgroup=False
DNSDomain=corp.example
DSOrganizationalUnit=Sales
DomainUsername=CU
DomainPassword=CP
[ConfigSettings]
ProxyPassword=s3cret-sent
; UserPwd=s3cret-comment
-- console --
$ orvanta-config simulate pc.cfg --machine m.json --verbose --save-machine saved.json | sed -n '/^  [12]  join/p;/^ .*Password/p;/Pwd/p;/s3cret/p'
  1  join the domain corp.example as corp.example\joiner in OU=Sales,DC=corp,DC=example  refused: result 1332 (no account for the computer)
  2  join the domain corp.example as corp.example\joiner in OU=Sales,DC=corp,DC=example, making the computer account  refused: result 2 (no such file or OU)
    ProxyPassword  ***
                   ; UserPwd=***
$ orvanta-config simulate pc.cfg --machine m.json --json >out.json; grep -c s3cret out.json; grep -c '"\*\*\*"' out.json; grep -o '"UserName": ".*' out.json
0
9
"UserName": "corp.example\\joiner",
"UserName": "corp.example\\joiner",
$ grep -o 's3cret-[a-z]*' saved.json; stat -c %A saved.json
s3cret-registry
s3cret-sent
s3cret-comment
s3cret-plain
s3cret-plain
-rw-------
