A plan as a page stands alone: well-formed, its links lead somewhere, it loads nothing and shows no secret.

-- restarts.cfg --
[Networking]
Workgroup=No
Domain=corp.example
DSOrganizationalUnit=Sales
DomainUsername=ENCIPHERED-USER
DomainPassword=ENCIPHERED-PASSWORD
ComputerName=B
[TCP/IP]
DHCP=True
[NicEntry2]
SetDNSInfo=True
DNS-Server-Count=1
DNS-Server1=0.0.0.0
-- try --
# try FILE [OPTION...]: the texts of the page without its styles and FILE itself, and what is wrong with it
import html.parser, re, subprocess, sys
subprocess.run(["orvanta-config", "plan", *sys.argv[1:], "--html", "page.html"], stdout=subprocess.DEVNULL)
page = open("page.html").read()
class Page(html.parser.HTMLParser):
    opened, ids, targets, texts = [], [], [], []
    def handle_starttag(self, tag, attributes):
        if tag not in ("meta", "wbr"): self.opened.append(tag)
        self.ids += [value for name, value in attributes if name == "id"]
        self.targets += [value[1:] for name, value in attributes if name == "href"]
    def handle_endtag(self, tag):
        if self.opened.pop() != tag: print("<no beginning of", tag)
    def handle_data(self, data):
        if self.opened and self.opened[-1] != "style" and data.strip(): self.texts.append(" ".join(data.split()))
parsed = Page(convert_charrefs=True)
parsed.feed(page)
wrong = parsed.opened + [i for i in parsed.ids if parsed.ids.count(i) > 1] + [t for t in parsed.targets if t not in parsed.ids]
wrong += re.findall(r"<script|<link|src=|url\(|https?:|s3cret|[\x00-\x09\x0b-\x1f]", page)
wrong += [part for part in ("prefers-color-scheme: dark", 'name="viewport"', "max-width: 40rem") if part not in page]
print(*("<wrong: " + each for each in wrong), " | ".join(parsed.texts))
-- console --
$ python3 try restarts.cfg --follow-restarts 3
Plan of restarts.cfg | Plan of restarts.cfg | Machine: built-in example: TEMPLATE, workgroup WORKGROUP, 3 adapters | Check: 2 errors, the first on line 2: "No" is neither True nor False and is read as False; see orvanta-config check restarts.cfg | 2 changes, 2 restarts, no pauses; settled after 2 restarts, but not all of the file is true | Plan | Restart 1 | Restart 2 | Still not true | Machine | Adapters | Events | File | Plan | 2 changes, 2 restarts, no pauses; succeeds with its restarts | Runs now | 1 | ChangeCompName | Name=B {User=joiner} | TEMPLATE → B | [Networking] lines | 5 | 6 | 7 | -- restart 1, for the new name: the run stops here -- | Waits for the restart, and is planned anew then | 3 | JoinDomain | DNS Domain=corp.example, | Windows Domain= {User=joiner} | none → corp.example | [Networking] lines | 3 | 4 | 5 | 6 | in the OU Sales | 4 | ConfigureNic | [TCP/IP] line | 8 | adapter 7, Intel(R) PRO/1000 MT Desktop Adapter | the next free one, no PCI location or MAC address given | SetDhcp | not needed: dhcp already | line | 9 | 5 | ConfigureNic | [NicEntry2] line | 10 | adapter 8, Intel(R) 82574L Gigabit Network Connection | the next free one, no PCI location or MAC address given | passed over: adapter 7 is taken by [TCP/IP] | 6 | Reboot | restart 2, for the join | Asks for nothing | DNS_SERVER 0.0.0.0 from [NicEntry2] DNS-Server1, line | 13 | : 0.0.0.0 is no server | Its run | The reply is | Reboot | . | 1 change | rename the computer to B as joiner | Plan after restart 1 | 1 change, 1 restart, no pauses; succeeds with its restarts | Runs now | 1 | JoinDomain | DNS Domain=corp.example, | Windows Domain= {User=joiner} | none → corp.example | [Networking] lines | 3 | 4 | 5 | 6 | in the OU Sales | 2 | ConfigureNic | [TCP/IP] line | 8 | adapter 7, Intel(R) PRO/1000 MT Desktop Adapter | the next free one, no PCI location or MAC address given | SetDhcp | not needed: dhcp already | line | 9 | 3 | ConfigureNic | [NicEntry2] line | 10 | adapter 8, Intel(R) 82574L Gigabit Network Connection | the next free one, no PCI location or MAC address given | passed over: adapter 7 is taken by [TCP/IP] | -- restart 1, for the join: the run stops here -- | Dropped | ChangeCompName | Name=B {User=joiner} | not needed: B already | [Networking] lines | 5 | 6 | 7 | Asks for nothing | DNS_SERVER 0.0.0.0 from [NicEntry2] DNS-Server1, line | 13 | : 0.0.0.0 is no server | Its run | The reply is | Reboot | . | 2 changes | join the domain corp.example as corp.example\joiner in OU=Sales,DC=corp,DC=example | refused: result 1332 (no account for the computer) | join the domain corp.example as corp.example\joiner in OU=Sales,DC=corp,DC=example, making the computer account | Plan after restart 2 | 0 changes, 0 restarts, no pauses; nothing to do | Runs now | 1 | ConfigureNic | [TCP/IP] line | 8 | adapter 7, Intel(R) PRO/1000 MT Desktop Adapter | the next free one, no PCI location or MAC address given | SetDhcp | not needed: dhcp already | line | 9 | 2 | ConfigureNic | [NicEntry2] line | 10 | adapter 8, Intel(R) 82574L Gigabit Network Connection | the next free one, no PCI location or MAC address given | passed over: adapter 7 is taken by [TCP/IP] | Dropped | MoveOu | OU=Sales | not needed: OU=Sales, | DC=corp, | DC=example already | [Networking] lines | 4 | 5 | 6 | ChangeCompName | Name=B {User=joiner} | not needed: B already | [Networking] lines | 5 | 6 | 7 | Asks for nothing | DOMAIN corp.example from [Networking] Domain, line | 3 | : the computer belongs to this domain already | DNS_SERVER 0.0.0.0 from [NicEntry2] DNS-Server1, line | 13 | : 0.0.0.0 is no server | Its run | The reply is | Success | . | 1 change | move C:\tarvo.cfg to C:\Program Files\Orvanta\Agent\tarvo.cfg | Still not true | DNS_SERVER | 0.0.0.0 | [NicEntry2] line 13 | 0.0.0.0 is no server | Machine, before and after | Setting | Before | After | computer | name | TEMPLATE | B | member of | workgroup WORKGROUP | domain corp.example | files | C:\tarvo.cfg | 240 bytes | - | C:\Program Files\Orvanta\Agent\tarvo.cfg | - | 240 bytes | directory corp.example | B | - | CN=B, | OU=Sales, | DC=corp, | DC=example | Adapters | Adapter | PCI | MAC | Use | adapter 7, Intel(R) PRO/1000 MT Desktop Adapter | 0/3/0 | 08:00:27:12:34:56 | taken by [TCP/IP] | adapter 8, Intel(R) 82574L Gigabit Network Connection | 4/0/0 | 08:00:27:65:43:21 | taken by [NicEntry2] | adapter 12, Microsoft KM-TEST Loopback Adapter | 02:00:4C:4F:4F:50 | not on the PCI bus | Events of the file | 11 events | Line | Section | Key | Event | Value | Command | 3 | Networking | Domain | DOMAIN | corp.example | 3 JoinDomain | 4 | Networking | DSOrganizationalUnit | DOMAIN_OU | Sales | 3 JoinDomain | 5 | Networking | DomainUsername | DOMAIN_USER | *** | 3 JoinDomain | 6 | Networking | DomainPassword | DOMAIN_PASSWORD | *** | 3 JoinDomain | 7 | Networking | ComputerName | COMPUTER_NAME | B | 1 ChangeCompName | 5 | Networking | DomainUsername | DOMAIN_USER | *** | 1 ChangeCompName | 6 | Networking | DomainPassword | DOMAIN_PASSWORD | *** | 1 ChangeCompName | 8 | TCP/IP | NIC | 4 ConfigureNic | 9 | TCP/IP | DHCP | DHCP | 4 SetDhcp | 10 | NicEntry2 | NIC | 5 ConfigureNic | 13 | NicEntry2 | DNS-Server1 | DNS_SERVER | 0.0.0.0 | restarts.cfg | 1 | [Networking] | 2 | Workgroup=No | 3 | Domain=corp.example | 3 | 4 | DSOrganizationalUnit=Sales | 3 | 5 | DomainUsername=*** | 1 | 3 | 6 | DomainPassword=*** | 1 | 3 | 7 | ComputerName=B | 1 | 8 | [TCP/IP] | 4 | 9 | DHCP=True | 4 | 10 | [NicEntry2] | 5 | 11 | SetDNSInfo=True | 12 | DNS-Server-Count=1 | 13 | DNS-Server1=0.0.0.0 | nothing
$ for f in '[Networking]\nComputerName=B' '[TCP/IP]\nDHCP=False\nAddress=no.where' '[Global]'; do printf "$f\n" >pc.cfg; python3 try pc.cfg | sed 's/^Plan of.*3 adapters//;s/| Its run.*//'; done
 | 1 change, 0 restarts, no pauses; a restart is due after 0 restarts; a larger --follow-restarts shows more | Plan | Still not true | Machine | Events | File | Plan | 1 change, 1 restart, no pauses; succeeds with its restarts | Runs now | 1 | ChangeCompName | Name=B {User=} | TEMPLATE → B | [Networking] line | 2 | -- restart 1, for the new name: the run stops here -- 
 | Check: 1 error on line 2: the addressing is static, but Netmask is not given; see orvanta-config check pc.cfg | 0 changes, 0 restarts, no pauses; failed after 0 restarts: common\ipc\IpAddress:58 - IPAddress::Connect Name Resolution Error, system error 11001 | Plan | Machine | Events | File | Plan | 0 changes, 0 restarts, no pauses; fails: there is no plan | No plan | common\ipc\IpAddress:58 - IPAddress::Connect Name Resolution Error | ipc::CIPAddressError, value 0, system error 11001 | at IP_ADDRESS no.where from [TCP/IP] Address, line 3 | the machine cannot resolve "no.where" [C509] 
 | 0 changes, 0 restarts, no pauses; settled after 0 restarts | Plan | Machine | File | Plan | 0 changes, 0 restarts, no pauses; nothing to do | Runs now | nothing 
$ printf '[Global]\nRebootAfterConfig=False\n[Networking]\nComputerName=B\nWorkgroup=No\nDomain=d\n' >forbidden.cfg; python3 try forbidden.cfg | grep -o -e '<.*' -e '-- restart.*Never done[^|]*'; grep -o '<li[^>]*never.>' page.html
-- restart, which RebootAfterConfig=False forbids: the run fails here -- [C302] | lost by it: the file is put away, the restart never comes, the join never happens | Never done: the run fails and the file is put away 
<li id="s1c3" class="never">
<li id="s1c4" class="never">
$ printf '[Networking]\nComputerName=<script>"&\n[NicEntry <b>]\nMACAddress=</li>\033\n\tSetDNSInfo=True\nDNS-SuffixSearchOrder=<i>\nUserPwd=s3cret\nDescription=\344\366 \303\244\n' >odd.cfg; python3 try odd.cfg | tr '|' '\n' | grep -e '<' -e '&' -e x1B -e Pwd -e ä | sort -u | tr '\n' '|'
 </li>\x1B | <i> | <script>"& | Check: 3 errors, the first on line 2: "<script>"&" contains "<"; see orvanta-config check odd.cfg | ComputerName=<script>"& | DNS Suffixes=<i> | DNS-SuffixSearchOrder=<i> | Description=äö Ã¤ | MACAddress=</li>\x1B | Name=<script>"& {User=} | NicEntry <b> | TEMPLATE → <script>"& | UserPwd | UserPwd=*** | [NicEntry <b>] | [NicEntry <b>] UserPwd, line | [NicEntry <b>] line 7 | [NicEntry <b>] lines | every adapter: DNS suffixes <i> | none → <i> | rename the computer to <script>"& | taken by [NicEntry <b>] | the next free one, no adapter with MAC address </li>\x1B | wanted <script>"& | äö Ã¤ |
$ printf '\377\376[' >wide.cfg; python3 try wide.cfg | grep -o -e '<.*' -e 'Check[^|]*'; stat -c %A page.html
Check: 1 error: the file is binary or in UTF-16; see orvanta-config check wide.cfg 
-rw-------
