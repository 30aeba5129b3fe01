#include <gtest/gtest.h>

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

class NicListTest : public support::MachineTest {
 protected:
  void AddAdapter(std::uint32_t index, const std::string& macAddress = "") {
    simulated::Adapter& adapter = machine_.adapters.emplace_back();
    adapter.index = index;
    adapter.settingId += std::to_string(index);
    adapter.macAddress = macAddress;
  }
};

TEST_F(NicListTest, EveryAdapterHasTheRoutesOfTheMachine) {
  machine_.persistentRoutes = {{"10.1.0.0", "255.255.0.0", "10.0.0.1", 3}};
  for (const std::uint32_t index : {9U, 8U}) AddAdapter(index);
  sys::NicList list;
  util::CompositeVisitor stranger;
  std::size_t routes = 0;
  for (auto node = list.depthBegin(); node != list.depthEnd(); ++node) {
    (*node)->accept(stranger);
    const auto* route = dynamic_cast<sys::StaticRoute*>(*node);
    if (route == nullptr) continue;
    ++routes;
    const auto& [destination, mask, gateway, metric] = route->Value();
    EXPECT_EQ(destination.ToString() + " " + mask.ToString() + " " + gateway.ToString(),
              "10.1.0.0 255.255.0.0 10.0.0.1");
    EXPECT_EQ(metric, 3);
  }
  EXPECT_EQ(routes, 2U);
}

TEST_F(NicListTest, ServersAreByHandOnlyWhereTheRegistryTellsSo) {
  AddAdapter(7);
  machine_.adapters[0].dnsServers = {"10.0.0.3"};
  machine_.adapters[0].staticDns = true;
  EXPECT_TRUE(sys::DNS(7).IsEnabled());
  AddFault("registry.open", -1);
  EXPECT_FALSE(sys::DNS(7).IsEnabled());
}

TEST_F(NicListTest, FindsTheFirstAdapterOfAMacAddressInAnyForm) {
  EXPECT_TRUE(sys::NicList{}.isEmpty());
  for (const std::uint32_t index : {2U, 3U}) AddAdapter(index, "08:00:27:AA:BB:02");
  AddAdapter(4);
  const sys::NicList list;
  for (const char* mac : {"08:00:27:AA:BB:02", "080027aabb02", "08-00-27-aa-BB-02"}) {
    ASSERT_NE(list.FindByMac(mac), nullptr);
    EXPECT_EQ(list.FindByMac(mac)->Index(), 2U) << mac;
  }
  for (const char* mac : {"", "--", "0800"}) EXPECT_EQ(list.FindByMac(mac), nullptr) << mac;
}

}  // namespace
