#include "platform/simulated/Ipv4.h"

#include <charconv>
#include <cstddef>

#include "platform/simulated/Machine.h"

namespace simulated {

std::optional<std::array<std::uint8_t, 4>> ParseIpv4(std::string_view text) {
  std::array<std::uint8_t, 4> bytes{};
  const char* at = text.data();
  const char* const end = at + text.size();
  for (std::size_t part = 0; part < bytes.size(); ++part) {
    if (part > 0 && (at == end || *at++ != '.')) return std::nullopt;
    const auto [next, error] = std::from_chars(at, end, bytes[part]);
    if (error != std::errc{}) return std::nullopt;
    // The system would read a number with a leading zero as an octal one.
    if (next - at > 1 && *at == '0') return std::nullopt;
    at = next;
  }
  if (at != end) return std::nullopt;
  return bytes;
}

std::string WithUnknown(std::string text) {
  constexpr std::string_view kAddress = "240.85.78.75";
  for (std::size_t at = 0; (at = text.find(kAddress)) != std::string::npos;) {
    text.replace(at, kAddress.size(), kUnknownText);
  }
  return text;
}

bool IsHostAddress(const std::string& text) { return ParseIpv4(text) && text != kNoAddressText; }

}  // namespace simulated
