Files come one by one, from folders and by patterns, each once and sorted, and are compared with each other.

-- pcs/a.cfg --
[Networking]
ComputerName=PC-1
[TCP/IP]
DHCP=False
Netmask=255.0.0.0
Address=10.0.0.5
MACAddress=080027000001
-- pcs/b.cfg --
[TCP/IP]
DHCP=False
Netmask=255.0.0.0
Address=10.0.0.6
MACAddress=08:00:27:00:00:01
-- pcs/c.cfg --
[Networking]
ComputerName=pc-1
[TCP/IP]
DHCP=False
Netmask=255.0.0.0
Address=10.0.0.6
-- try --
# try WHAT...: the files with findings, and their codes
orvanta-config check "$@" --json | python3 -c 'import json, sys; t = json.load(sys.stdin); print(*[f["file"] + " " + f["code"] for f in t["findings"]], str(t["files"]) + " files", sep=", ")'
-- console --
$ mkdir -p site/deep/er; for f in b.cfg a.CFG deep/er/c.cfg other.txt; do echo '[Printers]' >site/$f; done
$ sh try site  --> site/a.CFG C102, site/b.cfg C102, site/deep/er/c.cfg C102, 3 files
$ sh try 'site/?.cfg'; sh try 's*e/*o*h*r*.t*t'; sh try '**/c.*'; sh try 'site/d*p'
site/a.CFG C102, site/b.cfg C102, 2 files
site/other.txt C102, 1 files
site/deep/er/c.cfg C102, 2 files
site/deep/er/c.cfg C102, 1 files
$ sh try site/b.cfg "$PWD/site/../site/b.cfg" '*/b*'  # a file named in three ways  --> site/b.cfg C102, 2 files
$ orvanta-config check pcs/*.cfg | grep also
pcs/b.cfg:5:12: error: MAC address "08:00:27:00:00:01" is also given in pcs/a.cfg:7 [C403]
pcs/c.cfg:2:14: error: computer name "pc-1" is also given in pcs/a.cfg:2 [C401]
pcs/c.cfg:6:9: error: address "10.0.0.6" is also given in pcs/b.cfg:4 [C402]
$ sed -i 's/False/True/' pcs/b.cfg; sh try pcs/b.cfg pcs/c.cfg  # with DHCP an address is only a record  --> pcs/b.cfg C309, 2 files
$ ln -s nowhere site/z.cfg; ln -s ../site site/loop; ln -s b.cfg site/same.cfg; sh try site  # links
site/a.CFG C102, site/b.cfg C102, site/deep/er/c.cfg C102, site/z.cfg C001, 4 files
$ orvanta-config check site/z.cfg
orvanta-config: site/z.cfg: cannot be read: No such file or directory; name a file that you can read
[exit code 2]
$ mkdir empty; for a in '' none.cfg '[none]' empty 'x*.cfg' 'site --json --sarif' 'site --machine m.json'; do orvanta-config check $a; [ $? = 2 ] || echo another exit code; done
orvanta-config: check: FILE is missing; name configuration files, folders or patterns, or - for standard input
orvanta-config: none.cfg: cannot be read: No such file or directory; name a file that you can read
orvanta-config: [none]: cannot be read: No such file or directory; name a file that you can read
orvanta-config: empty: contains no file that ends in .cfg; name another folder or a file
orvanta-config: x*.cfg: matches no file; correct the pattern, or name a file or folder
orvanta-config: --json excludes --sarif; see orvanta-config check --help
orvanta-config: m.json: cannot be read: No such file or directory; name a file that you can read
$ truncate -s 100M large.cfg; (head -c 4194305 /dev/zero | tr '\0' x) >long.cfg; head -c 4194304 long.cfg >line.cfg; printf '' >empty.cfg; printf '[Global]\nA=\0\001' >binary.cfg; (printf '[Global]\nScheduleId=1\n'; yes x | head -200000) >goes-on.cfg
$ for f in empty binary large long line goes-on; do orvanta-config check $f.cfg; done | grep error:
empty.cfg:1:1: error: the file is empty [C002]
binary.cfg:1:1: error: the file is binary or in UTF-16 [C004]
large.cfg:1:1: error: the file is larger than 4 MiB and was not checked [C003]
long.cfg:1:1: error: the file is larger than 4 MiB and was not checked [C003]
line.cfg:1:1: error: the line has no "=", and there is no value above it in this section [C008]
goes-on.cfg:3:1: error: the line has no "=" and adds to the value of ScheduleId in section "Global" [C008]
