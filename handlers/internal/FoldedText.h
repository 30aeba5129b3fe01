// Comparing and hashing short texts without regard to the letter case of ASCII letters, eight bytes
// at a time.
#pragma once

#include <cstdint>
#include <string_view>

/// Whether two texts are the same, exactly or but for the letter case of ASCII letters.
bool SameText(std::string_view a, std::string_view b, bool caseSensitive);

/// A hash that is equal for texts that are the same in the sense of `SameText`. Texts that collide
/// cannot be prepared without knowing the seed.
std::uint32_t HashText(std::string_view text, std::uint64_t seed, bool caseSensitive);
