#include "common/sys/NicText.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <system_error>

#include "base/LetterCase.h"

namespace sys {
namespace {

constexpr std::string_view kDecimalDigits = "0123456789";

/// The number that the leading digits of `text` make; none when there are none or too many.
std::optional<std::uint32_t> LeadingNumber(std::string_view text, int base) {
  std::uint32_t number = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), number, base);
  if (result.ec != std::errc{}) return std::nullopt;
  return number;
}

std::uint32_t HexAt(std::string_view text, std::size_t position) {
  if (position > text.size()) return 0;
  return LeadingNumber(text.substr(position), 16).value_or(0);
}

/// Cuts the last decimal number, and what follows it, off `text`.
std::optional<std::uint32_t> TakeLastNumber(std::string_view& text) {
  const std::size_t last = text.find_last_of(kDecimalDigits);
  if (last == std::string_view::npos) return std::nullopt;
  const std::size_t first = text.find_last_not_of(kDecimalDigits, last) + 1;  // npos + 1 is 0
  const std::string_view digits = text.substr(first, last - first + 1);
  text = text.substr(0, first);
  return LeadingNumber(digits, 10);
}

}  // namespace

PnpDeviceId ParsePnpDeviceId(std::string_view id) {
  constexpr std::string_view kVendor = "VEN_";
  constexpr std::size_t kVendorSearchStart = 4;
  constexpr std::size_t kDeviceOffset = 13;  // after "VEN_8086&DEV_"
  PnpDeviceId parsed;
  parsed.isPci = id.starts_with("PCI");
  const std::size_t vendor = id.find(kVendor, kVendorSearchStart);
  if (vendor != std::string_view::npos) {
    parsed.vendorId = HexAt(id, vendor + kVendor.size());
    parsed.deviceId = HexAt(id, vendor + kDeviceOffset);
  }
  return parsed;
}

PciLocation ParseLocationInformation(std::string_view text) {
  const auto function = TakeLastNumber(text);
  const auto device = TakeLastNumber(text);
  const auto bus = TakeLastNumber(text);
  if (!bus || !device || !function) return {};
  return {*bus, *device, *function};
}

std::string_view DescriptionOf(std::string_view caption) {
  // Deliberate: the character after the first "]" or blank goes too, and a caption with neither
  // loses its first character (the position of nothing, plus two, is one).
  const std::size_t kept = caption.find_first_of("] ") + 2;
  return caption.substr(std::min(kept, caption.size()));
}

std::string NormalizedMac(std::string_view address) {
  std::string digits(address);
  std::erase_if(digits, [](char c) { return c == ':' || c == '-'; });
  base::ToUpper(digits);
  return digits;
}

}  // namespace sys
