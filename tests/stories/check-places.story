Where a finding is placed, and what is one finding, two or none.

-- try --
# try LINES...: the places and codes that are found in each of LINES, a "|" between the lines
import json, subprocess, sys
for lines in sys.argv[1:]:
    run = subprocess.run(["orvanta-config", "check", "-", "--json"], stdout=subprocess.PIPE, input=lines.replace("|", "\n").encode() + b"\n")
    print(*["%d:%d %s" % (f["line"], f["column"], f["code"]) for f in json.loads(run.stdout)["findings"]], sep=", ")
-- console --
$ python3 try '[TCP/IP]|DHCP=False|Address=10.0.0.5|  , 1bad||  10.0.0.7|Netmask=255.0.0.0;|255.0.0.0,255.0.0.0' '[TCP/IP]|DHCP=False|Netmask=255.0.0.0|Address=10.0.0.5|Address=10.0.0.6| 10.0.0.300'  # continuation lines, also of the first of two keys
4:5 C201
3:9 C208, 5:1 C010, 6:2 C201
$ python3 try '[TCP/IP]|DHCP=False|Address=10.0.0.5|Netmask 255.0.0.0|Gateway: 10.0.0.1' '[TCP/IP]|DHCP=False|Address=10.0.0.5|Netmask=255.0.0.0|Gateway=10.0.0.1|Password: x'  # lines that look like entries are no items
2:6 C307, 4:1 C007, 5:1 C007
6:1 C007
$ python3 try 'stray|[Global]|ScheduleId=1' '[Global]|ScheduleId=1|[Networking]|2|ComputerName=A' '[Global]|; a comment|that goes on|ScheduleId=1' ' |'
1:1 C008
4:1 C008
3:1 C019
1:1 C020
$ python3 try '[TCP/IP]|DHCP=False|Address=10.0.0.5|; a|; b|10.0.0.6|10.0.0.7|Netmask=255.0.0.0|SetDNSInfo=True|DNS-SuffixSearchOrder=a.example|# more|b.example|[Networking]|;|x'  # a comment takes a list's lines
6:1 C018, 12:1 C018, 15:1 C019
$ python3 try '[TCP/IP]|PCIBus=0|PCIDevice=3|PCIFunction=0|MACAddress=080027123456|[NicEntry2]|MACAddress=08:00:27:12:34:56|[NicEntry3]|PCIBus=0|PCIDevice=4|PCIFunction=0|MACAddress=080027123456'
6:1 C314
$ python3 try '[TCP/IP]|Static-Route-Count=5|Route0=10.1.0.0 255.255.0.0 10.0.0.1 0 99999999999|Route1=10.2.0.0 255.255.0.0 10.0.0.1|Route2=10.3.0.0 255.255.0.0 10.0.0.1 0 0|Route3=10.4.0.0 255.255.0.0 10.0.0.1 0 10000|Route4=10.5.0.0 255.255.0.0 10.0.0.1 0 9999'
3:40 C210, 4:8 C230, 5:40 C230, 6:40 C210
$ python3 try '[TCP/IP]|MACAddress=080027000001|Static-Route-Count=1|Route0=|[NicEntry2]|MACAddress=080027000002|Static-Route-Count=1|Route0=010.1.0.0 255.255.0.0 10.0.0.1 0 5' '[TCP/IP]|Static-Route-Count=1|Route7=10.2.0.0 255.255.0.0 10.0.0.1 0 5' '[TCP/IP]|Static-Route-Count=1|Route0=10.2.0.7 255.255.255.255 10.0.0.1 0 x'
4:1 C222, 8:8 C203
3:1 C220
3:44 C210
$ python3 try '[TCP/IP]|DHCP=False|Address=10.0.0.5/24|Static-Route-Count=1|Route1=10.1.0.0/16 10.0.0.1|[NicEntry2]|DHCP=False|Address=10.0.0.6|Netmask=24|[Networking]|ComputerName=A|DomainUser=1|DomainPassword=2'  # one mistake, one finding
3:9 C201, 5:8 C201, 9:9 C201, 12:1 C104
$ python3 try '[TCP/IP]|DHCP=False|Address=10.0.0.5|Netmask=255.0.0.0|Static-Route-Count=1|Route0=10.1.0.0 255.255.0.0 11.0.0.1 0 5|[NicEntry2]|MACAddress=080027000002|DHCP=True'  # what DHCP gives is not known
1:1 C315
$ python3 try '[NicEntry1]|MACAddress=080027000001|SetDNSInfo=True|DNS-SuffixSearchOrder=a.b c.d|[NicEntry2]|MACAddress=080027000002|SetDNSInfo=True|DNS-SuffixSearchOrder=a.b, c.d|[Networking]|Workgroup=False|Domain=CORP|DNSDomain=corp.example'
12:11 C317
$ python3 try '[Global|Config=x|[TCP/IP|DHCP=1' '[Networking]|DSOrganizationalUnit=Köln/Café\x' '[ConfigSettings]|Server=a|Server=b|and more|='
1:1 C006, 2:8 C214, 3:1 C006, 4:6 C213
2:22 C219, 2:22 C015, 2:22 C321

$ python3 try '[TCP/IP]|DHCP=True|VendorID=1|DeviceID=2|DNS-Domain=|DNS-Hostname=A|DNS-Enabled=False|DNS-Server-Count=0|Address=0.0.0.0' '[TCP/IP]|DHCP=|PCIBus=|Address=|DNS-Server0=|[Networking]|ComputerName='  # recorded keys, empty values
9:9 C309

$ python3 try '[my nicentry #1]|DHCP=True|[NicEntri2]' '[my NicEntry #1]|DHCP=True|X=1' '[TCP/IP]|SetDNSInfo=True|DNS-Server-Count=1|DNS-Server00=10.0.0.2' '[TCP/IP]|PCIBus=4294967295|PCIDevice=3|PCIFunction=8'
1:1 C101, 3:1 C101
3:1 C106
3:18 C221, 4:1 C104
4:13 C210
$ python3 try '[Global]|RebootAfterConfig=false|[Networking]|ComputerName=A-1|Workgroup=no|Domain=CORP|DSOrganizationalUnit=OU=Sales|DomainUsername=1|DomainPassword=2|JoinDomainBeforeNameChange=TRUE'
2:19 C301, 5:11 C213
$ python3 try '[TCP/IP]|DHCP=False ; static|Address=10.0.0.5 # first|  10.0.0.6 ; the second|Netmask=255.0.0.0 ;255.0.0.0' '[Networking]|ComputerName=A ;x|DomainPassword=ab ; c|DSOrganizationalUnit=Floor #2|Workgroup=;no' '[Global]|ScheduleId=7 ; keep|TaskSequence=Build #2 // a;b|[TCP/IP]|Description=a ; b|DHCP=False|Address=10.0.0.5 // the first|Netmask=255.0.0.0' '[TCP/IP]|SetDNSInfo=True|DNS-SuffixSearchOrder=a.example ; b' '[TCP/IP]|SetDNSInfo=True|DNS-SuffixSearchOrder=a.example;b; c ;|d' '[TCP/IP]|SetDNSInfo=True|DNS-SuffixSearchOrder=zürich.example'  # comments behind values
2:12 C021, 3:18 C021, 4:12 C021
2:16 C021, 3:1 C228, 3:19 C021, 4:22 C321, 5:11 C021
2:14 C021, 7:18 C021
3:35 C024

3:23 C218, 3:23 C015
$ python3 try '[TCP/IP]|DHCP=False|Address=fe80::1|Netmask=ffff::|Gateway=2001:db8::1/64|Static-Route-Count=1|Route0=::1 255.0.0.0 fe80::2%3 0 5' '[TCP/IP]|DHCP=False|Address=08:00:27:12:34:56|Netmask=255.0.0.0'  # IPv6, and no IPv6
3:9 C231, 4:9 C231, 5:9 C231, 7:8 C231, 7:22 C231
3:9 C203
