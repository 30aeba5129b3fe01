// What the library would do with a configuration file, told by its own queue.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "common/config/command/ConfigureNic.h"
#include "platform/simulated/Machine.h"

namespace tool {

/// What the file asks for in one place.
struct PlannedEvent {
  /// For example "IP_ADDRESS".
  std::string kind;
  /// It opens a scope.
  bool opens = false;
  /// As it came; the account, which the library deciphered, is "***".
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

/// Keys of one section that the library makes nothing of.
struct UnusedKeys {
  /// Empty for what stands before the first section.
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
  /// "0/25/0"; empty when the section does not tell all three numbers.
  std::string pciLocation;
  /// As the section spells it; empty when it tells none.
  std::string macAddress;
};

/// Why a command will fail.
struct Failure {
  /// What the machine answers: "result 1326", "exit code 1".
  std::string answer;
  std::string meaning;
  /// The file or the machine is the cause, and no fault that the machine file asks for.
  bool isOfFile = false;
};

/// What comes of a command in the run.
struct Course {
  /// Nothing before it fails, and each restart before it comes.
  bool reached = true;
  std::optional<Failure> willFail;
  /// What the machine file leaves unknown and the command depends on, "directory" or "decrypt";
  /// empty for nothing. It is taken to succeed.
  std::string unknown;
};

struct PlannedCommand {
  /// For example "config::command::SetDhcp".
  std::string className;
  std::string description;
  bool needed = true;
  /// Absent when the command compares nothing, or was not asked.
  std::optional<std::string> current;
  std::optional<std::string> wanted;
  std::uint32_t pauseMs = 0;
  Course course;
  /// Positions in `QueuePlan::events` of what made and filled it; none for one that the analysis
  /// added.
  std::vector<std::size_t> events;
  /// Of a ConfigureNic only.
  std::optional<PlannedBinding> binding;
  std::vector<PlannedCommand> commands;

  /// The class without its namespaces.
  std::string ShortName() const;
  bool Is(const char* shortName) const { return ShortName() == shortName; }
  /// It would be run and fail, as there is no adapter for it.
  bool LacksAdapter() const { return binding && !binding->index; }
};

/// An adapter of the machine as a section may find it.
struct PlannedAdapter {
  std::uint32_t index = 0;
  std::string name;
  /// "0/25/0"; empty when unknown.
  std::string pciLocation;
  std::string macAddress;
  /// Why no section can have it; empty when one can.
  std::string refused;
  /// Positions in `QueuePlan::commands` of the sections that have it, in order.
  std::vector<std::size_t> takers;

  bool IsFree() const { return refused.empty() && takers.empty(); }
};

/// An error that kept the plan from being made; what it holds is the library's own record.
struct PlanError {
  std::string className;
  std::string source;
  std::int32_t line = 0;
  std::string message;
  std::int32_t value = 0;
  std::uint32_t systemError = 0;
  /// What was refused, as a position in `QueuePlan::events`; absent when it was no event.
  std::optional<std::size_t> event;
};

/// How the rehearsed queue ends, all its restarts included.
enum class PlanOutcome : std::uint8_t { kNothing, kSuccess, kRestart, kFailure };

struct QueuePlan {
  /// The bytes of the file that was planned; passwords are in it. All other texts are UTF-8.
  std::string text;
  /// A restore file took the place of the given one.
  bool restored = false;
  /// A restart that the queue asks for ends the run as a failure.
  bool restartForbidden = false;
  std::vector<PlannedEvent> events;
  /// Empty with an error, behind which nothing of the file was heard.
  std::vector<UnusedKeys> unused;
  /// The queue in the order in which it runs; empty with an error.
  std::vector<PlannedCommand> commands;
  std::vector<PlannedCommand> dropped;
  /// All of the machine, in its order; empty when no section is to be bound.
  std::vector<PlannedAdapter> adapters;
  std::optional<PlanError> error;

  PlanOutcome outcome = PlanOutcome::kFailure;
  /// Calls that change the machine, and how often it restarts and how long it pauses on purpose.
  std::size_t changes = 0;
  std::uint32_t restarts = 0;
  std::uint64_t pauseMs = 0;

  /// What `check` finds where the run fails: its code and its message; empty when it knows nothing.
  std::string causeCode;
  std::string cause;

  /// The command that will fail, null when none will.
  const PlannedCommand* Failing() const;
  /// Commands before the first restart; all of them without one.
  std::size_t RunsNow() const;
};

/// How the commands of an adapter are compared.
enum class Comparing : std::uint8_t {
  /// As in a run: each after those before it were done.
  kInTurn,
  /// With the machine as it is.
  kAsItIs,
};

/// Plans what a "Configure" message that names `path` would do to the machine, and rehearses it on
/// a copy unless the commands are compared as the machine is. `shownPath` names the file in errors.
/// Throws ToolError for a file that cannot be loaded.
QueuePlan MakePlan(const simulated::Machine& given, const std::string& path,
                   const std::string& shownPath, Comparing comparing);

}  // namespace tool
