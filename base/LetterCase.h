// Texts whose letter case does not count. Only that of ASCII letters is folded, byte by byte, so
// that the result does not depend on the code page.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace base {

/// `text` with its letters small.
std::string Folded(std::string_view text);
/// Turns the letters into capitals, in place.
void ToUpper(std::string& text);

bool SameText(std::string_view left, std::string_view right);
bool StartsWith(std::string_view text, std::string_view start);
/// Where `part` first appears in `text` at or after `from`; npos when it does not.
std::size_t Find(std::string_view text, std::string_view part, std::size_t from = 0);

}  // namespace base
