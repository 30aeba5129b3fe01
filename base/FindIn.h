// The first item of a list that fits.
#pragma once

#include <algorithm>
#include <iterator>

namespace base {

/// Null when no item `matches`.
template <class Items, class Matches>
constexpr auto* FindIn(Items& items, Matches matches) {
  const auto found = std::find_if(std::begin(items), std::end(items), matches);
  return found == std::end(items) ? nullptr : &*found;
}

}  // namespace base
