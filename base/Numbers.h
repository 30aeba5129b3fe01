// Numbers in texts.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace base {

/// The number that the leading digits make: 0 when there are none, 4294967295 when it is larger.
std::uint32_t ParseUnsigned(std::string_view text);

/// The number of a text of decimal digits only, the largest when it does not fit; nothing for any
/// other text.
std::optional<std::uint64_t> ParseDecimal(std::string_view text);

/// "1 file", "2 files".
std::string Counted(std::size_t count, std::string_view noun);

}  // namespace base
