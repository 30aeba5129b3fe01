// A table of words, written as one text.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

namespace base {

/// The words of a text between single blanks, as a table.
template <const auto& kText>
consteval auto Words() {
  constexpr std::string_view kWhole = kText;
  constexpr auto kCount =
      static_cast<std::size_t>(std::count(kWhole.begin(), kWhole.end(), ' ')) + 1;
  std::array<std::string_view, kCount> words;
  std::size_t start = 0;
  for (std::string_view& word : words) {
    word = kWhole.substr(start, kWhole.find(' ', start) - start);
    start += word.size() + 1;
  }
  return words;
}

}  // namespace base
