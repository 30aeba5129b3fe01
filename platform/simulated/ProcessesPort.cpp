// Child processes of the simulated computer, of which it knows one: the route tool. Pipes and
// standard handles carry nothing; they are only counted.
#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <optional>
#include <sstream>
#include <string>
#include <unordered_map>
#include <vector>

#include "base/LetterCase.h"
#include "platform/IProcesses.h"
#include "platform/simulated/Codes.h"
#include "platform/simulated/Ports.h"
#include "platform/simulated/Simulation.h"
#include "platform/simulated/Text.h"

namespace simulated {
namespace {

using platform::Handle;
using platform::StandardStream;

constexpr std::uint32_t kWaitFailed = 0xFFFFFFFF;

/// True for what the route tool takes as an address of a network or a gateway; the broadcast
/// address is what an unreadable text becomes on its way here.
bool IsRouteAddress(const std::string& text) {
  return ParseIpv4(text) && text != "255.255.255.255";
}

std::uint32_t DeleteRoutes(std::vector<PersistentRoute>& routes, const std::string& destination) {
  const auto removed = std::erase_if(routes, [&](const PersistentRoute& route) {
    return base::SameText(route.destination, destination);
  });
  return removed == 0 ? 1 : 0;
}

std::uint32_t AddRoute(std::vector<PersistentRoute>& routes, PersistentRoute route,
                       const std::string& metric) {
  // Metrics are unsigned on the command line; the table keeps their bits.
  std::uint32_t number = 0;
  const char* const end = metric.data() + metric.size();
  const auto [rest, error] = std::from_chars(metric.data(), end, number);
  if (!IsRouteAddress(route.destination) || !ParseIpv4(route.mask) ||
      !IsRouteAddress(route.nextHop) || error != std::errc{} || rest != end) {
    return 1;
  }
  route.metric = static_cast<std::int32_t>(number);
  routes.push_back(std::move(route));
  return 0;
}

/// Runs a command line and answers the exit code; nothing when there is no such program.
std::optional<std::uint32_t> Run(Machine& machine, const std::string& command) {
  std::istringstream stream(command);
  std::vector<std::string> words;
  for (std::string word; stream >> word;) words.push_back(word);
  const auto is = [&](std::size_t at, std::string_view text) {
    return at < words.size() && base::SameText(words[at], text);
  };
  if (!is(0, "route") && !is(0, "route.exe")) return std::nullopt;
  if (words.size() == 3 && is(1, "DELETE")) {
    return DeleteRoutes(machine.persistentRoutes, words[2]);
  }
  if (words.size() == 9 && is(1, "-p") && is(2, "ADD") && is(4, "mask") && is(7, "METRIC")) {
    return AddRoute(machine.persistentRoutes, {words[3], words[5], words[6], 0}, words[8]);
  }
  return 1;
}

class ProcessesPort final : public platform::IProcesses {
 public:
  explicit ProcessesPort(Simulation& simulation) : simulation_(simulation) {}

  bool MakePipe(Handle* read, Handle* write, std::uint32_t) override {
    if (simulation_.Fails({.name = "process.pipe"})) return false;
    *read = Make(0);
    *write = Make(0);
    return true;
  }

  bool StopInheriting(Handle handle) override {
    return Usable({.name = "process.inherit"}, handle);
  }

  bool Duplicate(Handle source, Handle* copy) override {
    if (!Usable({.name = "process.duplicate"}, source)) return false;
    *copy = Make(0);
    return true;
  }

  bool Spawn(const char* application, char* commandLine, const char*, const char*,
             const platform::StartupInfo&, platform::ProcessInformation* information) override {
    const std::string command = commandLine != nullptr   ? commandLine
                                : application != nullptr ? application
                                                         : "";
    const Fault* fault = simulation_.Strike({.name = "process.run", .text = command});
    std::optional<std::uint32_t> exitCode;
    platform::Win32Error error = kFileNotFound;
    if (fault == nullptr) {
      exitCode = Run(simulation_.machine, command);
    } else if (OnlyChoosesResult(*fault)) {
      exitCode = static_cast<std::uint32_t>(*fault->result);
    } else {
      error = ToWin32Error(*fault);
    }
    Change& change = simulation_.machine.journal.emplace_back(
        simulated::Change{"process.run", Fields{{"command", command}}});
    if (!exitCode) {
      change.fields.emplace_back("error", error);
      return simulation_.Fail(error);
    }
    change.fields.emplace_back("result", static_cast<std::int32_t>(*exitCode));
    *information = {Make(*exitCode), Make(0), static_cast<std::uint32_t>(nextHandle_),
                    static_cast<std::uint32_t>(nextHandle_ + 2)};
    return true;
  }

  std::uint32_t Wait(Handle handle, std::uint32_t) override {
    return Usable({.name = "process.wait"}, handle) ? platform::kWaitSignalled : kWaitFailed;
  }

  bool ExitCode(Handle process, std::uint32_t* exitCode) override {
    if (!Usable({.name = "process.exit_code"}, process)) return false;
    const auto found = open_.find(static_cast<std::uint64_t>(process));
    if (found == open_.end()) return simulation_.Fail(kInvalidHandle);
    *exitCode = found->second;
    return true;
  }

  bool Terminate(Handle process, std::uint32_t) override {
    return Usable({.name = "process.terminate"}, process);
  }

  bool Peek(Handle pipe, std::uint32_t* available) override {
    if (!Usable({.name = "process.peek"}, pipe)) return false;
    *available = 0;
    return true;
  }

  bool Read(Handle pipe, void*, std::uint32_t, std::uint32_t*) override {
    return Usable({.name = "process.read"}, pipe) && simulation_.Fail(kBrokenPipe);
  }

  bool Write(Handle file, const void*, std::uint32_t) override {
    return Usable({.name = "process.write"}, file);
  }

  void Close(Handle handle) override {
    simulation_.Strike({.name = "process.close"});
    if (open_.erase(static_cast<std::uint64_t>(handle)) != 0) --simulation_.usage.processHandles;
  }

  platform::Handle GetStandardHandle(StandardStream stream) override {
    if (simulation_.Fails({.name = "process.get_standard"})) return Handle::kInvalid;
    return standard_[static_cast<std::size_t>(stream)];
  }

  bool SetStandardHandle(StandardStream stream, Handle handle) override {
    if (simulation_.Fails({.name = "process.set_standard"})) return false;
    standard_[static_cast<std::size_t>(stream)] = handle;
    return true;
  }

 private:
  platform::Handle Make(std::uint32_t exitCode) {
    nextHandle_ += 4;
    open_.emplace(nextHandle_, exitCode);
    ++simulation_.usage.processHandles;
    return Handle{nextHandle_};
  }

  /// True when `call` passes and `handle` can be used; otherwise the last error says why not.
  bool Usable(const Call& call, Handle handle) {
    if (simulation_.Fails(call)) return false;
    const bool isStandard =
        std::find(kStandard.begin(), kStandard.end(), handle) != kStandard.end();
    return isStandard || open_.contains(static_cast<std::uint64_t>(handle)) ||
           simulation_.Fail(kInvalidHandle);
  }

  Simulation& simulation_;
  /// Exit codes of processes by handle; other things have 0.
  std::unordered_map<std::uint64_t, std::uint32_t> open_;
  std::uint64_t nextHandle_ = 0x1000;
  /// What the standard streams are at first; always open, never counted.
  static constexpr std::array<platform::Handle, 3> kStandard{
      platform::Handle{3}, platform::Handle{7}, platform::Handle{11}};
  std::array<platform::Handle, 3> standard_ = kStandard;
};

}  // namespace

std::unique_ptr<platform::IProcesses> MakeProcesses(Simulation& simulation) {
  return std::make_unique<ProcessesPort>(simulation);
}

}  // namespace simulated
