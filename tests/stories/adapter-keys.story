What the keys of an adapter's section make of it, with the values that ask for nothing.

-- try --
# try KEYS: what a run changes that is asked for KEYS in [tcp/ip], a "|" between the lines
echo "[tcp/ip]|$1" | tr '|' '\n' | orvanta-config simulate - | sed '1,/^Changes/d;/^Log/,$d;/^Reply/,$d;/ move C:/d'
-- console --
$ sh try 'Address=10.0.0.5|Netmask=255.0.0.0'
$ sh try 'DHCP=|PCIBus=|MACAddress=|DNS-Use-DHCP='
$ sh try 'DHCP=yes'
$ sh try 'DHCP=false|Address=10.0.0.5;10.0.0.6|  10.0.0.7|Netmask=255.0.0.0, 255.0.0.0 255.0.0.0'
  1  adapter 7: addresses 10.0.0.5/255.0.0.0, 10.0.0.6/255.0.0.0, 10.0.0.7/255.0.0.0
  2  pause 20 s
$ sh try 'DHCP=False|Address=10.0.0.5|[Networking]|[TCP/IP]|Address=10.0.0.6|Netmask=255.0.0.0'  # a section that comes twice is one
  1  adapter 7: addresses 10.0.0.5/255.0.0.0
  2  pause 20 s
$ sh try 'DNS-Use-DHCP=TRUE|SetDNSInfo=True|DNS-Server-Count=1|DNS-Server0=10.0.0.2'  -->   1  adapter 7: DNS servers from DHCP
$ sh try 'DNS-Server-Count=1|DNS-Server0=10.0.0.2'
$ sh try 'SetDNSInfo=True|DNS-Server-Count=2|DNS-Server1=10.0.0.2|DNS-Server3=0.0.0.0,10.0.0.3|DNS-Server4=10.0.0.9'
  1  adapter 7: DNS servers 10.0.0.2, 10.0.0.3
$ sh try 'SetDNSInfo=True|DNS-Server-Count=2147483647|DNS-Server0=10.0.0.2|DNS-Server4=10.0.0.9'  # no number reaches that of the entries
  1  adapter 7: DNS servers 10.0.0.2
$ sh try 'SetDNSInfo=True|DNS-Server-Count=-1|DNS-Server0=10.0.0.2'
$ sh try 'Static-Route-Count=2|Route0=10.1.0.0,255.255.0.0,10.0.0.1,x,7|Route1=10.2.0.0 255.255.0.0 10.0.0.1'
  1  run route -p ADD 10.1.0.0 mask 255.255.0.0 10.0.0.1 METRIC 7
  2  run route -p ADD 10.2.0.0 mask 255.255.0.0 10.0.0.1 METRIC 0
$ sh try 'Static-Route-Count=2|Route0=10.1.0.0,255.255.0.0,10.0.0.1,x,7|Route1=10.1.0.0,255.255.0.0,10.0.0.1,y,7'
  1  run route -p ADD 10.1.0.0 mask 255.255.0.0 10.0.0.1 METRIC 7
$ sh try 'Static-Route-Count=2|Route0=|Route1= , ;'
$ sh try 'Static-Route-Count=1|Route0=1host'  -->   1  run route -p ADD 255.255.255.255 mask 255.255.255.255 255.255.255.255 METRIC 0  refused: exit code 1
