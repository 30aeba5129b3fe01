A waiting restore file takes the place of the file that asks for it, and is configured from after that.
Also through the plug-in.

-- pc.cfg --
[GLOBAL]
config=restore
-- m.json --
{"files": [{"path": "C:\\restore.cfg", "text": "[Networking]\nComputerName=PC-42\n"}]}
-- console --
$ orvanta-config simulate pc.cfg --machine m.json --deliver-posted | sed -n '/^Message/,/^Reply/p;/^  files/,$p'
Message 1 of 2  Internal/Configure, Filename=C:\tarvo.cfg
Changes
  1  delete C:\tarvo.cfg
  2  move C:\restore.cfg to C:\tarvo.cfg
Posted
  Internal/Configure
    Filename  C:\tarvo.cfg
Reply
Message 2 of 2  Internal/Configure, Filename=C:\tarvo.cfg
Changes
  1  rename the computer to PC-42
Reply
  files
    C:\restore.cfg  32 bytes -> -
    C:\tarvo.cfg    24 bytes -> 32 bytes
