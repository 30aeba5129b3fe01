// The one error record of the library: thrown by value as the class of the throwing module, and
// turned into log lines and reply values by the handlers.
#pragma once

#include <cstdint>
#include <type_traits>

namespace err {

/// A place that throws. It is a named constant because its file, text and line reach the agent's
/// log and must not drift when the source is edited.
struct Site {
  const char* file;
  const char* message;
  std::int32_t line;
};

/// A failure. The texts are constants of the library and are never copied or freed, so building,
/// throwing and destroying a record cannot fail.
struct CGeneralError {
  CGeneralError(const Site& site, std::int32_t value, std::uint32_t systemError)
      : file(site.file),
        message(site.message),
        line(site.line),
        Value(value),
        SystemError(systemError) {}

  /// Source path of the throwing module, for example "common\sys\Registry".
  const char* file;
  const char* message;
  std::int32_t line;
  /// A code chosen by the thrower.
  std::int32_t Value;
  /// The system's last error at the throw, or the failing call's own result.
  std::uint32_t SystemError;
};

static_assert(std::is_trivially_copyable_v<CGeneralError>);

}  // namespace err
