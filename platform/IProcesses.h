// Child processes, pipes and standard handles. Each operation is one system call and decides
// nothing; what answers false leaves its reason in `IErrors::LastError`.
#pragma once

#include <cstdint>
#include <string>

namespace platform {

/// A process, thread or pipe end.
enum class Handle : std::uint64_t { kNone = 0, kInvalid = ~std::uint64_t{0} };

enum class StandardStream : std::uint8_t { kInput, kOutput, kError };

constexpr std::uint32_t kUseStandardHandles = 0x100;  // STARTF_USESTDHANDLES
constexpr std::uint32_t kWaitSignalled = 0;           // WAIT_OBJECT_0
constexpr std::uint32_t kWaitTimeout = 258;           // WAIT_TIMEOUT

/// What a child starts with (`STARTUPINFOA`).
struct StartupInfo {
  std::uint32_t flags = 0;
  std::uint16_t showWindow = 0;
  Handle standardInput = Handle::kNone;
  Handle standardOutput = Handle::kNone;
  Handle standardError = Handle::kNone;
};

/// What the system answers for a started child (`PROCESS_INFORMATION`). The caller closes both
/// handles.
struct ProcessInformation {
  Handle process = Handle::kInvalid;
  Handle thread = Handle::kInvalid;
  std::uint32_t processId = 0;
  std::uint32_t threadId = 0;
};

class IProcesses {
 public:
  virtual ~IProcesses() = default;
  /// Makes a pipe with two inheritable ends; `size` 0 is the system's default. The caller closes
  /// both.
  virtual bool MakePipe(Handle* read, Handle* write, std::uint32_t size) = 0;
  /// Makes a handle that children do not inherit.
  virtual bool StopInheriting(Handle handle) = 0;
  /// Duplicates a handle with the same access, not inheritable. The caller closes both.
  virtual bool Duplicate(Handle source, Handle* copy) = 0;
  /// Starts a child that inherits the inheritable handles. `application`, `environment` and
  /// `workingDirectory` may be null; the system may write into `commandLine`.
  virtual bool Spawn(const char* application, char* commandLine, const char* environment,
                     const char* workingDirectory, const StartupInfo& startup,
                     ProcessInformation* information) = 0;
  /// `kWaitSignalled`, `kWaitTimeout` or another system answer.
  virtual std::uint32_t Wait(Handle handle, std::uint32_t timeoutMs) = 0;
  virtual bool ExitCode(Handle process, std::uint32_t* exitCode) = 0;
  virtual bool Terminate(Handle process, std::uint32_t exitCode) = 0;
  /// Counts the bytes that can be read from a pipe at once.
  virtual bool Peek(Handle pipe, std::uint32_t* available) = 0;
  virtual bool Read(Handle pipe, void* buffer, std::uint32_t size, std::uint32_t* read) = 0;
  virtual bool Write(Handle file, const void* data, std::uint32_t size) = 0;
  virtual void Close(Handle handle) = 0;
  virtual Handle GetStandardHandle(StandardStream stream) = 0;
  virtual bool SetStandardHandle(StandardStream stream, Handle handle) = 0;
};

}  // namespace platform
