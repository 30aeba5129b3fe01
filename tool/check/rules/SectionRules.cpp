#include <algorithm>
#include <map>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "tool/check/rules/Rules.h"

namespace tool::check {
namespace {

/// Tells of each section that has something which an earlier one has, too.
void ForEachFurther(const DesiredState& desired, const auto& has, const auto& tell) {
  const DesiredAdapter* first = nullptr;
  for (const DesiredAdapter& adapter : desired.adapters) {
    if (!has(adapter)) continue;
    if (first != nullptr) tell(*first, adapter);
    if (first == nullptr) first = &adapter;
  }
}

/// Adapters are looked up by their location first, so between two locations no MAC address counts.
void CheckSameAdapter(const DesiredState& desired, Findings& findings) {
  std::map<sys::PciLocation, const DesiredAdapter*> byLocation;
  std::unordered_map<std::string, const DesiredAdapter*> byMac;
  for (const DesiredAdapter& adapter : desired.adapters) {
    const auto add = [&](const DesiredAdapter& earlier, const char* by) {
      findings.AtHeader(
          Code::kSameAdapter, *adapter.section,
          adapter.Name() + " is the same adapter as " + earlier.Name() + ", by its " + by);
    };
    const DesiredAdapter* located = &adapter;
    const DesiredAdapter* withMac = &adapter;
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
void CheckUnlocated(const DesiredState& desired, Findings& findings) {
  const auto isLocated = [](const DesiredAdapter& adapter) {
    return adapter.hasLocation || !adapter.mac.empty();
  };
  const DesiredAdapter* located = nullptr;
  // NOLINTNEXTLINE(modernize-loop-convert): clang 14 cannot read the library's reversed views
  for (auto later = desired.adapters.rbegin(); later != desired.adapters.rend(); ++later) {
    const DesiredAdapter& adapter = *later;
    if (isLocated(adapter)) {
      located = &adapter;
    } else if (located != nullptr) {
      findings.AtHeader(Code::kUnlocatedAdapter, *adapter.section,
                        adapter.Name() + " takes the next free adapter, which may be the one of " +
                            located->Name());
    }
  }
}

void CheckAddressesTwice(const DesiredState& desired, Findings& findings) {
  std::unordered_map<std::uint32_t, const DesiredAdapter*> givenBy;
  for (const DesiredAdapter& adapter : desired.adapters) {
    if (!adapter.IsStatic()) continue;
    for (const Address& address : adapter.addresses) {
      if (!address.bits) continue;
      const auto [earlier, isNew] = givenBy.emplace(*address.bits, &adapter);
      if (isNew) continue;
      findings.OfItem(Code::kAddressTwice, address.item,
                      "is given in section " + earlier->second->Name() + " already");
    }
  }
}

/// Every section makes the routes of the computer its own: what the others have is deleted.
void CheckRoutesOfSections(const DesiredState& desired, Findings& findings) {
  const auto hasRoutes = [](const DesiredAdapter& adapter) { return !adapter.routes.empty(); };
  const auto tell = [&](const DesiredAdapter& first, const DesiredAdapter& later) {
    std::string effect = " undo each other: one run adds all of them, the next one deletes them";
    for (const Route& route : later.routes) {
      const auto isIt = [&](const Route& one) { return one.Compared() == route.Compared(); };
      if (std::any_of(first.routes.begin(), first.routes.end(), isIt)) {
        effect += "; the one to " + std::string(route.destination.item.text) + " is added twice";
        break;
      }
    }
    if (!desired.foreignRoute.empty()) {
      effect = " both delete the route of the machine to " + desired.foreignRoute +
               ": the second time that fails the run";
    }
    findings.AtKey(Code::kRoutesTwice, *later.routes[0].entry,
                   "the routes of " + later.Name() + " and of " + first.Name() + effect);
  };
  ForEachFurther(desired, hasRoutes, tell);
}

void CheckGatewaysOfSections(const DesiredState& desired, Findings& findings) {
  const auto hasGateway = [](const DesiredAdapter& adapter) {
    return adapter.IsStatic() && !adapter.gateways.empty();
  };
  const auto tell = [&](const DesiredAdapter& first, const DesiredAdapter& later) {
    findings.AtValue(Code::kTwoGateways, *later.section->Find(Key::kGateway),
                     later.Name() + " has a gateway, and so has " + first.Name());
  };
  ForEachFurther(desired, hasGateway, tell);
}

/// The suffixes are a setting of the whole computer, although each section has its own.
void CheckSuffixes(const DesiredState& desired, Findings& findings) {
  const auto suffixesOf = [&desired](const PlacedEntry& entry) {
    std::vector<std::string_view> suffixes;
    for (const Item& item : desired.document.Items(entry)) suffixes.push_back(item.text);
    return suffixes;
  };
  const auto hasSuffixes = [](const DesiredAdapter& adapter) {
    return adapter.setsDns && adapter.section->Find(Key::kDnsSuffixes) != nullptr;
  };
  const auto tell = [&](const DesiredAdapter& first, const DesiredAdapter& later) {
    const PlacedEntry& entry = *later.section->Find(Key::kDnsSuffixes);
    if (suffixesOf(entry) == suffixesOf(*first.section->Find(Key::kDnsSuffixes))) return;
    findings.AtValue(Code::kSuffixesTwice, entry,
                     "the suffixes of " + later.Name() + " replace those of " + first.Name());
  };
  ForEachFurther(desired, hasSuffixes, tell);
}

/// Only when the file gives every adapter a static address can it be told what they reach.
void CheckRouteGateways(const DesiredState& desired, Findings& findings) {
  const auto& adapters = desired.adapters;
  if (!std::all_of(adapters.begin(), adapters.end(),
                   [](const DesiredAdapter& one) { return one.HasKnownSubnets(); }))
    return;
  for (const DesiredAdapter& adapter : adapters) {
    for (const Route& route : adapter.routes) {
      const auto reaches = [&route](const DesiredAdapter& one) {
        return one.IsInSubnet(*route.gateway.bits);
      };
      if (!route.gateway.bits || std::any_of(adapters.begin(), adapters.end(), reaches)) continue;
      findings.OfItem(Code::kRouteGatewayOutside, route.gateway.item,
                      "is in no subnet of the file's adapters");
    }
  }
}

/// Routes with the same destination that differ otherwise.
void CheckDestinations(const DesiredState& desired, Findings& findings) {
  for (const DesiredAdapter& adapter : desired.adapters) {
    std::unordered_map<std::uint32_t, const Route*> byDestination;
    for (const Route& route : adapter.routes) {
      if (!route.destination.bits) continue;
      const auto [earlier, isNew] = byDestination.emplace(*route.destination.bits, &route);
      const Route& first = *earlier->second;
      if (isNew || first.Compared() == route.Compared()) continue;
      findings.At(Code::kSharedDestination, route.destination.item.span,
                  std::string(route.entry->key) + " and " + std::string(first.entry->key) +
                      " share the destination " + std::string(route.destination.item.text));
    }
  }
}

}  // namespace

void CheckSections(const DesiredState& desired, Findings& findings) {
  for (const auto rule :
       {CheckSameAdapter, CheckUnlocated, CheckAddressesTwice, CheckRoutesOfSections,
        CheckGatewaysOfSections, CheckSuffixes, CheckRouteGateways, CheckDestinations}) {
    rule(desired, findings);
  }
}

}  // namespace tool::check
