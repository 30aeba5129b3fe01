#include "common/util/Format.h"

#include <cstdio>

namespace util {

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
