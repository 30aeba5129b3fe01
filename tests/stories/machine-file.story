A machine file that is not understood is refused in one line, which names the place and what helps.

-- bodies --
=
={\n  "schema": 1,\n  "hosts": [,]}
={"schema": 1} x
={"decrypt": {"a": "s3cret\\q"}}
={"decrypt": {"a": "s3cret
=\0377\0376{
={"schema": 1e999}
=[]
={}
={"schema": 2}
={"schema": "1"}
"adaptors": []
"a\nb": 1
"hosts": [], "hosts": []
"hosts": [{}, {"name": "a", "name": "b"}]
"x": [[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[
"computer_name": null
"adapters": {}
"adapters": [{"index": -1}]
"adapters": [{"index": 7.0}]
"adapters": [{"index": 18446744073709551616}]
"adapters": [{"ip_enabled": 1}]
"adapters": [{}, {"index": 7}]
"adapters": [{}, {}]
"files": [{"path": "C:\\A"}, {"path": "c:/a"}]
"membership": {"workgroup": "A", "domain": {}}
"membership": {"domain": {"sid": 1}}
"operating_system": {"SytemDrive": ""}
"operating_system": {"Debug": []}
"operating_system": {"Debug": 4294967296}
"services": [{"start": "auto"}]
"registry": [{"type": "REG_SZ", "data": 1}]
"registry": [{"type": "REG_BINARY"}]
"registry": [{"key": "Software"}]
"hosts": [{"address": "fd00::2"}]
"hosts": [{"address": "10.0.0.010"}]
"adapters": [{"mac_address": "08:00:27:12:34"}, {"index": 8, "mac_address": "08-00-27"}]
"adapters": [{"ip_addresses": ["fe80::1", "10.0.0.5/24"]}]
"adapters": [{"subnet_masks": ["64", "/24"]}]
"adapters": [{"location_information": "0/3/0"}]
"directory": {"domains": [{"ous": ["Sales/Europe"]}]}
"directory": {"domains": [{"accounts": [{"user": "CORP\\joiner"}]}]}
"$schema": 7
"decrypt": {"a": 1}
"directory": {"domains": [{"ous": [1]}]}
"faults": [{"call": "wmi.conect"}]
"faults": [{"hresult": "0x00000001"}]
"faults": [{"error": 0}]
"faults": [{"hresult": "80041002"}]
"faults": [{"hresult": "0x123456789"}]
"faults": [{"nth": 0}]
-- try --
# try: what is said of each body, which stands behind {"schema": 1, or by itself when it begins with "="
while IFS= read -r body; do
  case $body in
    =*) printf '%b' "${body#=}" ;;
    *) printf '%s' "{\"schema\": 1, $body}" ;;
  esac >m
  orvanta-config capture --machine m 2>&1 >captured || cat captured
done <bodies
-- console --
$ sh try
orvanta-config: m:1:1: malformed JSON: syntax error while parsing value - unexpected end of input; expected '[', '{', or a literal; correct it there
orvanta-config: m:3:13: malformed JSON: syntax error while parsing value - unexpected ','; expected '[', '{', or a literal; correct it there
orvanta-config: m:1:15: malformed JSON: syntax error while parsing value - invalid literal; correct it there
orvanta-config: m:1:27: malformed JSON: syntax error while parsing value - invalid string: forbidden character after backslash; correct it there
orvanta-config: m:1:26: malformed JSON: syntax error while parsing value - invalid string: missing closing quote; correct it there
orvanta-config: m:1:1: not UTF-8; save it as UTF-8
orvanta-config: m:1:16: malformed JSON: number overflow parsing '1e999'; correct it there
orvanta-config: m: $: expected an object, found a list
orvanta-config: m: $: no schema; add "schema": 1
orvanta-config: m: $.schema: this version reads schema 1 only; write 1
orvanta-config: m: $.schema: expected a whole number from -2147483648 to 2147483647, found a text
orvanta-config: m: $.adaptors: unknown field "adaptors"; did you mean "adapters"?
orvanta-config: m: $["a\nb"]: unknown field "a\nb"; remove it or correct its name
orvanta-config: m: $.hosts: stands twice in this object; keep one
orvanta-config: m: $.hosts[1].name: stands twice in this object; keep one
orvanta-config: m: $.x[0][0][0][0][0][0][0][0][0][0][0][0][0][0][0][0][0][0][0][0][0][0][0][0][0][0][0][0][0][0][0]: nested deeper than 32 levels; flatten it
orvanta-config: m: $.computer_name: expected a text, found null
orvanta-config: m: $.adapters: expected a list, found an object
orvanta-config: m: $.adapters[0].index: expected a whole number from 0 to 4294967295, found -1
orvanta-config: m: $.adapters[0].index: expected a whole number from 0 to 4294967295, found 7.0
orvanta-config: m: $.adapters[0].index: expected a whole number from 0 to 4294967295, found 1.8446744073709552e+19
orvanta-config: m: $.adapters[0].ip_enabled: expected true or false, found 1
orvanta-config: m: $.adapters[1].index: stands at $.adapters[0] already; give each its own index
orvanta-config: m: $.adapters[1]: index stands at $.adapters[0] already; give each its own index
orvanta-config: m: $.files[1].path: stands at $.files[0] already; give each its own path
orvanta-config: m: $.membership: both a workgroup and a domain; keep one
orvanta-config: m: $.membership.domain.sid: unknown field "sid"; write one of dns_name, flat_name, has_sid
orvanta-config: m: $.operating_system.SytemDrive: unknown property "SytemDrive"; did you mean "SystemDrive"?
orvanta-config: m: $.operating_system.Debug: expected a text, a number, true, false or null, found a list
orvanta-config: m: $.operating_system.Debug: expected a number of 32 bits, found 4294967296
orvanta-config: m: $.services[0].start: unknown start type "auto"; write one of boot, system, automatic, manual, disabled
orvanta-config: m: $.registry[0].data: expected a text, as the type says, found 1
orvanta-config: m: $.registry[0].type: unknown registry type "REG_BINARY"; write one of REG_DWORD, REG_SZ, REG_EXPAND_SZ
orvanta-config: m: $.registry[0]: key names no root; begin it with HKEY_LOCAL_MACHINE\
orvanta-config: m: $.hosts[0].address: expected an IPv4 address such as 10.0.0.1
orvanta-config: m: $.hosts[0].address: expected an IPv4 address such as 10.0.0.1
orvanta-config: m: $.adapters[1].mac_address: expected a MAC address such as 08:00:27:12:34:56
orvanta-config: m: $.adapters[0].ip_addresses[1]: expected an address alone, such as 10.0.0.5; masks stand in subnet_masks
orvanta-config: m: $.adapters[0].subnet_masks[1]: expected a mask such as 255.255.255.0
orvanta-config: m: $.adapters[0].location_information: expected a location such as PCI bus %1, device %2, function %3;(0,3,0)
orvanta-config: m: $.directory.domains[0].ous[0]: expected a distinguished name such as OU=Sales,DC=corp,DC=example
orvanta-config: m: $.directory.domains[0].accounts[0].user: expected a user without a domain; dns_name and flat_name tell it
orvanta-config: m: $["$schema"]: expected a text, found 7
orvanta-config: m: $.decrypt.a: expected a text, found 1
orvanta-config: m: $.directory.domains[0].ous[0]: expected a text, found 1
orvanta-config: m: $.faults[0].call: unknown call "wmi.conect"; did you mean "wmi.connect"?
orvanta-config: m: $.faults[0].hresult: is no failure; write one from 0x80000000 on
orvanta-config: m: $.faults[0].error: 0 is no error; write the number of one
orvanta-config: m: $.faults[0].hresult: no result code; write a text such as "0x80041002"
orvanta-config: m: $.faults[0].hresult: no result code; write a text such as "0x80041002"
orvanta-config: m: $.faults[0].nth: calls are counted from 1; write 1 or more
