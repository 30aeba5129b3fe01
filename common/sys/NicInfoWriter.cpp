#include "common/sys/NicInfoWriter.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "common/sys/NicSettings.h"
#include "common/util/CompositeIterator.h"
#include "common/util/FileUtils.h"

namespace sys {
namespace {

using base::Key;

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
  return adapterNumber == 0 ? std::string(NameOf(base::SectionKind::kAdapter))
                            : "Interface" + std::to_string(adapterNumber);
}

void WriteNicInfo(const Entries& global, NicList& adapters, const std::string& path) {
  const std::string section(NameOf(base::SectionKind::kGlobal));
  WriteSection(section, global, path);
  WriteSection(section, {{std::string(NameOf(Key::kRebootAfterConfig)), "True"}}, path);
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

void NicConfigVisitor::Put(Key key, std::string value) {
  entries_[std::string(NameOf(key))] = std::move(value);
}

void NicConfigVisitor::Visit(NicAdapter& adapter) {
  std::string macAddress = adapter.MacAddress();
  std::erase(macAddress, ':');
  Put(Key::kDescription, adapter.Description());
  Put(Key::kMacAddress, macAddress);
  Put(Key::kDhcp, TrueOrFalse(adapter.IsDhcpEnabled()));
  Put(Key::kPciBus, std::to_string(adapter.Location().bus));
  Put(Key::kPciDevice, std::to_string(adapter.Location().device));
  Put(Key::kPciFunction, std::to_string(adapter.Location().function));
  Put(Key::kVendorId, std::to_string(adapter.VendorId()));
  Put(Key::kDeviceId, std::to_string(adapter.DeviceId()));
}

void NicConfigVisitor::Visit(IP& ip) {
  Put(Key::kAddress, ip.Address().ToString());
  Put(Key::kNetmask, ip.Mask().ToString());
  Put(Key::kOwnDnsDomain, ip.DnsDomain());
  Put(Key::kOwnDnsHostName, ip.DnsHostName());
}

void NicConfigVisitor::Visit(GatewayEntry& gateway) {
  if (gatewayWritten_) return;
  Put(Key::kGateway, gateway.Address().ToString());
  gatewayWritten_ = true;
}

void NicConfigVisitor::Visit(DNS& dns) {
  serverCount_ = CountChildren<DNSServer>(dns);
  suffixCount_ = CountChildren<DNSSuffix>(dns);
  Put(Key::kDnsServerCount, std::to_string(serverCount_));
  Put(Key::kDnsEnabled, TrueOrFalse(serverCount_ >= 1));
}

void NicConfigVisitor::Visit(DNSServer& server) {
  if (serverPosition_ > 0) serverText_ += ",";
  serverText_ += server.Address();
  const auto* dns = dynamic_cast<const DNS*>(server.getParent());
  if (serverPosition_ + 1 == serverCount_ && dns != nullptr && dns->IsEnabled()) {
    entries_[NameOf(Key::kDnsServer, static_cast<std::size_t>(adapterNumber_))] = serverText_;
  }
  ++serverPosition_;
}

void NicConfigVisitor::Visit(DNSSuffix& suffix) {
  // Deliberate: the separator goes to the servers' text, which is written already; the suffixes run
  // together.
  if (suffixPosition_ > 0) serverText_ += ",";
  suffixText_ += suffix.Suffix();
  if (suffixPosition_ + 1 == suffixCount_) Put(Key::kDnsSuffixes, suffixText_);
  ++suffixPosition_;
}

}  // namespace sys
