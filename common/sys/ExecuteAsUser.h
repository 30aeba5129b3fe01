// A run as another user: declared, not done. `proc::CChildProcess` makes the object, logs that it
// would run, and destroys it.
#pragma once

#include <cstdint>
#include <string>

#include "common/sys/Impersonation.h"

namespace sys {

/// Takes nothing, so destroying it asks nothing of the machine.
class CExecuteAsUser final : public CImpersonation {
 public:
  /// `logSink` is borrowed.
  explicit CExecuteAsUser(logging::ILogSink& logSink) : CImpersonation(logSink) {}

  /// Deliberate: no caller can start anything as another user.
  std::int32_t Execute(const char* applicationName, const std::string& commandLine,
                       const std::string& user, const std::string& credential) = delete;
};

}  // namespace sys
