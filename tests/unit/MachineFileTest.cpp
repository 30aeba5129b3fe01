// The machine file: what it means, what it refuses and with which words, and what it hides.
#include <gtest/gtest.h>

#include <cstddef>
#include <ctime>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "platform/simulated/MachineFile.h"
#include "platform/simulated/Secrets.h"
#include "tests/support/JsonText.h"

namespace simulated {
namespace {

/// The document's machine: every list holds one element, and every scalar its default.
Json Documented() {
  std::ifstream file("docs/machine-file.md");  // the tests run in the project's folder
  const std::string doc{std::istreambuf_iterator<char>(file), {}};
  constexpr std::string_view kFence = "```json\n";
  const std::size_t start = doc.find(kFence, doc.find("## All fields")) + kFence.size();
  return Json::parse(doc.substr(start, doc.find("```", start) - start));
}

// Every field differs from its default.
constexpr const char* kFull = R"json({
  "schema": 1, "computer_name": "A", "pending_computer_name": "B",
  "membership": {"domain": {"dns_name": "d.example", "flat_name": "D", "has_sid": false}},
  "operating_system": {"Debug": true, "MaxNumberOfProcesses": 4294967295, "Name": null},
  "agent_folder": "D:\\a",
  "adapters": [
    {"index": 4294967295, "setting_id": "{1}", "ip_enabled": false, "pnp_device_id": "ROOT",
     "location_information": null, "mac_address": "0a:1B:00:00:00:00", "adapter_type": null, "manufacturer": "n",
     "caption": "\u0000\u0001\u007F\"\\\n/😀", "dhcp_enabled": false, "ip_addresses": ["1.0.0.1"], "subnet_masks": ["255.0.0.0"],
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
  for (const Json& document : {Documented(), Json::parse(kFull)}) {
    const Machine machine = ParseMachine(document.dump(), "m.json");
    EXPECT_EQ(ToJson(machine, false), document);
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
  Json documented = Documented();
  documented.erase("decrypt");
  documented["directory"]["domains"][0]["ous"] = Json::array();
  EXPECT_EQ(ToJson(machine, false), documented);
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
      {R"({"schema": 1, ")" + name + R"(": 1})", "nnn...\"; remove it or correct its name"},
      {R"({"schema": 1, "hosts": [{"address": ")" + name + R"("}]})", "an IPv4 address"},
      {std::string((std::size_t{64} << 20U) + 1, ' '), "larger than 64 MiB"}};
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

TEST(MachineFile, PrintsBytesThatAreNoUtf8) {
  Machine machine;
  machine.files = {{R"(C:\x)", "\xE4=1"}};
  EXPECT_EQ(ParseMachine(PrintMachine(machine), "m.json").files[0].text, "\xEF\xBF\xBD=1");
}

}  // namespace
}  // namespace simulated
