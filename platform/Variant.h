// The value of a WMI property or parameter, reduced to what decisions need: empty apart from null,
// the raw 16-bit boolean, and the shape of an array.
#pragma once

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace platform {

/// `VT_EMPTY`: no value was ever stored.
struct Empty {
  bool operator==(const Empty&) const = default;
};

/// `VT_NULL`: the property exists and has no value.
struct Null {
  bool operator==(const Null&) const = default;
};

/// `VT_BOOL` with its bits as they stand; only -1 is true for WMI.
struct RawBool {
  std::int16_t bits = 0;
  bool operator==(const RawBool&) const = default;
};

/// `VT_ARRAY | VT_BSTR`. `dimensions` is 0 for a null array pointer; `items` is filled for
/// one-dimensional arrays only.
struct TextArray {
  std::vector<std::string> items;
  std::uint32_t dimensions = 1;
  bool operator==(const TextArray&) const = default;
};

/// Integers of every width up to 32 bits are held as `std::int32_t`, bit for bit.
using Variant = std::variant<Empty, Null, RawBool, std::int32_t, std::string, TextArray>;

/// True for the WMI boolean `VARIANT_TRUE` only.
constexpr RawBool kVariantTrue{-1};
constexpr RawBool kVariantFalse{0};

}  // namespace platform
