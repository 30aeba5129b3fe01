#include "base/Numbers.h"

#include <charconv>
#include <limits>
#include <system_error>

namespace base {

std::uint32_t ParseUnsigned(std::string_view text) {
  std::uint32_t number = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
  if (result.ec == std::errc::result_out_of_range) return std::numeric_limits<std::uint32_t>::max();
  return number;
}

std::optional<std::uint64_t> ParseDecimal(std::string_view text) {
  if (text.empty() || text.find_first_not_of("0123456789") != std::string_view::npos) return {};
  std::uint64_t number = std::numeric_limits<std::uint64_t>::max();
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

std::string Counted(std::size_t count, std::string_view noun) {
  return std::to_string(count) + " " + std::string(noun) + (count == 1 ? "" : "s");
}

}  // namespace base
