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
  entries_.emplace(NameOf(Key::kGateway), gateway.Value().ToString());  // the first one stays
}

void NicConfigVisitor::Visit(DNS& dns) {
  const auto& children = dns.children();
  const auto servers = std::count_if(children.begin(), children.end(), [](const auto& child) {
    return dynamic_cast<const DNSServer*>(child.get()) != nullptr;
  });
  Put(Key::kDnsServerCount, std::to_string(servers));
  Put(Key::kDnsEnabled, TrueOrFalse(servers >= 1));
  serversWanted_ = dns.IsEnabled();
}

void NicConfigVisitor::Visit(DNSServer& server) {
  if (!serversWanted_) return;
  std::string& text = entries_[NameOf(Key::kDnsServer, static_cast<std::size_t>(adapterNumber_))];
  if (!text.empty()) text += ",";
  text += server.Value();
}

void NicConfigVisitor::Visit(DNSSuffix& suffix) {
  // Deliberate: no separator; the suffixes run together.
  entries_[std::string(NameOf(Key::kDnsSuffixes))] += suffix.Value();
}

}  // namespace sys
