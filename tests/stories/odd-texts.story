No text of the user is taken for a format or steers the terminal.

-- console --
$ printf '[Networking]\nComputerName=%%n%%s%%s\n[TCP/IP]\nSetDNSInfo=%%n%%s\033[31m\n\377=%%s\n' >pc.cfg
$ orvanta-config simulate pc.cfg --verbose --at 'C:\%s%n%s.cfg' | grep -a % | cat -v
File     pc.cfg, placed as C:\%s%n%s.cfg
Check    2 errors, the first on line 2: "%n%s%s" contains "%"; see orvanta-config check pc.cfg
Message  Internal/Configure, Filename=C:\%s%n%s.cfg
  1  rename the computer to %n%s%s
  2  internal/Configure:115 Configure::HandleMessage(): config file=C:\%s%n%s.cfg
  2  ConfigBuilder::RunConfig(): about to execute class config::command::ChangeCompName (Name=%n%s%s {User=})
  computer name  %n%s%s
    name after the restart  - -> %n%s%s
$ orvanta-config simulate pc.cfg --json --at 'C:\%s%n%s.cfg' | grep -e '%s' | cat -v
      "text": "internal/Configure:115 Configure::HandleMessage(): config file=C:\\%s%n%s.cfg"
      "text": "ConfigBuilder::RunConfig(): about to execute class config::command::ChangeCompName (Name=%n%s%s {User=})"
        "Name": "%n%s%s",
    "pending_computer_name": "%n%s%s",
        "path": "C:\\%s%n%s.cfg",
        "text": "[Networking]\nComputerName=%n%s%s\n[TCP/IP]\nSetDNSInfo=%n%s\u001b[31m\nM-CM-?=%s\n"
$ printf '[Networking]\nComputerName=A\033[31m\nDomainUsername=ENCIPHERED-USER\n[NicEntry \033[0m]\nMACAddress=\007\nDescription=pwd=s3cret\n' >pc.cfg
$ orvanta-config plan pc.cfg --verbose | grep -a -e x1B -e x07 -e '\*\*\*' -e s3cret | cat -v
Check    3 errors, the first on line 2: "A\x1B[31m" contains "\x1B"; see orvanta-config check pc.cfg
  1  ChangeCompName  Name=A\x1B[31m {User=joiner}  [Networking] lines 1-3
                     TEMPLATE -> A\x1B[31m
  2  ConfigureNic    adapter 7, Intel(R) PRO/1000 MT Desktop Adapter  [NicEntry \x1B[0m] lines 5-6
                     the next free one, no adapter with MAC address \x07
  adapter 7, Intel(R) PRO/1000 MT Desktop Adapter        taken by [NicEntry \x1B[0m], PCI location 0/3/0, MAC address 08:00:27:12:34:56
  COMPUTER_NAME A\x1B[31m from [Networking] ComputerName, line 2   1 ChangeCompName
  DOMAIN_USER *** from [Networking] DomainUsername, line 3         1 ChangeCompName
  DOMAIN_PASSWORD *** from [Networking], line 1                    1 ChangeCompName
  NIC pwd=*** from [NicEntry \x1B[0m] Description, line 6          2 ConfigureNic
  NIC_MAC_ADDRESS \x07 from [NicEntry \x1B[0m] MACAddress, line 5  2 ConfigureNic
$ orvanta-config plan pc.cfg --verbose --json | grep -a -c -e s3cret -e "$(printf '\033')"
0
[exit code 1]
