Three keys decide between a workgroup, a domain and no change of membership.

-- m.json --
{"directory": {"domains": [{"dns_name": "corp.example", "flat_name": "CORP",
  "ous": ["OU=Sales,DC=corp,DC=example"], "accounts": [{"user": "", "password": ""}, {"user": "joiner", "password": "s3cret-plain"}]}]},
 "decrypt": {"USER": "joiner", "PASSWORD": "s3cret-plain", "": "s3cret-plain"}}
-- member.json --
{"membership": {"workgroup": null, "domain": {"dns_name": "corp.example", "flat_name": "CORP"}}}
-- bare.json --
{"decrypt": null}
-- try --
# try KEYS [MACHINE]: what a run changes that is asked for KEYS in [Networking], a "|" between the lines
echo "[Networking]|$1" | tr '|' '\n' | orvanta-config simulate - --machine ${2:-m}.json | sed '1,/^Changes/d;/^Log/,$d;/^Reply/,$d;/ move C:/d'
-- console --
$ sh try 'Domain=D'
$ sh try 'Workgroup=|Domain=D'
$ sh try 'Workgroup=true|Domain=W'  -->   1  join the workgroup W
$ sh try 'Workgroup=True|Domain=workgroup'
$ sh try 'Workgroup=True'  # without a name
$ sh try 'Workgroup=False|Domain=corp.example'
  1  join the domain corp.example as corp.example\  refused: result 1332 (no account for the computer)
  2  join the domain corp.example as corp.example\, making the computer account
$ sh try 'Workgroup=no|DNSDomain=corp.example|Domain=CORP'
  1  join the domain corp.example as corp.example\  refused: result 1332 (no account for the computer)
  2  join the domain corp.example as corp.example\, making the computer account
$ sh try 'Workgroup=False'
$ sh try 'Workgroup=False|DSOrganizationalUnit=Sales'
$ sh try 'Workgroup=False|Domain=corp.example|DSOrganizationalUnit=Sales'
  1  join the domain corp.example as corp.example\ in OU=Sales,DC=corp,DC=example  refused: result 1332 (no account for the computer)
  2  join the domain corp.example as corp.example\ in OU=Sales,DC=corp,DC=example, making the computer account
$ sh try 'Workgroup=False|DNSDomain=corp.example|DomainUsername=USER|DomainPassword=PASSWORD'  # no account without an OU
  1  join the domain corp.example as corp.example\  refused: result 1332 (no account for the computer)
  2  join the domain corp.example as corp.example\, making the computer account
$ sh try 'Workgroup=False|DNSDomain=corp.example|DomainUsername=USER|DomainPassword=PASSWORD|DSOrganizationalUnit=Sales'
  1  join the domain corp.example as corp.example\joiner in OU=Sales,DC=corp,DC=example  refused: result 1332 (no account for the computer)
  2  join the domain corp.example as corp.example\joiner in OU=Sales,DC=corp,DC=example, making the computer account
$ sh try 'Workgroup=False|DNSDomain=corp.example|DomainUsername=OTHER|DomainPassword=PASSWORD|DSOrganizationalUnit=Sales' | head -1  # a text that cannot be deciphered
  1  join the domain corp.example as corp.example\ in OU=Sales,DC=corp,DC=example  refused: result 1326 (wrong user or password)
$ sh try 'Workgroup=False|DNSDomain=corp.example|DomainUsername=USER|DSOrganizationalUnit=Sales' | head -1  # nothing is not deciphered
  1  join the domain corp.example as corp.example\joiner in OU=Sales,DC=corp,DC=example  refused: result 1326 (wrong user or password)
$ sh try 'Workgroup=False|DNSDomain=corp.example|DomainUsername=USER|DomainPassword=PASSWORD|DSOrganizationalUnit=Sales' bare | head -1  # no library to decipher it
  1  join the domain corp.example as corp.example\ in OU=Sales,DC=corp,DC=example  refused: result 1326 (wrong user or password)
$ sh try 'Workgroup=True|Domain=W|DSOrganizationalUnit=Sales' member  # no OU in a workgroup
  1  leave the domain
  2  join the workgroup W
$ sh try 'Workgroup=False|Domain=Corp' member
$ sh try 'Workgroup=False|DNSDomain=Corp.Example' member
$ printf '[Networking]\nWorkgroup=True\nDomain=W\n' | orvanta-config simulate - --machine member.json --json | sed -n '/"arguments"/,/}/p' | tr -s '\n ' ' '
 "arguments": { "UserName": null, "Password": null, "FUnjoinOptions": 0 }, "arguments": { "Name": "W", "UserName": null, "Password": null, "AccountOU": null, "FJoinOptions": 0 }, 
$ for m in m member; do for r in '' 'ComputerName=A\nJoinDomainBeforeNameChange=True\n'; do printf "[Networking]\nWorkgroup=False\nDNSDomain=new.example\n$r" | orvanta-config simulate - --machine $m.json --json | grep -o 'JoinOptions.*' | tr '\n' ' '; done; done  # 1 to join, 2 makes an account, 32 as a member, 256 before the rename
JoinOptions": 1 JoinOptions": 3 JoinOptions": 257 JoinOptions": 259 JoinOptions": 33 JoinOptions": 35 JoinOptions": 289 JoinOptions": 291 
$ sh try 'ComputerName=template'
