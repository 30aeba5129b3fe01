// What a configuration file asks for, as the library understands it.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/LetterCase.h"
#include "common/sys/NicText.h"
#include "tool/check/Document.h"

namespace tool::check {

inline bool IsTrue(std::string_view value) { return base::SameText(value, "true"); }
inline bool IsFalse(std::string_view value) { return base::SameText(value, "false"); }

/// An item that is to be an IPv4 address or mask.
struct Address {
  /// As the library reads it.
  std::uint32_t Bits() const { return bits.value_or(0xFFFFFFFF); }

  Item item;
  /// The first part of the text in the highest bits; nothing when it is no dotted address.
  std::optional<std::uint32_t> bits;
};

Address ReadAddress(const Item& item);

/// The ones of the mask come first.
inline bool IsContiguous(std::uint32_t mask) { return ((~mask + 1) & ~mask) == 0; }

/// An IPv6 address, or one with a prefix length or zone behind it.
bool IsIpv6(std::string_view text);

/// The number of ones behind the last "/" of an address, or that the whole text is: a mask as
/// others write it. Nothing when there is no such number up to 32.
std::optional<std::uint32_t> PrefixIn(std::string_view text);
/// The mask of so many ones, in dotted form.
std::string MaskOf(std::uint32_t prefix);
/// An address as people write it; its first part is in the highest bits.
std::string Dotted(std::uint32_t address);

/// As the library compares routes: destination, mask, gateway and metric.
using ComparedRoute = std::array<std::uint32_t, 4>;

struct Route {
  ComparedRoute Compared() const {
    return {destination.Bits(), mask.Bits(), gateway.Bits(), metric};
  }

  const PlacedEntry* entry = nullptr;
  /// Whatever was given, in the order of the fields; three of them are addresses.
  std::vector<Item> fields;
  Address destination;
  Address mask;
  Address gateway;
  std::uint32_t metric = 0;
};

/// One adapter's section.
struct DesiredAdapter {
  enum class Addressing : std::uint8_t { kUnchanged, kDhcp, kStatic };

  bool IsStatic() const { return addressing == Addressing::kStatic; }
  /// The addressing is static, and all its addresses and masks can be read.
  bool HasKnownSubnets() const;
  /// For an adapter with known subnets.
  bool IsInSubnet(std::uint32_t address) const;
  /// The section's name in quotes.
  std::string Name() const;

  const Section* section = nullptr;
  Addressing addressing = Addressing::kUnchanged;
  // Given, whether they count or not.
  std::vector<Address> addresses;
  std::vector<Address> masks;
  std::vector<Address> gateways;
  bool dnsFromDhcp = false;
  bool setsDns = false;
  /// Numbered keys that are read, in file order.
  std::vector<const PlacedEntry*> servers;
  std::vector<Route> routes;
  /// They are counted, but give nothing.
  std::vector<const PlacedEntry*> emptyRoutes;
  /// Numbered keys that are not read.
  std::vector<const PlacedEntry*> unread;
  /// Only a location of three known numbers is used.
  sys::PciLocation location;
  bool hasLocation = false;
  /// Without separators; empty when none is given.
  std::string mac;
};

/// Section "Networking" and what decides about it.
struct Identity {
  enum class Membership : std::uint8_t { kUnchanged, kWorkgroup, kDomain };

  /// What the section gives; null when it does not.
  const PlacedEntry* Find(Key key) const { return section.Find(key); }
  bool IsDomain() const { return membership == Membership::kDomain; }
  bool IsWorkgroup() const { return membership == Membership::kWorkgroup; }

  const Section& section;
  Membership membership = Membership::kUnchanged;
  /// Of the workgroup or domain; null for the workgroup that is joined by default.
  const PlacedEntry* membershipName = nullptr;
  bool joinFirst = false;
  // What changes, as far as the file tells; a machine may know better.
  bool renames = false;
  bool joinsDomain = false;
  /// To a unit, by no join.
  bool movesAccount = false;
  /// A machine's directory has told so.
  bool isMoveKnown = false;
  /// Known of a machine only.
  bool leavesDomain = false;
};

/// Borrows from the document.
struct DesiredState {
  const Document& document;
  Identity identity;
  std::vector<DesiredAdapter> adapters;
  /// The run does not ask for the restart that it needs.
  bool suppressesRestart = false;
  /// A machine has told what changes.
  bool isOfMachine = false;
  /// Destination of a route of the machine that no section asks for, if it has one.
  std::string foreignRoute;
};

DesiredState ReadDesiredState(Document& document);

}  // namespace tool::check
