// The error of the user-context classes. Its text grows on its way out: every operation that it
// leaves adds a line.
#pragma once

#include <array>
#include <cstdint>

#include "common/err/GeneralError.h"

namespace sys {

/// Value 0. Thrown by value, but by pointer when memory has run out; `RethrowFrom` meets both.
/// It holds its text itself, so that it needs no memory and copies are whole.
class CImpersonationError final : public err::CGeneralError {
 public:
  CImpersonationError(const err::Site& site, std::uint32_t systemError);

  /// The message, then a line for each operation that the error has left. `message` stays the
  /// constant.
  virtual const char* Text() const;
  /// Adds the line of one operation, as far as there is room.
  virtual void AppendRethrow(const char* operation);

 private:
  void Append(const char* text);

  std::array<char, 512> text_{};
};

/// Throws by value what the call that has just failed left as the last error.
[[noreturn]] void ThrowImpersonationError(const err::Site& site);

/// Throws a pointer to the one record of the process, which nobody deletes; it lasts until memory
/// runs out again.
[[noreturn]] void ThrowOutOfMemory(const err::Site& site);

/// The result of `body`. Appends the operation's name to an error that leaves it.
template <class Body>
auto RethrowFrom(const char* operation, Body body) {
  try {
    return body();
  } catch (CImpersonationError& error) {
    error.AppendRethrow(operation);
    throw;
    // NOLINTNEXTLINE(misc-throw-by-value-catch-by-reference): see ThrowOutOfMemory.
  } catch (CImpersonationError* error) {
    error->AppendRethrow(operation);
    throw;
  }
}

}  // namespace sys
