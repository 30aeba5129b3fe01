// Child processes of the simulated computer, of which it knows one: the route tool. Pipes and
// standard handles carry nothing; they are only counted.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>

#include "platform/IProcesses.h"
#include "platform/simulated/Simulation.h"

namespace simulated {

class ProcessesPort final : public platform::IProcesses {
 public:
  explicit ProcessesPort(Simulation& simulation) : simulation_(simulation) {}

  bool MakePipe(platform::Handle* read, platform::Handle* write, std::uint32_t size) override;
  bool StopInheriting(platform::Handle handle) override;
  bool Duplicate(platform::Handle source, platform::Handle* copy) override;
  bool Spawn(const char* application, char* commandLine, const char* environment,
             const char* workingDirectory, const platform::StartupInfo& startup,
             platform::ProcessInformation* information) override;
  std::uint32_t Wait(platform::Handle handle, std::uint32_t timeoutMs) override;
  bool ExitCode(platform::Handle process, std::uint32_t* exitCode) override;
  bool Terminate(platform::Handle process, std::uint32_t exitCode) override;
  bool Peek(platform::Handle pipe, std::uint32_t* available) override;
  bool Read(platform::Handle pipe, void* buffer, std::uint32_t size, std::uint32_t* read) override;
  bool Write(platform::Handle file, const void* data, std::uint32_t size) override;
  void Close(platform::Handle handle) override;
  platform::Handle GetStandardHandle(platform::StandardStream stream) override;
  bool SetStandardHandle(platform::StandardStream stream, platform::Handle handle) override;

 private:
  platform::Handle Make(std::uint32_t exitCode);
  /// True when `call` passes and `handle` can be used; otherwise the last error says why not.
  bool Usable(const Call& call, platform::Handle handle);

  Simulation& simulation_;
  /// Exit codes of processes by handle; other things have 0.
  std::unordered_map<std::uint64_t, std::uint32_t> open_;
  std::uint64_t nextHandle_ = 0x1000;
  /// What the standard streams are at first; always open, never counted.
  static constexpr std::array<platform::Handle, 3> kStandard{
      platform::Handle{3}, platform::Handle{7}, platform::Handle{11}};
  std::array<platform::Handle, 3> standard_ = kStandard;
};

}  // namespace simulated
