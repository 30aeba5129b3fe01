// Texts in UTF-8.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace base {

/// Bytes of the character that `text`, which is not empty, begins with; 0 when it begins with none.
std::size_t CharacterLength(std::string_view text);

bool IsUtf8(std::string_view text);

/// The text with U+FFFD in the place of each byte that is not part of a character.
std::string ValidUtf8(std::string_view text);

/// True for each byte of a character but its first.
inline bool IsMiddleOfCharacter(char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; }

/// The number of characters.
std::size_t Width(std::string_view text);

}  // namespace base
