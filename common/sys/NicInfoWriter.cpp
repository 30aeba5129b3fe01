#include "common/sys/NicInfoWriter.h"

#include <algorithm>

#include "common/sys/NicSettings.h"
#include "common/util/CompositeIterator.h"
#include "common/util/FileUtils.h"

namespace sys {
namespace {

const char* TrueOrFalse(bool value) { return value ? "True" : "False"; }

template <typename Node>
int CountChildren(const util::CollectionNode& parent) {
  const auto& children = parent.children();
  return static_cast<int>(std::count_if(children.begin(), children.end(), [](const auto& child) {
    return dynamic_cast<const Node*>(child.get()) != nullptr;
  }));
}

void WriteSection(const std::string& section, const Entries& entries, const std::string& path) {
  for (const auto& [key, value] : entries) util::WriteProfileEntry(section, key, value, path);
}

Entries Collect(NicAdapter& adapter, int adapterNumber) {
  NicConfigVisitor visitor(adapterNumber);
  for (auto node = adapter.depthBegin(); node != adapter.depthEnd(); ++node) {
    (*node)->accept(visitor);
  }
  return visitor.Collected();
}

}  // namespace

std::string SectionName(int adapterNumber) {
  // Deliberate: "Interface" sections, which a configuration does not read back.
  return adapterNumber == 0 ? "TCP/IP" : "Interface" + std::to_string(adapterNumber);
}

void WriteNicInfo(const Entries& global, NicList& adapters, const std::string& path) {
  WriteSection("Global", global, path);
  util::WriteProfileEntry("Global", "RebootAfterConfig", "True", path);
  int number = 0;
  for (auto node = adapters.breadthBegin(); node != adapters.breadthEnd(); ++node) {
    auto* adapter = dynamic_cast<NicAdapter*>(*node);
    if (adapter == nullptr) continue;
    if (adapter->IsPci()) {
      WriteSection(SectionName(number), Collect(*adapter, number), path);
    }
    ++number;
  }
}

void NicConfigVisitor::Visit(NicAdapter& adapter) {
  std::string macAddress = adapter.MacAddress();
  std::erase(macAddress, ':');
  entries_["Description"] = adapter.Description();
  entries_["MACAddress"] = macAddress;
  entries_["DHCP"] = TrueOrFalse(adapter.IsDhcpEnabled());
  entries_["PCIBus"] = std::to_string(adapter.Location().bus);
  entries_["PCIDevice"] = std::to_string(adapter.Location().device);
  entries_["PCIFunction"] = std::to_string(adapter.Location().function);
  entries_["VendorID"] = std::to_string(adapter.VendorId());
  entries_["DeviceID"] = std::to_string(adapter.DeviceId());
}

void NicConfigVisitor::Visit(IP& ip) {
  entries_["Address"] = ip.Address().ToString();
  entries_["Netmask"] = ip.Mask().ToString();
  entries_["DNS-Domain"] = ip.DnsDomain();
  entries_["DNS-Hostname"] = ip.DnsHostName();
}

void NicConfigVisitor::Visit(GatewayEntry& gateway) {
  if (gatewayWritten_) return;
  entries_["Gateway"] = gateway.Address().ToString();
  gatewayWritten_ = true;
}

void NicConfigVisitor::Visit(DNS& dns) {
  serverCount_ = CountChildren<DNSServer>(dns);
  suffixCount_ = CountChildren<DNSSuffix>(dns);
  entries_["DNS-Server-Count"] = std::to_string(serverCount_);
  entries_["DNS-Enabled"] = TrueOrFalse(serverCount_ >= 1);
}

void NicConfigVisitor::Visit(DNSServer& server) {
  if (serverPosition_ > 0) serverText_ += ",";
  serverText_ += server.Address();
  const auto* dns = dynamic_cast<const DNS*>(server.getParent());
  if (serverPosition_ + 1 == serverCount_ && dns != nullptr && dns->IsEnabled()) {
    entries_["DNS-Server" + std::to_string(adapterNumber_)] = serverText_;
  }
  ++serverPosition_;
}

void NicConfigVisitor::Visit(DNSSuffix& suffix) {
  // Deliberate: the separator goes to the servers' text, which is written already; the suffixes run
  // together.
  if (suffixPosition_ > 0) serverText_ += ",";
  suffixText_ += suffix.Suffix();
  if (suffixPosition_ + 1 == suffixCount_) entries_["DNS-SuffixSearchOrder"] = suffixText_;
  ++suffixPosition_;
}

}  // namespace sys
