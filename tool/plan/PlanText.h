// The words in which a plan is told, on a terminal and on a page.
#pragma once

#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "tool/plan/QueuePlan.h"

namespace tool {

/// "[TCP/IP]"; "before the first section" for an empty name.
std::string SectionText(const std::string& section);

/// The section of the file that asks for the command, as "[TCP/IP]"; empty for a command that the
/// analysis added.
std::string SectionOf(const QueuePlan& plan, const PlannedCommand& command);

/// "line 8" or "lines 12-14, 20"; "registry value NetworkDisabled" for what no section asks for.
std::string LinesOf(const QueuePlan& plan, const PlannedCommand& command);

/// "line 8" or "lines 12-14, 20"; there is at least one.
std::string LinesText(const std::set<std::size_t>& lines);

/// The event with its place: "IP_ADDRESS 10.0.0.5 from [TCP/IP] Address, line 12".
std::string EventText(const PlannedEvent& event);

/// The event's value as it may be shown.
std::string ShownValue(const PlannedEvent& event);

/// A compared value as it may be shown; "none" for an empty one.
std::string OrNone(const std::string& value);

/// "TEMPLATE -> PC-42", "not needed: PC-42 already"; empty when nothing was compared.
std::string ComparisonText(const PlannedCommand& command);

/// The adapter of the section at this position of the queue: "adapter 7, Intel(R) PRO/1000".
std::string AdapterText(const QueuePlan& plan, std::size_t position);

/// How the section found it, and what it looked for in vain: "found by its PCI location 0/3/0".
std::string BindingText(const QueuePlan& plan, std::size_t position);

/// Which adapters it could not have, each with the reason; the first few of many.
std::vector<std::string> PassedOver(const QueuePlan& plan, std::size_t position);

/// What became of the adapter: "free", "taken by [TCP/IP]", "not on the PCI bus".
std::string AdapterFate(const QueuePlan& plan, const PlannedAdapter& adapter);

/// Per event the command that took it, as "3 SetStatic" or "dropped ChangeCompName"; empty for
/// none.
std::vector<std::string> TakersOf(const QueuePlan& plan);

/// What comes of the first restart of a queue. Behind any but `kStops` nothing is ever done: the
/// run fails and puts the file away.
enum class RestartFate : std::uint8_t {
  kNone,       ///< there is none
  kStops,      ///< the run stops there, and the message is sent again behind the restart
  kForbidden,  ///< the run fails there
  kNotReached  ///< the run fails before it
};
RestartFate FateOfRestart(const QueuePlan& plan);

/// "restart: the run stops here".
std::string RestartText(const QueuePlan& plan);

/// How long the run will pause: before the first restart, and behind it when it gets there.
struct PauseForecast {
  std::uint64_t nowMs = 0;
  std::uint64_t laterMs = 0;
  /// What the time before the restart is made of: "40 s for 2 static adapters".
  std::vector<std::string> parts;
};
PauseForecast ForecastPauses(const QueuePlan& plan);

/// The same: "48 s now (40 s for 2 static adapters, 8 s between join and rename), 2 s after the
/// restart"; empty for no pause.
std::string PauseText(const QueuePlan& plan);

/// Something that the file asks for and no command comes of.
struct Unanswered {
  std::string what;
  std::set<std::size_t> lines;
  std::string reason;
};
/// Safe to print.
std::vector<Unanswered> CameToNothing(const QueuePlan& plan);

}  // namespace tool
