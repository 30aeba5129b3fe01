#include "platform/simulated/Text.h"

#include <algorithm>
#include <charconv>
#include <numeric>
#include <utility>
#include <vector>

#include "base/LetterCase.h"
#include "base/Numbers.h"
#include "platform/simulated/Machine.h"

namespace simulated {
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

std::string FoldedPath(std::string_view path) {
  std::string folded;
  for (std::size_t start = 0; start < path.size();) {
    const std::size_t end = std::min(path.find_first_of("\\/", start), path.size());
    const std::string_view name = path.substr(start, end - start);
    start = end + 1;
    if (name == "..") {
      folded.resize(std::min(folded.rfind('\\'), folded.size()));
    } else if (!name.empty() && name != ".") {
      folded.append(folded.empty() ? "" : "\\").append(base::Folded(name));
    }
  }
  return folded;
}

std::optional<std::string_view> Nearest(std::string_view name,
                                        std::span<const std::string_view> known) {
  if (name.size() > kLongestMisspelling) return std::nullopt;
  const std::string folded = base::Folded(name);
  std::optional<std::string_view> nearest;
  // A name that shares hardly a letter is no help.
  std::size_t limit = 2 + name.size() / 5;
  for (const std::string_view one : known) {
    // The lengths alone may tell that it is too far.
    if (one.size() > name.size() + limit || name.size() > one.size() + limit) continue;
    const std::size_t distance = Distance(base::Folded(one), folded);
    if (distance > limit || (nearest && distance == limit)) continue;
    limit = distance;
    nearest = one;
  }
  return nearest;
}

std::optional<std::array<std::uint8_t, 4>> ParseIpv4(std::string_view text) {
  std::array<std::uint8_t, 4> bytes{};
  const char* at = text.data();
  const char* const end = at + text.size();
  for (std::size_t part = 0; part < bytes.size(); ++part) {
    if (part > 0 && (at == end || *at++ != '.')) return std::nullopt;
    const auto [next, error] = std::from_chars(at, end, bytes[part]);
    if (error != std::errc{}) return std::nullopt;
    // The system would read a number with a leading zero as an octal one.
    if (next - at > 1 && *at == '0') return std::nullopt;
    at = next;
  }
  if (at != end) return std::nullopt;
  return bytes;
}

bool IsHostAddress(const std::string& text) { return ParseIpv4(text) && text != kNoAddressText; }

std::optional<std::uint32_t> ParseIndex(std::string_view text) {
  const auto number = base::ParseWhole<std::int64_t>(text);
  if (!number ||
      (!std::in_range<std::int32_t>(*number) && !std::in_range<std::uint32_t>(*number))) {
    return std::nullopt;
  }
  return static_cast<std::uint32_t>(*number);
}

}  // namespace simulated
