#include <algorithm>
#include <initializer_list>
#include <string>
#include <vector>

#include "base/Numbers.h"
#include "tool/check/rules/Rules.h"

namespace tool::check {
namespace {

/// The first of the keys that is given; null when none is.
const PlacedEntry* FirstGiven(const Section& section, std::initializer_list<Key> keys) {
  for (const Key key : keys) {
    if (const PlacedEntry* const entry = section.Find(key)) return entry;
  }
  return nullptr;
}

// ---- Addressing ---------------------------------------------------------------------------------

void CheckWhetherAddressesCount(const DesiredAdapter& adapter, Findings& findings) {
  const PlacedEntry* const given =
      FirstGiven(*adapter.section, {Key::kAddress, Key::kNetmask, Key::kGateway});
  if (given == nullptr || adapter.IsStatic()) return;
  const std::string key(given->key);
  if (adapter.addressing == DesiredAdapter::Addressing::kDhcp) {
    findings.AtValue(Code::kAddressesWithDhcp, *given, key + " is ignored: DHCP is on");
  } else {
    findings.AtValue(Code::kAddressesWithoutDhcpKey, *given,
                     key + " is not applied: without \"DHCP\" the addressing is unchanged");
  }
}

void CheckStaticIsComplete(const DesiredAdapter& adapter, Findings& findings) {
  if (!adapter.IsStatic()) return;
  for (const Key key : {Key::kAddress, Key::kNetmask}) {
    const auto& given = key == Key::kAddress ? adapter.addresses : adapter.masks;
    if (!given.empty()) continue;
    // "10.0.0.5/24" has a finding of its own.
    const auto& addresses = adapter.addresses;
    if (std::any_of(addresses.begin(), addresses.end(),
                    [](const Address& one) { return PrefixIn(one.item.text).has_value(); })) {
      return;
    }
    findings.AtValue(Code::kStaticWithoutAddress, *adapter.section->Find(Key::kDhcp),
                     "the addressing is static, but " + std::string(NameOf(key)) + " is not given");
    return;
  }
}

void CheckAddressAndMaskCounts(const DesiredAdapter& adapter, Findings& findings) {
  const auto& addresses = adapter.addresses;
  const auto& masks = adapter.masks;
  if (!adapter.IsStatic() || addresses.empty() || masks.empty()) return;
  if (addresses.size() == masks.size()) return;
  findings.AtValue(Code::kAddressAndMaskCounts, *adapter.section->Find(Key::kNetmask),
                   "Address gives " + std::to_string(addresses.size()) + ", but Netmask gives " +
                       std::to_string(masks.size()));
}

/// The network's own address and its broadcast address belong to no computer.
void CheckHostParts(const DesiredAdapter& adapter, Findings& findings) {
  const auto& addresses = adapter.addresses;
  const auto& masks = adapter.masks;
  for (std::size_t i = 0; i < std::min(addresses.size(), masks.size()); ++i) {
    if (!adapter.IsStatic() || !addresses[i].bits || !masks[i].bits) continue;
    const std::uint32_t hosts = ~*masks[i].bits;
    if (!IsContiguous(*masks[i].bits) || hosts <= 1 || *masks[i].bits == 0) continue;
    const std::uint32_t host = *addresses[i].bits & hosts;
    if (host != 0 && host != hosts) continue;
    findings.OfItem(Code::kUnusableAddress, addresses[i].item,
                    std::string("is the ") + (host == 0 ? "network's own" : "broadcast") +
                        " address with mask " + std::string(masks[i].item.text));
  }
}

void CheckGateways(const DesiredAdapter& adapter, Findings& findings) {
  const auto& addresses = adapter.addresses;
  if (!adapter.HasKnownSubnets()) return;
  for (const Address& gateway : adapter.gateways) {
    if (!gateway.bits) continue;
    if (std::any_of(addresses.begin(), addresses.end(),
                    [&](const Address& own) { return own.bits == gateway.bits; })) {
      findings.OfItem(Code::kGatewayIsOwnAddress, gateway.item, "is the adapter's own address");
    } else if (!adapter.IsInSubnet(*gateway.bits)) {
      findings.OfItem(Code::kGatewayOutside, gateway.item, "is in no subnet of this adapter");
    }
  }
}

// ---- Numbered keys and DNS ----------------------------------------------------------------------

/// Whether what a numbered key says would count if it were read.
bool Counts(const DesiredAdapter& adapter, Key numbered) {
  return numbered == Key::kRoute || adapter.setsDns;
}

void CheckUnread(const DesiredAdapter& adapter, Findings& findings) {
  for (const PlacedEntry* const entry : adapter.unread) {
    if (!Counts(adapter, *entry->known)) continue;
    const Key count = *entry->known == Key::kRoute ? Key::kStaticRouteCount : Key::kDnsServerCount;
    const PlacedEntry* const given = adapter.section->Find(count);
    const std::string countName(NameOf(count));
    findings.AtKey(Code::kNumberedKeyNotRead, *entry,
                   std::string(entry->key) + " is not read: " +
                       (given != nullptr ? countName + " is " + Quoted(given->FirstLine())
                                         : countName + " is not given"),
                   given != nullptr ? "" : "add " + countName);
  }
}

void CheckCounts(const DesiredAdapter& adapter, Findings& findings) {
  const struct {
    Key count;
    Key numbered;
    std::size_t read;
  } kCounts[] = {
      {Key::kDnsServerCount, Key::kDnsServer, adapter.servers.size()},
      {Key::kStaticRouteCount, Key::kRoute, adapter.routes.size() + adapter.emptyRoutes.size()},
  };
  for (const auto& row : kCounts) {
    const PlacedEntry* const count = adapter.section->Find(row.count);
    if (count == nullptr || !Counts(adapter, row.numbered)) continue;
    const std::uint32_t wanted = base::ParseUnsigned(count->FirstLine());
    const auto isUnread = [&row](const PlacedEntry* entry) { return entry->known == row.numbered; };
    const auto& unread = adapter.unread;
    // Keys beyond a gap have a finding of their own.
    if (wanted <= row.read || std::any_of(unread.begin(), unread.end(), isUnread)) continue;
    findings.AtValue(Code::kCountTooLarge, *count,
                     std::string(NameOf(row.count)) + " is " + std::to_string(wanted) + ", but " +
                         std::to_string(row.read) + " such keys are given");
  }
}

void CheckWhetherDnsCounts(const DesiredAdapter& adapter, Findings& findings) {
  if (adapter.setsDns) return;
  const Section& section = *adapter.section;
  const auto isServer = [](const PlacedEntry& entry) {
    return entry.known == Key::kDnsServer && entry.isFound && !entry.value.empty();
  };
  const auto server = std::find_if(section.entries.begin(), section.entries.end(), isServer);
  const PlacedEntry* given = section.Find(Key::kDnsSuffixes);
  if (server != section.entries.end()) given = &*server;
  if (given == nullptr) return;
  const std::string key(given->key);
  if (adapter.dnsFromDhcp) {
    findings.AtValue(Code::kDnsFromDhcp, *given, key + " is ignored: DNS-Use-DHCP is True");
  } else {
    findings.AtValue(Code::kDnsNotSet, *given, key + " is not applied: SetDNSInfo is not True");
  }
}

// ---- Routes and the adapter's place -------------------------------------------------------------

void CheckRoutes(const DesiredAdapter& adapter, Findings& findings) {
  for (const PlacedEntry* const entry : adapter.emptyRoutes) {
    findings.AtValue(
        Code::kShortRoute, *entry,
        std::string(entry->key) + " is empty: it uses up a number, but gives no route");
  }
  for (const Route& route : adapter.routes) {
    if (!route.destination.bits || !route.mask.bits || !IsContiguous(*route.mask.bits)) continue;
    if (*route.destination.bits == 0 && *route.mask.bits == 0) {
      findings.AtValue(Code::kDefaultRoute, *route.entry, "this is a default route");
    } else if ((*route.destination.bits & ~*route.mask.bits) != 0) {
      findings.OfItem(Code::kRouteHostBits, route.destination.item,
                      "has bits outside the mask " + std::string(route.mask.item.text));
    }
  }
}

void CheckLocation(const DesiredAdapter& adapter, Findings& findings) {
  const Section& section = *adapter.section;
  constexpr Key kParts[] = {Key::kPciBus, Key::kPciDevice, Key::kPciFunction};
  const PlacedEntry* const given = FirstGiven(section, {kParts[0], kParts[1], kParts[2]});
  if (given == nullptr || adapter.hasLocation) return;
  for (const Key part : kParts) {
    if (section.Find(part) != nullptr) continue;
    findings.AtValue(Code::kPartialLocation, *given,
                     std::string(NameOf(part)) + " is missing, so the location is not used");
    return;
  }
}

}  // namespace

void CheckAdapters(const DesiredState& desired, Findings& findings) {
  for (const DesiredAdapter& adapter : desired.adapters) {
    for (const auto rule : {CheckWhetherAddressesCount, CheckStaticIsComplete,
                            CheckAddressAndMaskCounts, CheckHostParts, CheckGateways, CheckUnread,
                            CheckCounts, CheckWhetherDnsCounts, CheckRoutes, CheckLocation}) {
      rule(adapter, findings);
    }
  }
}

}  // namespace tool::check
