// A text and its pieces.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace base {

/// Without the blanks, tabs and carriage returns at both ends; a view into `text`.
std::string_view Trimmed(std::string_view text);

/// The pieces between the characters of `separators`, without the empty ones.
std::vector<std::string> Split(std::string_view text, std::string_view separators);

std::string Join(const std::vector<std::string>& pieces, std::string_view separator);

}  // namespace base
