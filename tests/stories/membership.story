Three keys decide between a workgroup, a domain and no change of membership.

-- m.json --
{"directory": {"domains": [{"dns_name": "corp.example", "flat_name": "CORP",
  "ous": ["OU=Sales,DC=corp,DC=example"], "accounts": [{"user": "", "password": ""}, {"user": "joiner", "password": "s3cret-plain"}]}]},
 "decrypt": {"USER": "joiner", "PASSWORD": "s3cret-plain"}}
-- try --
# try KEYS: what a run changes that is asked for KEYS in [Networking], a "|" between the lines
echo "[Networking]|$1" | tr '|' '\n' | orvanta-config simulate - --machine m.json | sed '1,/^Changes/d;/^Log/,$d;/^Reply/,$d;/ move C:/d'
-- console --
$ sh try 'Domain=D'
$ sh try 'Workgroup=|Domain=D'
$ sh try 'Workgroup=true|Domain=W'
  1  join the workgroup W
$ sh try 'Workgroup=True|Domain=WORKGROUP'
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
$ sh try 'Workgroup=False|Domain=corp.example|DSOrganizationalUnit=OU=X,DC=a,DC=b'
  1  join the domain corp.example as corp.example\ in OU=X,DC=a,DC=b  refused: result 1332 (no account for the computer)
  2  join the domain corp.example as corp.example\ in OU=X,DC=a,DC=b, making the computer account  refused: result 2
$ sh try 'Workgroup=False|DNSDomain=corp.example|DomainUsername=USER|DomainPassword=PASSWORD'  # no account without an OU
  1  join the domain corp.example as corp.example\  refused: result 1332 (no account for the computer)
  2  join the domain corp.example as corp.example\, making the computer account
$ sh try 'Workgroup=False|DNSDomain=corp.example|DomainUsername=USER|DomainPassword=PASSWORD|DSOrganizationalUnit=Sales'
  1  join the domain corp.example as corp.example\joiner in OU=Sales,DC=corp,DC=example  refused: result 1332 (no account for the computer)
  2  join the domain corp.example as corp.example\joiner in OU=Sales,DC=corp,DC=example, making the computer account
$ sh try 'ComputerName=template'
