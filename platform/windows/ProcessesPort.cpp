#include "platform/IProcesses.h"
#include "platform/windows/Handles.h"
#include "platform/windows/WindowsHeader.h"
#include "platform/windows/WindowsPlatform.h"

namespace platform::windows {
namespace {

static_assert(kUseStandardHandles == STARTF_USESTDHANDLES);
static_assert(kWaitSignalled == WAIT_OBJECT_0);
static_assert(kWaitTimeout == WAIT_TIMEOUT);

DWORD ToSystem(StandardStream stream) {
  switch (stream) {
    case StandardStream::kInput:
      return STD_INPUT_HANDLE;
    case StandardStream::kOutput:
      return STD_OUTPUT_HANDLE;
    case StandardStream::kError:
      break;
  }
  return STD_ERROR_HANDLE;
}

HANDLE ToSystem(Handle handle) { return windows::ToSystem<HANDLE>(handle); }

class ProcessesPort final : public IProcesses {
 public:
  bool MakePipe(Handle* read, Handle* write, std::uint32_t size) override {
    SECURITY_ATTRIBUTES inheritable{sizeof inheritable, nullptr, TRUE};
    HANDLE readEnd = nullptr;
    HANDLE writeEnd = nullptr;
    if (!::CreatePipe(&readEnd, &writeEnd, &inheritable, size)) return false;
    *read = ToSeam<Handle>(readEnd);
    *write = ToSeam<Handle>(writeEnd);
    return true;
  }

  bool StopInheriting(Handle handle) override {
    return ::SetHandleInformation(ToSystem(handle), HANDLE_FLAG_INHERIT, 0) != FALSE;
  }

  bool Duplicate(Handle source, Handle* copy) override {
    const HANDLE self = ::GetCurrentProcess();
    HANDLE duplicate = nullptr;
    if (!::DuplicateHandle(self, ToSystem(source), self, &duplicate, 0, FALSE,
                           DUPLICATE_SAME_ACCESS)) {
      return false;
    }
    *copy = ToSeam<Handle>(duplicate);
    return true;
  }

  bool Spawn(const char* application, char* commandLine, const char* environment,
             const char* workingDirectory, const StartupInfo& startup,
             ProcessInformation* information) override {
    STARTUPINFOA info{};
    info.cb = sizeof info;
    info.dwFlags = startup.flags;
    info.wShowWindow = startup.showWindow;
    info.hStdInput = ToSystem(startup.standardInput);
    info.hStdOutput = ToSystem(startup.standardOutput);
    info.hStdError = ToSystem(startup.standardError);
    PROCESS_INFORMATION child{};
    // The system only reads the environment, whatever its parameter's type says.
    if (!::CreateProcessA(application, commandLine, nullptr, nullptr, TRUE, 0,
                          const_cast<char*>(environment), workingDirectory, &info, &child)) {
      return false;
    }
    *information = {ToSeam<Handle>(child.hProcess), ToSeam<Handle>(child.hThread),
                    child.dwProcessId, child.dwThreadId};
    return true;
  }

  std::uint32_t Wait(Handle handle, std::uint32_t timeoutMs) override {
    return ::WaitForSingleObject(ToSystem(handle), timeoutMs);
  }

  bool ExitCode(Handle process, std::uint32_t* exitCode) override {
    DWORD code = 0;
    if (!::GetExitCodeProcess(ToSystem(process), &code)) return false;
    *exitCode = code;
    return true;
  }

  bool Terminate(Handle process, std::uint32_t exitCode) override {
    return ::TerminateProcess(ToSystem(process), exitCode) != FALSE;
  }

  bool Peek(Handle pipe, std::uint32_t* available) override {
    DWORD bytes = 0;
    if (!::PeekNamedPipe(ToSystem(pipe), nullptr, 0, nullptr, &bytes, nullptr)) return false;
    *available = bytes;
    return true;
  }

  bool Read(Handle pipe, void* buffer, std::uint32_t size, std::uint32_t* read) override {
    DWORD bytes = 0;
    if (!::ReadFile(ToSystem(pipe), buffer, size, &bytes, nullptr)) return false;
    *read = bytes;
    return true;
  }

  bool Write(Handle file, const void* data, std::uint32_t size) override {
    DWORD written = 0;
    return ::WriteFile(ToSystem(file), data, size, &written, nullptr) != FALSE;
  }

  void Close(Handle handle) override {
    const LastErrorKeeper keeper;
    ::CloseHandle(ToSystem(handle));
  }

  Handle GetStandardHandle(StandardStream stream) override {
    return ToSeam<Handle>(::GetStdHandle(ToSystem(stream)));
  }

  bool SetStandardHandle(StandardStream stream, Handle handle) override {
    return ::SetStdHandle(ToSystem(stream), ToSystem(handle)) != FALSE;
  }
};

}  // namespace

IProcesses& WindowsPlatform::Processes() {
  static ProcessesPort port;
  return port;
}

}  // namespace platform::windows
