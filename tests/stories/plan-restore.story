A plan follows a waiting restore through its hand-over and the restart; its document names the steps.

-- pc.cfg --
[Global]
Config=Restore
-- m.json --
{"schema": 1, "files": [{"path": "C:\\restore.cfg", "text": "[Networking]\nComputerName=B\n"}]}
-- console --
$ orvanta-config plan pc.cfg --machine m.json --follow-restarts 3 --save-machine after.json | grep -e pending -e '->' -e not -e reply -e settled
Summary  1 change, 1 restart, no pauses; settled after 1 restart
A restore file is pending: it takes the place of this one and is planned.
                     TEMPLATE -> B
  reply Reboot
  nothing
                     not needed: B already
  reply Success
  settled after 1 restart
$ grep computer_name after.json
  "computer_name": "B",
  "pending_computer_name": null,
$ orvanta-config plan pc.cfg --machine m.json --follow-restarts 3 --json >out.json; python3 -c 'import json; t = json.load(open("out.json")); print(*t); print(t["ending"], t["restarts"], t["loops_to"], t["commands"] == t["steps"][0]["plan"]["commands"]); [print(list(s), s["result"], [c["call"] for c in s["changes"]]) for s in t["steps"]]'
schema commands dropped runs_now error outcome changes pause_ms restarts ending loops_to steps not_true
settled 1 None True
['plan', 'result', 'status', 'changes'] Reboot ['file.delete', 'file.move', 'wmi.method']
['plan', 'result', 'status', 'changes'] Success ['file.move']
