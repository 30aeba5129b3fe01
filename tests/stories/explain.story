Codes and numbers are explained in every form that reports and logs show them in.

-- console --
$ orvanta-config explain c102
C102 (note): a section is not read
```diff
 [Global]
 ScheduleId=7
-[Printers]
-Default=LPT1
```
Remedy: remove it, unless another program reads it
$ orvanta-config explain 3
3, the library's reply: Status-Code 3 of Tarvo
the file forbids the restart that it needs
Remedy: leave RebootAfterConfig=False out, or what needs the restart

3, the library's reply: Status-Code 3 of Tarvo
the file was not loaded
Remedy: run "check" on the file

3, the library's log: code 3 of Configure
the file is empty, unreadable or broken
Remedy: run "check"

3, the library's log: Value=3 of Registry
a registry key cannot be opened
Remedy: run the agent as LocalSystem or as an administrator

3, an error of Windows: ERROR_PATH_NOT_FOUND
no such folder
Remedy: make the folder
$ for w in -2147023570 0x80041003 4294967295; do orvanta-config explain $w | head -n 1; done
-2147023570, an error of Windows: ERROR_LOGON_FAILURE
0x80041003, a COM result: WBEM_E_ACCESS_DENIED
4294967295, the library's log: -1 of SetStaticRoute
$ orvanta-config explain 1722 4711 C999
1722, an error of Windows: RPC_S_SERVER_UNAVAILABLE
the service does not answer
Remedy: start the service Winmgmt (WMI) or reach the domain controller; look at the firewall
4711: unknown
C999: unknown
[exit code 1]
$ orvanta-config explain C102 5 --json | grep -v meaning | tr -s '\n ' ' '
{ "schema": 1, "codes": [ { "code": "C102", "name": "a section is not read", "remedy": "remove it, unless another program reads it" }, { "code": "5", "name": "Value=5 of Registry", "remedy": "look who may do so" }, { "code": "5", "name": "Value=5 of SetStaticRoute", "remedy": "run its command by hand; the answer is its exit code, or why Windows cannot run it" }, { "code": "5", "name": "ERROR_ACCESS_DENIED", "remedy": "run the agent as LocalSystem or as an administrator; for a join or a move, let the account join computers and write to the OU" } ], "messages": [] } 
$ orvanta-config explain 67 -1  # all readings, the library's own first
67, a network adapter's answer: error in an instance
the adapter cannot be read
Remedy: repair WMI

67, an error of Windows: ERROR_BAD_NET_NAME
no such share on the domain controller
Remedy: check the DNS servers, and whether the controller shares SYSVOL

-1, the library's log: -1 of SetStaticRoute
the route tool was not started
Remedy: try again
$ for number in 65 69 73 80 82 92 93 94 95 96 98; do orvanta-config explain $number; done | grep "adapter's answer"
65, a network adapter's answer: unknown failure
69, a network adapter's answer: more than 5 gateways
73, a network adapter's answer: invalid domain name
80, a network adapter's answer: unable to configure TCP/IP service
82, a network adapter's answer: unable to renew DHCP lease
92, a network adapter's answer: out of memory
93, a network adapter's answer: already exists
94, a network adapter's answer: path, file or object not found
95, a network adapter's answer: unable to notify service
96, a network adapter's answer: unable to notify DNS service
98, a network adapter's answer: not all DHCP leases renewed
$ orvanta-config explain 1722 4711 C999 C30 99999999999 0x123456789
1722, an error of Windows: RPC_S_SERVER_UNAVAILABLE
the service does not answer
Remedy: start the service Winmgmt (WMI) or reach the domain controller; look at the firewall
4711: unknown
C999: unknown
C30: unknown
99999999999: unknown
0x123456789: unknown
[exit code 1]
