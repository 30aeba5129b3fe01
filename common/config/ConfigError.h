// The error of the configuration engine: events, builder, rules and commands.
#pragma once

#include "common/err/GeneralError.h"

namespace config {

/// `Value` is 1 for an event that its scope does not accept, 0 for a missing prerequisite, 2 for
/// empty address lists, 4 for a command and 5 for a route that the machine refused; `SystemError`
/// is the machine's result.
struct ConfigError : err::CGeneralError {
  using err::CGeneralError::CGeneralError;
};

/// Throws ConfigError (value 4) unless a method returned 0 (done) or 1 (done after a restart).
inline void RequireDone(std::int32_t result, const err::Site& failure) {
  if (result == 0 || result == 1) return;
  throw ConfigError{failure, /*value=*/4, static_cast<std::uint32_t>(result)};
}

}  // namespace config
