#include "tool/io/CodePage.h"

#include <algorithm>

#include "tool/io/HostSystem.h"
#include "tool/io/ToolError.h"

namespace tool {
namespace {

std::uint32_t current = SystemCodePage();

bool IsAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(),
                     [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

/// The library's own texts, and the signs of the file format, are plain ASCII.
bool ExtendsAscii(std::uint32_t number) {
  std::string ascii = "\t\r\n";
  for (char c = ' '; c <= '~'; ++c) ascii += c;
  return DecodeBytes(number, ascii) == ascii;
}

}  // namespace

void UseCodePage(std::optional<std::uint32_t> number) {
  if (number && !(IsCodePage(*number) && ExtendsAscii(*number))) {
    throw ToolError("--code-page " + std::to_string(*number),
                    "is not a code page for configuration files", "use one such as 1252 or 65001");
  }
  current = number.value_or(SystemCodePage());
}

std::string ToUtf8(std::string_view bytes) {
  return IsAscii(bytes) ? std::string(bytes) : DecodeBytes(current, bytes);
}

std::optional<std::string> FromUtf8(std::string_view text) {
  return IsAscii(text) ? std::string(text) : EncodeText(current, text);
}

std::string BytesOf(const std::string& where, const std::string& text) {
  std::optional<std::string> bytes = FromUtf8(text);
  if (bytes) return *std::move(bytes);
  throw ToolError(where, "cannot be written in code page " + std::to_string(current),
                  "use only characters of that code page");
}

}  // namespace tool
