Persistent routes become the wanted ones: strangers go, missing ones come, a second default route goes.
Also through the plug-in.

-- pc.cfg --
[TCP/IP]
Static-Route-Count=2
Route1=10.2.0.0 255.255.0.0 10.0.0.1 0 5
Route2=10.1.0.0,255.255.0.0,10.0.0.1,x,5
-- m.json --
{"persistent_routes": [
  {"destination": "0.0.0.0", "mask": "0.0.0.0", "next_hop": "10.0.0.254", "metric": 1},
  {"destination": "0.0.0.0", "mask": "0.0.0.0", "next_hop": "10.0.0.254", "metric": 1},
  {"destination": "10.9.0.0", "mask": "255.255.0.0", "next_hop": "10.0.0.1", "metric": 5},
  {"destination": "10.1.0.0", "mask": "255.255.0.0", "next_hop": "10.0.0.1", "metric": 6},
  {"destination": "10.2.0.0", "mask": "255.255.0.0", "next_hop": "10.0.0.1", "metric": 5}]}
-- console --
$ orvanta-config simulate pc.cfg --machine m.json | sed -n '/^Changes/,/^Reply/p;/  persistent/,/files/p'
Changes
  1  run route DELETE 0.0.0.0
  2  run route DELETE 10.1.0.0
  3  run route DELETE 10.9.0.0
  4  run route -p ADD 10.1.0.0 mask 255.255.0.0 10.0.0.1 METRIC 5
  5  move C:\tarvo.cfg to C:\Program Files\Orvanta\Agent\tarvo.cfg
Reply
  persistent routes
    0.0.0.0/0.0.0.0 via 10.0.0.254     metric 1 -> -
    0.0.0.0/0.0.0.0 via 10.0.0.254     metric 1 -> -
    10.9.0.0/255.255.0.0 via 10.0.0.1  metric 5 -> -
    10.1.0.0/255.255.0.0 via 10.0.0.1  metric 6 -> metric 5
  files
