No finding shows a secret, in whatever form the line that holds it is broken.

-- a.cfg --
[Networking]
DomainPassword=s3cret1
s3cret2
s3cret3==
DomainPasword s3cret4
DomainUsername=s3cret5
DomainPassword=s3cret6
DomainUser : s3cret7
s3cret8
[ConfigSettings]
[Networking]
ProxyPwd=s3cret9
; my password: s3cretA
[TCP/IP]
Description=secret=s3cretC
Description2 secret s3cretD
DHCP=False
Gateway=10.0.0.1
Password: s3cret
Route0=pwd s3cret
Static-Route-Count=1
DNS-Server=pass=s3cret
DNS-Server0: s3cret pass
[Global]
DomainPassword
s3cretF
ScheduleId=
[Networking]
MyPass-s3cret
ComputerName=pass s3cret
-- b.cfg --
[Networking]
ComputerName=pass s3cret
-- console --
$ for f in --no-color --json --sarif; do orvanta-config check a.cfg b.cfg $f >out; echo $(grep -c s3cret out) $(grep -c '\*\*\*' out); done
0 20
0 2
0 2
$ orvanta-config check a.cfg b.cfg | grep -e '^  .*\*' | sort | uniq -c
      8   ***
      3   ComputerName=***
      1   DNS-Server=***
      1   DomainPassword=***
      1   Password***
      1   ProxyPwd=***
      3   Route0=***
