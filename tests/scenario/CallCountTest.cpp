// How often a message calls the machine: in proportion to its adapters, and nothing twice.
#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "platform/simulated/Machine.h"
#include "platform/simulated/Simulation.h"
#include "tests/support/FreshProcess.h"
#include "tool/agent/Delivery.h"

namespace {

constexpr std::uint32_t kSizes[] = {1, 4, 64};

/// Calls by kind, a column for each of `kSizes`.
using Table = std::map<std::string, std::vector<std::uint32_t>>;

struct Message {
  const char* name;
  const char* message;
  /// Connections to WMI for each adapter, and for the machine as a whole: one each question.
  std::uint32_t connectionsEach, connections;
  /// The section of one adapter, which its PCI location begins; null without a file.
  const char* settings;
};

constexpr Message kMessages[] = {
    {"every adapter changes", "Configure", 14, 3,
     "DHCP=False\nAddress=10.0.0.5\nNetmask=255.0.0.0\nSetDNSInfo=True\nDNS-Server-Count=1\n"
     "DNS-Server0=10.0.0.2\n"},
    {"nothing changes", "Configure", 11, 3, "DHCP=True\n"},
    {"recording", "PrepForImage", 10, 3, nullptr},
    {"no machine", "UpdateInfo", 0, 0, nullptr},
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

TEST(CallCount, GrowsWithTheAdaptersAndByNoMoreThanTheirQuestions) {
  for (const Message& message : kMessages) {
    SCOPED_TRACE(message.name);
    const Table counts = Count(message);
    for (const auto& [kind, count] : counts) {
      EXPECT_EQ((count[2] - count[1]) * (kSizes[1] - kSizes[0]),
                (count[1] - count[0]) * (kSizes[2] - kSizes[1]))
          << kind;
    }
    const auto connections = counts.find("wmi.connect");
    EXPECT_EQ(connections == counts.end() ? 0 : connections->second[0],
              message.connectionsEach + message.connections);
    EXPECT_EQ(connections == counts.end() ? 0 : connections->second[1],
              4 * message.connectionsEach + message.connections);
  }
}

}  // namespace
