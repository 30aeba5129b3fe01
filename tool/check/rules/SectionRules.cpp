#include <algorithm>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "tool/check/rules/Rules.h"

namespace tool::check {
namespace {

Span HeaderOf(const Document& document, const Adapter& adapter) {
  return document.ItemOf(adapter.section->headers[0]).span;
}

std::string NameOf(const Adapter& adapter) { return Quoted(adapter.section->name); }

/// Adapters are looked up by their location first, so between two locations no MAC address counts.
void CheckSameAdapter(const Document& document, const Wishes& wishes, Findings& findings) {
  std::map<sys::PciLocation, const Adapter*> byLocation;
  std::unordered_map<std::string, const Adapter*> byMac;
  for (const Adapter& adapter : wishes.adapters) {
    const auto add = [&](const Adapter& earlier, const char* by) {
      findings.Add(
          Code::kSameAdapter, document, HeaderOf(document, adapter),
          NameOf(adapter) + " means the same adapter as " + NameOf(earlier) + ", by its " + by);
    };
    const Adapter* located = &adapter;
    const Adapter* withMac = &adapter;
    if (adapter.hasLocation) located = byLocation.emplace(adapter.location, &adapter).first->second;
    if (!adapter.mac.empty()) withMac = byMac.emplace(adapter.mac, &adapter).first->second;
    if (located != &adapter) {
      add(*located, "PCI location");
    } else if (withMac != &adapter && !(adapter.hasLocation && withMac->hasLocation)) {
      add(*withMac, "MAC address");
    }
  }
}

/// A section without a location takes the next free adapter, although a later one may name it.
void CheckUnlocated(const Document& document, const Wishes& wishes, Findings& findings) {
  const auto isLocated = [](const Adapter& adapter) {
    return adapter.hasLocation || !adapter.mac.empty();
  };
  const Adapter* located = nullptr;
  // NOLINTNEXTLINE(modernize-loop-convert): clang 14 cannot read the library's reversed views
  for (auto later = wishes.adapters.rbegin(); later != wishes.adapters.rend(); ++later) {
    const Adapter& adapter = *later;
    if (isLocated(adapter)) {
      located = &adapter;
    } else if (located != nullptr) {
      findings.Add(Code::kUnlocatedAdapter, document, HeaderOf(document, adapter),
                   NameOf(adapter) + " takes the next free adapter, which may be the one of " +
                       NameOf(*located));
    }
  }
}

void CheckAddressesTwice(const Document& document, const Wishes& wishes, Findings& findings) {
  std::unordered_map<std::uint32_t, const Adapter*> givenBy;
  for (const Adapter& adapter : wishes.adapters) {
    if (adapter.addressing != Adapter::Addressing::kStatic) continue;
    for (const Address& address : adapter.addresses) {
      if (!address.bits) continue;
      const auto [earlier, isNew] = givenBy.emplace(*address.bits, &adapter);
      if (isNew) continue;
      findings.Add(Code::kAddressTwice, document, address.item.span,
                   Quoted(address.item.text) + " is given in section " + NameOf(*earlier->second) +
                       " already");
    }
  }
}

void CheckRoutesOfSections(const Document& document, const Wishes& wishes, Findings& findings) {
  const Adapter* first = nullptr;
  for (const Adapter& adapter : wishes.adapters) {
    if (adapter.routes.empty()) continue;
    if (first == nullptr) {
      first = &adapter;
      continue;
    }
    findings.Add(
        Code::kRoutesTwice, document, document.KeySpan(*adapter.routes[0].entry),
        "the routes of " + NameOf(adapter) + " and of " + NameOf(*first) + " delete each other");
  }
}

/// The suffixes are a setting of the whole computer, although each section has its own.
void CheckSuffixes(const Document& document, const Wishes& wishes, Findings& findings) {
  const auto suffixesOf = [&document](const Entry& entry) {
    std::vector<std::string_view> suffixes;
    for (const Item& item : document.Items(entry)) suffixes.push_back(item.text);
    return suffixes;
  };
  const Adapter* first = nullptr;
  const Entry* given = nullptr;
  for (const Adapter& adapter : wishes.adapters) {
    const Entry* const entry = adapter.section->Find(Key::kDnsSuffixes);
    if (!adapter.setsDns || entry == nullptr) continue;
    if (first == nullptr) {
      first = &adapter;
      given = entry;
    } else if (suffixesOf(*entry) != suffixesOf(*given)) {
      findings.Add(Code::kSuffixesTwice, document, document.ValueSpan(*entry),
                   "the suffixes of " + NameOf(adapter) + " replace those of " + NameOf(*first));
    }
  }
}

/// Only when the file gives every adapter a static address can it be told what they reach.
void CheckRouteGateways(const Document& document, const Wishes& wishes, Findings& findings) {
  const auto& adapters = wishes.adapters;
  if (!std::all_of(adapters.begin(), adapters.end(), HasKnownSubnets)) return;
  for (const Adapter& adapter : adapters) {
    for (const Route& route : adapter.routes) {
      const auto reaches = [&route](const Adapter& one) {
        return IsInSubnet(*route.gateway.bits, one);
      };
      if (!route.gateway.bits || std::any_of(adapters.begin(), adapters.end(), reaches)) continue;
      findings.Add(Code::kRouteGatewayOutside, document, route.gateway.item.span,
                   Quoted(route.gateway.item.text) + " is in no subnet of the file's adapters");
    }
  }
}

/// Routes with the same destination that differ otherwise.
void CheckDestinations(const Document& document, const Wishes& wishes, Findings& findings) {
  for (const Adapter& adapter : wishes.adapters) {
    std::unordered_map<std::uint32_t, const Route*> byDestination;
    for (const Route& route : adapter.routes) {
      if (!route.destination.bits) continue;
      const auto [earlier, isNew] = byDestination.emplace(*route.destination.bits, &route);
      const Route& first = *earlier->second;
      const bool isSame = first.mask.bits == route.mask.bits &&
                          first.gateway.bits == route.gateway.bits && first.metric == route.metric;
      if (isNew || isSame) continue;
      findings.Add(Code::kSharedDestination, document, route.destination.item.span,
                   std::string(route.entry->key) + " and " + std::string(first.entry->key) +
                       " share the destination " + std::string(route.destination.item.text));
    }
  }
}

}  // namespace

void CheckSections(const Document& document, const Wishes& wishes, Findings& findings) {
  CheckSameAdapter(document, wishes, findings);
  CheckUnlocated(document, wishes, findings);
  CheckAddressesTwice(document, wishes, findings);
  CheckRoutesOfSections(document, wishes, findings);
  CheckSuffixes(document, wishes, findings);
  CheckRouteGateways(document, wishes, findings);
  CheckDestinations(document, wishes, findings);
}

}  // namespace tool::check
