// What all ports of one simulated machine share: the machine, the last error, what callers hold
// open, and the one place that counts calls and lets faults strike.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "base/Words.h"
#include "platform/Types.h"
#include "platform/simulated/Machine.h"

namespace simulated {

/// What callers of the machine have not given back yet.
struct Usage {
  /// Apartments entered less apartments left, failed entries included.
  int apartments = 0;
  /// Living locators, connections, row sets, objects and directory containers.
  int comObjects = 0;
  int registryKeys = 0;
  int serviceHandles = 0;
  int policies = 0;
  /// Pipe ends, processes and threads.
  int processHandles = 0;
  int heapBlocks = 0;

  bool operator==(const Usage&) const = default;
};

inline constexpr char kCallText[] =
    "directory.bind directory.enter directory.leave directory.move directory.name "
    "file.attributes file.copy file.delete file.module file.move file.read file.same "
    "file.write host.parse host.resolve host.start library.call library.find library.load "
    "lsa.close lsa.dns lsa.open lsa.primary lsa.workgroup process.close process.duplicate "
    "process.exit_code process.get_standard process.inherit process.peek process.pipe "
    "process.read process.run process.set_standard process.terminate process.wait "
    "process.write registry.close registry.delete registry.open registry.query registry.set "
    "security.acl_size security.add_entry security.allocate security.close security.copy_sid "
    "security.get_entry security.get_list security.get_object security.init_acl "
    "security.init_descriptor security.revert security.set_list security.set_object "
    "security.set_station security.token_user security.unload_profile "
    "security.valid_descriptor service.close service.open service.open_manager service.start "
    "service.start_type sleep wmi.class wmi.connect wmi.definition wmi.enter wmi.get "
    "wmi.instances wmi.leave wmi.locator wmi.method wmi.next wmi.put wmi.query "
    "wmi.secure_process wmi.secure_proxy wmi.spawn";
/// Every kind of call to the machine by the name that faults give it.
inline constexpr auto kCallNames = base::Words<kCallText>();

/// One of `kCallNames`; the compiler refuses any other.
class CallName {
 public:
  // NOLINTNEXTLINE(google-explicit-constructor): stands for a literal in a call's description.
  consteval CallName(const char* name) : text_(name) {
    for (const std::string_view known : kCallNames) {
      if (known == text_) return;
    }
    throw "unknown call";
  }
  constexpr std::string_view Text() const { return text_; }

 private:
  std::string_view text_;
};

/// A call to the machine as the matchers of a fault see it.
struct Call {
  CallName name;
  /// Query, command line, path or paths.
  std::string_view text = {};
  std::string_view method = {};
  std::string_view service = {};
  /// Name of a registry value, host, property or library.
  std::string_view item = {};
};

enum class ApartmentKind : std::uint8_t { kMultithreaded, kSingleThreaded };

/// WinSock was started: a matter of this process, whatever machine it works on.
inline std::atomic<bool> socketsStarted = false;

class Simulation {
 public:
  /// Borrows the machine.
  explicit Simulation(Machine& borrowed) : machine(borrowed) {}
  Simulation(const Simulation&) = delete;
  Simulation& operator=(const Simulation&) = delete;

  /// Counts the call. The first fault that strikes it, null when it goes through.
  const Fault* Strike(const Call& call);
  /// As `Strike`, telling the failure of a COM call.
  std::optional<platform::HResult> RefuseCom(const Call& call);
  /// As `Strike`, telling the error number of a system call; the last error stays.
  std::optional<platform::Win32Error> Refuse(const Call& call);
  /// As `Strike`: true when the call fails; the last error then says why.
  bool Fails(const Call& call);
  /// True for success; stores any other error as the last one.
  bool Answer(platform::Win32Error error);
  /// Notes a call that changed the machine or paused, and what it took for granted.
  Change& Journal(CallName call, Fields fields);
  /// A call that changes the machine: does `change` unless there is an `error` already or a fault
  /// strikes, and answers the error. The journal tells `fields` and a failure as "error", or any
  /// answer as "result".
  template <class Action>
  platform::Win32Error Commit(const Call& call, Fields fields, platform::Win32Error error,
                              Action change, bool tellsResult = false) {
    const auto refused = Refuse(call);
    if (!refused && error == 0) change();
    const platform::Win32Error answer = refused.value_or(error);
    if (tellsResult || answer != 0) fields.emplace_back(tellsResult ? "result" : "error", answer);
    Journal(call.name, std::move(fields));
    return answer;
  }

  /// `CoInitializeEx` and `CoUninitialize` with the rules of one thread.
  platform::HResult EnterApartment(const Call& call, ApartmentKind kind);
  void LeaveApartment(const Call& call);
  /// True while the thread is in an apartment; without one COM calls fail.
  bool InApartment() const { return apartmentDepth_ > 0; }
  /// `CoInitializeSecurity`: once per stay in an apartment.
  platform::HResult SecureProcess();

  /// The adapter with this index, PNP device id or setting id; null when there is none. Takes
  /// constant time unless the adapters were changed meanwhile.
  Adapter* AdapterByIndex(std::uint32_t index);
  Adapter* AdapterById(std::string Adapter::*id, const std::string& text);

  Machine& machine;
  Usage usage;
  platform::Win32Error lastError = 0;
  std::uint32_t callCount = 0;

 private:
  /// Positions of the adapters by one of their keys, as they were when last looked at.
  template <class Key>
  using Positions = std::unordered_map<Key, std::size_t>;
  template <class Key, class KeyOf>
  Adapter* LookUp(Positions<Key>& positions, const Key& key, KeyOf keyOf);

  Positions<std::uint32_t> byIndex_;
  Positions<std::string> byPnpId_;
  Positions<std::string> bySettingId_;
  ApartmentKind apartmentKind_ = ApartmentKind::kMultithreaded;
  int apartmentDepth_ = 0;
  bool processSecured_ = false;
};

/// A port over what all of them share.
template <class Interface>
class Port : public Interface {
 public:
  explicit Port(Simulation& simulation) : simulation_(simulation) {}

 protected:
  Simulation& simulation_;
};

/// The same, counted in `Usage::comObjects` for as long as it lives.
template <class Interface>
class ComObject : public Port<Interface> {
 public:
  explicit ComObject(Simulation& simulation) : Port<Interface>(simulation) {
    ++simulation.usage.comObjects;
  }
  ~ComObject() override { --this->simulation_.usage.comObjects; }
};

/// The adapter index that a query's condition or an object path names.
std::optional<std::uint32_t> IndexIn(std::string_view text);
/// What a COM call or a system call answers for a fault, whichever code the fault gives.
platform::HResult ToHResult(const Fault& fault);
platform::Win32Error ToWin32Error(const Fault& fault);
/// An HRESULT as people write it: "0x80041002".
std::string HResultText(platform::HResult result);
/// True when the fault lets the call run and only chooses its return value or exit code.
bool OnlyChoosesResult(const Fault& fault);

/// An adapter index in decimal; the signed form of a large one is read as well.
std::optional<std::uint32_t> ParseIndex(std::string_view text);

}  // namespace simulated
