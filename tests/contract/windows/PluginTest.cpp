// The shipped plug-in on simulated machines: what it calls of Windows is answered by a machine, and
// each message goes through the library that is linked into this program as well; the two must tell
// the same story.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <regex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "platform/simulated/MachineFile.h"
#include "tests/support/FreshProcess.h"
#include "tool/agent/Conversation.h"
// windows.h renames what others declare, so it comes last.
#include "tests/contract/windows/SystemDouble.h"
#include "tests/contract/windows/WmiDouble.h"

namespace {

using simulated::Json;
using simulated::Machine;
using tool::Delivery;

constexpr char kFile[] = R"(C:\tarvo.cfg)";

HMODULE plugin = nullptr;

void StartFreshProcess() {
  support::StartFreshProcess();
  if (plugin != nullptr) FreeLibrary(plugin);
  plugin = LoadLibraryA(CONFIG_LIBRARY_PATH);
  ASSERT_NE(plugin, nullptr) << CONFIG_LIBRARY_PATH << ": " << GetLastError();
}

const ToolboxApi& Table() {
  const FARPROC entry = GetProcAddress(plugin, "GetToolboxAPI");
  return *reinterpret_cast<const ToolboxApi* (*)()>(reinterpret_cast<void*>(entry))();
}

void ExpectSame(const Json& linked, const Json& shipped) {
  EXPECT_EQ(shipped, linked) << "the libraries differ: " << Json::diff(linked, shipped);
}

/// The tests run in the project's folder.
std::string Read(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// The machine that a file describes, by its differences from the example if it has no schema.
Machine MachineOf(const std::string& text) {
  Json change = Json::parse(text);
  Json whole;
  if (!change.contains("schema")) {
    whole = simulated::ToJson(simulated::ExampleMachine(), /*hideSecrets=*/false);
    if (change.contains("adapters") && change["adapters"].is_object()) {  // by their index
      for (Json& adapter : whole["adapters"]) {
        adapter.merge_patch(change["adapters"].value(adapter["index"].dump(), Json::object()));
      }
      change.erase("adapters");
    }
  }
  whole.merge_patch(change);
  return simulated::ParseMachine(whole.dump(), "machine");
}

tool::Request Configure(const std::string& text, Machine& machine) {
  machine.PutFile(kFile, text);
  return {"Internal", "Configure", {{"Filename", kFile}}};
}

/// Delivers to the shipped plug-in, and to the linked library on a copy: both must do the same.
Delivery DeliverToBoth(tool::Request request, Machine& machine) {
  Machine copy = machine;
  const Delivery linked = Deliver(request, copy);
  const std::size_t journalStart = machine.journal.size();
  Delivery shipped;
  {
    const contract::SystemDouble windows(plugin, machine);
    shipped = Deliver(Table(), std::move(request));
    shipped.stillInUse = windows.InUse();
  }
  shipped.changes = tool::ShownChanges(machine, journalStart);
  ExpectSame(ToJson(linked), ToJson(shipped));
  EXPECT_TRUE(shipped.stillInUse == linked.stillInUse);
  EXPECT_TRUE(!machine.faults.empty() || linked.stillInUse == simulated::Usage{});
  EXPECT_EQ(shipped.unreleasedMessages + linked.unreleasedMessages, 0U);
  ExpectSame(simulated::ToJson(copy, false), simulated::ToJson(machine, false));
  return shipped;
}

/// A story's files that end like this.
std::vector<std::string> PartsOf(const std::string& story, const std::string& ending) {
  std::vector<std::string> parts;
  const std::regex heads("(^|\n)-- (\\S+) --\n");
  for (std::sregex_iterator head(story.begin(), story.end(), heads), end; head != end;) {
    const std::string name = (*head)[2];
    const auto from = (*head)[0].second;
    const auto to = ++head == end ? story.end() : (*head)[0].first;
    if (name.ends_with(ending)) parts.emplace_back(from, to);
  }
  return parts;
}

TEST(Plugin, TellsTheStoriesThatSaySo) {
  int told = 0;
  const auto tell = [&](tool::Request request, Machine machine) {
    StartFreshProcess();
    tool::Converse(std::move(request), {/*deliverPosted=*/true, /*restarts=*/3}, machine,
                   DeliverToBoth);
    ++told;
  };
  for (const auto& entry : std::filesystem::directory_iterator("tests/stories")) {
    const std::string story = Read(entry.path());
    if (story.find("Also through the plug-in.") == std::string::npos) continue;
    SCOPED_TRACE(entry.path());
    const auto files = PartsOf(story, ".cfg");
    auto machines = PartsOf(story, ".json");
    machines.push_back("{}");
    for (const std::string& described : machines) {
      Machine machine = MachineOf(described);
      for (const std::string& file : files) tell(Configure(file, machine), machine);
      if (!files.empty()) continue;
      tell({"Internal", "PrepForImage", {}}, machine);
      tell({"Internal", "UpdateInfo", {{"Auto-Update-Count", "3"}}}, machine);
    }
  }
  EXPECT_GE(told, 20);
}

/// Tells the laptop's story once for each of its calls of this name, with `fault` striking it; the
/// number of those calls.
std::uint32_t DisturbEachCall(simulated::Fault fault) {
  for (std::uint32_t nth = 1;; ++nth) {
    SCOPED_TRACE(fault.call + " " + std::to_string(nth));
    StartFreshProcess();
    Machine machine = MachineOf(Read("examples/laptop.machine.json"));
    const tool::Request request = Configure(Read("examples/laptop.cfg"), machine);
    fault.nth = nth;
    machine.faults = {fault};
    EXPECT_EQ(DeliverToBoth(request, machine).exception, "");
    if (machine.faults[0].struck.empty()) return nth - 1;
  }
}

TEST(Plugin, AnyCallMayFail) {
  simulated::Fault fault;
  fault.error = ERROR_ACCESS_DENIED;
  EXPECT_GT(DisturbEachCall(fault), 100u);
}

TEST(Plugin, WhatHandsOutAnObjectMayHandOutNone) {
  for (const char* call : {"wmi.class", "wmi.connect", "wmi.definition", "wmi.instances",
                           "wmi.locator", "wmi.method", "wmi.next", "wmi.query", "wmi.spawn"}) {
    simulated::Fault fault;
    fault.call = call;
    fault.hresult = S_OK;
    EXPECT_NE(DisturbEachCall(fault), 0u) << call;
  }
}

// What no machine of ours answers: a true that is no VARIANT_TRUE, and arrays of another shape,
// which end the message.
TEST(Plugin, OddAnswersOfWmiAreTakenForWhatTheyAre) {
  using platform::TextArray;
  const struct {
    const char* property;
    platform::Variant value;
    const char* settings;
    bool enablesDhcp;
    const char* exception;
  } kAnswers[] = {
      {"DHCPEnabled", platform::RawBool{1}, "DHCP=True\n", true, ""},
      {"DHCPEnabled", platform::RawBool{-1}, "DHCP=True\n", false, ""},
      {"DHCPEnabled", "-1", "DHCP=True\n", true, ""},
      {"IPAddress", TextArray{{}, 0}, "DHCP=False\nAddress=10.0.0.5\nNetmask=255.0.0.0\n", false,
       "Invalid argument passed to attach()"},
      {"IPSubnet", TextArray{{}, 2}, "DHCP=False\nAddress=10.0.0.5\nNetmask=255.0.0.0\n", false,
       "Only one-dimensional arrays are supported"}};
  for (const auto& c : kAnswers) {
    SCOPED_TRACE(c.property + std::string(" ") + c.exception);
    StartFreshProcess();
    Machine machine = simulated::ExampleMachine();
    machine.adapters[0].dhcpEnabled = false;
    const std::string address = "[NicEntry0]\nMACAddress=" + *machine.adapters[0].macAddress + "\n";
    machine.PutFile(kFile, address + c.settings);
    const contract::SystemDouble windows(plugin, machine);
    contract::oddAnswers[c.property] = c.value;
    const Delivery delivery =
        tool::Deliver(Table(), {"Internal", "Configure", {{"Filename", kFile}}});
    EXPECT_EQ(delivery.exception, c.exception);
    EXPECT_EQ(std::any_of(machine.journal.begin(), machine.journal.end(),
                          [](const auto& change) { return change["method"] == "EnableDHCP"; }),
              c.enablesDhcp);
    EXPECT_TRUE(windows.InUse() == simulated::Usage{});
  }
}

TEST(Plugin, AMessageOnAnotherThreadLeavesARunningJoinAlone) {
  Machine machine = MachineOf(Read("examples/laptop.machine.json"));
  const tool::Request request = Configure(Read("examples/laptop.cfg"), machine);
  StartFreshProcess();
  Machine undisturbed = machine;
  const Delivery expected = tool::Deliver(request, undisturbed);
  contract::SystemDouble windows(plugin, machine);
  int sleeps = 0;
  windows.DuringSleep([&] {
    ++sleeps;
    std::thread([] {
      EXPECT_EQ(tool::Deliver(Table(), {"Internal", "UpdateInfo", {}}).status, 2);
      EXPECT_EQ(tool::Deliver(Table(), {"Internal", "Unknown", {}}).status, 2);
    }).join();
  });
  const Delivery delivery = tool::Deliver(Table(), request);
  EXPECT_GT(sleeps, 0);
  EXPECT_EQ(delivery.Result(), expected.Result());
  ExpectSame(simulated::ToJson(undisturbed, false), simulated::ToJson(machine, false));
}

}  // namespace
