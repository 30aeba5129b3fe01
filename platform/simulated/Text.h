// Paths, numbers and misspelled names as the simulated computer reads them.
#pragma once

#include <array>
#include <bit>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace simulated {

/// `path` in the one form that all its spellings share: letter case, "/", doubled separators, "."
/// and ".." make no difference.
std::string FoldedPath(std::string_view path);

/// The one of `known` that `name` is likely to be a misspelling of; letter case does not count.
std::optional<std::string_view> Nearest(std::string_view name,
                                        std::span<const std::string_view> known);

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
/// An adapter index in decimal; the signed form of a large one is read as well.
std::optional<std::uint32_t> ParseIndex(std::string_view text);

}  // namespace simulated
