#include "tool/io/Text.h"

#include <algorithm>

#include "common/util/Text.h"

namespace tool {

namespace {

/// Bytes of the UTF-8 character that the text begins with; 0 when it begins with none.
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
    if ((byte(i) & 0xC0) != 0x80) return 0;
  }
  // Overlong forms, halves of UTF-16 pairs, and what lies beyond Unicode.
  if (lead == 0xE0 && byte(1) < 0xA0) return 0;
  if (lead == 0xED && byte(1) > 0x9F) return 0;
  if (lead == 0xF0 && byte(1) < 0x90) return 0;
  if (lead == 0xF4 && byte(1) > 0x8F) return 0;
  return length;
}

}  // namespace

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

std::string Printable(std::string_view text) {
  constexpr char kHex[] = "0123456789ABCDEF";
  std::string printable;
  printable.reserve(text.size());
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (c == '\n') {
      printable += "\\n";
    } else if (c == '\r') {
      printable += "\\r";
    } else if (c == '\t') {
      printable += "\\t";
    } else if (byte < 0x20 || byte == 0x7F) {
      printable += {'\\', 'x', kHex[byte >> 4], kHex[byte & 0xF]};
    } else {
      printable += c;
    }
  }
  return printable;
}

std::size_t Width(std::string_view text) {
  return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), [](char c) {
    return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
  }));
}

std::string Padded(std::string_view text, std::size_t width) {
  std::string padded(text);
  padded.append(width - std::min(width, Width(text)), ' ');
  return padded;
}

std::string Counted(std::size_t count, const std::string& noun) {
  return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

std::string Rows(const std::vector<Row>& rows, const std::string& indent) {
  std::size_t width = 0;
  for (const Row& row : rows) width = std::max(width, Width(row.name));
  std::string text;
  for (const Row& row : rows) {
    text += indent + Padded(row.name, width) + "  " + (row.text.empty() ? "(empty)" : row.text);
    text += "\n";
  }
  return text;
}

std::string ListText(const std::vector<std::string>& items) {
  return items.empty() ? "-" : util::Join(items, ", ");
}

std::string Style::Wrap(const char* code, std::string_view text) const {
  if (!color_) return std::string(text);
  return "\x1B[" + std::string(code) + "m" + std::string(text) + "\x1B[0m";
}

}  // namespace tool
