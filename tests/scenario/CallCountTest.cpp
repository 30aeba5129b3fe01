// How often a message calls the machine: the tables of docs/performance.md are what is counted.
#include <gtest/gtest.h>

#include <cstdint>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "platform/simulated/Machine.h"
#include "platform/simulated/Simulation.h"
#include "tests/support/FreshProcess.h"
#include "tool/agent/Delivery.h"

namespace {

/// The tests run in the project's folder.
constexpr char kDoc[] = "docs/performance.md";
constexpr std::uint32_t kSizes[] = {1, 4, 64};

/// Calls by kind, a column for each of `kSizes`.
using Table = std::map<std::string, std::vector<std::uint32_t>>;

struct Message {
  /// The heading of its table.
  const char* name;
  const char* message;
  /// The section of one adapter, which its PCI location begins; null without a file.
  const char* settings;
};

constexpr Message kMessages[] = {
    {"Configure, every adapter changes", "Configure",
     "DHCP=False\nAddress=10.0.0.5\nNetmask=255.0.0.0\nSetDNSInfo=True\nDNS-Server-Count=1\n"
     "DNS-Server0=10.0.0.2\n"},
    {"Configure, nothing changes", "Configure", "DHCP=True\n"},
    {"PrepForImage", "PrepForImage", nullptr},
    {"UpdateInfo", "UpdateInfo", nullptr},
};

simulated::Machine MachineWith(std::uint32_t adapters) {
  simulated::Machine machine = simulated::ExampleMachine();
  const simulated::Adapter pattern = machine.adapters[0];
  machine.adapters.clear();
  for (std::uint32_t i = 0; i < adapters; ++i) {
    simulated::Adapter& adapter = machine.adapters.emplace_back(pattern);
    const std::string number = std::to_string(i);
    adapter.index = i;
    adapter.settingId = "{" + number + "}";
    adapter.pnpDeviceId = "PCI\\" + number;
    adapter.locationInformation = "PCI bus 0, device " + number + ", function 0";
    adapter.dhcpEnabled = true;
  }
  for (const std::string_view kind : simulated::kCallNames) {
    simulated::Fault& counter = machine.faults.emplace_back();
    counter.call = kind;
    counter.nth = 0xFFFFFFFF;
  }
  return machine;
}

Table Count(const Message& message) {
  Table counts;
  for (const std::uint32_t adapters : kSizes) {
    support::StartFreshProcess();
    simulated::Machine machine = MachineWith(adapters);
    tool::Request request{"Internal", message.message, {}};
    if (message.settings != nullptr) {
      std::string file;
      for (std::uint32_t i = 0; i < adapters; ++i) {
        file += "[NicEntry" + std::to_string(i) + "]\nPCIBus=0\nPCIDevice=" + std::to_string(i) +
                "\nPCIFunction=0\n" + message.settings;
      }
      machine.PutFile(R"(C:\new.cfg)", file);
      request.values = {{"Filename", R"(C:\new.cfg)"}};
    }
    const tool::Delivery delivery = tool::Deliver(std::move(request), machine);
    EXPECT_TRUE(delivery.Succeeded()) << delivery.Failure();
    for (const simulated::Fault& counter : machine.faults) {
      counts[counter.call].push_back(counter.matched);
    }
  }
  std::erase_if(counts, [](const auto& row) {
    return row.second == std::vector<std::uint32_t>(std::size(kSizes), 0);
  });
  return counts;
}

std::string Shown(const Table& table) {
  std::string text;
  for (const auto& [kind, counts] : table) {
    text += "| `" + kind + "` |";
    for (const std::uint32_t count : counts) text += " " + std::to_string(count) + " |";
    text += "\n";
  }
  return text;
}

/// The rows below the heading "### `name`".
std::string ReadTable(const std::string& name) {
  std::ifstream doc(kDoc);
  std::string rows;
  bool here = false;
  for (std::string line; std::getline(doc, line);) {
    if (line.starts_with("#")) here = line == "### " + name;
    if (here && line.starts_with("| `")) rows += line + "\n";
  }
  return rows;
}

TEST(CallCount, IsWhatTheDocumentationTells) {
  for (const Message& message : kMessages) {
    SCOPED_TRACE(message.name);
    EXPECT_EQ(ReadTable(message.name), Shown(Count(message)));
  }
}

}  // namespace
