#include "base/LetterCase.h"

#include <algorithm>

namespace base {
namespace {

char Fold(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

char Upper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

bool SameLetter(char left, char right) { return Fold(left) == Fold(right); }

}  // namespace

std::string Folded(std::string_view text) {
  std::string folded(text);
  std::transform(folded.begin(), folded.end(), folded.begin(), Fold);
  return folded;
}

void ToUpper(std::string& text) { std::transform(text.begin(), text.end(), text.begin(), Upper); }

bool SameText(std::string_view left, std::string_view right) {
  if (left.size() != right.size()) return false;
  // Nearly all texts that are the same are so letter by letter.
  return left == right || std::equal(left.begin(), left.end(), right.begin(), SameLetter);
}

bool StartsWith(std::string_view text, std::string_view start) {
  return SameText(text.substr(0, start.size()), start);
}

std::size_t Find(std::string_view text, std::string_view part, std::size_t from) {
  if (from > text.size()) return std::string_view::npos;
  const auto begin = text.begin() + static_cast<std::ptrdiff_t>(from);
  const auto found = std::search(begin, text.end(), part.begin(), part.end(), SameLetter);
  if (found == text.end() && !part.empty()) return std::string_view::npos;
  return static_cast<std::size_t>(found - text.begin());
}

}  // namespace base
