A machine file that is not understood is refused in one line, which names the place and what helps.

-- try --
# try BODY: what is said of it behind {"schema": 1, or by itself when it begins with "="
case $1 in
  =*) printf '%b' "${1#=}" ;;
  *) printf '%s' "{\"schema\": 1, $1}" ;;
esac >m
orvanta-config capture --machine m >captured 2>&1 || sed 's/^orvanta-config: m:* *//' captured
-- console --
$ sh try '='  --> 1:1: malformed JSON: syntax error while parsing value - unexpected end of input; expected '[', '{', or a literal; correct it there
$ sh try '={\n  "schema": 1,\n  "hosts": [,]}'  --> 3:13: malformed JSON: syntax error while parsing value - unexpected ','; expected '[', '{', or a literal; correct it there
$ sh try '={"decrypt": {"a": "s3cret\\q"}}'  --> 1:27: malformed JSON: syntax error while parsing value - invalid string: forbidden character after backslash; correct it there
$ sh try '=\0377\0376{'  --> 1:4: malformed JSON: syntax error while parsing value - unexpected end of input; expected '[', '{', or a literal; correct it there
$ sh try '={"schema": 1e999}'  --> 1:16: malformed JSON: number overflow parsing '1e999'; correct it there
$ sh try '={"schema": 1} x'  --> 1:15: malformed JSON: syntax error while parsing value - invalid literal; correct it there
$ sh try '=[]'  --> $: expected an object, found a list
$ sh try '={}'  --> $: no schema; add "schema": 1
$ sh try '={"schema": 2}'  --> $.schema: this version reads schema 1 only; write 1
$ sh try '"adaptors": []'  --> $.adaptors: unknown field "adaptors"; did you mean "adapters"?
$ sh try '"a\nb": 1'  --> $["a\nb"]: unknown field "a\nb"; remove it or correct its name
$ sh try '"hosts": [], "hosts": []'  --> $.hosts: stands twice in this object; keep one
$ sh try '"hosts": [{}, {"name": "a", "name": "b"}]'  --> $.hosts[1].name: stands twice in this object; keep one
$ sh try '"x": [[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[['  --> $.x[0][0][0][0][0][0][0][0][0][0][0][0][0][0][0][0][0][0][0][0][0][0][0][0][0][0][0][0][0][0][0]: nested deeper than 32 levels; flatten it
$ sh try '"computer_name": null'  --> $.computer_name: expected a text, found null
$ sh try '"adapters": {}'  --> $.adapters: expected a list, found an object
$ sh try '"adapters": [{"index": -1}]'  --> $.adapters[0].index: expected a whole number from 0 to 4294967295, found -1
$ sh try '"adapters": [{"index": 7.0}]'  --> $.adapters[0].index: expected a whole number from 0 to 4294967295, found 7.0
$ sh try '"adapters": [{"index": 18446744073709551616}]'  --> $.adapters[0].index: expected a whole number from 0 to 4294967295, found 1.8446744073709552e+19
$ sh try '"adapters": [{"ip_enabled": 1}]'  --> $.adapters[0].ip_enabled: expected true or false, found 1
$ sh try '"adapters": [{}, {"index": 7}]'  --> $.adapters[1].index: stands at $.adapters[0] already; give each its own index
$ sh try '"adapters": [{}, {}]'  --> $.adapters[1]: index stands at $.adapters[0] already; give each its own index
$ sh try '"files": [{"path": "C:\\A"}, {"path": "c:/a"}]'  --> $.files[1].path: stands at $.files[0] already; give each its own path
$ sh try '"membership": {"workgroup": "A", "domain": {}}'  --> $.membership: both a workgroup and a domain; keep one
$ sh try '"membership": {"domain": {"sid": 1}}'  --> $.membership.domain.sid: unknown field "sid"; write one of dns_name, flat_name, has_sid
$ sh try '"operating_system": {"SytemDrive": ""}'  --> $.operating_system.SytemDrive: unknown property "SytemDrive"; did you mean "SystemDrive"?
$ sh try '"operating_system": {"Debug": []}'  --> $.operating_system.Debug: expected a text, a number, true, false or null, found a list
$ sh try '"operating_system": {"Debug": 4294967296}'  --> $.operating_system.Debug: expected a number of 32 bits, found 4294967296
$ sh try '"services": [{"start": "auto"}]'  --> $.services[0].start: unknown start type "auto"; write one of boot, system, automatic, manual, disabled
$ sh try '"registry": [{"type": "REG_SZ", "data": 1}]'  --> $.registry[0].data: expected a text, as the type says, found 1
$ sh try '"registry": [{"type": "REG_BINARY"}]'  --> $.registry[0].type: unknown registry type "REG_BINARY"; write one of REG_DWORD, REG_SZ, REG_EXPAND_SZ
$ sh try '"registry": [{"key": "Software"}]'  --> $.registry[0]: key names no root; begin it with HKEY_LOCAL_MACHINE\
$ sh try '"hosts": [{"address": "fd00::2"}]'  --> $.hosts[0].address: expected an IPv4 address such as 10.0.0.1
$ sh try '"hosts": [{"address": "10.0.0.010"}]'  --> $.hosts[0].address: expected an IPv4 address such as 10.0.0.1
$ sh try '"adapters": [{"mac_address": "08:00:27:12:34"}, {"index": 8, "mac_address": "08-00-27"}]'  --> $.adapters[0].mac_address: expected a MAC address such as 08:00:27:12:34:56
$ sh try '"adapters": [{"ip_addresses": ["fe80::1", "10.0.0.5/24"]}]'  --> $.adapters[0].ip_addresses[1]: expected an address alone, such as 10.0.0.5; masks stand in subnet_masks
$ sh try '"adapters": [{"subnet_masks": ["64", "/24"]}]'  --> $.adapters[0].subnet_masks[1]: expected a mask such as 255.255.255.0
$ sh try '"adapters": [{"location_information": "0/3/0"}]'  --> $.adapters[0].location_information: expected a location such as PCI bus %1, device %2, function %3;(0,3,0)
$ sh try '"directory": {"domains": [{"ous": ["Sales/Europe"]}]}'  --> $.directory.domains[0].ous[0]: expected a distinguished name such as OU=Sales,DC=corp,DC=example
$ sh try '"directory": {"domains": [{"accounts": [{"user": "CORP\\joiner"}]}]}'  --> $.directory.domains[0].accounts[0].user: expected a user without a domain; dns_name and flat_name tell it
$ sh try '"$schema": 7'  --> $["$schema"]: expected a text, found 7
$ sh try '"decrypt": {"a": 1}'  --> $.decrypt.a: expected a text, found 1
$ sh try '"directory": {"domains": [{"ous": [1]}]}'  --> $.directory.domains[0].ous[0]: expected a text, found 1
$ sh try '"faults": [{"call": "wmi.conect"}]'  --> $.faults[0].call: unknown call "wmi.conect"; did you mean "wmi.connect"?
$ sh try '"faults": [{"hresult": "0x00000001"}]'  --> $.faults[0].hresult: is no failure; write one from 0x80000000 on
$ sh try '"faults": [{"error": 0}]'  --> $.faults[0].error: 0 is no error; write the number of one
$ sh try '"faults": [{"hresult": "80041002"}]'  --> $.faults[0].hresult: no result code; write a text such as "0x80041002"
$ sh try '"faults": [{"hresult": "0x123456789"}]'  --> $.faults[0].hresult: no result code; write a text such as "0x80041002"
$ sh try '"faults": [{"nth": 0}]'  --> $.faults[0].nth: calls are counted from 1; write 1 or more
$ sh try '"directory": {"domains": [{"dns_name": "a.b", "flat_name": "A", "ous": ["LDAP://OU=Sales,DC=corp,DC=example"]}]}'  --> $.directory.domains[0].ous[0]: expected a distinguished name such as OU=Sales,DC=corp,DC=example
