#include "tool/check/DesiredState.h"

#include <algorithm>
#include <utility>

#include "base/Numbers.h"
#include "handlers/internal/NumberedKeys.h"
#include "platform/simulated/Ipv4.h"
#include "tool/check/Findings.h"

namespace tool::check {
namespace {

std::vector<Address> ReadAddresses(const Document& document, const Section& section, Key key) {
  std::vector<Address> addresses;
  if (const PlacedEntry* const entry = section.Find(key)) {
    for (const Item& item : document.Items(*entry)) addresses.push_back(ReadAddress(item));
  }
  return addresses;
}

Route ReadRoute(const Document& document, const PlacedEntry& entry) {
  Route route;
  route.entry = &entry;
  route.fields = document.Items(entry);
  const auto field = [&route](std::size_t index) {
    return index < route.fields.size() ? ReadAddress(route.fields[index]) : Address{};
  };
  route.destination = field(0);
  route.mask = field(1);
  route.gateway = field(2);
  if (route.fields.size() > 4) route.metric = base::ParseUnsigned(route.fields[4].text);
  return route;
}

DesiredAdapter::Addressing ReadAddressing(const Section& section) {
  const std::string_view dhcp = section.Value(Key::kDhcp);
  if (dhcp.empty()) return DesiredAdapter::Addressing::kUnchanged;
  return IsFalse(dhcp) ? DesiredAdapter::Addressing::kStatic : DesiredAdapter::Addressing::kDhcp;
}

void ReadNumbered(Document& document, DesiredAdapter& adapter) {
  const Section& section = *adapter.section;
  const std::string name(section.name);
  const auto servers = NumberedKeys(document.File(), name, Key::kDnsServer, Key::kDnsServerCount);
  const auto routes = NumberedKeys(document.File(), name, Key::kRoute, Key::kStaticRouteCount);
  for (const PlacedEntry& entry : section.entries) {
    if (!entry.known || !RowOf(*entry.known).isNumbered || !entry.isFound) continue;
    const bool isServer = *entry.known == Key::kDnsServer;
    const auto& read = isServer ? servers : routes;
    if (!std::binary_search(read.begin(), read.end(), entry.number)) {
      adapter.unread.push_back(&entry);
    } else if (isServer) {
      adapter.servers.push_back(&entry);
    } else if (Route route = ReadRoute(document, entry); route.fields.empty()) {
      adapter.emptyRoutes.push_back(&entry);
    } else {
      adapter.routes.push_back(std::move(route));
    }
  }
}

void ReadLocation(DesiredAdapter& adapter) {
  const auto number = [&adapter](Key key) {
    const PlacedEntry* const entry = adapter.section->Find(key);
    return entry != nullptr ? base::ParseUnsigned(entry->FirstLine()) : sys::PciLocation::kUnknown;
  };
  adapter.location = {number(Key::kPciBus), number(Key::kPciDevice), number(Key::kPciFunction)};
  const auto& [bus, device, function] = adapter.location;
  constexpr std::uint32_t kUnknown = sys::PciLocation::kUnknown;
  adapter.hasLocation = bus != kUnknown && device != kUnknown && function != kUnknown;
  adapter.mac = sys::NormalizedMac(adapter.section->Value(Key::kMacAddress));
}

DesiredAdapter ReadAdapter(Document& document, const Section& section) {
  DesiredAdapter adapter;
  adapter.section = &section;
  adapter.addressing = ReadAddressing(section);
  adapter.addresses = ReadAddresses(document, section, Key::kAddress);
  adapter.masks = ReadAddresses(document, section, Key::kNetmask);
  adapter.gateways = ReadAddresses(document, section, Key::kGateway);
  adapter.dnsFromDhcp = IsTrue(section.Value(Key::kDnsUseDhcp));
  adapter.setsDns = !adapter.dnsFromDhcp && IsTrue(section.Value(Key::kSetDnsInfo));
  ReadNumbered(document, adapter);
  ReadLocation(adapter);
  return adapter;
}

Identity ReadIdentity(const Document& document) {
  Identity identity{document.SectionOf(SectionKind::kNetworking)};
  identity.joinFirst = IsTrue(identity.section.Value(Key::kJoinDomainBeforeNameChange));
  identity.renames = identity.Find(Key::kComputerName) != nullptr;
  const std::string_view workgroup = identity.section.Value(Key::kWorkgroup);
  identity.movesAccount = identity.Find(Key::kOrganizationalUnit) != nullptr && workgroup.empty();
  if (workgroup.empty()) return identity;
  const PlacedEntry* const domain = identity.Find(Key::kDomain);
  const PlacedEntry* const dnsDomain = identity.Find(Key::kDnsDomain);
  const bool isWorkgroup = IsTrue(workgroup);
  identity.membershipName = isWorkgroup || dnsDomain == nullptr ? domain : dnsDomain;
  identity.joinsDomain = !isWorkgroup && identity.membershipName != nullptr;
  if (identity.joinsDomain) {
    identity.membership = Identity::Membership::kDomain;
  } else if (!isWorkgroup || domain != nullptr) {
    identity.membership = Identity::Membership::kWorkgroup;
  }
  return identity;
}

}  // namespace

Address ReadAddress(const Item& item) {
  Address address{item, std::nullopt};
  if (const auto parts = simulated::ParseIpv4(item.text)) {
    std::uint32_t bits = 0;
    for (const std::uint8_t part : *parts) bits = bits << 8 | part;
    address.bits = bits;
  }
  return address;
}

bool IsIpv6(std::string_view text) {
  constexpr std::ptrdiff_t kMostColons = 7;
  const std::string_view address = text.substr(0, text.find_first_of("%/"));
  return address.find_first_not_of("0123456789abcdefABCDEF:.") == std::string_view::npos &&
         (address.find("::") != std::string_view::npos ||
          std::count(address.begin(), address.end(), ':') == kMostColons);
}

std::optional<std::uint32_t> PrefixIn(std::string_view text) {
  const std::string_view number = text.substr(text.rfind('/') + 1);
  const auto prefix = base::ParseDecimal(number);
  if (!prefix || *prefix > 32 || number.size() > 2) return {};
  return static_cast<std::uint32_t>(*prefix);
}

std::string MaskOf(std::uint32_t prefix) {
  return Dotted(prefix == 0 ? 0 : ~std::uint32_t{0} << (32 - prefix));
}

std::string Dotted(std::uint32_t address) {
  std::string text = std::to_string(address >> 24);
  for (const int shift : {16, 8, 0}) text += "." + std::to_string(address >> shift & 0xFF);
  return text;
}

bool DesiredAdapter::HasKnownSubnets() const {
  const auto isRead = [](const Address& address) { return address.bits.has_value(); };
  const auto isMask = [](const Address& mask) { return mask.bits && IsContiguous(*mask.bits); };
  return IsStatic() && !addresses.empty() && addresses.size() == masks.size() &&
         std::all_of(addresses.begin(), addresses.end(), isRead) &&
         std::all_of(masks.begin(), masks.end(), isMask);
}

bool DesiredAdapter::IsInSubnet(std::uint32_t address) const {
  for (std::size_t i = 0; i < addresses.size(); ++i) {
    if (((*addresses[i].bits ^ address) & *masks[i].bits) == 0) return true;
  }
  return false;
}

std::string DesiredAdapter::Name() const { return Quoted(section->name); }

DesiredState ReadDesiredState(Document& document) {
  DesiredState desired{document, ReadIdentity(document), {}, false, false, {}};
  for (const Section& section : document.Sections()) {
    if (section.kind == SectionKind::kAdapter) {
      desired.adapters.push_back(ReadAdapter(document, section));
    }
  }
  desired.suppressesRestart =
      IsFalse(document.SectionOf(SectionKind::kGlobal).Value(Key::kRebootAfterConfig));
  return desired;
}

}  // namespace tool::check
