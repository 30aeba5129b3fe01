// Counts the members of a plain struct, so that a table of them is held against it when compiling.
#pragma once

#include <cstddef>

namespace simulated {

struct AnyValue {
  template <class Type>
  operator Type() const;  // NOLINT(google-explicit-constructor): stands for a value of any type
};

template <class Struct, class... Given>
consteval std::size_t FieldCount() {
  if constexpr (requires { Struct{Given{}..., AnyValue{}}; }) {
    return FieldCount<Struct, Given..., AnyValue>();
  } else {
    return sizeof...(Given);
  }
}

}  // namespace simulated
