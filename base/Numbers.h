// Numbers in texts.
#pragma once

#include <charconv>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

namespace base {

/// The number that the leading digits make: 0 when there are none, 4294967295 when it is larger.
std::uint32_t ParseUnsigned(std::string_view text);

/// The number of a text of decimal digits only, the largest when it does not fit; nothing for any
/// other text.
std::optional<std::uint64_t> ParseDecimal(std::string_view text);

/// "1 file", "2 files".
std::string Counted(std::size_t count, std::string_view noun);

/// The number that all of a text is; none for any other text, and for one out of range.
template <class Number>
std::optional<Number> ParseWhole(std::string_view text, int base = 10) {
  Number number = 0;
  const char* const end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, number, base);
  return error == std::errc{} && rest == end ? std::optional(number) : std::nullopt;
}

}  // namespace base
