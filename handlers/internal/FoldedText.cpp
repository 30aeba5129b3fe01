#include "handlers/internal/FoldedText.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace {

template <typename T>
std::uint64_t Load(const char* at) {
  T number;
  std::memcpy(&number, at, sizeof number);
  return number;
}

/// The first `size` bytes (1 to 8) at `text` as one number. Texts of the same size give the same
/// number exactly when they are equal; no other byte is read.
std::uint64_t LoadWord(const char* text, std::size_t size) {
  if (size == 8) return Load<std::uint64_t>(text);
  if (size >= 4) return Load<std::uint32_t>(text) | Load<std::uint32_t>(text + size - 4) << 32;
  return Load<std::uint8_t>(text) | Load<std::uint8_t>(text + size / 2) << 8 |
         Load<std::uint8_t>(text + size - 1) << 16;
}

/// Turns the ASCII capitals among eight bytes into small letters.
std::uint64_t FoldCase(std::uint64_t word) {
  constexpr std::uint64_t kEach = 0x0101010101010101;
  const std::uint64_t low = word & (0x7F * kEach);
  const std::uint64_t fromA = low + (0x80 - 'A') * kEach;    // top bit: 'A' or beyond
  const std::uint64_t beyondZ = low + (0x7F - 'Z') * kEach;  // top bit: beyond 'Z'
  const std::uint64_t capital = fromA & ~beyondZ & ~word & (0x80 * kEach);
  return word | capital >> 2;  // 0x80 >> 2 is the bit that makes a letter small
}

}  // namespace

bool SameText(std::string_view a, std::string_view b, bool caseSensitive) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); i += 8) {
    const std::size_t size = std::min<std::size_t>(8, a.size() - i);
    const std::uint64_t left = LoadWord(a.data() + i, size);
    const std::uint64_t right = LoadWord(b.data() + i, size);
    if (left != right && (caseSensitive || FoldCase(left) != FoldCase(right))) return false;
  }
  return true;
}

// Two rounds for each word: after one, differences in the top bits would still be the same whatever
// the seed is, and could be made to cancel out.
std::uint32_t HashText(std::string_view text, std::uint64_t seed, bool caseSensitive) {
  std::uint64_t hash = seed + text.size();
  for (std::size_t i = 0; i < text.size(); i += 8) {
    const std::uint64_t word = LoadWord(text.data() + i, std::min<std::size_t>(8, text.size() - i));
    hash = (hash ^ (caseSensitive ? word : FoldCase(word))) * 0x9E3779B97F4A7C15;
    hash = (hash ^ hash >> 29) * 0xBF58476D1CE4E5B9;
    hash ^= hash >> 32;
  }
  return static_cast<std::uint32_t>(hash);
}
