Each service is disabled for an image on its own: one that is missing or refuses does not keep the others.

-- missing.json --
{"services": [{"name": "NetBT", "start": "system"}, {"name": "NwlnkNb", "start": "manual"}]}
-- closed.json --
{"faults": [{"call": "service.open", "error": 5}]}
-- refusing.json --
{"faults": [{"call": "service.start_type", "error": 5}]}
-- console --
$ for m in missing closed refusing; do echo "$m:"; orvanta-config simulate --message prep-for-image --machine $m.json --verbose | grep -e '^ *[0-9]*  service ' -e ' [FD][a-z]*ed '; done
missing:
  35  service NetBT: disabled
  36  service NwlnkNb: disabled
  2  handlers\internal\PrepForImage:330 Disabled NetBT
  2  handlers\internal\PrepForImage:359 Disabled NetBIOS over NWLink
closed:
refusing:
  35  service Dhcp: disabled  refused: result 5 (access denied)
  36  service NetBT: disabled  refused: result 5 (access denied)
  37  service LmHosts: disabled  refused: result 5 (access denied)
  38  service NwlnkNb: disabled  refused: result 5 (access denied)
  2  handlers\internal\PrepForImage:312 Disabled DHCP
  2  handlers\internal\PrepForImage:317 Failed Disabled DHCP
  2  handlers\internal\PrepForImage:330 Disabled NetBT
  2  handlers\internal\PrepForImage:333 Failed Disabled NetBT
  2  handlers\internal\PrepForImage:344 Disabled LMHOST
  2  handlers\internal\PrepForImage:349 Failed Disabled LMHOST
  2  handlers\internal\PrepForImage:359 Disabled NetBIOS over NWLink
  2  handlers\internal\PrepForImage:364 Failed Disabled NetBIOS over NWLink
