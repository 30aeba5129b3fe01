// Reads the texts that describe a network adapter: its bus, its place there, its name.
#pragma once

#include <compare>
#include <cstdint>
#include <string>
#include <string_view>

namespace sys {

/// Where an adapter sits; without a known place all three numbers are `kUnknown`.
struct PciLocation {
  static constexpr std::uint32_t kUnknown = 0xFFFFFFFF;

  std::uint32_t bus = kUnknown;
  std::uint32_t device = kUnknown;
  std::uint32_t function = kUnknown;

  auto operator<=>(const PciLocation&) const = default;
  bool IsKnown() const { return bus != kUnknown && device != kUnknown && function != kUnknown; }
};

struct PnpDeviceId {
  bool isPci = false;
  /// 0 when the id does not hold them.
  std::uint32_t vendorId = 0;
  std::uint32_t deviceId = 0;
};

/// Reads an id like "PCI\VEN_8086&DEV_100E&...". A number that does not fit 32 bits counts as
/// absent.
PnpDeviceId ParsePnpDeviceId(std::string_view id);

/// The last three decimal numbers of the text, as in "PCI bus 0, device 25, function 0" and
/// "...;PCI bus %1, device %2, function %3;(0,25,0)". Unknown when there are fewer, or when one of
/// them does not fit 32 bits.
PciLocation ParseLocationInformation(std::string_view text);

/// The caption without its number: "[00000007] Intel Adapter" is "Intel Adapter".
std::string_view DescriptionOf(std::string_view caption);

/// The digits of a MAC address in capitals, without ":" and "-".
std::string NormalizedMac(std::string_view address);

}  // namespace sys
