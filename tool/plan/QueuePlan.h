// What the library would do with a configuration file: its own queue, described and rehearsed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "common/config/command/ConfigureNic.h"
#include "common/err/GeneralError.h"
#include "platform/simulated/Machine.h"

namespace tool {

/// What one place of the file asks for.
struct PlannedEvent {
  /// For example "IP_ADDRESS".
  std::string kind;
  /// It begins a scope.
  bool opens = false;
  /// As it was sent; the account, which the library deciphered, is "***".
  std::string value;
  /// Empty when no section asks for it.
  std::string section;
  /// Empty when the section as a whole asks for it.
  std::string key;
  /// Counted from 1; 0 without a section.
  std::size_t line = 0;
  /// Why no command came of it; empty when one did.
  std::string cameToNothing;
};

/// Keys of one section that the library does not use.
struct UnusedKeys {
  /// Empty for keys before the first section.
  std::string section;
  /// As they may be shown: "Address, Netmask"; of many keys the first few.
  std::string keys;
  std::set<std::size_t> lines;
};

/// How a section found its adapter.
struct PlannedBinding {
  using By = config::command::ConfigureNic::BoundBy;

  /// Absent when no adapter was left.
  std::optional<std::uint32_t> index;
  /// The same adapter's position in `QueuePlan::adapters`.
  std::optional<std::size_t> adapter;
  By by = By::kNone;
  /// "0/25/0"; empty unless the section gives all three numbers.
  std::string pciLocation;
  /// As the section writes it; empty for none.
  std::string macAddress;
};

/// Why a command will fail.
struct Failure {
  /// The machine's answer: "result 1326", "exit code 1".
  std::string answer;
  std::string meaning;
  /// The cause is in the file or the machine, not a fault that the machine file injects.
  bool isOfFile = false;
};

/// What happens to a command in the run.
struct Course {
  /// Nothing before it fails, and each restart before it takes place.
  bool reached = true;
  std::optional<Failure> willFail = {};
  /// What the command depends on and the machine file leaves unknown, such as "directory"; the
  /// command is then assumed to succeed. Empty for nothing.
  std::string unknown = {};
  /// What else its run comes upon.
  std::vector<std::string> notes = {};
};

struct PlannedCommand {
  /// For example "config::command::SetDhcp".
  std::string className;
  std::string description;
  bool needed = true;
  /// Absent when the command compares nothing, or was not compared.
  std::optional<std::string> current;
  std::optional<std::string> wanted;
  std::uint32_t pauseMs = 0;
  Course course;
  /// Positions in `QueuePlan::events` of those that made it; none when the analysis added it.
  std::vector<std::size_t> events;
  /// Of a ConfigureNic only.
  std::optional<PlannedBinding> binding;
  std::vector<PlannedCommand> commands;

  /// The class without its namespaces.
  std::string ShortName() const;
  bool Is(const char* shortName) const { return ShortName() == shortName; }
  /// A section without an adapter: it fails when it is reached.
  bool LacksAdapter() const { return binding && !binding->index; }
};

/// An adapter of the machine.
struct PlannedAdapter {
  std::uint32_t index = 0;
  std::string name;
  /// "0/25/0"; empty when unknown.
  std::string pciLocation;
  std::string macAddress;
  /// Why no section can take it; empty when one can.
  std::string refused;
  /// Positions in `QueuePlan::commands` of the sections that have it, in order.
  std::vector<std::size_t> takers;

  bool IsFree() const { return refused.empty() && takers.empty(); }
};

/// The error that prevented the plan, as the library recorded it.
struct PlanError {
  /// For example "ipc::CIPAddressError".
  std::string className;
  err::CGeneralError record;
  /// The refused event, as a position in `QueuePlan::events`; absent when it was no event.
  std::optional<std::size_t> event = {};
};

/// How the rehearsed queue ends, its restarts included.
enum class PlanOutcome : std::uint8_t { kNothing, kSuccess, kRestart, kFailure };

struct QueuePlan {
  /// The bytes of the planned file, passwords included. All other texts are UTF-8.
  std::string text;
  /// A restore file took the place of the given one.
  bool restored = false;
  /// The file forbids restarts: one that the queue needs ends the run as a failure.
  bool restartForbidden = false;
  std::vector<PlannedEvent> events;
  /// Empty after an error, since the rest of the file was not read then.
  std::vector<UnusedKeys> unused;
  /// The queue in the order in which it runs; empty with an error.
  std::vector<PlannedCommand> commands;
  std::vector<PlannedCommand> dropped;
  /// All adapters in the machine's order; empty when no section needs one.
  std::vector<PlannedAdapter> adapters;
  std::optional<PlanError> error;
  /// Why the file cannot be put away at the end, which fails a run without any other failure.
  std::optional<Failure> staysBehind;

  /// Entries that the agent gets for its own settings; they change nothing on the machine.
  std::size_t agentSettings = 0;

  PlanOutcome outcome = PlanOutcome::kFailure;
  /// Calls that change the machine, its restarts, and the intended pauses.
  std::size_t changes = 0;
  std::uint32_t restarts = 0;
  std::uint64_t pauseMs = 0;

  /// Code and message of the finding of `check` that explains the failure; empty for none.
  std::string causeCode;
  std::string cause;

  /// The command that will fail; null for none.
  const PlannedCommand* Failing() const;
  /// Commands before the first restart; all of them without one.
  std::size_t RunsNow() const;
};

/// How the commands of an adapter are compared.
enum class Comparing : std::uint8_t {
  kInTurn,  ///< as in a run: each after the ones before it were executed
  kAsItIs,  ///< with the machine in its present state
};

/// Plans what a "Configure" message that names `path` would do to the machine. `kInTurn` rehearses
/// the queue on a copy of the machine. `shownPath` names the file in errors.
/// Throws ToolError for a file that cannot be loaded.
QueuePlan MakePlan(const simulated::Machine& given, const std::string& path,
                   const std::string& shownPath, Comparing comparing);

}  // namespace tool
