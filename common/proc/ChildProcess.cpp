#include "common/proc/ChildProcess.h"

#include <string_view>

#include "common/proc/OutputRelay.h"
#include "common/sys/ExecuteAsUser.h"
#include "common/util/Finally.h"
#include "common/util/LastError.h"
#include "platform/IPlatform.h"

namespace proc {
namespace {

using platform::Handle;

constexpr char kSource[] = R"(common\proc\ChildProcess)";
constexpr err::Site kNoPipe{kSource, "CChildProcess::InitializeStartupInfo", 372};
constexpr std::int32_t kErrorValue = 6;
constexpr int kAsUserLine = 214;

constexpr std::int32_t kNotRun = -1;
constexpr std::uint32_t kPollMs = 100;
constexpr std::uint32_t kKilledExitCode = 1;

platform::IProcesses& Port() { return platform::Current().Processes(); }

void CloseIfOpen(Handle* handle) {
  if (*handle != Handle::kNone) Port().Close(*handle);
  *handle = Handle::kNone;
}

/// The command line as a formatter without arguments leaves it: "%%" is "%".
std::string WithSinglePercents(std::string_view commandLine) {
  std::string text;
  for (std::size_t i = 0; i < commandLine.size(); ++i) {
    text += commandLine[i];
    if (commandLine.substr(i, 2) == "%%") ++i;
  }
  return text;
}

}  // namespace

CChildProcess::~CChildProcess() {
  lock_.Enter();
  const util::Finally leave([this] { lock_.Leave(); });
  if (process_.process != Handle::kInvalid) {
    if (Port().Wait(process_.process, timeoutMs_) == platform::kWaitTimeout) {
      Port().Terminate(process_.process, kKilledExitCode);
    }
    CloseProcessHandles();
  }
  CloseIfOpen(&stdoutRead_);
  CloseIfOpen(&stdinWrite_);
}

std::int32_t CChildProcess::ExecuteCmd(const char* applicationName, const std::string& commandLine,
                                       const std::string& user, const std::string& /*credential*/,
                                       bool wait, std::uint16_t showWindow, OutputRelay* relay) {
  lock_.Enter();
  const util::Finally leave([this] { lock_.Leave(); });
  if (!user.empty()) {
    const sys::CExecuteAsUser asUser(logSink_);
    logSink_.Log(logging::kProgress,
                 "%s:%d CChildProcess::ExecuteCmd() calling ExecuteAsUser:Execute()", kSource,
                 kAsUserLine);
    return kNotRun;
  }
  try {
    return Run(applicationName, WithSinglePercents(commandLine), wait, showWindow, relay);
  } catch (const ChildProcessError&) {
    return kNotRun;
  }
}

std::int32_t CChildProcess::Run(const char* applicationName, const std::string& commandLine,
                                bool wait, std::uint16_t showWindow, OutputRelay* relay) {
  platform::StartupInfo startup;
  InitializeStartupInfo(&startup);
  // The parent's copies of the child's pipe ends go when the run is over, however it ends.
  const util::Finally closeEnds([output = startup.standardOutput, input = startup.standardInput] {
    Port().Close(output);
    Port().Close(input);
  });
  startup.showWindow = showWindow;
  if (relay != nullptr) relay->Attach(&startup);

  if (process_.process != Handle::kInvalid) CloseProcessHandles();  // of an earlier run
  std::string writable = commandLine;  // the system may write into the line it is given
  if (!Port().Spawn(applicationName, writable.data(), /*environment=*/nullptr,
                    /*workingDirectory=*/nullptr, startup, &process_)) {
    return static_cast<std::int32_t>(util::LastError());
  }
  return wait ? WaitForExit(relay) : 0;
}

void CChildProcess::InitializeStartupInfo(platform::StartupInfo* startup) {
  CloseIfOpen(&stdoutRead_);
  CloseIfOpen(&stdinWrite_);
  if (!Port().MakePipe(&stdoutRead_, &startup->standardOutput, /*size=*/0)) {
    throw ChildProcessError{kNoPipe, kErrorValue, /*systemError=*/0};
  }
  Port().StopInheriting(stdoutRead_);
  if (!Port().MakePipe(&startup->standardInput, &stdinWrite_, /*size=*/0)) {
    Port().Close(startup->standardOutput);
    throw ChildProcessError{kNoPipe, kErrorValue, /*systemError=*/0};
  }
  Port().StopInheriting(stdinWrite_);
  startup->flags |= platform::kUseStandardHandles;
  startup->standardError = startup->standardOutput;
}

std::int32_t CChildProcess::WaitForExit(OutputRelay* relay) {
  std::uint32_t answer = platform::kWaitTimeout;
  while ((answer = Port().Wait(process_.process, kPollMs)) == platform::kWaitTimeout) {
    if (relay != nullptr) relay->Pump();
  }
  if (answer != platform::kWaitSignalled) return kNotRun;
  auto exitCode = static_cast<std::uint32_t>(kNotRun);
  Port().ExitCode(process_.process, &exitCode);
  CloseProcessHandles();
  if (relay != nullptr) relay->Pump();
  return static_cast<std::int32_t>(exitCode);
}

void CChildProcess::CloseProcessHandles() {
  Port().Close(process_.process);
  Port().Close(process_.thread);
  process_ = platform::ProcessInformation{};
}

}  // namespace proc
