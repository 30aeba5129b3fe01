// Child processes of the simulated computer, of which it knows one: the route tool. Pipes and
// standard handles carry nothing; they are only counted.
#include <algorithm>
#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "base/LetterCase.h"
#include "base/Numbers.h"
#include "base/Pieces.h"
#include "platform/IProcesses.h"
#include "platform/simulated/Codes.h"
#include "platform/simulated/Ipv4.h"
#include "platform/simulated/SimulatedPlatform.h"
#include "platform/simulated/Simulation.h"

namespace simulated {
namespace {

using platform::Handle;
using platform::StandardStream;

constexpr std::uint32_t kWaitFailed = 0xFFFFFFFF;

/// Runs a command line and answers the exit code; nothing when there is no such program.
std::optional<std::uint32_t> Run(Machine& machine, const std::string& command) {
  std::vector<PersistentRoute>& routes = machine.persistentRoutes;
  const std::vector<std::string> words = base::Split(command, " \t\r\n\v\f");
  const auto is = [&](std::size_t at, std::string_view text) {
    return at < words.size() && base::SameText(words[at], text);
  };
  if (!is(0, "route") && !is(0, "route.exe")) return std::nullopt;
  if (words.size() == 3 && is(1, "DELETE")) {
    const auto removed = std::erase_if(routes, [&](const PersistentRoute& route) {
      return base::SameText(route.destination, words[2]);
    });
    return removed == 0 ? 1 : 0;
  }
  if (words.size() != 9 || !is(1, "-p") || !is(2, "ADD") || !is(4, "mask") || !is(7, "METRIC")) {
    return 1;
  }
  // Metrics are unsigned on the command line; the table keeps their bits.
  const auto metric = base::ParseWhole<std::uint32_t>(words[8]);
  const bool isUnknown = machine.AssumesHosts() && words[6] == kUnknownText;
  if (!metric || !IsHostAddress(words[3]) || !ParseIpv4(words[5]) ||
      (!isUnknown && !IsHostAddress(words[6]))) {
    return 1;
  }
  if (isUnknown) machine.assumed = "hosts";
  routes.push_back({words[3], words[5], words[6], static_cast<std::int32_t>(*metric)});
  return 0;
}

class ProcessesPort final : public Port<platform::IProcesses> {
 public:
  using Port::Port;

  bool MakePipe(Handle* read, Handle* write, std::uint32_t) override {
    if (simulation_.Fails({"process.pipe"})) return false;
    *read = Make(0);
    *write = Make(0);
    return true;
  }

  bool StopInheriting(Handle handle) override { return Usable({"process.inherit"}, handle); }

  bool Duplicate(Handle source, Handle* copy) override {
    if (!Usable({"process.duplicate"}, source)) return false;
    *copy = Make(0);
    return true;
  }

  bool Spawn(const char* application, char* commandLine, const char*, const char*,
             const platform::StartupInfo&, platform::ProcessInformation* information) override {
    const std::string command = WithUnknown(commandLine != nullptr   ? commandLine
                                            : application != nullptr ? application
                                                                     : "");
    const Fault* fault = simulation_.Strike({"process.run", command});
    std::optional<std::uint32_t> exitCode;
    platform::Win32Error error = kFileNotFound;
    if (fault == nullptr) {
      exitCode = Run(simulation_.machine, command);
    } else if (OnlyChoosesResult(*fault)) {
      exitCode = static_cast<std::uint32_t>(*fault->result);
    } else {
      error = ToWin32Error(*fault);
    }
    Change& change = simulation_.Journal("process.run", {{"command", command}});
    if (!exitCode) {
      change.fields.emplace_back("error", error);
      return simulation_.Answer(error);
    }
    change.fields.emplace_back("result", static_cast<std::int32_t>(*exitCode));
    *information = {Make(*exitCode), Make(0), static_cast<std::uint32_t>(nextHandle_),
                    static_cast<std::uint32_t>(nextHandle_ + 2)};
    return true;
  }

  std::uint32_t Wait(Handle handle, std::uint32_t) override {
    return Usable({"process.wait"}, handle) ? platform::kWaitSignalled : kWaitFailed;
  }

  bool ExitCode(Handle process, std::uint32_t* exitCode) override {
    if (!Usable({"process.exit_code"}, process)) return false;
    const auto found = open_.find(process);
    if (found == open_.end()) return simulation_.Answer(kInvalidHandle);
    *exitCode = found->second;
    return true;
  }

  bool Terminate(Handle process, std::uint32_t) override {
    return Usable({"process.terminate"}, process);
  }

  bool Peek(Handle pipe, std::uint32_t* available) override {
    if (!Usable({"process.peek"}, pipe)) return false;
    *available = 0;
    return true;
  }

  bool Read(Handle pipe, void*, std::uint32_t, std::uint32_t*) override {
    return Usable({"process.read"}, pipe) && simulation_.Answer(kBrokenPipe);
  }

  bool Write(Handle file, const void*, std::uint32_t) override {
    return Usable({"process.write"}, file);
  }

  void Close(Handle handle) override {
    simulation_.Strike({"process.close"});
    if (open_.erase(handle) != 0) --simulation_.usage.processHandles;
  }

  platform::Handle GetStandardHandle(StandardStream stream) override {
    if (simulation_.Fails({"process.get_standard"})) return Handle::kInvalid;
    return standard_[static_cast<std::size_t>(stream)];
  }

  bool SetStandardHandle(StandardStream stream, Handle handle) override {
    if (simulation_.Fails({"process.set_standard"})) return false;
    standard_[static_cast<std::size_t>(stream)] = handle;
    return true;
  }

 private:
  platform::Handle Make(std::uint32_t exitCode) {
    nextHandle_ += 4;
    ++simulation_.usage.processHandles;
    return open_.emplace(Handle{nextHandle_}, exitCode).first->first;
  }

  /// True when `call` passes and `handle` can be used; otherwise the last error says why not.
  bool Usable(const Call& call, Handle handle) {
    if (simulation_.Fails(call)) return false;
    const bool isStandard =
        std::find(kStandard.begin(), kStandard.end(), handle) != kStandard.end();
    return isStandard || open_.contains(handle) || simulation_.Answer(kInvalidHandle);
  }

  /// Exit codes of processes by handle; other things have 0.
  std::unordered_map<Handle, std::uint32_t> open_;
  std::uint64_t nextHandle_ = 0x1000;
  /// What the standard streams are at first; always open, never counted.
  static constexpr std::array<platform::Handle, 3> kStandard{
      platform::Handle{3}, platform::Handle{7}, platform::Handle{11}};
  std::array<platform::Handle, 3> standard_ = kStandard;
};

}  // namespace

platform::IProcesses& SimulatedPlatform::Processes() { return Made<ProcessesPort>(&processes_); }

}  // namespace simulated
