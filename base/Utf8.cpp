#include "base/Utf8.h"

#include <algorithm>

namespace base {

std::size_t CharacterLength(std::string_view text) {
  const auto byte = [=](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned char lead = byte(0);
  if (lead < 0x80) return 1;
  const std::size_t length = lead < 0xC2   ? 0
                             : lead < 0xE0 ? 2
                             : lead < 0xF0 ? 3
                             : lead < 0xF5 ? 4
                                           : 0;
  if (text.size() < length) return 0;
  for (std::size_t i = 1; i < length; ++i) {
    if (!IsMiddleOfCharacter(text[i])) return 0;
  }
  // Overlong forms, halves of UTF-16 pairs, and code points outside Unicode.
  if (lead == 0xE0 && byte(1) < 0xA0) return 0;
  if (lead == 0xED && byte(1) > 0x9F) return 0;
  if (lead == 0xF0 && byte(1) < 0x90) return 0;
  if (lead == 0xF4 && byte(1) > 0x8F) return 0;
  return length;
}

bool IsUtf8(std::string_view text) {
  while (!text.empty()) {
    const std::size_t length = CharacterLength(text);
    if (length == 0) return false;
    text.remove_prefix(length);
  }
  return true;
}

std::string ValidUtf8(std::string_view text) {
  std::string valid;
  valid.reserve(text.size());
  while (!text.empty()) {
    const std::size_t length = CharacterLength(text);
    valid += length > 0 ? text.substr(0, length) : "\xEF\xBF\xBD";
    text.remove_prefix(std::max<std::size_t>(length, 1));
  }
  return valid;
}

std::size_t Width(std::string_view text) {
  return text.size() -
         static_cast<std::size_t>(std::count_if(text.begin(), text.end(), IsMiddleOfCharacter));
}

}  // namespace base
