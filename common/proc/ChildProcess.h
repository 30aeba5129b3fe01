// Runs one external command line as a child process.
#pragma once

#include <cstdint>
#include <string>

#include "common/err/GeneralError.h"
#include "common/lang/CriticalSection.h"
#include "common/logging/ILogSink.h"
#include "platform/IProcesses.h"

namespace proc {

class OutputRelay;

/// Value 6, system error 0.
struct ChildProcessError : err::CGeneralError {
  using err::CGeneralError::CGeneralError;
};

/// One run at a time; a run and the destruction hold the object's lock throughout.
class CChildProcess {
 public:
  static constexpr std::uint32_t kWithoutLimit = 0xFFFFFFFF;

  /// `logSink` is borrowed. `timeoutMs` is how long the destructor waits for a child that still
  /// runs before it ends it.
  CChildProcess(logging::ILogSink& logSink, std::uint32_t timeoutMs)
      : timeoutMs_(timeoutMs), logSink_(logSink) {}
  virtual ~CChildProcess();

  /// Starts `commandLine` ("%%" in it means "%"). The result is the child's exit code when
  /// `wait` is set, 0 when it is not, the system's error when the child could not be started, and
  /// -1 in every other case. A non-empty `user` only logs and gives -1: runs as another user are
  /// declared but not done. `applicationName` and `relay` may be null. Without a relay nothing
  /// reads the child's output; a child that writes more than a pipe holds then waits for ever.
  std::int32_t ExecuteCmd(const char* applicationName, const std::string& commandLine,
                          const std::string& user, const std::string& credential, bool wait,
                          std::uint16_t showWindow, OutputRelay* relay);

 private:
  void InitializeStartupInfo(platform::StartupInfo* startup);
  std::int32_t Run(const char* applicationName, const std::string& commandLine, bool wait,
                   std::uint16_t showWindow, OutputRelay* relay);
  std::int32_t WaitForExit(OutputRelay* relay);
  void CloseProcessHandles();

  platform::Handle stdoutRead_ = platform::Handle::kNone;
  platform::Handle stdinWrite_ = platform::Handle::kNone;
  platform::ProcessInformation process_;
  std::uint32_t timeoutMs_;
  lang::CriticalSection lock_;
  logging::ILogSink& logSink_;
};

}  // namespace proc
