A rename waits for the restart; the file stays where it is, and the second run finds nothing to do.
Also through the plug-in.

-- pc.cfg --
[Global]
ScheduleId=7
[Networking]
ComputerName=PC-42
-- console --
$ orvanta-config simulate pc.cfg --follow-restarts 3
File     pc.cfg, placed as C:\tarvo.cfg
Machine  built-in example: TEMPLATE, workgroup WORKGROUP, 3 adapters

Message 1 of 2  Internal/Configure, Filename=C:\tarvo.cfg
Changes
  1  rename the computer to PC-42
Reply
  Schedule-ID       7
  Task-Sequence-ID  (empty)
  Result            Reboot
  status            1

-- restart 1 --

Message 2 of 2  Internal/Configure, Filename=C:\tarvo.cfg
Changes
  1  move C:\tarvo.cfg to C:\Program Files\Orvanta\Agent\tarvo.cfg
Reply
  Schedule-ID       7
  Task-Sequence-ID  (empty)
  Result            Success
  status            1

Machine, before -> after
  computer
    name  TEMPLATE -> PC-42
  files
    C:\tarvo.cfg                              54 bytes -> -
    C:\Program Files\Orvanta\Agent\tarvo.cfg  -        -> 54 bytes
