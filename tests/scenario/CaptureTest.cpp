// A machine read back into a machine file.
#include <algorithm>
#include <nlohmann/json.hpp>
#include <regex>
#include <string>

#include "platform/IRegistry.h"
#include "platform/simulated/AdapterFields.h"
#include "platform/simulated/MachineFile.h"
#include "tests/support/MachineTest.h"
#include "tool/machine/LiveMachine.h"
#include "tool/machine/MachineDifference.h"
#include "tool/roundtrip/RestoredSettings.h"

namespace {

using simulated::Json;
using simulated::Machine;

class CaptureTest : public support::MachineTest {
 protected:
  CaptureTest() { machine_ = simulated::ExampleMachine(); }

  /// What a machine tells of itself; the rest is only the simulation's.
  static Json Told(Machine machine) {
    machine.hosts.clear();
    machine.hostsUnknown = false;
    machine.faults.clear();
    machine.decrypt.reset();
    machine.domains.clear();
    std::sort(machine.services.begin(), machine.services.end(),
              [](const auto& a, const auto& b) { return a.name < b.name; });
    return simulated::ToJson(machine, /*hideSecrets=*/false);
  }
};

TEST_F(CaptureTest, WhatTheMachineTellsComesBack) {
  machine_.FindService("LmHosts")->name = "lmhosts";
  machine_.files = {{R"(C:\tarvo.cfg)", "[Global]\n"}};
  machine_.registry = {{R"(HKEY_LOCAL_MACHINE\Software\Orvanta\Client Service)", "NetworkDisabled",
                        platform::kRegDWord, 1u}};
  machine_.persistentRoutes = {{"10.1.0.0", "255.255.0.0", "10.0.0.1", 7}};
  machine_.operatingSystem["Organization"] = nullptr;
  machine_.operatingSystem["Primary"] = true;
  machine_.operatingSystem["OSLanguage"] = 1031;
  simulated::Adapter& adapter = machine_.adapters[1];
  adapter.ipAddresses.emplace_back("fe80::1");
  adapter.subnetMasks.emplace_back("64");
  adapter.dnsServers = {"10.0.0.2", "10.0.0.3"};
  adapter.staticDns = true;
  adapter.dnsDomain = "corp.example";
  for (const bool member : {false, true}) {
    SCOPED_TRACE(member);
    if (member) machine_.membership = simulated::DomainMembership{"corp.example", "CORP", true};
    const std::size_t changes = machine_.journal.size();
    const tool::CapturedMachine captured = tool::CaptureMachine();
    EXPECT_TRUE(captured.gaps.empty()) << captured.gaps.front();
    EXPECT_EQ(Told(captured.machine), Told(machine_))
        << Json::diff(Told(machine_), Told(captured.machine));
    EXPECT_EQ(machine_.journal.size(), changes) << "nothing is changed";
    const Json file = simulated::ToJson(captured.machine, /*hideSecrets=*/false);
    EXPECT_FALSE(file.contains("directory") || file.contains("decrypt")) << "unknown, not none";
    EXPECT_TRUE(file.at("hosts").is_null());
  }
  // The caption is the one of the class that the library asks.
  machine_.faults.resize(2);
  machine_.faults[0].call = "wmi.instances";
  machine_.faults[0].contains = "Win32_NetworkAdapterConfiguration";
  machine_.faults[1].call = "wmi.get";
  machine_.faults[1].name = "Caption";
  machine_.faults[1].nth = 99;
  tool::CaptureMachine();
  EXPECT_EQ(machine_.faults[1].matched, machine_.adapters.size());
}

// What makes a value another one of its kind.
void Alter(std::uint32_t& number) { ++number; }
void Alter(bool& flag) { flag = !flag; }
void Alter(std::string& text) { text += "x"; }
/// Its last digit: a MAC address and a location stay what they are.
void Alter(simulated::NullableText& text) {
  const std::size_t digit = text.value_or("").find_last_of("0123456789");
  if (digit == std::string::npos) {
    text = text.value_or("") + "x";
  } else {
    (*text)[digit] ^= 1;
  }
}
void Alter(std::vector<std::string>& list) { list = {"10.9.8.7"}; }

TEST_F(CaptureTest, EveryFieldOfAnAdapterIsKnownEverywhere) {
  simulated::Adapter adapter = machine_.adapters[1];
  adapter.dhcpEnabled = true;
  adapter.dnsServers = {"10.0.0.2"};
  simulated::ForEachAdapterField([&](const simulated::AdapterField& field, auto member) {
    SCOPED_TRACE(field.name);
    const auto valueIn = [&](const Machine& machine) {
      return simulated::ToJson(machine, /*hideSecrets=*/false)["adapters"][0][field.name];
    };
    machine_.adapters = {adapter};
    const Machine before = machine_;
    Alter(machine_.adapters[0].*member);
    EXPECT_NE(valueIn(machine_), valueIn(before)) << "written";
    const std::string file = simulated::PrintMachine(machine_);
    EXPECT_EQ(valueIn(simulated::ParseMachine(file, "m.json")), valueIn(machine_)) << "read";
    EXPECT_EQ(valueIn(tool::CaptureMachine().machine), valueIn(machine_)) << "captured";
    EXPECT_FALSE(tool::Differences(before, machine_).empty()) << "told";
    support::StartFreshProcess();
    const tool::ImageRestore image = tool::RestoreFromImage(machine_);
    const bool stays = field.onImage == simulated::OnImage::kStays;
    EXPECT_EQ(valueIn(image.cleared) == valueIn(machine_), stays) << "cleared";
    const auto settings = tool::RestoredSettings(image);
    EXPECT_EQ(std::any_of(settings.begin(), settings.end(),
                          [&](const auto& row) {
                            return field.word != nullptr && row.setting == field.word;
                          }),
              !stays && field.onImage != simulated::OnImage::kFollows)
        << "told by the round trip";
  });
}

TEST_F(CaptureTest, EveryOtherFieldIsToldWhereARunMayChangeIt) {
  // What no message changes, and what names another field's row.
  const std::regex constant(
      "/(schema|adapters|operating_system|agent_folder|hosts|decrypt|faults|registry/0/type|"
      "membership/domain/(flat_name|has_sid)|directory/domains/0/(flat_name|accounts|ous)).*");
  machine_.membership = simulated::DomainMembership{"corp.example", "CORP", true};
  machine_.persistentRoutes.resize(1);
  machine_.registry.resize(1);
  machine_.files.resize(1);
  machine_.domains[0].computers.resize(1);
  const Json whole = simulated::ToJson(machine_, /*hideSecrets=*/false);
  const Json places = whole.flatten();
  int altered = 0;
  for (const auto& [pointer, value] : places.items()) {
    if (std::regex_match(pointer, constant)) continue;
    SCOPED_TRACE(pointer);
    const Json candidates[] = {"HKEY_", "10.9.8.7", "disabled", 77, value != Json(true)};
    for (const Json& candidate : candidates) {
      Json document = whole;
      document[Json::json_pointer(pointer)] = candidate;
      try {
        const Machine other = simulated::ParseMachine(document.dump(), "m.json");
        EXPECT_FALSE(tool::Differences(machine_, other).empty());
        ++altered;
        break;
      } catch (const simulated::MachineFileError&) {
        // A value of another kind.
      }
    }
  }
  EXPECT_GT(altered, 15);
}

TEST_F(CaptureTest, WhatCannotBeReadIsNamedAndTheRestIsKept) {
  const struct {
    const char* call;
    const char* contains;
    std::size_t gaps;
    const char* first;
  } kCases[] = {
      {"wmi.instances", "Win32_NetworkAdapter", 1, "adapters: "},
      {"wmi.instances", "Win32_Service", 1, "services: "},
      {"wmi.query", "Win32_ComputerSystem", 1, "computer name: "},
      {"lsa.open", "", 1, "membership: "},
      {"wmi.next", "", 6, "computer name: "},
      {"file.read", "", 1, R"(agent's files: C:\tarvo.cfg)"},
      {"wmi.connect", "", 6, "computer name: WMI initialization failed."},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(std::string(c.call) + " " + c.contains);
    machine_ = simulated::ExampleMachine();
    machine_.files = {{R"(C:\tarvo.cfg)", "[Global]\n"}};
    AddFault(c.call, static_cast<platform::HResult>(0x80070005));
    if (*c.contains != '\0') machine_.faults[0].contains = c.contains;
    const tool::CapturedMachine captured = tool::CaptureMachine();
    ASSERT_EQ(captured.gaps.size(), c.gaps);
    EXPECT_TRUE(captured.gaps[0].starts_with(c.first)) << captured.gaps[0];
  }
}

}  // namespace
