// The preparation of an image: what is recorded, locked down and handed on.
#include <algorithm>
#include <string>
#include <vector>

#include "tests/support/MachineTest.h"
#include "tools/orvanta-config/Delivery.h"

namespace {

using Texts = std::vector<std::string>;

constexpr char kAgentFile[] = R"(C:\tarvo.cfg)";
constexpr char kRestoreFile[] = R"(C:\restore.cfg)";

class PrepForImageTest : public support::MachineTest {
 protected:
  PrepForImageTest() { machine_ = simulated::ExampleMachine(); }

  tool::Delivery Prepare() { return tool::Deliver({"Internal", "PrepForImage", {}}, machine_); }

  /// "[section] key=value" of every entry that was written.
  static Texts Written(const tool::Delivery& delivery, const std::string& section) {
    Texts texts;
    for (const auto& change : delivery.changes) {
      if (change["call"] == "file.write" && change["section"] == section) {
        texts.push_back(change["key"].get<std::string>() + "=" +
                        change["value"].get<std::string>());
      }
    }
    return texts;
  }

  static Texts Log(const tool::Delivery& delivery) {
    Texts texts;
    for (const tool::LogLine& line : delivery.log) {
      texts.push_back(std::to_string(line.level) + " " + line.text);
    }
    return texts;
  }
};

TEST_F(PrepForImageTest, SettingsAreRecordedAdapterByAdapter) {
  simulated::Adapter& second = machine_.adapters[1];
  second.gateways = {"10.20.0.1", "10.20.0.2"};
  second.dnsServers = {"10.0.0.1", "10.0.0.2"};
  second.dnsSuffixes = {"a.example", "b.example"};
  second.staticDns = true;
  const tool::Delivery delivery = Prepare();
  EXPECT_EQ(delivery.status, 1);
  EXPECT_EQ(
      Written(delivery, "Global"),
      (Texts{"Config=RestoreAfterCreate", "RebootAfterConfig=True", "RebootAfterConfig=True"}));
  EXPECT_EQ(Written(delivery, "TCP/IP"),
            (Texts{"Address=192.168.10.57", "DHCP=True", "DNS-Domain=", "DNS-Enabled=True",
                   "DNS-Hostname=TEMPLATE", "DNS-Server-Count=1",
                   "Description=Intel(R) PRO/1000 MT Desktop Adapter", "DeviceID=4110",
                   "Gateway=192.168.10.1", "MACAddress=080027123456", "Netmask=255.255.255.0",
                   "PCIBus=0", "PCIDevice=3", "PCIFunction=0", "VendorID=32902"}));
  EXPECT_EQ(Written(delivery, "Interface1"),
            (Texts{"Address=10.20.0.15", "DHCP=False", "DNS-Domain=", "DNS-Enabled=True",
                   "DNS-Hostname=TEMPLATE", "DNS-Server-Count=2", "DNS-Server1=10.0.0.1,10.0.0.2",
                   "DNS-SuffixSearchOrder=a.exampleb.example",
                   "Description=Intel(R) 82574L Gigabit Network Connection", "DeviceID=4307",
                   "Gateway=10.20.0.1", "MACAddress=080027654321", "Netmask=255.255.0.0",
                   "PCIBus=4", "PCIDevice=0", "PCIFunction=0", "VendorID=32902"}));
  EXPECT_EQ(machine_.FindFile(kAgentFile)->text, machine_.FindFile(kRestoreFile)->text);
}

TEST_F(PrepForImageTest, ASkippedAdapterUsesUpItsNumber) {
  std::rotate(machine_.adapters.begin(), machine_.adapters.begin() + 2, machine_.adapters.end());
  machine_.adapters[1].dnsServers.clear();
  const tool::Delivery delivery = Prepare();
  EXPECT_EQ(Written(delivery, "TCP/IP"), Texts{});
  const Texts first = Written(delivery, "Interface1");
  EXPECT_NE(std::find(first.begin(), first.end(), "DNS-Enabled=False"), first.end());
  EXPECT_FALSE(Written(delivery, "Interface2").empty());
}

TEST_F(PrepForImageTest, ServicesAreDisabledAndRefusalsOnlyLogged) {
  std::erase_if(machine_.services, [](const auto& service) { return service.name == "NwlnkNb"; });
  simulated::Fault fault;
  fault.call = "service.start_type";
  fault.service = "NetBT";
  fault.error = 5;
  machine_.faults = {fault};
  const tool::Delivery delivery = Prepare();
  EXPECT_EQ(delivery.status, 1);
  const Texts log = Log(delivery);
  const std::string path = R"(handlers\internal\PrepForImage:)";
  EXPECT_EQ(
      Texts(log.begin() + 1, log.end()),
      (Texts{"2 " + path + "163 Adding infor for nic 7", "2 " + path + "163 Adding infor for nic 8",
             "2 " + path + "163 Adding infor for nic 12", "1 " + path + "84 Invoke Config Handler",
             "2 " + path + "312 Disabled DHCP", "2 " + path + "330 Disabled NetBT",
             "2 " + path + "333 Failed Disabled NetBT", "2 " + path + "344 Disabled LMHOST"}));
  EXPECT_EQ(machine_.FindService("Dhcp")->start, platform::ServiceStart::kDisabled);
  EXPECT_EQ(machine_.FindService("NetBT")->start, platform::ServiceStart::kSystem);
}

TEST_F(PrepForImageTest, AFailedCopyIsLoggedAndAFailedFlagEndsIt) {
  AddFault("file.copy", static_cast<platform::HResult>(0x80070005));
  const tool::Delivery copied = Prepare();
  EXPECT_EQ(copied.status, 1);
  EXPECT_EQ(copied.posted.size(), 1U);
  EXPECT_TRUE(Log(copied).at(5).starts_with(
      R"(0 handlers\internal\PrepForImage:97 PrepForImage::Prepare(): caught general error)"));
  machine_ = simulated::ExampleMachine();
  AddFault("registry.set", static_cast<platform::HResult>(0x80070005));
  const tool::Delivery flagged = Prepare();
  EXPECT_EQ(flagged.status, 0);
  EXPECT_EQ(machine_.FindService("Dhcp")->start, platform::ServiceStart::kAutomatic);
}

TEST_F(PrepForImageTest, TheImageGoesOnAsItselfAtItsFirstStart) {
  machine_.membership = simulated::DomainMembership{"corp.example", "CORP", true};
  Prepare();
  const tool::Delivery delivery =
      tool::Deliver({"Internal", "Configure", {{"Filename", kAgentFile}}}, machine_);
  EXPECT_EQ(delivery.Result(), "Success");
  EXPECT_TRUE(std::holds_alternative<simulated::DomainMembership>(machine_.membership));
  EXPECT_EQ(machine_.FindService("NetBT")->start, platform::ServiceStart::kSystem);
  EXPECT_TRUE(machine_.registry.empty());
}

}  // namespace
