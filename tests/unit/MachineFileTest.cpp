// The machine file: what it means, what it refuses and with which words, and what it hides.
#include <gtest/gtest.h>

#include <cstddef>
#include <ctime>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "platform/simulated/MachineFile.h"
#include "platform/simulated/Secrets.h"
#include "tests/support/JsonText.h"

namespace simulated {
namespace {

// Every list holds one element, and every scalar its default.
constexpr const char* kDefaults = R"json({
  "schema": 1, "computer_name": "TEMPLATE", "pending_computer_name": null,
  "membership": {"workgroup": "WORKGROUP"},
  "operating_system": {"SystemDrive": "C:", "Version": "10.0.19045"},
  "agent_folder": "C:\\Program Files\\Orvanta\\Agent",
  "adapters": [
    {"index": 7, "setting_id": "{11111111-2222-3333-4444-555555555555}", "ip_enabled": true,
     "pnp_device_id": "PCI\\VEN_8086&DEV_100E&SUBSYS_001E8086&REV_02\\3&267A616A&0&18",
     "location_information":
       "@System32\\drivers\\pci.sys,#65536;PCI bus %1, device %2, function %3;(0,3,0)",
                     "mac_address" : "08:00:27:12:34:56",
                     "adapter_type" : "Ethernet 802.3",
                     "manufacturer" : "Intel",
                     "caption" : "[00000007] Intel(R) PRO/1000 MT Desktop Adapter",
                     "dhcp_enabled" : true,
                     "ip_addresses" : [],
                     "subnet_masks" : [],
                     "gateways" : [],
                     "dns_servers" : [],
                     "dns_suffixes" : [],
                     "dns_domain" : null,
                     "dns_host_name" : null,
                     "static_dns" : false
}],
  "persistent_routes": [
    {"destination": "10.1.0.0", "mask": "255.255.0.0", "next_hop": "10.0.0.1", "metric": 1}],
  "services": [{"name": "Dhcp", "start": "automatic", "running": true}],
  "registry": [{"key": "HKEY_LOCAL_MACHINE\\Software\\Orvanta\\Client Service",
                "name": "NetworkDisabled", "type": "REG_DWORD", "data": 1}],
  "files": [{"path": "C:\\restore.cfg", "text": "[Global]\r\nConfig=Restore\r\n"}],
  "hosts": [{"name": "gateway.corp.example", "address": "10.0.0.1"}],
  "directory": {"domains": [
    {"dns_name": "corp.example", "flat_name": "CORP",
     "accounts": [{"user": "joiner", "password": "s3cret"}], "ous": [],
     "computers": [{"name": "PC1", "dn": "CN=PC1,OU=Europe,OU=Sales,DC=corp,DC=example"}]}]},
  "faults": []})json";

// Every field differs from its default.
constexpr const char* kFull = R"json({
  "schema": 1, "computer_name": "A", "pending_computer_name": "B",
  "membership": {"domain": {"dns_name": "d.example", "flat_name": "D", "has_sid": false}},
  "operating_system": {"Debug": true, "MaxNumberOfProcesses": 4294967295, "Name": null},
  "agent_folder": "D:\\a",
  "adapters": [
    {"index": 4294967295, "setting_id": "{1}", "ip_enabled": false, "pnp_device_id": "ROOT",
     "location_information": null, "mac_address": "0a:1B", "adapter_type": null, "manufacturer": "n",
     "caption": "c", "dhcp_enabled": false, "ip_addresses": ["1.0.0.1"], "subnet_masks": ["255.0.0.0"],
     "gateways": ["1.0.0.2"], "dns_servers": ["4.0.0.0", "fe80::5%1"], "dns_suffixes": ["6"], "dns_domain": "7",
     "dns_host_name": "8", "static_dns": true},
    {"index": 0, "setting_id": "", "ip_enabled": true, "pnp_device_id": "",
     "location_information": "", "mac_address": null, "adapter_type": "", "manufacturer": null,
     "caption": null, "dhcp_enabled": true, "ip_addresses": [], "subnet_masks": [], "gateways": [],
     "dns_servers": [], "dns_suffixes": [], "dns_domain": "", "dns_host_name": "",
     "static_dns": false}],
  "persistent_routes": [
    {"destination": "1.0.0.0", "mask": "2.0.0.0", "next_hop": "3.0.0.0", "metric": -4}],
  "services": [{"name": "a", "start": "boot", "running": false},
               {"name": "b", "start": "disabled", "running": true}],
  "registry": [
    {"key": "HKEY_USERS\\k", "name": "n", "type": "REG_SZ", "data": "text"},
    {"key": "HKEY_USERS\\k", "name": "m", "type": "REG_EXPAND_SZ", "data": ""},
    {"key": "HKEY_USERS\\k", "name": "", "type": "REG_DWORD", "data": 4294967295}],
  "files": [{"path": "C:\\x", "text": "[N]\nDomainPassword=s3cret\nmore s3cret\nö=1"}],
  "hosts": [{"name": "h", "address": "1.2.3.4"}],
  "decrypt": {"a": "plain s3cret", "b": ""},
  "directory": {"domains": [
    {"dns_name": "e", "flat_name": "E", "accounts": [{"user": "u", "password": "s3cret"}],
     "ous": ["OU=1,DC=e"], "computers": [{"name": "c", "dn": "CN=c,DC=e"}]}]},
  "faults": [
    {"call": "wmi.method", "contains": "x", "method": "y", "service": "z", "name": "w", "index": 1,
     "nth": 2, "hresult": "0x80041002", "error": 3, "result": -4},
    {"call": "*"}]})json";

TEST(MachineFile, ReadsAndWritesEveryField) {
  for (const char* text : {kDefaults, kFull}) {
    const Machine machine = ParseMachine(text, "m.json");
    EXPECT_EQ(ToJson(machine, false), Json::parse(text));
    const std::string printed = PrintMachine(machine);
    EXPECT_EQ(PrintMachine(ParseMachine(printed, "m.json")), printed);
  }
}

TEST(MachineFile, WhatIsLeftOutTakesItsDefault) {
  const Machine machine = ParseMachine(
      R"({"schema": 1, "$schema": "s.json", "membership": {}, "adapters": [{}], "persistent_routes": [{}],
          "services": [{}], "registry": [{}], "files": [{}], "hosts": [{}],
          "directory": {"domains": [{"accounts": [{}], "computers": [{}]}]}})",
      "m.json");
  EXPECT_EQ(ToJson(machine, false), Json::parse(kDefaults));
  EXPECT_EQ(ToJson(ParseMachine(R"({"schema": 1})", "m.json"), false), ToJson(Machine{}, false));
  EXPECT_FALSE(ToJson(Machine{}, false).contains("decrypt"));
  EXPECT_FALSE(ToJson(Machine{}, false).contains("directory"));
  const Json none = ToJson(
      ParseMachine(R"({"schema": 1, "decrypt": null, "directory": {"domains": []}})", "m"), false);
  EXPECT_TRUE(none.at("decrypt").is_null() && none.at("directory").is_null()) << none;
}

TEST(MachineFile, DefaultsThatMustBeUniqueGetTheirIndex) {
  const Machine machine = ParseMachine(
      R"({"schema": 1, "adapters": [{"index": 1}, {"index": 2}, {"setting_id": "{3}"}]})", "m");
  const Adapter defaults;
  EXPECT_EQ(machine.adapters[0].settingId, defaults.settingId);
  EXPECT_EQ(machine.adapters[1].settingId, defaults.settingId + "_2");
  EXPECT_EQ(machine.adapters[2].settingId, "{3}");
  EXPECT_EQ(machine.adapters[2].pnpDeviceId, defaults.pnpDeviceId + "_7");
}

TEST(MachineFile, RefusesWhatItDoesNotUnderstandInOneLine) {
  const std::string deep(40, '[');
  const struct {
    std::string body;  // follows {"schema": 1, unless it starts with "="
    const char *place, *words;
  } kFaults[] = {
      {"=", ":1:1", "malformed JSON"},
      {"={\n  \"schema\": 1,\n  \"hosts\": [,]}", ":3:13", "malformed JSON"},
      {"={\"schema\": 1} x", ":1:15", "malformed JSON"},
      {"=\xFF\xFE{", ":1:1", "save it as UTF-8"},
      {"={\"schema\": 1e999}", "", "number overflow"},
      {"=[]", "$", "expected an object, found a list"},
      {"={}", "$", "add \"schema\": 1"},
      {"={\"schema\": 2}", "$.schema", "write 1"},
      {"={\"schema\": \"1\"}", "$.schema", "found a text"},
      {R"("adaptors": [])", "$.adaptors", "did you mean \"adapters\"?"},
      {R"("a\nb": 1)", R"($["a\nb"])", "unknown field"},
      {R"("hosts": [], "hosts": [])", "$.hosts", "stands twice"},
      {R"("hosts": [{}, {"name": "a", "name": "b"}])", "$.hosts[1].name", "stands twice"},
      {"\"x\": " + deep, "$.x[0][0]", "nested deeper"},
      {R"("computer_name": null)", "$.computer_name", "expected a text, found null"},
      {R"("adapters": {})", "$.adapters", "expected a list, found an object"},
      {R"("adapters": [{"index": -1}])", "$.adapters[0].index", "from 0 to 4294967295, found -1"},
      {R"("adapters": [{"index": 7.0}])", "$.adapters[0].index", "found 7.0"},
      {R"("adapters": [{"index": 18446744073709551616}])", "$.adapters[0].index", "whole number"},
      {R"("adapters": [{"ip_enabled": 1}])", "$.adapters[0].ip_enabled", "true or false"},
      {R"("adapters": [{}, {"index": 7}])", "$.adapters[1].index", "$.adapters[0] already"},
      {R"("adapters": [{}, {}])", "$.adapters[1]", "index stands at $.adapters[0] already"},
      {R"("files": [{"path": "C:\\A"}, {"path": "c:/a"}])", "$.files[1].path", "already"},
      {R"("membership": {"workgroup": "A", "domain": {}})", "$.membership", "keep one"},
      {R"("membership": {"domain": {"sid": 1}})", "$.membership.domain.sid", "unknown field"},
      {R"("operating_system": {"SytemDrive": ""})", "$.operating_system.SytemDrive", "SystemDrive"},
      {R"("operating_system": {"Debug": []})", "$.operating_system.Debug", "found a list"},
      {R"("operating_system": {"Debug": 4294967296})", "$.operating_system.Debug", "32 bits"},
      {R"("services": [{"start": "auto"}])", "$.services[0].start", "one of boot, system, auto"},
      {R"("registry": [{"type": "REG_SZ", "data": 1}])", "$.registry[0].data", "expected a text"},
      {R"("registry": [{"type": "REG_BINARY"}])", "$.registry[0].type", "write one of REG_DWORD"},
      {R"("registry": [{"key": "Software"}])", "$.registry[0]", "HKEY_LOCAL_MACHINE"},
      {R"("hosts": [{"address": "fd00::2"}])", "$.hosts[0].address", "expected an IPv4 address"},
      {R"("hosts": [{"address": "10.0.0.010"}])", "$.hosts[0].address", "expected an IPv4 address"},
      {R"("adapters": [{"mac_address": "08:00:27:12:34"}, {"index": 8, "mac_address": "08-00-27"}])",
       "$.adapters[1].mac_address", "a MAC address such as 08:00:27:12:34:56"},
      {R"("adapters": [{"ip_addresses": ["fe80::1", "10.0.0.5/24"]}])",
       "$.adapters[0].ip_addresses[1]", "an address alone"},
      {R"("adapters": [{"subnet_masks": ["64", "/24"]}])", "$.adapters[0].subnet_masks[1]",
       "a mask such as 255.255.255.0"},
      {R"("adapters": [{"location_information": "0/3/0"}])", "$.adapters[0].location_information",
       "function %3;(0,3,0)"},
      {R"("directory": {"domains": [{"ous": ["Sales/Europe"]}]})", "$.directory.domains[0].ous[0]",
       "a distinguished name such as OU=Sales,DC=corp,DC=example"},
      {R"("directory": {"domains": [{"accounts": [{"user": "CORP\\joiner"}]}]})",
       "$.directory.domains[0].accounts[0].user", "a user without a domain"},
      {R"("$schema": 7)", "$[\"$schema\"]", "expected a text"},
      {R"("decrypt": {"a": 1})", "$.decrypt.a", "expected a text"},
      {R"("directory": {"domains": [{"ous": [1]}]})", "$.directory.domains[0].ous[0]", "a text"},
      {R"("faults": [{"call": "wmi.conect"}])", "$.faults[0].call", "\"wmi.connect\"?"},
      {R"("faults": [{"hresult": "0x00000001"}])", "$.faults[0].hresult", "no failure"},
      {R"("faults": [{"error": 0}])", "$.faults[0].error", "0 is no error"},
      {R"("faults": [{"hresult": "80041002"}])", "$.faults[0].hresult", "\"0x80041002\""},
      {R"("faults": [{"hresult": "0x123456789"}])", "$.faults[0].hresult", "no result code"},
      {R"("faults": [{"nth": 0}])", "$.faults[0].nth", "from 1"}};
  for (const auto& c : kFaults) {
    SCOPED_TRACE(c.body);
    const std::string text =
        c.body.starts_with('=') ? c.body.substr(1) : "{\"schema\": 1, " + c.body + "}";
    try {
      ParseMachine(text, "m.json");
      ADD_FAILURE() << "accepted";
    } catch (const MachineFileError& error) {
      const std::string message = error.what();
      const std::string place = std::string("m.json") + (*c.place == '$' ? ": " : "") + c.place;
      EXPECT_EQ(message.substr(0, place.size()), place);
      EXPECT_NE(message.find(c.words), std::string::npos) << message;
      EXPECT_EQ(message.find('\n'), std::string::npos) << message;
    }
  }
}

TEST(MachineFile, RefusesWhatHasNoEndAtOnce) {
  constexpr std::size_t kMany = 100'000;
  const auto repeated = [](std::string_view part, std::size_t times) {
    std::string text;
    while (times-- > 0) text += part;
    return text;
  };
  const std::string name(std::size_t{4} << 20U, 'n');
  const struct {
    std::string text;
    const char* words;
  } kFaults[] = {
      {repeated("[", kMany) + repeated("]", kMany), "nested deeper than 32 levels; flatten it"},
      {repeated("{\"a\":", kMany) + "1" + repeated("}", kMany), "nested deeper than 32 levels"},
      {R"({"schema": 1, "adapters": )" + repeated("[{\"index\":", kMany), "nested deeper than 32"},
      {R"({"schema": 1, ")" + name + R"(": 1})", "nnn...\"; remove it or correct its name"},
      {R"({"schema": 1, "faults": [{"call": ")" + name + R"("}]})", "unknown call \"nnn"},
      {R"({"schema": 1, "hosts": [{"address": ")" + name + R"("}]})", "an IPv4 address"},
      {repeated(" ", (std::size_t{64} << 20U) + 1), "larger than 64 MiB"}};
  for (const auto& c : kFaults) {
    SCOPED_TRACE(c.words);
    const std::clock_t start = std::clock();
    try {
      ParseMachine(c.text, "m.json");
      ADD_FAILURE() << "accepted";
    } catch (const MachineFileError& error) {
      EXPECT_NE(std::string(error.what()).find(c.words), std::string::npos) << error.what();
      EXPECT_LT(std::string(error.what()).size(), 1000U);
    }
    EXPECT_LT((std::clock() - start) / CLOCKS_PER_SEC, 10);
  }
}

TEST(MachineFile, SecretsAreHiddenAndNothingElse) {
  Json shown = ToJson(ParseMachine(kFull, "m.json"), true);
  EXPECT_EQ(shown.dump().find("s3cret"), std::string::npos);
  shown["files"][0]["text"] = "[N]\nDomainPassword=s3cret\nmore s3cret\nö=1";
  shown["decrypt"] = {{"a", "plain s3cret"}, {"b", ""}};
  shown["directory"]["domains"][0]["accounts"][0]["password"] = "s3cret";
  EXPECT_EQ(shown, Json::parse(kFull));

  const struct {
    Change change;
    const char* shown;
  } kChanges[] = {
      {{"wmi.method", {{"arguments", Fields{{"Name", "a"}, {"UserName", "b"}, {"Password", "c"}}}}},
       R"({"call":"wmi.method","arguments":{"Name":"a","UserName":"b","Password":"***"}})"},
      {{"wmi.method", {{"arguments", Fields{{"Password", nullptr}}}}},
       R"({"call":"wmi.method","arguments":{"Password":null}})"},
      {{"file.write", {{"key", "domainpassword"}, {"value", "c"}}},
       R"({"call":"file.write","key":"domainpassword","value":"***"})"},
      {{"file.write", {{"key", "Domain"}, {"value", "c"}}},
       R"({"call":"file.write","key":"Domain","value":"c"})"}};
  for (const auto& c : kChanges) EXPECT_EQ(support::JsonText(Redacted(c.change)), c.shown);

  const char* const kTexts[][2] = {
      {"a=1\r\n domainPassword = x=y\r\nz\r\n", "a=1\r\n domainPassword =***\r\n***\r\n"},
      {"DomainPassword=x\n\n[S]\nz\nb=c\nd", "DomainPassword=***\n\n[S]\n***\nb=c\nd"},
      {"; DomainPassword=x", "; DomainPassword=***"},
      {"DomainPassword=x\n;c\nd", "DomainPassword=***\n;c\nd"},
      {"ProxyPassword=x\nDomainPassword\n", "ProxyPassword=***\n***\n"},
      {"Password\na=b\n", "Password\na=b\n"},
      {"DomainUsername=AB12\nMySecretPass1\n", "DomainUsername=***\n***\n"},
      {"DomainUser: x\nb=c", "DomainUser***\nb=c"},
      {"a=1\nDomainPassword x==\ny", "a=1\nDomainPassword***\n***"},
      {"a=1\nmy password x\n[Password]\ny\n", "a=1\n***\n[Password]\n***\n"},
      {"; the password is x", ";***"},
      {"#DomainUser = x", "#DomainUser =***"},
      {"DomainPassword=x\ny==\nz\n", "DomainPassword=***\n***\n***\n"},
      {"Note=compass\nDomain=x", "Note=***\nDomain=x"},
      {"DomainPassword=\n\n", "DomainPassword=\n\n"}};
  for (const auto& [text, redacted] : kTexts) EXPECT_EQ(RedactedFile(text), redacted) << text;
  EXPECT_EQ(RedactedText("PC compass: sets Password=x y\nz"), "PC compass: sets Password=***");
  EXPECT_EQ(RedactedValue("compass.corp"), "compass.corp");
  EXPECT_EQ(RedactedValue("my password x"), "my password ***");
  EXPECT_EQ(RedactedValue("compass.corp\nDomainUser: x"), "compass.corp\n***");
}

TEST(MachineFile, NoRefusalRepeatsASecret) {
  for (const char* text : {R"({"decrypt": {"a": "s3cret\q"}})", R"({"decrypt": {"a": "s3cret)"}) {
    try {
      ParseMachine(text, "m.json");
      ADD_FAILURE() << text;
    } catch (const MachineFileError& error) {
      EXPECT_EQ(std::string(error.what()).find("s3cret"), std::string::npos) << error.what();
    }
  }
}

TEST(MachineFile, PrintsBytesThatAreNoUtf8) {
  Machine machine;
  machine.files = {{R"(C:\x)", "\xE4=1"}};
  EXPECT_EQ(ParseMachine(PrintMachine(machine), "m.json").files[0].text, "\xEF\xBF\xBD=1");
}

}  // namespace
}  // namespace simulated
