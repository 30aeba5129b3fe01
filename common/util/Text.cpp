#include "common/util/Text.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <limits>
#include <system_error>

namespace util {
namespace {

constexpr std::string_view kBlanks = " \t";

char Upper(char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }

bool SameLetter(char left, char right) { return Upper(left) == Upper(right); }

}  // namespace

void ToUpper(std::string& text) { std::transform(text.begin(), text.end(), text.begin(), Upper); }

bool EqualsIgnoringCase(std::string_view left, std::string_view right) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(), SameLetter);
}

bool ContainsIgnoringCase(std::string_view text, std::string_view part) {
  return std::search(text.begin(), text.end(), part.begin(), part.end(), SameLetter) !=
             text.end() ||
         part.empty();
}

std::string_view Trim(std::string_view text) {
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

std::uint32_t ParseUnsigned(std::string_view text) {
  std::uint32_t number = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
  if (result.ec == std::errc::result_out_of_range) return std::numeric_limits<std::uint32_t>::max();
  return number;
}

std::string Format(const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  std::string text = FormatArguments(format, arguments);
  va_end(arguments);
  return text;
}

std::string FormatArguments(const char* format, std::va_list arguments) {
  std::va_list counted;
  va_copy(counted, arguments);
  const int length = std::vsnprintf(nullptr, 0, format, counted);
  va_end(counted);
  if (length <= 0) return {};
  // One byte more than the text, for the NUL that the formatter writes.
  std::string text(static_cast<std::size_t>(length) + 1, '\0');
  if (std::vsnprintf(text.data(), text.size(), format, arguments) <= 0) return {};
  text.pop_back();
  return text;
}

}  // namespace util
