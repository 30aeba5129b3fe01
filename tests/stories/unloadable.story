A file whose section header has no end changes nothing, is answered with a failure, and stays.
Also through the plug-in.

-- pc.cfg --
[Networking]
ComputerName=A
[Global
x=y
-- console --
$ orvanta-config simulate pc.cfg --verbose
File     pc.cfg, placed as C:\tarvo.cfg
Check    1 error on line 3: the header has no "]", so the whole file is refused; see orvanta-config check pc.cfg
Machine  built-in example: TEMPLATE, workgroup WORKGROUP, 3 adapters
Message  Internal/Configure, Filename=C:\tarvo.cfg

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
  Status-Code    3 (the file was not loaded, or forbids the restart that it needs)
  status         1

Machine, before -> after
  no difference
[exit code 1]
