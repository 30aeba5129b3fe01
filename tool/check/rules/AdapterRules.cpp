#include <algorithm>
#include <initializer_list>
#include <string>
#include <vector>

#include "common/util/Text.h"
#include "tool/check/rules/Rules.h"

namespace tool::check {
namespace {

/// One adapter's section while it is looked at.
struct Subject {
  const Document& document;
  const Adapter& adapter;
  Findings& findings;

  const Section& section() const { return *adapter.section; }
  bool IsStatic() const { return adapter.addressing == Adapter::Addressing::kStatic; }

  void Add(Code code, const Entry& entry, const std::string& message,
           const std::string& hint = {}) const {
    findings.Add(code, document, document.ValueSpan(entry), message, hint);
  }
  void AddAt(Code code, const Item& item, const std::string& message) const {
    findings.Add(code, document, item.span, message);
  }
};

/// The first of the keys that is given; null when none is.
const Entry* FirstGiven(const Section& section, std::initializer_list<Key> keys) {
  for (const Key key : keys) {
    if (const Entry* const entry = section.Find(key)) return entry;
  }
  return nullptr;
}

// ---- Addressing ---------------------------------------------------------------------------------

void CheckWhetherAddressesCount(const Subject& subject) {
  const Entry* const given =
      FirstGiven(subject.section(), {Key::kAddress, Key::kNetmask, Key::kGateway});
  if (given == nullptr) return;
  const std::string key(given->key);
  switch (subject.adapter.addressing) {
    case Adapter::Addressing::kStatic:
      return;
    case Adapter::Addressing::kUnchanged:
      subject.Add(Code::kAddressesWithoutDhcpKey, *given,
                  key + " is not applied: without \"DHCP\" the addressing stays as it is");
      return;
    case Adapter::Addressing::kDhcp:
      subject.Add(Code::kAddressesWithDhcp, *given, key + " does not count: DHCP is on");
      return;
  }
}

void CheckStaticIsComplete(const Subject& subject) {
  if (!subject.IsStatic()) return;
  for (const Key key : {Key::kAddress, Key::kNetmask}) {
    const auto& given = key == Key::kAddress ? subject.adapter.addresses : subject.adapter.masks;
    if (!given.empty()) continue;
    // "10.0.0.5/24" has a finding of its own.
    const auto& addresses = subject.adapter.addresses;
    if (std::any_of(addresses.begin(), addresses.end(),
                    [](const Address& one) { return PrefixIn(one.item.text).has_value(); })) {
      return;
    }
    subject.Add(Code::kStaticWithoutAddress, *subject.section().Find(Key::kDhcp),
                "the addressing is static, but " + std::string(NameOf(key)) + " is not given");
    return;
  }
}

void CheckAddressAndMaskCounts(const Subject& subject) {
  const auto& addresses = subject.adapter.addresses;
  const auto& masks = subject.adapter.masks;
  if (!subject.IsStatic() || addresses.empty() || masks.empty()) return;
  if (addresses.size() == masks.size()) return;
  subject.Add(Code::kAddressAndMaskCounts, *subject.section().Find(Key::kNetmask),
              "Address gives " + std::to_string(addresses.size()) + ", but Netmask gives " +
                  std::to_string(masks.size()));
}

/// The network's own address and its broadcast address belong to no computer.
void CheckHostParts(const Subject& subject) {
  const auto& addresses = subject.adapter.addresses;
  const auto& masks = subject.adapter.masks;
  for (std::size_t i = 0; i < std::min(addresses.size(), masks.size()); ++i) {
    if (!subject.IsStatic() || !addresses[i].bits || !masks[i].bits) continue;
    const std::uint32_t hosts = ~*masks[i].bits;
    if (!IsContiguous(*masks[i].bits) || hosts <= 1 || *masks[i].bits == 0) continue;
    const std::uint32_t host = *addresses[i].bits & hosts;
    if (host != 0 && host != hosts) continue;
    subject.AddAt(Code::kUnusableAddress, addresses[i].item,
                  Quoted(addresses[i].item.text) + " is the " +
                      (host == 0 ? "network's own" : "broadcast") + " address with mask " +
                      std::string(masks[i].item.text));
  }
}

void CheckGateways(const Subject& subject) {
  const Adapter& adapter = subject.adapter;
  const auto& addresses = adapter.addresses;
  if (!HasKnownSubnets(adapter)) return;
  for (const Address& gateway : adapter.gateways) {
    if (!gateway.bits) continue;
    if (std::any_of(addresses.begin(), addresses.end(),
                    [&](const Address& own) { return own.bits == gateway.bits; })) {
      subject.AddAt(Code::kGatewayIsOwnAddress, gateway.item,
                    Quoted(gateway.item.text) + " is the adapter's own address");
    } else if (!IsInSubnet(*gateway.bits, adapter)) {
      subject.AddAt(Code::kGatewayOutside, gateway.item,
                    Quoted(gateway.item.text) + " is in no subnet of this adapter");
    }
  }
}

// ---- Numbered keys and DNS ----------------------------------------------------------------------

/// Whether what a numbered key says would count if it were read.
bool Counts(const Subject& subject, Key numbered) {
  return numbered == Key::kRoute || subject.adapter.setsDns;
}

void CheckUnread(const Subject& subject) {
  for (const Entry* const entry : subject.adapter.unread) {
    if (!Counts(subject, *entry->known)) continue;
    const Key count = *entry->known == Key::kRoute ? Key::kStaticRouteCount : Key::kDnsServerCount;
    const Entry* const given = subject.section().Find(count);
    const std::string countName(NameOf(count));
    subject.findings.Add(Code::kNumberedKeyNotRead, subject.document,
                         subject.document.KeySpan(*entry),
                         std::string(entry->key) + " is not read: " +
                             (given != nullptr ? countName + " is " + Quoted(given->FirstLine())
                                               : countName + " is not given"),
                         given != nullptr ? "" : "add " + countName);
  }
}

void CheckCounts(const Subject& subject) {
  const struct {
    Key count;
    Key numbered;
    std::size_t read;
  } kCounts[] = {
      {Key::kDnsServerCount, Key::kDnsServer, subject.adapter.servers.size()},
      {Key::kStaticRouteCount, Key::kRoute,
       subject.adapter.routes.size() + subject.adapter.emptyRoutes.size()},
  };
  for (const auto& row : kCounts) {
    const Entry* const count = subject.section().Find(row.count);
    if (count == nullptr || !Counts(subject, row.numbered)) continue;
    const std::uint32_t wanted = util::ParseUnsigned(count->FirstLine());
    const auto isUnread = [&row](const Entry* entry) { return entry->known == row.numbered; };
    const auto& unread = subject.adapter.unread;
    // Keys beyond a gap have a finding of their own.
    if (wanted <= row.read || std::any_of(unread.begin(), unread.end(), isUnread)) continue;
    subject.Add(Code::kCountTooLarge, *count,
                std::string(NameOf(row.count)) + " is " + std::to_string(wanted) + ", but " +
                    std::to_string(row.read) + " such keys are given");
  }
}

void CheckWhetherDnsCounts(const Subject& subject) {
  if (subject.adapter.setsDns) return;
  const Section& section = subject.section();
  const auto isServer = [](const Entry& entry) {
    return entry.known == Key::kDnsServer && entry.isFound && !entry.value.empty();
  };
  const auto server = std::find_if(section.entries.begin(), section.entries.end(), isServer);
  const Entry* given = section.Find(Key::kDnsSuffixes);
  if (server != section.entries.end()) given = &*server;
  if (given == nullptr) return;
  const std::string key(given->key);
  if (subject.adapter.dnsFromDhcp) {
    subject.Add(Code::kDnsFromDhcp, *given, key + " does not count: DNS-Use-DHCP is True");
  } else {
    subject.Add(Code::kDnsNotSet, *given, key + " is not applied: SetDNSInfo is not True");
  }
}

// ---- Routes and the adapter's place -------------------------------------------------------------

void CheckRoutes(const Subject& subject) {
  for (const Entry* const entry : subject.adapter.emptyRoutes) {
    subject.Add(Code::kShortRoute, *entry,
                std::string(entry->key) + " is empty: it counts, but gives no route");
  }
  for (const Route& route : subject.adapter.routes) {
    if (!route.destination.bits || !route.mask.bits || !IsContiguous(*route.mask.bits)) continue;
    if (*route.destination.bits == 0 && *route.mask.bits == 0) {
      subject.Add(Code::kDefaultRoute, *route.entry, "this is a default route");
    } else if ((*route.destination.bits & ~*route.mask.bits) != 0) {
      subject.AddAt(Code::kRouteHostBits, route.destination.item,
                    Quoted(route.destination.item.text) + " has bits outside the mask " +
                        std::string(route.mask.item.text));
    }
  }
}

void CheckLocation(const Subject& subject) {
  const Section& section = subject.section();
  constexpr Key kParts[] = {Key::kPciBus, Key::kPciDevice, Key::kPciFunction};
  const Entry* const given = FirstGiven(section, {kParts[0], kParts[1], kParts[2]});
  if (given == nullptr || subject.adapter.hasLocation) return;
  for (const Key part : kParts) {
    if (section.Find(part) != nullptr) continue;
    subject.Add(Code::kPartialLocation, *given,
                std::string(NameOf(part)) + " is missing, so the location is not used");
    return;
  }
}

}  // namespace

void CheckAdapters(const Document& document, const Wishes& wishes, Findings& findings) {
  constexpr void (*kRules[])(const Subject& subject) = {
      CheckWhetherAddressesCount,
      CheckStaticIsComplete,
      CheckAddressAndMaskCounts,
      CheckHostParts,
      CheckGateways,
      CheckUnread,
      CheckCounts,
      CheckWhetherDnsCounts,
      CheckRoutes,
      CheckLocation,
  };
  for (const Adapter& adapter : wishes.adapters) {
    for (const auto rule : kRules) rule({document, adapter, findings});
  }
}

}  // namespace tool::check
