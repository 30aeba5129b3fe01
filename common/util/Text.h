// Helpers for narrow texts. Letter case is folded for ASCII only; blanks are spaces and tabs.
#pragma once

#include <cstdarg>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace util {

/// Turns ASCII letters into capitals, in place.
void ToUpper(std::string& text);

bool EqualsIgnoringCase(std::string_view left, std::string_view right);

/// True when `part` stands somewhere in `text`, whatever the letter case.
bool ContainsIgnoringCase(std::string_view text, std::string_view part);

/// Without the blanks at both ends; a view into `text`.
std::string_view Trim(std::string_view text);

/// The pieces between the characters of `separators`, without the empty ones.
std::vector<std::string> Split(std::string_view text, std::string_view separators);

std::string Join(const std::vector<std::string>& pieces, std::string_view separator);

/// The number that the leading digits make: 0 when there are none, 4294967295 when it is larger.
std::uint32_t ParseUnsigned(std::string_view text);

/// printf into a text; empty when the formatter fails.
std::string Format(const char* format, ...);
std::string FormatArguments(const char* format, std::va_list arguments);

}  // namespace util
