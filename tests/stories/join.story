A join looks for the account of the computer, then makes one, and the name follows in the same run.
Also through the plug-in.

-- pc.cfg --
[Networking]
Workgroup=False
DNSDomain=corp.example
DSOrganizationalUnit=Sales/Europe
DomainUsername=ENCIPHERED-USER
DomainPassword=ENCIPHERED-PASSWORD
ComputerName=PC-42
JoinDomainBeforeNameChange=True
-- console --
$ orvanta-config simulate pc.cfg
File     pc.cfg, placed as C:\tarvo.cfg
Machine  built-in example: TEMPLATE, workgroup WORKGROUP, 3 adapters
Message  Internal/Configure, Filename=C:\tarvo.cfg

Changes
  1  join the domain corp.example as corp.example\joiner in OU=Europe,OU=Sales,DC=corp,DC=example  refused: result 1332 (no account for the computer)
  2  join the domain corp.example as corp.example\joiner in OU=Europe,OU=Sales,DC=corp,DC=example, making the computer account
  3  pause 8 s
  4  rename the computer to PC-42 as joiner
Reply
  Schedule-ID       (empty)
  Task-Sequence-ID  (empty)
  Result            Reboot
  status            1

Waiting for the restart
  computer name  PC-42
  member of      domain corp.example

Machine, before -> after
  computer
    name after the restart  -                   -> PC-42
    member of               workgroup WORKGROUP -> domain corp.example
  directory corp.example
    TEMPLATE  - -> CN=TEMPLATE,OU=Europe,OU=Sales,DC=corp,DC=example
