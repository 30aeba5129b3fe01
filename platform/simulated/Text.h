// Comparing and reading texts the way the simulated computer does: without regard to ASCII case.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace simulated {

/// `text` with its ASCII letters in lower case.
std::string Folded(std::string_view text);
/// `path` in the one form that all its spellings share.
std::string FoldedPath(std::string_view path);
bool SameText(std::string_view left, std::string_view right);
bool StartsWith(std::string_view text, std::string_view start);
/// Where `part` stands first in `text` at or after `from`; npos when it does not.
std::size_t Find(std::string_view text, std::string_view part, std::size_t from = 0);
/// `text` without blanks, tabs and carriage returns at its ends.
std::string_view Trimmed(std::string_view text);

/// The one of `known` that `name` is likely to be a misspelling of; letter case does not count.
std::optional<std::string_view> Nearest(std::string_view name,
                                        std::span<const std::string_view> known);

/// The four bytes of an address of four decimal numbers without leading zeros; nothing for any
/// other text.
std::optional<std::array<std::uint8_t, 4>> ParseIpv4(std::string_view text);
/// An adapter index in decimal; the signed form of a large one is read as well.
std::optional<std::uint32_t> ParseIndex(std::string_view text);

}  // namespace simulated
