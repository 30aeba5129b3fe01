#include "base/Nearest.h"

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <utility>
#include <vector>

#include "base/LetterCase.h"

namespace base {
namespace {

/// A longer name is no misspelling of anything.
constexpr std::size_t kLongestMisspelling = 60;

/// How many letters must be inserted, removed or replaced to make one text the other.
std::size_t Distance(std::string_view left, std::string_view right) {
  std::vector<std::size_t> row(right.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 0; i < left.size(); ++i) {
    std::size_t diagonal = std::exchange(row[0], i + 1);
    for (std::size_t j = 0; j < right.size(); ++j) {
      const std::size_t replaced = diagonal + (left[i] == right[j] ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({replaced, row[j] + 1, diagonal + 1});
    }
  }
  return row.back();
}

}  // namespace

std::optional<std::string_view> Nearest(std::string_view name,
                                        std::span<const std::string_view> known,
                                        std::optional<std::size_t> most) {
  if (name.size() > kLongestMisspelling) return std::nullopt;
  const std::string folded = Folded(name);
  std::optional<std::string_view> nearest;
  // A name that shares hardly a letter is no help.
  std::size_t limit = most.value_or(2 + name.size() / 5);
  for (const std::string_view one : known) {
    // The lengths alone may tell that it is too far.
    if (one.size() > name.size() + limit || name.size() > one.size() + limit) continue;
    const std::size_t distance = Distance(Folded(one), folded);
    if (distance > limit || (nearest && distance == limit)) continue;
    limit = distance;
    nearest = one;
  }
  return nearest;
}

}  // namespace base
