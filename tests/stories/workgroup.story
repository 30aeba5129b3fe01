A member that is to be in a workgroup leaves its domain, and restarts.
Also through the plug-in.

-- pc.cfg --
[Networking]
Workgroup=True
Domain=OFFICE
-- m.json --
{"membership": {"workgroup": null, "domain": {"dns_name": "corp.example", "flat_name": "CORP"}}}
-- console --
$ orvanta-config simulate pc.cfg --machine m.json
File     pc.cfg, placed as C:\tarvo.cfg
Machine  m.json: TEMPLATE, domain corp.example, 3 adapters
Message  Internal/Configure, Filename=C:\tarvo.cfg

Changes
  1  leave the domain
  2  join the workgroup OFFICE
Reply
  Schedule-ID       (empty)
  Task-Sequence-ID  (empty)
  Result            Reboot
  status            1

Waiting for the restart
  member of  workgroup OFFICE

Machine, before -> after
  computer
    member of  domain corp.example -> workgroup OFFICE
