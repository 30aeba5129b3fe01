#include "tool/explain/ErrorNumbers.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

#include "base/FindIn.h"
#include "base/Numbers.h"

namespace tool::explain {
namespace {

constexpr Reading kReadings[] = {
#define NUMBER(kind, number, name, meaning, remedy) \
  {NumberKind::k##kind, number, name, meaning, remedy},
#include "tool/explain/NumberList.def"
#undef NUMBER
};
static_assert(std::is_sorted(std::begin(kReadings), std::end(kReadings),
                             [](const Reading& left, const Reading& right) {
                               return left.kind != right.kind ? left.kind < right.kind
                                                              : left.number < right.number;
                             }));

/// The error of Windows that a COM result holds; any other number as it is.
std::uint32_t Unwrapped(std::uint32_t number) {
  return (number & 0xFFFF0000U) == 0x80070000U ? number & 0xFFFFU : number;
}

bool Reads(const Reading& reading, NumberKind kind, std::uint32_t number) {
  return reading.kind == kind &&
         reading.number == (kind == NumberKind::kSystem ? Unwrapped(number) : number);
}

}  // namespace

const char* TextOf(NumberKind kind) {
  constexpr const char* kTexts[] = {"the library's reply", "the library's log",
                                    "a network adapter's answer", "an error of Windows",
                                    "a COM result"};
  return kTexts[static_cast<std::size_t>(kind)];
}

std::optional<std::uint32_t> ParseNumber(std::string_view text) {
  const bool isHex = text.starts_with("0x") || text.starts_with("0X");
  const auto number = base::ParseWhole<std::int64_t>(text.substr(isHex ? 2 : 0), isHex ? 16 : 10);
  if (!number || *number < (isHex ? 0 : INT32_MIN) || *number > UINT32_MAX) return std::nullopt;
  return static_cast<std::uint32_t>(*number);
}

std::vector<Reading> ReadNumber(std::uint32_t number) {
  std::vector<Reading> readings;
  std::copy_if(std::begin(kReadings), std::end(kReadings), std::back_inserter(readings),
               [=](const Reading& reading) { return Reads(reading, reading.kind, number); });
  return readings;
}

const Reading* FindReading(NumberKind kind, std::uint32_t number, std::string_view source) {
  source.remove_prefix(source.find_last_of("\\/") + 1);
  return base::FindIn(kReadings, [&](const Reading& reading) {
    const std::string_view name = reading.name;
    return Reads(reading, kind, number) &&
           (name.ends_with(source) || name.find(" of ") == std::string_view::npos);
  });
}

const Reading* FindAnswer(std::uint32_t number, bool isOfAdapter) {
  constexpr std::uint32_t kDoneAfterRestart = 1;
  if (number <= kDoneAfterRestart) return nullptr;
  for (const NumberKind kind : {NumberKind::kAdapter, NumberKind::kSystem, NumberKind::kCom}) {
    if (kind == NumberKind::kAdapter && !isOfAdapter) continue;
    if (const Reading* const reading = FindReading(kind, number)) return reading;
  }
  return nullptr;
}

}  // namespace tool::explain
