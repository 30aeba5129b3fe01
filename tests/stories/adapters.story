One adapter becomes static, with gateways, name servers but 0.0.0.0, and suffixes; another one gets DHCP and its servers.
Also through the plug-in.

-- pc.cfg --
[TCP/IP]
PCIBus=0
PCIDevice=3
PCIFunction=0
DHCP=False
Address=10.0.0.5, 10.0.0.6
Netmask=255.255.255.0 255.255.255.0
Gateway=10.0.0.1;10.0.0.2
SetDNSInfo=True
DNS-Server-Count=2
DNS-Server0=10.0.0.2, 0.0.0.0
DNS-Server1=10.0.0.3
DNS-SuffixSearchOrder=corp.example example
[NicEntry1]
MACAddress=08-00-27-65-43-21
DHCP=True
DNS-Use-DHCP=True
-- m.json --
{"adapters": {"8": {"static_dns": true, "dns_servers": ["10.20.0.1"]}}}
-- console --
$ orvanta-config simulate pc.cfg --machine m.json
File     pc.cfg, placed as C:\tarvo.cfg
Check    1 error on line 11: "0.0.0.0" is not an address in any network; see orvanta-config check pc.cfg
Machine  m.json: TEMPLATE, workgroup WORKGROUP, 3 adapters
Message  Internal/Configure, Filename=C:\tarvo.cfg

Changes
  1  adapter 7: addresses 10.0.0.5/255.255.255.0, 10.0.0.6/255.255.255.0
  2  pause 20 s
  3  adapter 7: gateways 10.0.0.1, 10.0.0.2
  4  adapter 7: DNS servers 10.0.0.2, 10.0.0.3
  5  every adapter: DNS suffixes corp.example, example
  6  adapter 8: turn DHCP on
  7  adapter 8: DNS servers from DHCP
  8  move C:\tarvo.cfg to C:\Program Files\Orvanta\Agent\tarvo.cfg
Reply
  Schedule-ID       (empty)
  Task-Sequence-ID  (empty)
  Result            Success
  status            1

Machine, before -> after
  adapter 7, Intel(R) PRO/1000 MT Desktop Adapter
    DHCP                on                          -> off
    addresses           192.168.10.57/255.255.255.0 -> 10.0.0.5/255.255.255.0, 10.0.0.6/255.255.255.0
    gateways            192.168.10.1                -> 10.0.0.1, 10.0.0.2
    DNS servers         192.168.10.1                -> 10.0.0.2, 10.0.0.3
    DNS suffixes        -                           -> corp.example, example
    DNS servers set by  DHCP                        -> hand
  adapter 8, Intel(R) 82574L Gigabit Network Connection
    DHCP                off                    -> on
    addresses           10.20.0.15/255.255.0.0 -> -
    DNS servers         10.20.0.1              -> -
    DNS suffixes        -                      -> corp.example, example
    DNS servers set by  hand                   -> DHCP
  adapter 12, Microsoft KM-TEST Loopback Adapter
    DNS suffixes  - -> corp.example, example
  files
    C:\tarvo.cfg                              342 bytes -> -
    C:\Program Files\Orvanta\Agent\tarvo.cfg  -         -> 342 bytes
