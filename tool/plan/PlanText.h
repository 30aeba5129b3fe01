// A plan in words, for terminals and pages alike. Every text is safe to print.
#pragma once

#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <vector>

#include "tool/plan/QueuePlan.h"
#include "tool/plan/RestartChain.h"

namespace tool {

inline constexpr char kRestoreNotice[] =
    "A restore file is pending: it takes the place of this one and is planned.";

/// What a text means: a colour on a terminal, a class on a page.
enum class Tone : std::uint8_t { kPlain, kDim, kGood, kNotice, kBad };
struct Line {
  Tone tone = Tone::kPlain;
  std::string text;
};

/// What happens to a command.
enum class Turn : std::uint8_t { kRuns, kFails, kWaits, kNever, kNotNeeded };

struct ShownCommand {
  Turn turn = Turn::kRuns;
  std::string name;
  std::string description;
  /// "TEMPLATE -> PC-42", "not needed: PC-42 already"; empty when nothing was compared.
  std::string values;
  /// The section that asks for it, as "[TCP/IP]"; empty for none.
  std::string section;
  /// The lines that ask for it; 0 for the registry.
  std::set<std::size_t> lines;
  /// Its position in the queue; empty inside another command, and when dropped.
  std::string number = {};
  /// Its adapter and how that was found, its routes, why it will fail.
  std::vector<Line> notes = {};
  std::vector<ShownCommand> commands = {};
};

/// A part of the queue, or why there is none.
struct ShownBlock {
  Line heading;
  std::vector<ShownCommand> commands = {};
  /// Below the commands: that there are none, and the restart.
  std::vector<Line> lines = {};
};
std::vector<ShownBlock> BlocksOf(const QueuePlan& plan);

/// "3 changes, 1 restart, 0.5 minutes of pauses; fails at 3 JoinDomain".
std::string SummaryText(const QueuePlan& plan);
/// The same of all starts, as far as they were followed.
std::string SummaryText(const RestartChain& chain);

/// "[TCP/IP]"; "before the first section" for an empty name.
std::string SectionText(const std::string& section);

/// The lines that ask for the command; 0 for what no section asks for.
std::set<std::size_t> LinesOf(const QueuePlan& plan, const PlannedCommand& command);

/// "line 8" or "lines 12-14, 20"; "registry value NetworkDisabled" for line 0.
std::string LinesText(const std::set<std::size_t>& lines);

/// The event's value as it may be shown.
std::string ShownValue(const PlannedEvent& event);

/// The event with its place: "IP_ADDRESS 10.0.0.5 from [TCP/IP] Address, line 12".
std::string EventText(const PlannedEvent& event);

/// A compared value as it may be shown; "none" for an empty one.
std::string OrNone(const std::string& value);

/// "is TEMPLATE, wanted PC-42"; empty when nothing was compared.
std::string IsAndWanted(const NotTrue& wish);

/// "TEMPLATE -> PC-42", "not needed: PC-42 already"; empty when nothing was compared.
std::string ComparisonText(const PlannedCommand& command);

/// The adapter of a section, how it was found, what was not found, and which adapters were passed
/// over and why; the first few of many.
std::vector<std::string> BindingTexts(const QueuePlan& plan, const PlannedCommand& command);

/// How the adapter is used: "free", "taken by [TCP/IP]", "not on the PCI bus".
std::string AdapterFate(const QueuePlan& plan, const PlannedAdapter& adapter);

/// Per event the command that took it, as "3 SetStatic" or "dropped ChangeCompName"; empty for
/// none.
std::vector<std::string> TakersOf(const QueuePlan& plan);

/// How long the run will pause: before the first restart, and after it as far as the run gets.
struct PauseForecast {
  std::uint64_t nowMs = 0;
  std::uint64_t laterMs = 0;
};
PauseForecast ForecastPauses(const QueuePlan& plan);

/// The same: "48 s now (40 s for 2 static adapters, 8 s between join and rename), 2 s after the
/// restart"; empty for no pause.
std::string PauseText(const QueuePlan& plan);

/// Something in the file that leads to no command.
struct Unanswered {
  std::string what;
  std::set<std::size_t> lines;
  std::string reason;
};
/// Nothing when there is no plan.
std::vector<Unanswered> CameToNothing(const QueuePlan& plan);

/// The tone of a reply's "Result", and of the end of a chain.
Tone ToneOf(const std::string& result);
Tone ToneOf(const RestartChain& chain);

}  // namespace tool
