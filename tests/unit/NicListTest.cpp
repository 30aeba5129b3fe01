#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "common/sys/NicList.h"
#include "common/sys/NicSettings.h"
#include "common/sys/NicText.h"
#include "common/util/CompositeIterator.h"
#include "tests/support/MachineTest.h"

namespace {

using sys::PciLocation;

TEST(NicText, ReadsThePnpDeviceId) {
  constexpr struct {
    const char* id;
    bool isPci;
    std::uint32_t vendor, device;
  } kIds[] = {
      {R"(PCI\VEN_8086&DEV_10ec&SUBSYS_001E8086&REV_02\3&0)", true, 0x8086, 0x10EC},
      {R"(HDAUDIO\FUNC_01&VEN_10EC&DEV_0269)", false, 0x10EC, 0x0269},
      {"", false, 0, 0},
      {"PCIVEN_8086&DEV_100E", true, 0, 0},
      {R"(PCI\VEN_)", true, 0, 0},
      {R"(PCI\VEN_XYZW&DEV_-100)", true, 0, 0},
      {R"(PCI\VEN_FFFFFFFF&1)", true, 0xFFFFFFFF, 1},
      {R"(PCI\VEN_FFFFFFFF10)", true, 0, 0},
  };
  for (const auto& c : kIds) {
    SCOPED_TRACE(c.id);
    const sys::PnpDeviceId parsed = sys::ParsePnpDeviceId(c.id);
    EXPECT_EQ(parsed.isPci, c.isPci);
    EXPECT_EQ(parsed.vendorId, c.vendor);
    EXPECT_EQ(parsed.deviceId, c.device);
  }
}

TEST(NicText, TakesTheLocationFromTheLastThreeNumbers) {
  constexpr struct {
    const char* text;
    PciLocation location;
  } kTexts[] = {
      {"PCI bus 0, device 25, function 0", {0, 25, 0}},
      {"@pci.sys,#65536;PCI bus %1, device %2, function %3;(4,25,7)", {4, 25, 7}},
      {"1 0000000000002 3", {1, 2, 3}},
      {"1,4294967296,3", {}},
      {"Port_#0001.Hub_#0003", {}},
      {"", {}},
  };
  for (const auto& c : kTexts)
    EXPECT_EQ(sys::ParseLocationInformation(c.text), c.location) << c.text;
}

TEST(NicText, CutsTheNumberOffTheCaption) {
  constexpr const char* kCaptions[][2] = {{"[00000007] Intel(R) PRO", "Intel(R) PRO"},
                                          {"Intel(R) PRO", "RO"},
                                          {"[7]", ""},
                                          {"Realtek", "ealtek"},
                                          {"", ""}};
  for (const auto& [caption, rest] : kCaptions) EXPECT_EQ(sys::DescriptionOf(caption), rest);
}

/// Spells every node with its data, one line a node.
struct Spelling final : sys::NicInfoVisitor {
  static std::string Piece(const ipc::IPv4Address& address) { return address.ToString(); }
  static const auto& Piece(const auto& piece) { return piece; }
  void Line(const auto&... pieces) { ((text << Piece(pieces)), ...) << '\n'; }
  void Visit(sys::NicList&) override { Line("list"); }
  void Visit(sys::NicAdapter& nic) override {
    const auto [bus, device, function] = nic.Location();
    Line(nic.IsPci() ? "pci " : "other ", nic.Index(), '|', nic.VendorId(), ':', nic.DeviceId(),
         '|', bus, '/', device, '/', function, '|', nic.IsDhcpEnabled() ? "DHCP" : "static", '|',
         nic.MacAddress(), '|', nic.AdapterType(), '|', nic.Manufacturer(), '|', nic.Description());
  }
  void Visit(sys::IP& ip) override {
    Line("ip ", ip.Address(), '/', ip.Mask(), ' ', ip.DnsHostName(), '.', ip.DnsDomain());
  }
  void Visit(sys::StaticRoute& node) override {
    const auto& [destination, mask, gateway, metric] = node.Value();
    Line("route ", destination, '/', mask, ' ', gateway, ' ', metric);
  }
  void Visit(sys::Gateway&) override { Line("gateways"); }
  void Visit(sys::GatewayEntry& gateway) override { Line("via ", gateway.Value()); }
  void Visit(sys::DNS& dns) override { Line(dns.IsEnabled() ? "dns on" : "dns off"); }
  void Visit(sys::DNSServer& server) override { Line("server ", server.Value()); }
  void Visit(sys::DNSSuffix& suffix) override { Line("suffix ", suffix.Value()); }

  std::ostringstream text;
};

std::string Spell(sys::NicList& list) {
  Spelling spelling;
  util::CompositeVisitor stranger;
  for (auto node = list.depthBegin(), end = list.depthEnd(); node != end; ++node) {
    (*node)->accept(stranger);
    (*node)->accept(spelling);
  }
  return spelling.text.str();
}

class NicListTest : public support::MachineTest {
 protected:
  simulated::Adapter& AddAdapter(std::uint32_t index, const std::string& macAddress = "",
                                 const std::string& location = "") {
    simulated::Adapter adapter;
    adapter.index = index;
    adapter.settingId = "#" + std::to_string(index);
    adapter.pnpDeviceId += adapter.settingId;
    adapter.macAddress = macAddress;
    adapter.locationInformation = location;
    adapter.caption = "[00000001] Card";
    machine_.adapters.push_back(adapter);
    return machine_.adapters.back();
  }

  /// 0 when there is no adapter.
  static std::uint32_t IndexOf(const sys::NicAdapter* adapter) {
    return adapter != nullptr ? adapter->Index() : 0;
  }
};

TEST_F(NicListTest, DescribesTheMachineInItsOrder) {
  machine_.persistentRoutes = {{"10.1.0.0", "255.255.0.0", "10.0.0.1", 3}};
  simulated::Adapter& full = AddAdapter(9, "08:00:27:00:00:01", "PCI bus 0, device 3, function 1");
  full.dhcpEnabled = false;
  full.ipAddresses = {"10.0.0.5", "10.0.0.6"};
  full.subnetMasks = {"255.0.0.0", "255.255.0.0"};
  full.gateways = {"10.0.0.1", "10.0.0.2"};
  full.dnsServers = {"10.0.0.3", "10.0.0.4"};
  full.dnsSuffixes = {"a.example", "b.example"};
  full.dnsDomain = "corp.example";
  full.dnsHostName = "pc";
  full.staticDns = true;
  AddAdapter(8).pnpDeviceId = R"(ROOT\NET\0000)";
  simulated::Adapter& unread = AddAdapter(7, "", "(1,2,3)");
  unread.dnsServers = {"10.0.0.3"};
  unread.staticDns = true;
  machine_.faults.emplace_back().call = "registry.open";
  machine_.faults.back().contains = "#7";
  AddAdapter(6).ipEnabled = false;
  sys::NicList list;
  EXPECT_EQ(Spell(list),
            "list\n"
            "pci 9|32902:4110|0/3/1|static|08:00:27:00:00:01|Ethernet 802.3|Intel|Card\n"
            "ip 10.0.0.5/255.0.0.0 pc.corp.example\n"
            "route 10.1.0.0/255.255.0.0 10.0.0.1 3\n"
            "gateways\nvia 10.0.0.1\nvia 10.0.0.2\n"
            "dns on\nserver 10.0.0.3\nserver 10.0.0.4\nsuffix a.example\nsuffix b.example\n"
            "other 8|0:0|4294967295/4294967295/4294967295|static||||\n"
            "pci 7|32902:4110|4294967295/4294967295/4294967295|DHCP||Ethernet 802.3|Intel|Card\n"
            "ip 0.0.0.0/0.0.0.0 .\n"
            "route 10.1.0.0/255.255.0.0 10.0.0.1 3\n"
            "gateways\ndns off\nserver 10.0.0.3\n");
}

TEST_F(NicListTest, FindsTheFirstPciAdapterThatMatches) {
  EXPECT_TRUE(sys::NicList{}.isEmpty());
  AddAdapter(1, "08:00:27:AA:BB:01", "(1,2,3)").pnpDeviceId = "USB\\VID_1";
  AddAdapter(2, "08:00:27:AA:BB:02", "(1,2,4)");
  AddAdapter(3, "08:00:27:AA:BB:02", "(1,2,4)");
  AddAdapter(4, "", "");
  const sys::NicList list;
  EXPECT_EQ(IndexOf(list.FindByPciLocation({1, 2, 4})), 2U);
  EXPECT_EQ(IndexOf(list.FindByPciLocation({1, 2, 3})), 0U) << "other bus";
  EXPECT_EQ(IndexOf(list.FindByPciLocation({2, 1, 4})), 0U);
  EXPECT_EQ(IndexOf(list.FindByPciLocation({})), 0U) << "unknown";
  for (const char* mac : {"08:00:27:AA:BB:02", "080027aabb02", "08-00-27-aa-BB-02"}) {
    EXPECT_EQ(IndexOf(list.FindByMac(mac)), 2U) << mac;
  }
  for (const char* mac : {"08:00:27:AA:BB:01", "", "--", "0800"}) {
    EXPECT_EQ(IndexOf(list.FindByMac(mac)), 0U) << mac;
  }
}

TEST_F(NicListTest, EveryFailingQueryEndsTheConstructionAndNoneIsRepeated) {
  AddAdapter(7);
  AddAdapter(8);
  constexpr std::uint32_t kQueries = 2 + 2 * 10;  // adapters and routes, then each adapter
  for (std::uint32_t nth = 1; nth <= kQueries + 1; ++nth) {
    machine_.faults.clear();
    AddFault("wmi.query", -1);
    machine_.faults.back().nth = nth;
    if (nth <= kQueries) {
      EXPECT_THROW(sys::NicList{}, sys::CWmiError) << nth;
    } else {
      EXPECT_NO_THROW(sys::NicList{});
    }
  }
}

}  // namespace
