Where there is no other machine, capture writes the simulated one, whose passwords it does not show.

-- console --
$ orvanta-config capture --machine examples/laptop.machine.json >m.json
$ python3 -c 'import json; a = json.load(open("m.json")); b = json.load(open("examples/laptop.machine.json")); print(a["computer_name"], len(a), a["decrypt"], a["directory"]["domains"][0]["accounts"])'
TEMPLATE 15 {'77AA01BC': '***', '9F31C0DE': '***'} [{'user': 'joiner', 'password': '***'}]
$ orvanta-config capture --machine examples/laptop.machine.json --json | cmp - m.json
$ orvanta-config capture --machine m.json --save-machine n.json >o.json && cmp m.json n.json
$ printf '{"schema": 1, "hosts": null}' | orvanta-config capture --machine - | grep -e hosts -e decrypt -e directory  -->   "hosts": null,
