A member moves to another OU; to the same one in other letter case it does not.
Also through the plug-in.

-- pc.cfg --
[Networking]
Workgroup=False
DNSDomain=corp.example
DSOrganizationalUnit=Sales/Europe
DomainUsername=ENCIPHERED-USER
DomainPassword=ENCIPHERED-PASSWORD
-- same.cfg --
[Networking]
Workgroup=False
DNSDomain=corp.example
DSOrganizationalUnit=OU=SALES,DC=Corp,DC=example
DomainUsername=ENCIPHERED-USER
DomainPassword=ENCIPHERED-PASSWORD
-- m.json --
{"membership": {"workgroup": null, "domain": {"dns_name": "corp.example", "flat_name": "CORP"}},
 "directory": {"domains": [{"dns_name": "corp.example", "flat_name": "CORP",
   "accounts": [{"user": "joiner", "password": "s3cret"}],
   "ous": ["OU=Sales,DC=corp,DC=example", "OU=Europe,OU=Sales,DC=corp,DC=example"],
   "computers": [{"name": "TEMPLATE", "dn": "CN=TEMPLATE,OU=Sales,DC=corp,DC=example"}]}]}}
-- console --
$ orvanta-config simulate pc.cfg --machine m.json | sed -n '/^Changes/,/^Reply/p;/Result/p;/^  directory/,$p'
Changes
  1  directory: move LDAP://CN=TEMPLATE,OU=Sales,DC=corp,DC=example to LDAP://OU=Europe,OU=Sales,DC=corp,DC=example
  2  move C:\tarvo.cfg to C:\Program Files\Orvanta\Agent\tarvo.cfg
Reply
  Result            Success
  directory corp.example
    TEMPLATE  CN=TEMPLATE,OU=Sales,DC=corp,DC=example -> CN=TEMPLATE,OU=Europe,OU=Sales,DC=corp,DC=example
$ orvanta-config simulate same.cfg --machine m.json | grep '^  1'  -->   1  move C:\tarvo.cfg to C:\Program Files\Orvanta\Agent\tarvo.cfg
