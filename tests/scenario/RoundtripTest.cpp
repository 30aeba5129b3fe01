// What an image gives back of a machine's settings, and what the report says of the rest.
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "platform/simulated/MachineFile.h"
#include "tests/support/MachineTest.h"
#include "tool/Tool.h"
#include "tool/io/Text.h"
#include "tool/roundtrip/ImageRestore.h"
#include "tool/roundtrip/RestoredSettings.h"

namespace {

using simulated::Json;
using simulated::Machine;
using Texts = std::vector<std::string>;

/// One adapter whose settings all come back, and services as Configure makes them.
Machine Server() {
  using Start = platform::ServiceStart;
  Machine machine;
  simulated::Adapter& adapter = machine.adapters.emplace_back();
  adapter.dhcpEnabled = false;
  adapter.ipAddresses = {"10.0.0.5"};
  adapter.subnetMasks = {"255.255.255.0"};
  adapter.gateways = {"10.0.0.1"};
  machine.services = {{"Dhcp", Start::kAutomatic, true}, {"NetBT", Start::kSystem, true}};
  return machine;
}

void AddAdapter(Machine& machine, const char* pnpDeviceId, bool first) {
  simulated::Adapter adapter = machine.adapters.front();
  adapter.index = 9;
  adapter.settingId = "second";
  adapter.pnpDeviceId = pnpDeviceId;
  adapter.locationInformation = "PCI bus 9, device 9, function 9";
  adapter.macAddress = "00:00:00:00:00:09";
  adapter.ipAddresses = {"10.9.0.5"};
  adapter.gateways.clear();
  machine.adapters.insert(first ? machine.adapters.begin() : machine.adapters.end(), adapter);
}

simulated::Fault& AddFault(Machine& machine, const char* call, std::uint32_t error) {
  simulated::Fault& fault = machine.faults.emplace_back();
  fault.call = call;
  fault.error = error;
  return fault;
}

/// "setting outcome before > after: reason" of what is not as before, one line each.
std::string NotAsBefore(const std::vector<tool::RestoredSetting>& settings) {
  std::string text;
  for (const tool::RestoredSetting& setting : settings) {
    if (setting.IsAsBefore()) continue;
    text += (setting.adapter ? std::to_string(*setting.adapter) + " " : "") + setting.setting +
            " " + std::string(OutcomeName(setting.outcome)) + " " + tool::ListText(setting.before) +
            " > " + tool::ListText(setting.after) + ": " + setting.reason + "\n";
  }
  return text;
}

struct Case {
  const char* name;
  void (*change)(Machine& machine);
  /// What `NotAsBefore` says.
  const char* lost;
  bool succeeds;
};

constexpr Case kCases[] = {
    {"static adapter", [](Machine&) {}, "", true},
    {"everything from DHCP",
     [](Machine& m) {
       simulated::Adapter& adapter = m.adapters.front();
       adapter.dhcpEnabled = true;
       adapter.dnsServers = {"10.0.0.2", "10.0.0.3"};
       adapter.dnsDomain = "corp.example";
     },
     "", true},
    {"no adapters", [](Machine& m) { m.adapters.clear(); }, "", true},
    {"nothing but odd texts",
     [](Machine& m) {
       simulated::Adapter& adapter = m.adapters.front();
       adapter.pnpDeviceId = "PCI";
       adapter.caption = "x";
       adapter.macAddress.reset();
       adapter.locationInformation = "slot 3";
     },
     "", true},
    {"link-local address",
     [](Machine& m) {
       m.adapters.front().ipAddresses.push_back("FE80::1");
       m.adapters.front().subnetMasks.push_back("64");
     },
     "", true},
    {"second gateway", [](Machine& m) { m.adapters.front().gateways.push_back("10.0.0.2"); },
     "7 gateways changed 10.0.0.1, 10.0.0.2 > 10.0.0.1: "
     "only the first is recorded (Gateway=10.0.0.1)\n",
     true},
    {"gateway in the second address's subnet",
     [](Machine& m) {
       m.adapters.front().ipAddresses.push_back("10.7.0.5");
       m.adapters.front().subnetMasks.push_back("255.255.0.0");
       m.adapters.front().gateways = {"10.7.0.1"};
     },
     "7 addresses changed 10.0.0.5/255.255.255.0, 10.7.0.5/255.255.0.0 > "
     "10.0.0.5/255.255.255.0: "
     "only the first is recorded (Address=10.0.0.5, Netmask=255.255.255.0)\n"
     "7 gateways lost 10.7.0.1 > -: "
     "setting it was refused: result 71 (gateway outside the adapter's subnets)\n",
     false},
    {"static without an address",
     [](Machine& m) {
       m.adapters.front().ipAddresses.clear();
       m.adapters.front().subnetMasks.clear();
       m.adapters.front().gateways.clear();
     },
     "7 addresses changed - > 0.0.0.0/0.0.0.0: "
     "recorded as Address=0.0.0.0, Netmask=0.0.0.0\n",
     true},
    {"IPv6 address", [](Machine& m) { m.adapters.front().ipAddresses = {"2001:db8::5"}; },
     "7 DHCP lost off > on: setting it was refused: result 66 (invalid address or mask)\n"
     "7 addresses lost 2001:db8::5/255.255.255.0 > -: recorded as Address=255.255.255.255, "
     "Netmask=255.255.255.0; setting it was refused: result 66 (invalid address or mask)\n"
     "7 gateways lost 10.0.0.1 > -: "
     "Configure failed: SetStatic:68 - Configuring static IP addresses failed\n",
     false},
    {"IPv6 gateway",
     [](Machine& m) {
       m.adapters.front().dhcpEnabled = true;
       m.adapters.front().gateways = {"fe80::1"};
       m.adapters.front().dnsSuffixes = {"a.example"};
     },
     "7 DNS suffixes lost a.example > -: nothing was recorded, for PrepForImage failed: "
     "common\\ipc\\IpAddress:58 - IPAddress::Connect Name Resolution Error; "
     "fe80::1 of adapter 7 is no IPv4 address and no known host\n",
     false},
    {"DNS settings",
     [](Machine& m) {
       m.adapters.front().dnsServers = {"10.0.0.2", "10.0.0.3"};
       m.adapters.front().staticDns = true;
       m.adapters.front().dnsSuffixes = {"a.example", "b.example"};
       m.adapters.front().dnsDomain = "corp.example";
     },
     "7 DNS servers lost 10.0.0.2, 10.0.0.3 > -: not read back without SetDNSInfo=True\n"
     "7 DNS suffixes lost a.example, b.example > -: "
     "recorded run together (DNS-SuffixSearchOrder=a.exampleb.example); "
     "not read back without SetDNSInfo=True\n"
     "7 DNS domain lost corp.example > -: DNS-Domain is not read back\n",
     true},
    {"DNS settings that the file asks for already",
     [](Machine& m) {
       m.adapters.front().dnsServers = {"10.0.0.2", "10.0.0.3"};
       m.adapters.front().staticDns = true;
       m.adapters.front().dnsSuffixes = {"a.example", "b.example"};
       m.PutFile(R"(C:\restore.cfg)", "[tcp/ip]\r\nSetDNSInfo=True\r\n");
     },
     "7 DNS suffixes changed a.example, b.example > a.exampleb.example: "
     "recorded run together (DNS-SuffixSearchOrder=a.exampleb.example)\n",
     true},
    {"DNS servers that nobody set", [](Machine& m) { m.adapters.front().dnsServers = {"::1"}; },
     "7 DNS servers lost ::1 > -: not recorded, for they are not set by hand\n", true},
    {"second adapter", [](Machine& m) { AddAdapter(m, "PCI\\2", /*first=*/false); },
     "9 DHCP lost off > on: section [Interface1] is not read back\n"
     "9 addresses lost 10.9.0.5/255.255.255.0 > -: section [Interface1] is not read back\n",
     true},
    {"software adapter first", [](Machine& m) { AddAdapter(m, "ROOT\\NET", /*first=*/true); },
     "9 DHCP lost off > on: not recorded, for the adapter is not on PCI (ROOT\\NET)\n"
     "9 addresses lost 10.9.0.5/255.255.255.0 > -: "
     "not recorded, for the adapter is not on PCI (ROOT\\NET)\n"
     "7 DHCP lost off > on: section [Interface1] is not read back; "
     "adapter 9, which is not recorded, used up [TCP/IP]\n"
     "7 addresses lost 10.0.0.5/255.255.255.0 > -: section [Interface1] is not read back; "
     "adapter 9, which is not recorded, used up [TCP/IP]\n"
     "7 gateways lost 10.0.0.1 > -: section [Interface1] is not read back; "
     "adapter 9, which is not recorded, used up [TCP/IP]\n",
     true},
    {"adapter without IP",
     [](Machine& m) {
       m.adapters.front().ipEnabled = false;
       m.adapters.front().gateways.clear();
       m.adapters.front().ipAddresses.clear();
     },
     "7 DHCP lost off > on: not recorded, for the adapter is not IP-enabled\n", true},
    {"persistent route", [](Machine& m) { m.persistentRoutes.emplace_back(); },
     "10.1.0.0/255.255.0.0 via 10.0.0.1 lost metric 1 > -: routes are not recorded\n", true},
    {"route that the file asks for already",
     [](Machine& m) {
       m.persistentRoutes.emplace_back();
       m.PutFile(R"(C:\restore.cfg)",
                 "[TCP/IP]\r\nStatic-Route-Count=1\r\n"
                 "Route0=10.1.0.0 255.255.0.0 10.0.0.1 x 1\r\n");
       m.faults.emplace_back().call = "process.run";
       m.faults.back().result = 87;
     },
     "10.1.0.0/255.255.0.0 via 10.0.0.1 lost metric 1 > -: "
     "setting it was refused: exit code 87\n",
     false},
    {"gateway of an earlier record",
     [](Machine& m) {
       m.adapters.front().gateways.clear();
       m.PutFile(R"(C:\restore.cfg)", "[TCP/IP]\r\nGateway=10.0.0.99\r\n");
     },
     "7 gateways changed - > 10.0.0.99: "
     "Gateway=10.0.0.99 was left in the file by an earlier record\n",
     true},
    {"adapter that another section knows",
     [](Machine& m) {
       AddAdapter(m, "PCI\\2", /*first=*/false);
       m.adapters.back().dhcpEnabled = true;
       m.adapters.back().ipAddresses.clear();
       m.PutFile(R"(C:\restore.cfg)",
                 "[NicEntry]\r\nMACAddress=000000000009\r\nDHCP=False\r\n"
                 "Address=10.8.0.1\r\nNetmask=255.0.0.0\r\n");
     },
     "9 DHCP changed on > off: set by another section of the file\n"
     "9 addresses changed - > 10.8.0.1/255.0.0.0: recorded as Address=0.0.0.0, "
     "Netmask=255.255.255.0; set by another section of the file\n",
     true},
    {"name in the file already",
     [](Machine& m) { m.PutFile(R"(C:\restore.cfg)", "[Networking]\r\nComputerName=OTHER\r\n"); },
     "name changed TEMPLATE > OTHER: set by a section that was in the file already\n", true},
    {"services of other kinds",
     [](Machine& m) {
       m.services = {{"LmHosts", platform::ServiceStart::kManual, true},
                     {"NwlnkNb", platform::ServiceStart::kDisabled, false},
                     {"Other", platform::ServiceStart::kDisabled, true}};
     },
     "LmHosts changed manual, running > automatic, running: "
     "Configure makes it automatic, whatever it was\n"
     "NwlnkNb changed disabled, stopped > automatic, running: "
     "Configure makes it automatic, whatever it was\n",
     true},
    {"service that cannot be enabled",
     [](Machine& m) {
       AddFault(m, "service.start_type", 5).nth = 3;
       AddFault(m, "service.start", 1069).service = "NetBT";
     },
     "Dhcp lost automatic, running > disabled, stopped: "
     "setting it was refused: result 5 (access denied)\n"
     "NetBT changed system, running > system, stopped: starting it was refused: result 1069\n",
     true},
    {"flag that cannot be cleared", [](Machine& m) { AddFault(m, "registry.delete", 5); },
     "Dhcp lost automatic, running > disabled, stopped: "
     "Configure did not find the flag NetworkDisabled\n"
     "NetBT lost system, running > disabled, stopped: "
     "Configure did not find the flag NetworkDisabled\n"
     "NetworkDisabled changed - > set: Configure did not take it\n",
     true},
    {"flag that was there", [](Machine& m) { m.registry.emplace_back(); },
     "NetworkDisabled changed set > -: Configure took it\n", true},
    {"flag that cannot be set", [](Machine& m) { AddFault(m, "registry.set", 5); }, "", false},
    {"copy that fails", [](Machine& m) { AddFault(m, "file.copy", 5); }, "", true},
    {"restore file that is read-only", [](Machine& m) { AddFault(m, "file.write", 5); },
     "7 DHCP lost off > on: recording it was refused: error 5 (access denied)\n"
     "7 addresses lost 10.0.0.5/255.255.255.0 > -: "
     "recording it was refused: error 5 (access denied)\n"
     "7 gateways lost 10.0.0.1 > -: recording it was refused: error 5 (access denied)\n",
     true},
    {"entries that are refused",
     [](Machine& m) {
       m.membership = simulated::DomainMembership{"corp.example", "CORP", true};
       AddFault(m, "file.write", 5).name = "Gateway";
       AddFault(m, "file.write", 5).name = "Config";
     },
     "member of changed domain corp.example > workgroup WrkGrp: "
     "the file does not say Config=RestoreAfterCreate\n"
     "7 gateways lost 10.0.0.1 > -: recording it was refused: error 5 (access denied)\n",
     true},
    {"hand-over that fails", [](Machine& m) { AddFault(m, "file.move", 32).nth = 1; },
     "7 DHCP lost off > on: Configure failed: "
     "common\\util\\FileUtils:51 - File Move Failed  (error = 32)\n"
     "7 addresses lost 10.0.0.5/255.255.255.0 > -: Configure failed: "
     "common\\util\\FileUtils:51 - File Move Failed  (error = 32)\n"
     "7 gateways lost 10.0.0.1 > -: Configure failed: "
     "common\\util\\FileUtils:51 - File Move Failed  (error = 32)\n"
     "Dhcp lost automatic, running > disabled, stopped: Configure failed: "
     "common\\util\\FileUtils:51 - File Move Failed  (error = 32)\n"
     "NetBT lost system, running > disabled, stopped: Configure failed: "
     "common\\util\\FileUtils:51 - File Move Failed  (error = 32)\n"
     "NetworkDisabled changed - > set: Configure did not take it\n",
     false},
};

TEST(Roundtrip, WhatDoesNotComeBackIsToldWithItsReason) {
  for (const Case& c : kCases) {
    SCOPED_TRACE(c.name);
    Machine machine = Server();
    c.change(machine);
    sys::DomainTestAccess::Reset();
    const tool::ImageRestore image = tool::RestoreFromImage(machine);
    EXPECT_EQ(NotAsBefore(tool::RestoredSettings(image)), c.lost);
    EXPECT_EQ(image.Succeeded(), c.succeeds);
  }
}

TEST(Roundtrip, WhateverFailsTheReasonIsFound) {
  for (std::uint32_t nth = 1;; ++nth) {
    Machine machine = Server();
    machine.adapters.front().gateways.push_back("10.0.0.2");
    machine.persistentRoutes.emplace_back();
    AddAdapter(machine, "PCI\\2", /*first=*/false);
    machine.FailCall(nth, 5);
    const tool::ImageRestore image = tool::RestoreFromImage(machine);
    for (const tool::RestoredSetting& setting : tool::RestoredSettings(image)) {
      EXPECT_EQ(setting.reason.empty(), setting.IsAsBefore()) << nth << " " << setting.setting;
    }
    if (image.after.faults.front().matched < nth) break;
  }
}

/// Runs the command as a user would; the machine comes from a file.
class RoundtripCommand : public testing::Test {
 protected:
  void TearDown() override { std::filesystem::remove(kFile); }

  int Run(const Machine& machine, Texts options) {
    std::ofstream(kFile, std::ios::binary) << simulated::PrintMachine(machine);
    options.insert(options.begin(), {"roundtrip", "--machine", kFile});
    std::istringstream in;
    std::ostringstream out;
    std::ostringstream err;
    const int exitCode = tool::RunTool(options, {in, out, err});
    out_ = out.str();
    err_ = err.str();
    return exitCode;
  }

  const std::string kFile = testing::TempDir() + "roundtrip-" +
                            testing::UnitTest::GetInstance()->current_test_info()->name() + ".json";
  std::string out_;
  std::string err_;
};

TEST_F(RoundtripCommand, TheExitCodeTellsWhetherEverythingCameBack) {
  Machine machine = Server();
  EXPECT_EQ(Run(machine, {}), 0);
  EXPECT_TRUE(out_.ends_with("\nEverything came back.\n")) << out_;
  AddFault(machine, "registry.set", 5);
  EXPECT_EQ(Run(machine, {}), 1) << "a message failed";
  EXPECT_TRUE(out_.ends_with("\nEverything came back, but a message failed.\n")) << out_;
  machine = Server();
  machine.persistentRoutes.resize(2);
  machine.persistentRoutes[1].destination = "10.2.0.0";
  EXPECT_EQ(Run(machine, {}), 1);
  EXPECT_TRUE(
      out_.ends_with("  persistent routes\n"
                     "    10.1.0.0/255.255.0.0 via 10.0.0.1  lost      metric 1 -> -\n"
                     "    10.2.0.0/255.255.0.0 via 10.0.0.1  lost      metric 1 -> -\n"
                     "      routes are not recorded\n"
                     "  services\n"
                     "    Dhcp   restored  automatic, running\n"
                     "    NetBT  restored  system, running\n"
                     "\n2 of 9 settings did not come back.\n"))
      << out_;
  for (const Texts& options : {Texts{"--save-machine", "-"}, Texts{"--at", "x"}, Texts{"x.cfg"}}) {
    EXPECT_EQ(Run(machine, options), 2);
    EXPECT_EQ(out_, "");
    EXPECT_TRUE(err_.starts_with("orvanta-config: ")) << err_;
  }
}

TEST_F(RoundtripCommand, TheDocumentHoldsSettingsRecordMessagesAndMachine) {
  Machine machine = Server();
  machine.adapters.front().gateways.push_back("10.0.0.2");
  machine.PutFile(R"(C:\restore.cfg)", "[Proxy]\r\nPassword=s3cret\r\n");
  const std::string saved = kFile + ".saved";
  EXPECT_EQ(Run(machine, {"--json", "--save-machine", saved}), 1);
  EXPECT_EQ(out_.find("s3cret"), std::string::npos);
  const Json json = Json::parse(out_);
  EXPECT_EQ(json["schema"], 1);
  EXPECT_EQ(json["everything_came_back"], false);
  EXPECT_EQ(json["settings"][0].dump(),
            R"({"subject":"computer","adapter":null,"setting":"name","before":["TEMPLATE"],)"
            R"("after":["TEMPLATE"],"outcome":"stayed","recorded":null,"reason":null})");
  EXPECT_EQ(json["settings"][4].dump(),
            R"({"subject":"adapter 7, Intel(R) PRO/1000 MT Desktop Adapter","adapter":7,)"
            R"("setting":"gateways","before":["10.0.0.1","10.0.0.2"],"after":["10.0.0.1"],)"
            R"("outcome":"changed","recorded":"Gateway=10.0.0.1",)"
            R"x("reason":"only the first is recorded (Gateway=10.0.0.1)"})x");
  EXPECT_EQ(json["captured"]["path"], R"(C:\restore.cfg)");
  EXPECT_NE(json["captured"]["text"].get<std::string>().find("\r\nGateway=10.0.0.1\r\n"),
            std::string::npos);
  EXPECT_EQ(json["capture"]["posted"].size(), 1U);
  ASSERT_EQ(json["restore"].size(), 2U) << "hand-over and configuration";
  EXPECT_EQ(json["restore"][1]["reply"]["Result"], "Success");
  EXPECT_EQ(json["machine"]["adapters"][0]["gateways"].dump(), R"(["10.0.0.1"])");
  EXPECT_EQ(Json::parse(std::ifstream(saved))["adapters"], json["machine"]["adapters"]);
  std::filesystem::remove(saved);
}

TEST_F(RoundtripCommand, TheReportNamesFailuresAndRefusalsAndPrintsSafely) {
  Machine machine = Server();
  machine.computerName = "A\x1B[31m";
  machine.adapters.front().caption = "[00000007] \x1B[31mCard";
  machine.adapters.front().gateways = {"10.0.9.1"};
  EXPECT_EQ(Run(machine, {}), 1);
  EXPECT_EQ(out_.find('\x1B'), std::string::npos);
  for (const char* part :
       {"\nRestore  Configure: file handed over, Failure (SetGateway:52 - Configuring gateways "
        "failed)\n",
        "\n  adapter 7, \\x1B[31mCard\n",
        "\nRefused by the machine\n"
        "  adapter 7: gateways 10.0.9.1  refused: result 71 (gateway outside the adapter's "
        "subnets)\n"}) {
    EXPECT_NE(out_.find(part), std::string::npos) << part << out_;
  }
  machine.faults.emplace_back().call = "wmi.connect";
  EXPECT_EQ(Run(machine, {}), 1);
  EXPECT_NE(out_.find("\nCapture  PrepForImage failed: "), std::string::npos) << out_;
  EXPECT_NE(out_.find("\nRestore  Configure: no file handed over, not handled ("),
            std::string::npos)
      << out_;
}

}  // namespace
