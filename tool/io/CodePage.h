// The code page of the bytes in configuration files and on machines. What the tool reads from its
// command line and from JSON, and all that it writes, is UTF-8.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tool {

/// From now on this code page; without a number the system's. Throws ToolError for one that the
/// system does not know, or that does not extend ASCII.
void UseCodePage(std::optional<std::uint32_t> number);

std::string ToUtf8(std::string_view bytes);

/// Nothing when the code page lacks one of the characters.
std::optional<std::string> FromUtf8(std::string_view text);

/// The same for a text that the user gave as `where`. Throws ToolError.
std::string BytesOf(const std::string& where, const std::string& text);

}  // namespace tool
