#include "base/Pieces.h"

namespace base {

std::string_view Trimmed(std::string_view text) {
  constexpr std::string_view kBlanks = " \t\r";
  const std::size_t first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return text.substr(0, 0);
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

std::vector<std::string> Split(std::string_view text, std::string_view separators) {
  std::vector<std::string> pieces;
  for (std::size_t start = text.find_first_not_of(separators); start != std::string_view::npos;) {
    const std::size_t end = text.find_first_of(separators, start);
    pieces.emplace_back(text.substr(start, end - start));
    start = text.find_first_not_of(separators, end);
  }
  return pieces;
}

std::string Join(const std::vector<std::string>& pieces, std::string_view separator) {
  std::string text;
  for (const std::string& piece : pieces) {
    if (&piece != &pieces.front()) text += separator;
    text += piece;
  }
  return text;
}

}  // namespace base
