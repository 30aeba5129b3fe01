// Where log lines go. A line opens with its module's path and line number ("%s:%d "); the engine's
// "about to execute" and "NIC index" lines do not.
#pragma once

#include <cstdint>

namespace logging {

/// Levels of the agent's log.
constexpr std::uint32_t kFailure = 0;
constexpr std::uint32_t kProgress = 1;
constexpr std::uint32_t kDetail = 2;

class ILogSink {
 public:
  virtual ~ILogSink() = default;
  /// Writes one line: a printf-style format and its arguments.
  virtual void Log(std::uint32_t level, const char* format, ...) = 0;
};

}  // namespace logging
