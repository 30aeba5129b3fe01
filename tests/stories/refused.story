What the machine refuses ends the run, and the reply names the result; a section header without an end lets nothing begin.
Also through the plug-in.

-- pc.cfg --
[TCP/IP]
DHCP=False
Address=10.0.0.5
Netmask=255.0.0.0
Gateway=10.0.0.1
DNS-Use-DHCP=True
-- open.cfg --
[Networking]
ComputerName=A
[Global
x=y
-- m.json --
{"faults": [{"call": "wmi.method", "method": "SetGateways", "result": 84}]}
-- console --
$ orvanta-config simulate pc.cfg --machine m.json
File     pc.cfg, placed as C:\tarvo.cfg
Machine  m.json: TEMPLATE, workgroup WORKGROUP, 3 adapters
Message  Internal/Configure, Filename=C:\tarvo.cfg

Changes
  1  adapter 7: addresses 10.0.0.5/255.0.0.0
  2  pause 20 s
  3  adapter 7: gateways 10.0.0.1  refused: result 84 (no IP on the adapter, or DHCP is on)
  4  move C:\tarvo.cfg to C:\Program Files\Orvanta\Agent\tarvo.cfg
Log, level 0 (--verbose shows all of it)
  0  internal/Configure:544 Configure::HandleMessage(): about to call Analyze() and RunConfig()
  0  internal/Configure:581 Configure::HandleMessage(): caught win32 error
       SetGateway:52 - Configuring gateways failed
       Value=4, SystemError=0x00000054
Reply
  Schedule-ID       (empty)
  Task-Sequence-ID  (empty)
  Result            Failure
  Status-Module     Win32
  Status-Code       84 (no IP on the adapter, or DHCP is on)
  status            1

Machine, before -> after
  adapter 7, Intel(R) PRO/1000 MT Desktop Adapter
    DHCP         on                          -> off
    addresses    192.168.10.57/255.255.255.0 -> 10.0.0.5/255.0.0.0
    gateways     192.168.10.1                -> -
    DNS servers  192.168.10.1                -> -
  files
    C:\tarvo.cfg                              90 bytes -> -
    C:\Program Files\Orvanta\Agent\tarvo.cfg  -        -> 90 bytes
[exit code 1]
$ orvanta-config simulate open.cfg --verbose | sed '/^[FM]/d'
Check    1 error on line 3: the header has no "]", so the whole file is refused; see orvanta-config check open.cfg

Changes
  none
Log
  1  Toolbox-Main:77 Toolbox::DoMagic - Finding handler for Internal=Configure
  1  internal/Configure:107 Configure::HandleMessage
  2  internal/Configure:115 Configure::HandleMessage(): config file=C:\tarvo.cfg
  0  internal/Configure:124 Configure::HandleMessage(): cannot load C:\tarvo.cfg (code 3)
Reply
  Result         Failure
  Status-Module  Tarvo
  Status-Code    3 (the file is empty, unreadable or broken)
  status         1

  no difference
