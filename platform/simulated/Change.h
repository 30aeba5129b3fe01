// What happened to the simulated computer, call by call, as plain values.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "platform/Variant.h"

namespace simulated {

struct Value;
/// Values by their names, in order.
using Fields = std::vector<std::pair<std::string, Value>>;

/// Null, a flag, a number, a text, a list of texts, or named values.
struct Value : std::variant<std::nullptr_t, bool, std::int64_t, std::string,
                            std::vector<std::string>, Fields> {
  using variant::variant;
  /// The value of this name; the null value when there is none.
  const Value& operator[](std::string_view name) const;
  /// The text; empty for any other value.
  const std::string& Text() const;
  bool IsNull() const { return index() == 0; }
  friend bool operator==(const Value& value, std::string_view text) {
    const auto* own = std::get_if<std::string>(&value);
    return own != nullptr && *own == text;
  }
};

/// A call that changed the machine or paused.
struct Change {
  /// One of `kCallNames`.
  std::string call;
  /// What it was asked to do, then the answer: "result", or "hresult" or "error" of a refusal.
  Fields fields;

  const Value& operator[](std::string_view name) const;
  friend bool operator==(const Change&, const Change&) = default;
};

/// Null for what is neither a flag, a number, a text nor a list of texts.
Value ToValue(const platform::Variant& variant);

}  // namespace simulated
