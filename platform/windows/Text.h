// Wide and narrow texts, converted in a code page; 0 is the system's ANSI code page.
#pragma once

#include <string>
#include <string_view>

namespace platform::windows {

/// Zeros inside are kept; a character that the code page lacks becomes its replacement. Throws
/// std::bad_alloc when memory runs out.
std::string ToNarrow(std::wstring_view wide, unsigned codePage = 0);

/// Zeros inside are kept. Throws std::bad_alloc when memory runs out.
std::wstring ToWide(std::string_view narrow, unsigned codePage = 0);

}  // namespace platform::windows
