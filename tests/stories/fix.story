What is certain is fixed, as a difference or in the file, byte for byte; the rest is still reported.

-- decide.cfg --
[Networking]
ComputerName=PC-17
ComputerName=PC-18
DomainPasword=77AA01BC
; orvanta: allow C104 because an old agent reads it
Worgroup=True
-- console --
$ printf '\357\273\277[TCP/IP\r\nDHCP=False\r\n  Adress=10.0.0.5 ; K\366ln\r\nNetmask="/24";\r\nGateway 10.0.0.1' >a.cfg; printf '[Networking] # the office\n  ComputrName=PC-18,\nDSOrganizationalUnit=Sales\\Europe\nDomainUsername=A\nDomainPassword=B\n\n\n\n\n\n[nicentry1]\nDHCP=True\nDHCP=True\n' >'b 1.cfg'; cp a.cfg a0; cp 'b 1.cfg' b0
$ orvanta-config check a.cfg 'b 1.cfg' --fix 2>report | tee patch | grep -a '^[-+@\\]' | cat -v
--- a.cfg
+++ a.cfg
@@ -1,5 +1,6 @@
-M-oM-;M-?[TCP/IP^M
+[TCP/IP]^M
-  Adress=10.0.0.5 ; KM-vln^M
-Netmask="/24";^M
-Gateway 10.0.0.1
\ No newline at end of file
+; KM-vln^M
+  Address=10.0.0.5^M
+Netmask=255.255.255.0^M
+Gateway=10.0.0.1
\ No newline at end of file
--- b 1.cfg	
+++ b 1.cfg	
@@ -1,3 +1,4 @@
-[Networking] # the office
-  ComputrName=PC-18,
-DSOrganizationalUnit=Sales\Europe
+# the office
+[Networking]
+  ComputerName=PC-18
+DSOrganizationalUnit=Sales/Europe
@@ -8,6 +9,5 @@
-[nicentry1]
+[NicEntry1]
-DHCP=True
$ tail -1 report; cmp a.cfg a0; patch -p0 <patch; orvanta-config check a.cfg 'b 1.cfg'
2 files checked: 8 errors
patching file a.cfg
patching file 'b 1.cfg'
2 files checked: nothing found
$ cp a.cfg a1; cp 'b 1.cfg' b1; cp a0 a.cfg; cp b0 'b 1.cfg'; chmod 640 a.cfg; orvanta-config check a.cfg 'b 1.cfg' --fix --write; cmp a.cfg a1; cmp 'b 1.cfg' b1; stat -c %a a.cfg
2 files checked: nothing found
640
$ orvanta-config check a.cfg 'b 1.cfg' --fix --write --json | grep -c code; cmp a.cfg a1; cmp 'b 1.cfg' b1  # twice is once
0
$ orvanta-config check decide.cfg --fix --write | grep -v '^  '
decide.cfg:3:1: error: ComputerName is on line 2 already, and only that one counts [C010]
decide.cfg:4:1: error: "DomainPasword" is not read [C104]
1 file checked: 2 errors
$ printf '[TCP/IP]\nDHCP=yes\nDNS-Use-DHCP=no\n' >c.cfg; orvanta-config check c.cfg --json >old.json; echo SetDNSInfo=0 >>c.cfg; orvanta-config check c.cfg --baseline old.json --fix 2>/dev/null | grep '^[-+]S'  # only what is new
-SetDNSInfo=0
+SetDNSInfo=False
$ printf '[Networking]\nComputrName=PC-18\n' >d.cfg; printf '[Networking]\nComputerName=PC-18\n' >e.cfg; orvanta-config check d.cfg --fix 2>/dev/null | grep -c '^+C'; orvanta-config check d.cfg e.cfg --fix 2>/dev/null  # no name of another file
1
[exit code 1]
$ for bytes in '[TCP/IP]\nDH\000CP=1\n' '[TCP/IP]\nDHCP=yes\rSetDNSInfo=no\n' '[TCP/IP]\rDHCP=yes' '[TCP/IP]\r\nDHCP=yes\nSetDNSInfo=no'; do printf "$bytes" | orvanta-config check - --fix 2>/dev/null | grep -c '^[-+]'; done
0
0
0
6
$ orvanta-config check a.cfg --write; orvanta-config check - --fix --write; orvanta-config check a.cfg --fix --json
orvanta-config: --write: needs --fix; write check FILE... --fix --write
orvanta-config: --write: cannot change standard input; name files only
orvanta-config: --fix: needs --write when --json or --sarif is given; add it, or leave out the other
[exit code 2]
$ mkdir x; cp a0 x/a0; ln -s a0 x/a.cfg; orvanta-config check x --fix --write; cmp x/a0 a1; test -L x/a.cfg
1 file checked: nothing found
