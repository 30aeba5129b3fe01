Rename, then join and network, then nothing: a whole configuration settles, and a second run changes nothing.
Also through the plug-in.

-- pc.cfg --
[Networking]
Workgroup=False
DNSDomain=corp.example
DSOrganizationalUnit=Sales/Europe
DomainUsername=ENCIPHERED-USER
DomainPassword=ENCIPHERED-PASSWORD
ComputerName=PC9
[TCP/IP]
DHCP=False
Address=10.0.0.5
Netmask=255.0.0.0
Gateway=10.0.0.1
SetDNSInfo=True
DNS-Server-Count=1
DNS-Server0=10.0.0.2
DNS-SuffixSearchOrder=a.example
Static-Route-Count=1
Route0=10.1.0.0 255.255.0.0 10.0.0.1 0 3
-- console --
$ orvanta-config simulate pc.cfg --follow-restarts 5 --save-machine after.json | sed -n '/^Message/p;/^-- /p;/^Changes/,/^Reply/{/^  /p};/Result/p;/^  computer/,/^  adapter/p;/^  directory/,$p'
Message 1 of 3  Internal/Configure, Filename=C:\tarvo.cfg
  1  rename the computer to PC9 as joiner
  Result            Reboot
-- restart 1 --
Message 2 of 3  Internal/Configure, Filename=C:\tarvo.cfg
  1  join the domain corp.example as corp.example\joiner in OU=Europe,OU=Sales,DC=corp,DC=example  refused: result 1332 (no account for the computer)
  2  join the domain corp.example as corp.example\joiner in OU=Europe,OU=Sales,DC=corp,DC=example, making the computer account
  3  adapter 7: addresses 10.0.0.5/255.0.0.0
  4  pause 20 s
  5  adapter 7: gateways 10.0.0.1
  6  adapter 7: DNS servers 10.0.0.2
  7  every adapter: DNS suffixes a.example
  8  run route -p ADD 10.1.0.0 mask 255.255.0.0 10.0.0.1 METRIC 3
  Result            Reboot
-- restart 2 --
Message 3 of 3  Internal/Configure, Filename=C:\tarvo.cfg
  1  pause 20 s
  2  move C:\tarvo.cfg to C:\Program Files\Orvanta\Agent\tarvo.cfg
  Result            Success
  computer
    name       TEMPLATE            -> PC9
    member of  workgroup WORKGROUP -> domain corp.example
  adapter 7, Intel(R) PRO/1000 MT Desktop Adapter
  directory corp.example
    PC9  - -> CN=PC9,OU=Europe,OU=Sales,DC=corp,DC=example
$ orvanta-config simulate pc.cfg --machine after.json | grep '^  [1-9]'
  1  pause 20 s
  2  delete C:\Program Files\Orvanta\Agent\tarvo.cfg
  3  move C:\tarvo.cfg to C:\Program Files\Orvanta\Agent\tarvo.cfg
