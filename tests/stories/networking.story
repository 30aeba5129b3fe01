Networking that was disabled for an image comes back; without RestoreAfterCreate the domain is left, too.
Also through the plug-in.

-- pc.cfg --
[Global]
-- image.cfg --
[Global]
Config=RestoreAfterCreate
-- m.json --
{"membership": {"workgroup": null, "domain": {"dns_name": "corp.example", "flat_name": "CORP"}},
 "registry": [{"key": "HKEY_LOCAL_MACHINE\\Software\\Orvanta\\Client Service",
   "name": "NetworkDisabled", "type": "REG_DWORD", "data": 1}],
 "services": [{"name": "Dhcp", "start": "disabled", "running": false},
   {"name": "NetBT", "start": "disabled", "running": false},
   {"name": "LmHosts", "start": "manual", "running": true},
   {"name": "NwlnkNb", "start": "disabled", "running": false}]}
-- refusing.json --
{"registry": [{"key": "HKEY_LOCAL_MACHINE\\Software\\Orvanta\\Client Service",
   "name": "NetworkDisabled", "type": "REG_DWORD", "data": 1}],
 "services": [{"name": "Dhcp", "start": "disabled", "running": false}, {"name": "NetBT", "start": "disabled", "running": false}],
 "faults": [{"call": "service.start_type", "service": "Dhcp", "error": 5},
   {"call": "service.start", "service": "NetBT", "error": 1069}]}
-- console --
$ orvanta-config simulate pc.cfg --machine m.json | sed -n '/^Changes/,/^Reply/p;/  Result/p;/^Waiting/,/^Machine/p'
Changes
   1  registry: delete HKEY_LOCAL_MACHINE\Software\Orvanta\Client Service\NetworkDisabled
   2  leave the domain
   3  join the workgroup WrkGrp
   4  service Dhcp: automatic
   5  service Dhcp: start it
   6  service NetBT: system
   7  service NetBT: start it
   8  service LmHosts: automatic
   9  service LmHosts: start it  runs already
  10  service NwlnkNb: automatic
  11  service NwlnkNb: start it
  12  pause 3 s
  13  move C:\tarvo.cfg to C:\Program Files\Orvanta\Agent\tarvo.cfg
Reply
  Result            Success
Waiting for the restart
  member of  workgroup WrkGrp

Machine, before -> after
$ orvanta-config simulate image.cfg --machine m.json --verbose | grep -e 'leave' -e wrk -e ' join '
  0  internal/Configure:152 Networking was disabled see if we need to go to wrk grp
  0  internal/Configure:160 Looks we are coming after create image, No need to go to wrk grp
$ orvanta-config simulate pc.cfg --machine refusing.json | sed -n '/^Changes/,/pause/p;/^    [DN]/p'
Changes
  1  registry: delete HKEY_LOCAL_MACHINE\Software\Orvanta\Client Service\NetworkDisabled
  2  service Dhcp: automatic  refused: result 5 (access denied)
  3  service Dhcp: start it  refused: result 1058 (the service is disabled)
  4  service NetBT: system
  5  service NetBT: start it  refused: result 1069
  6  pause 3 s
    NetBT  disabled, stopped -> system, stopped
