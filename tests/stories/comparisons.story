Only what differs is set: which differences count on an adapter that has everything already.

-- m.json --
{"adapters": {"7": {"dhcp_enabled": false, "ip_addresses": ["10.0.0.5", "10.0.0.6"],
  "subnet_masks": ["255.0.0.0", "255.0.0.0"], "gateways": ["10.0.0.1", "10.0.0.2"],
  "dns_servers": ["10.0.0.3", "10.0.0.4"], "dns_suffixes": ["a.example", "b.example"]}},
 "persistent_routes": [
  {"destination": "10.2.0.0", "mask": "255.255.0.0", "next_hop": "10.0.0.1", "metric": 5},
  {"destination": "0.0.0.0", "mask": "0.0.0.0", "next_hop": "10.0.0.254", "metric": 1},
  {"destination": "10.1.0.0", "mask": "255.255.0.0", "next_hop": "10.0.0.1", "metric": 5},
  {"destination": "10.2.0.0", "mask": "255.255.0.0", "next_hop": "10.0.0.1", "metric": 5}]}
-- pc.cfg --
[TCP/IP]
DHCP=False
Address=10.0.0.5,10.9.9.9
Netmask=255.0.0.0,255.0.0.0
Gateway=10.0.0.1,10.0.0.2
SetDNSInfo=True
DNS-Server-Count=1
DNS-Server0=10.0.0.3,10.0.0.4
DNS-SuffixSearchOrder=a.example,b.example
Static-Route-Count=2
Route0=10.1.0.0 255.255.0.0 10.0.0.1 0 5
Route1=10.2.0.0 255.255.0.0 10.0.0.1 0 5
-- try --
# try EDIT [EDIT]: what a run changes when sed has edited the configuration, and the machine
sed "$2" m.json >n.json
sed "$1" pc.cfg | orvanta-config simulate - --machine n.json | sed '1,/^Changes/d;/^Reply/,$d;/ move C:/d;/ pause /d'
-- console --
$ sh try ''  # only the first address is compared, one route stands twice
$ sh try '/Address/s/0.5/0.6/'  -->   1  adapter 7: addresses 10.0.0.6/255.0.0.0, 10.9.9.9/255.0.0.0
$ sh try '/Netmask/s/=255.0/=255.255/'  # a mask that differs alone  -->   1  adapter 7: addresses 10.0.0.5/255.255.0.0, 10.9.9.9/255.0.0.0
$ sh try '/Gateway/s/=.*/=10.0.0.2,10.0.0.1/'  -->   2  adapter 7: gateways 10.0.0.2, 10.0.0.1
$ sh try '/Server0/s/=.*/=10.0.0.4,10.0.0.3/'  -->   2  adapter 7: DNS servers 10.0.0.4, 10.0.0.3
$ sh try '/Suffix/s/a.ex/A.ex/'  # letter case counts  -->   2  every adapter: DNS suffixes A.example, b.example
$ sh try '/Route0/s/255.255/255.0/'
  2  run route DELETE 10.1.0.0
  3  run route -p ADD 10.1.0.0 mask 255.0.0.0 10.0.0.1 METRIC 5
$ sh try '/Route0/s/10.0.0.1/10.0.0.9/'
  2  run route DELETE 10.1.0.0
  3  run route -p ADD 10.1.0.0 mask 255.255.0.0 10.0.0.9 METRIC 5
$ sh try '' 's/"mask": "0.0.0.0"/"mask": "128.0.0.0"/'  # no default route  -->   2  run route DELETE 0.0.0.0
