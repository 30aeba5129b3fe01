Lines of [ConfigSettings] go to the agent as they stand, comments and repeated keys included.
Also through the plug-in.

-- pc.cfg --
[ConfigSettings]
a=1
; note
A=2
b=
-- console --
$ orvanta-config simulate pc.cfg | sed -n '/^Sent/,/^Reply/p'
Sent
  Settings/Included to SetAgentSettings
    a  1
       ; note
    A  2
    b  (empty)
Reply
$ orvanta-config simulate pc.cfg --json | sed -n '/"sent"/,/"posted"/p' | tr -d '\n '
"sent":[{"target":"SetAgentSettings","type":"Settings","name":"Included","values":[["a","1"],["",";note"],["A","2"],["b",""]]}],"posted":[],
