#include "tool/io/Text.h"

#include <algorithm>

#include "base/Pieces.h"
#include "base/Utf8.h"

namespace tool {

std::string Printable(std::string_view text) {
  constexpr char kHex[] = "0123456789ABCDEF";
  constexpr std::string_view kNamed = "\n\r\t";
  std::string printable;
  printable.reserve(text.size());
  char before = '\0';
  for (const char c : base::ValidUtf8(text)) {
    const auto byte = static_cast<unsigned char>(c);
    // Terminals obey U+0080 to U+009F, which are C2 80 to C2 9F, as well.
    const bool isUpperControl = before == '\xC2' && byte < 0xA0;
    if (isUpperControl) printable.pop_back();
    const std::size_t named = kNamed.find(c);
    if (named != std::string_view::npos) {
      printable += {'\\', "nrt"[named]};
    } else if (byte < 0x20 || byte == 0x7F || isUpperControl) {
      printable += {'\\', 'x', kHex[byte >> 4], kHex[byte & 0xF]};
    } else {
      printable += c;
    }
    before = c;
  }
  return printable;
}

std::string Padded(std::string_view text, std::size_t width) {
  std::string padded(text);
  padded.append(width - std::min(width, base::Width(text)), ' ');
  return padded;
}

std::string Rows(const std::vector<Row>& rows, const std::string& indent) {
  std::size_t width = 0;
  for (const Row& row : rows) width = std::max(width, base::Width(row.name));
  std::string text;
  for (const Row& row : rows) {
    text += indent + Padded(row.name, width) + "  " + (row.text.empty() ? "(empty)" : row.text);
    text += "\n";
  }
  return text;
}

std::string ListText(const std::vector<std::string>& items) {
  return items.empty() ? "-" : base::Join(items, ", ");
}

std::string FirstFew(std::vector<std::string> items, std::size_t more) {
  if (more > 0) items.push_back("and " + std::to_string(more) + " more");
  return base::Join(items, ", ");
}

std::string Style::Wrap(const char* code, std::string_view text) const {
  if (!color_) return std::string(text);
  return "\x1B[" + std::string(code) + "m" + std::string(text) + "\x1B[0m";
}

}  // namespace tool
