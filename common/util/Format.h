// printf into a text.
#pragma once

#include <cstdarg>
#include <string>

namespace util {

/// Empty when the formatter fails.
std::string FormatArguments(const char* format, std::va_list arguments);

}  // namespace util
