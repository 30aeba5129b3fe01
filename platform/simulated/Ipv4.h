// IPv4 addresses as the simulated computer reads them.
#pragma once

#include <array>
#include <bit>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace simulated {

/// What stands for an unknown address where only four bytes can; no computer has it.
inline constexpr std::array<std::uint8_t, 4> kUnknownAddress{240, 85, 78, 75};
/// `text` with the word for the unknown in its place.
std::string WithUnknown(std::string text);

/// The four bytes of an address of four decimal numbers without leading zeros; nothing for any
/// other text.
std::optional<std::array<std::uint8_t, 4>> ParseIpv4(std::string_view text);
/// The same as a number in network order.
constexpr std::uint32_t Bits(const std::array<std::uint8_t, 4>& address) {
  return std::bit_cast<std::uint32_t>(address);
}
/// True for what a computer, a network or a gateway can have; the broadcast address is what an
/// unreadable text becomes on its way here.
bool IsHostAddress(const std::string& text);
}  // namespace simulated
