// The preparation of an image: what is recorded, locked down and handed on.
#include <algorithm>
#include <deque>
#include <functional>
#include <string>
#include <vector>

#include "tests/support/MachineTest.h"
#include "tool/agent/Delivery.h"
#include "toolbox/ToolboxApi.h"

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
      if (change.call == "file.write" && change["section"] == section) {
        texts.push_back(change["key"].Text() + "=" + change["value"].Text());
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

TEST_F(PrepForImageTest, EachServiceMayBeMissingOrRefuse) {
  const struct {
    const char* name;
    const char* told;
    const char* refused;
  } kServices[] = {
      {"Dhcp", "312 Disabled DHCP", "317 Failed Disabled DHCP"},
      {"NetBT", "330 Disabled NetBT", "333 Failed Disabled NetBT"},
      {"LmHosts", "344 Disabled LMHOST", "349 Failed Disabled LMHOST"},
      {"NwlnkNb", "359 Disabled NetBIOS over NWLink", "364 Failed Disabled NetBIOS over NWLink"}};
  const Texts kWays{"missing", "cannot be opened", "refuses"};
  for (const auto& chosen : kServices) {
    for (const std::string& way : kWays) {
      SCOPED_TRACE(chosen.name + (" " + way));
      machine_ = simulated::ExampleMachine();
      if (way == kWays[0]) {
        std::erase_if(machine_.services, [&](const auto& it) { return it.name == chosen.name; });
      } else {
        AddFault(way == kWays[1] ? "service.open" : "service.start_type",
                 static_cast<platform::HResult>(0x80070005));
        machine_.faults.back().service = chosen.name;
      }
      const tool::Delivery delivery = Prepare();
      EXPECT_EQ(delivery.status, 1);
      Texts expected;
      const std::string path = R"(2 handlers\internal\PrepForImage:)";
      for (const auto& service : kServices) {
        const bool isChosen = service.name == std::string(chosen.name);
        if (!isChosen || way == kWays[2]) expected.push_back(path + service.told);
        if (isChosen && way == kWays[2]) expected.push_back(path + service.refused);
        if (const auto* kept = machine_.FindService(service.name)) {
          EXPECT_EQ(kept->start == platform::ServiceStart::kDisabled, !isChosen) << service.name;
        }
      }
      const Texts log = Log(delivery);
      EXPECT_EQ(Texts(log.begin() + 5, log.end()), expected);
    }
  }
}

/// Takes down what the machine is like when a message is posted.
class WatchingHost final : public IAgentHost {
 public:
  explicit WatchingHost(const simulated::Machine& machine) : machine_(machine) {}
  ~WatchingHost() = default;

  void Reserved0() override {}
  void SendTo(const char* /*target*/, IAgentMessage* /*message*/) override {}
  std::int32_t Post(IAgentMessage* /*message*/) override {
    filesAtPost_ = machine_.files;
    return 1;
  }
  void Log(std::uint32_t /*level*/, const char* /*format*/, ...) override {}
  IAgentMessage* CreateMessage() override {
    return &messages_.emplace_back("", "", tool::AgentMessage::GivenValues());
  }

  const std::vector<simulated::File>& FilesAtPost() const { return filesAtPost_; }

 private:
  const simulated::Machine& machine_;
  std::deque<tool::AgentMessage> messages_;
  std::vector<simulated::File> filesAtPost_;
};

TEST_F(PrepForImageTest, TheMessageIsPostedBeforeTheCopyIsMade) {
  WatchingHost host(machine_);
  tool::AgentMessage message("Internal", "PrepForImage", {});
  EXPECT_EQ(GetToolboxAPI()->doMagic(&message, &host), 1);
  ASSERT_EQ(host.FilesAtPost().size(), 1U);
  EXPECT_EQ(host.FilesAtPost()[0].path, kRestoreFile);
  EXPECT_EQ(machine_.FindFile(kAgentFile)->text, host.FilesAtPost()[0].text);
}

TEST_F(PrepForImageTest, WhatStandsInTheFileAlreadyIsKept) {
  machine_.adapters.resize(1);
  machine_.PutFile(kAgentFile, "[Global]\r\nConfig=Restore\r\n");
  machine_.PutFile(kRestoreFile,
                   "; first\r\n[tcp/ip]\r\n# of an old card\r\nGATEWAY = 10.0.0.1\r\nRoute0=x\r\n"
                   "\r\n[Site]\r\nName=HQ\r\n");
  Prepare();
  const std::string text = machine_.FindFile(kRestoreFile)->text;
  EXPECT_TRUE(text.starts_with(
      "; first\r\n[tcp/ip]\r\n# of an old card\r\nGATEWAY=192.168.10.1\r\nRoute0=x\r\nAddress="))
      << text;
  EXPECT_NE(text.find("\r\n\r\n[Site]\r\nName=HQ\r\n[Global]\r\nConfig=RestoreAfterCreate\r\n"),
            std::string::npos)
      << text;
  EXPECT_EQ(text.find("[TCP/IP]"), std::string::npos) << text;
  EXPECT_EQ(machine_.FindFile(kAgentFile)->text, text);
}

TEST_F(PrepForImageTest, WhateverTheMachineIsLikeEveryEntryIsWholeOrNotThere) {
  const std::string global = "[Global]\r\nConfig=RestoreAfterCreate\r\nRebootAfterConfig=True\r\n";
  constexpr auto kDenied = static_cast<platform::HResult>(0x80070005);
  const struct {
    const char* name;
    std::function<void()> change;
    std::int32_t status;
    /// The restore file afterwards; empty for none.
    std::string text;
  } kCases[] = {
      {"no adapters", [&] { machine_.adapters.clear(); }, 1, global},
      {"no PCI adapters", [&] { machine_.adapters.erase(machine_.adapters.begin()); }, 1, global},
      {"odd texts",
       [&] {
         simulated::Adapter& adapter = machine_.adapters[0];
         adapter.pnpDeviceId = "PCIVEN_";
         adapter.caption = "Card";
         adapter.macAddress.reset();
         adapter.locationInformation = "slot 3";
         machine_.adapters.pop_back();
       },
       1,
       global + "[TCP/IP]\r\nAddress=0.0.0.0\r\nDHCP=True\r\nDNS-Domain=\r\nDNS-Enabled=False\r\n"
                "DNS-Hostname=\r\nDNS-Server-Count=0\r\nDescription=ard\r\nDeviceID=0\r\n"
                "MACAddress=\r\nNetmask=0.0.0.0\r\nPCIBus=4294967295\r\nPCIDevice=4294967295\r\n"
                "PCIFunction=4294967295\r\nVendorID=0\r\n"},
      {"file that is read-only",
       [&] {
         machine_.PutFile(kRestoreFile, "[Site]\r\n");
         AddFault("file.write", kDenied);
       },
       1, "[Site]\r\n"},
      {"folder that is missing",
       [&] { AddFault("file.write", static_cast<platform::HResult>(0x80070003)); }, 1, ""},
      {"entry that is refused",
       [&] {
         machine_.adapters.erase(machine_.adapters.begin());
         AddFault("file.write", kDenied);
         machine_.faults.back().name = "Config";
       },
       1, "[Global]\r\nRebootAfterConfig=True\r\n"},
      {"adapter that cannot be read",
       [&] {
         AddFault("wmi.query", kDenied);
         machine_.faults.back().contains = "Caption";
       },
       0, ""},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.name);
    machine_ = {};
    machine_.adapters = {simulated::Adapter(), simulated::Adapter()};
    machine_.adapters[1].index = 8;
    machine_.adapters[1].pnpDeviceId = "ROOT\\NET";
    machine_.services = {{"Dhcp"}};
    c.change();
    const tool::Delivery delivery = Prepare();
    EXPECT_EQ(delivery.status, c.status);
    EXPECT_EQ(delivery.posted.size(), static_cast<std::size_t>(c.status));
    EXPECT_EQ(machine_.registry.size(), static_cast<std::size_t>(c.status));
    EXPECT_EQ(machine_.services[0].start == platform::ServiceStart::kDisabled, c.status == 1);
    const simulated::File* file = machine_.FindFile(kRestoreFile);
    EXPECT_EQ(file == nullptr ? "" : file->text, c.text);
  }
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
