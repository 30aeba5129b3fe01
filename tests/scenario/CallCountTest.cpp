// How often a message calls the machine: in proportion to its adapters, and nothing twice.
#include <gtest/gtest.h>

#include <cstdint>
#include <map>
#include <string>

#include "platform/simulated/Machine.h"
#include "platform/simulated/Simulation.h"
#include "tests/support/FreshProcess.h"
#include "tool/agent/Delivery.h"

namespace {

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

/// The calls of each kind on a machine with so many adapters.
std::map<std::string, std::uint32_t> Count(const Message& message, std::uint32_t adapters) {
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
  std::map<std::string, std::uint32_t> counts;
  for (const simulated::Fault& counter : machine.faults) counts[counter.call] = counter.matched;
  return counts;
}

TEST(CallCount, GrowsWithTheAdaptersAndByNoMoreThanTheirQuestions) {
  for (const Message& message : kMessages) {
    SCOPED_TRACE(message.name);
    auto one = Count(message, 1);
    auto four = Count(message, 4);
    for (const auto& [kind, many] : Count(message, 64)) {
      EXPECT_EQ((many - four[kind]) * 3, (four[kind] - one[kind]) * 60) << kind;
    }
    EXPECT_EQ(one["wmi.connect"], message.connectionsEach + message.connections);
    EXPECT_EQ(four["wmi.connect"], 4 * message.connectionsEach + message.connections);
  }
}

}  // namespace
