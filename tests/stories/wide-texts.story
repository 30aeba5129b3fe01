Logs, machine files and inventories that Windows PowerShell wrote, in UTF-16, are read.

-- pc.cfg --
[TCP/IP]
DHCP=False
Address=10.0.0.5
Netmask=255.255.255.0
Gateway=10.9.9.9
-- base.csv --
file,computer_name
pc.cfg,PC-Ü
-- console --
$ orvanta-config simulate pc.cfg --verbose | iconv -f UTF-8 -t UTF-16LE | (printf '\377\376'; cat) >agent.log
$ orvanta-config explain agent.log
Internal/Configure of C:\tarvo.cfg: failed
  did     ConfigureNic
          SetStatic (IP and Subnet Masks: {ip=10.0.0.5,mask=255.255.255.0}) on adapter 7
          Sleep (Duration=20000 milliseconds) on adapter 7
  failed  SetGateway (Gateways=10.9.9.9) on adapter 7
  at      SetGateway:52 - Configuring gateways failed
  why     gateway outside the adapter's subnets (invalid gateway IP address)
  remedy  give a gateway that one of the addresses and masks reaches
$ (printf '\376\377'; iconv -f UTF-8 -t UTF-16BE base.csv) >inventory.csv
$ orvanta-config fleet --code-page 65001 inventory.csv --json | grep -o '"computer_name":"[^"]*"'
"computer_name":"PC-Ü"
$ printf '{"schema": 1,%32735s"computer_name": "😀é"}' '' | iconv -f UTF-8 -t UTF-16LE | (printf '\377\376'; cat) >m.json
$ orvanta-config capture --code-page 65001 --machine m.json --json | grep '"computer_name"'  # the pair spans two blocks
  "computer_name": "😀é",
