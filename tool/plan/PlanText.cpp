#include "tool/plan/PlanText.h"

#include <algorithm>
#include <utility>

#include "base/LetterCase.h"
#include "base/Numbers.h"
#include "base/Pieces.h"
#include "common/sys/NicText.h"
#include "platform/simulated/MachineFile.h"
#include "platform/simulated/Secrets.h"
#include "tool/io/Text.h"

namespace tool {
namespace {

/// How many adapters are told before the rest is only counted.
constexpr std::size_t kMostPassedOver = 4;

/// What asks for networking to be turned on again.
constexpr char kRegistry[] = "registry value NetworkDisabled";

using By = PlannedBinding::By;

/// "12-14, 20".
std::string Ranges(const std::set<std::size_t>& lines) {
  std::string text;
  for (auto line = lines.begin(); line != lines.end();) {
    const std::size_t first = *line;
    std::size_t last = first;
    while (++line != lines.end() && *line == last + 1) ++last;
    if (!text.empty()) text += ", ";
    text += std::to_string(first);
    if (last != first) text += "-" + std::to_string(last);
  }
  return text;
}

std::string SectionOf(const QueuePlan& plan, const PlannedCommand& command) {
  if (command.events.empty()) return {};
  const std::string& section = plan.events[command.events.front()].section;
  return section.empty() ? "" : SectionText(section);
}

/// What was looked for in vain.
std::string Tried(const QueuePlan& plan, const PlannedBinding& binding) {
  std::string text;
  if (binding.by == By::kPci) return text;
  if (!binding.pciLocation.empty()) text = "at PCI location " + binding.pciLocation;
  const bool triedMac = !binding.macAddress.empty() && binding.by != By::kMac;
  if (triedMac) {
    text += (text.empty() ? "" : " or ") + ("with MAC address " + Printable(binding.macAddress));
  }
  const std::string mac = triedMac ? sys::NormalizedMac(binding.macAddress) : "";
  std::string refused;
  for (const PlannedAdapter& adapter : plan.adapters) {
    const bool isMeant =
        (!binding.pciLocation.empty() && adapter.pciLocation == binding.pciLocation) ||
        (!mac.empty() && sys::NormalizedMac(adapter.macAddress) == mac);
    if (adapter.refused.empty() || !isMeant) continue;
    refused += (refused.empty() ? ": adapter " : ", adapter ") + std::to_string(adapter.index) +
               " is " + adapter.refused;
  }
  if (!refused.empty()) return "no adapter " + text + " that can be had" + refused;
  if (!text.empty()) return "no adapter " + text;
  return binding.by == By::kMac ? "" : "no PCI location or MAC address given";
}

/// How it found its adapter.
std::string HowFound(const QueuePlan& plan, std::size_t position) {
  const PlannedBinding& binding = *plan.commands[position].binding;
  std::string text = binding.by == By::kPci ? "found by its PCI location " + binding.pciLocation
                     : binding.by == By::kMac
                         ? "found by its MAC address " + Printable(binding.macAddress)
                     : binding.by == By::kNext ? "the next free one"
                                               : "";
  const std::string tried = Tried(plan, binding);
  if (!tried.empty()) text += (text.empty() ? "" : ", ") + tried;
  if (binding.adapter) {
    const std::size_t first = plan.adapters[*binding.adapter].takers.front();
    if (first < position) text += "; " + SectionOf(plan, plan.commands[first]) + " has it too";
  }
  return text;
}

/// Which adapters it could not have.
std::string PassedOver(const QueuePlan& plan, const PlannedBinding& binding) {
  if (binding.by == By::kPci || binding.by == By::kMac) return {};
  std::vector<std::string> reasons;
  std::size_t more = 0;
  for (std::size_t i = 0; i < binding.adapter.value_or(plan.adapters.size()); ++i) {
    const PlannedAdapter& adapter = plan.adapters[i];
    if (adapter.IsFree()) continue;
    if (reasons.size() == kMostPassedOver) {
      ++more;
      continue;
    }
    reasons.push_back("adapter " + std::to_string(adapter.index) + " is " +
                      AdapterFate(plan, adapter));
  }
  if (more > 0) reasons.push_back("and " + std::to_string(more) + " more");
  return reasons.empty() ? "" : "passed over: " + base::Join(reasons, ", ");
}

/// The event and where it comes from, without the line.
std::string Words(const PlannedEvent& event) {
  const std::string value = ShownValue(event);
  const std::string words = event.kind + (value.empty() ? "" : " " + value) + " from ";
  if (event.section.empty()) return words + kRegistry;
  return words + SectionText(event.section) + (event.key.empty() ? "" : " " + Printable(event.key));
}

/// "8 s" or "1500 ms".
std::string DurationText(std::uint64_t milliseconds) {
  return milliseconds % 1000 == 0 ? std::to_string(milliseconds / 1000) + " s"
                                  : std::to_string(milliseconds) + " ms";
}

/// What the restart is for.
std::string RestartReason(const PlannedCommand& command) {
  if (command.Is("ChangeCompName")) return "the new name";
  if (command.Is("JoinDomain")) return "the join";
  // A domain member has no workgroup to compare.
  return command.Is("JoinWorkgroup") && command.current == "" ? "leaving the domain" : "";
}

std::string RestartText(std::size_t number, const std::vector<std::string>& reasons) {
  return "restart " + std::to_string(number) + ", for " + base::Join(reasons, " and ");
}

/// The command, or one of its own, fails or is not reached.
bool IsLost(const PlannedCommand& command) {
  const Course& course = command.course;
  if (command.binding && !command.LacksAdapter()) {
    return std::any_of(command.commands.begin(), command.commands.end(), IsLost);
  }
  return command.needed && (course.willFail || !course.reached);
}

/// What never comes of a queue that fails.
std::string LostText(const QueuePlan& plan) {
  constexpr std::pair<const char*, const char*> kLosses[] = {
      {"JoinDomain", ", the join never happens"},
      {"JoinWorkgroup", ", the workgroup is never joined"},
      {"ChangeCompName", ", the name stays"},
      {"MoveOu", ", the computer stays in its OU"},
      {"SetStaticRoute", ", the routes stay"},
      {"EnableNetworking", ", networking stays off"},
      {"Reboot", ", the restart never comes"}};
  std::string text = "the file is put away";
  std::size_t adapters = 0;
  std::set<std::string> told;
  for (const PlannedCommand& command : plan.commands) {
    if (!IsLost(command)) continue;
    if (command.binding) ++adapters;
    for (const auto& [name, loss] : kLosses) {
      if (command.Is(name) && told.insert(name).second) text += loss;
    }
  }
  if (adapters == 0) return text;
  return text + ", " + base::Counted(adapters, "adapter") + (adapters == 1 ? " is" : " are") +
         " not fully configured";
}

/// The items of one list that the other lacks, each as a line behind `sign`.
void NoteMissing(const char* sign, const std::string& from, const std::string& in,
                 std::vector<Line>& notes) {
  const std::vector<std::string> list = base::Split(in, ",");
  const std::set<std::string> others(list.begin(), list.end());
  for (const std::string& item : base::Split(from, ",")) {
    if (!others.contains(item)) notes.push_back({Tone::kNotice, sign + item});
  }
}

/// The cause of a failure as `check` names it.
std::string CauseText(const QueuePlan& plan) {
  return plan.causeCode.empty() ? "" : " [" + plan.causeCode + "]";
}

void NoteCourse(const QueuePlan& plan, const PlannedCommand& command, std::vector<Line>& notes) {
  const Course& course = command.course;
  if (!course.unknown.empty()) {
    notes.push_back({Tone::kNotice, "unknown: the machine file does not tell \"" + course.unknown +
                                        "\"; it is taken to succeed"});
  }
  if (!course.willFail) return;
  notes.push_back({Tone::kBad, "will fail: " + course.willFail->answer + " (" +
                                   Printable(course.willFail->meaning) + ")" + CauseText(plan)});
  notes.push_back({Tone::kBad, "lost by it: " + LostText(plan)});
}

ShownCommand Shown(const QueuePlan& plan, const PlannedCommand& command, Turn turn) {
  ShownCommand shown{!command.needed           ? Turn::kNotNeeded
                     : command.course.willFail ? Turn::kFails
                     : !command.course.reached ? Turn::kNever
                                               : turn,
                     "",
                     command.ShortName(),
                     Printable(command.description),
                     ComparisonText(command),
                     SectionOf(plan, command),
                     LinesOf(plan, command),
                     {},
                     {}};
  if (command.Is("SetStaticRoute") && command.needed && command.current) {
    shown.values.clear();
    NoteMissing("- ", *command.current, *command.wanted, shown.notes);
    NoteMissing("+ ", *command.wanted, *command.current, shown.notes);
  }
  if (command.Is("JoinDomain")) {
    for (const std::size_t event : command.events) {
      if (plan.events[event].kind != "DOMAIN_OU") continue;
      shown.notes.push_back({Tone::kNotice, "in the OU " + ShownValue(plan.events[event])});
    }
  }
  return shown;
}

ShownCommand Queued(const QueuePlan& plan, std::size_t position, Turn turn) {
  const PlannedCommand& command = plan.commands[position];
  ShownCommand shown = Shown(plan, command, turn);
  shown.number = std::to_string(position + 1);
  if (command.binding) {
    for (const std::string& text : BindingTexts(plan, position)) {
      shown.notes.push_back({Tone::kPlain, text});
    }
  }
  NoteCourse(plan, command, shown.notes);
  for (const PlannedCommand& inner : command.commands) {
    ShownCommand& added = shown.commands.emplace_back(Shown(plan, inner, turn));
    added.section.clear();
    NoteCourse(plan, inner, added.notes);
  }
  return shown;
}

ShownBlock ErrorBlock(const QueuePlan& plan) {
  const PlanError& error = *plan.error;
  ShownBlock block{{Tone::kPlain, "No plan"},
                   {},
                   {{Tone::kBad, Printable(error.source + ":" + std::to_string(error.line) + " - " +
                                           error.message)},
                    {Tone::kPlain, error.className + ", value " + std::to_string(error.value) +
                                       ", system error " + std::to_string(error.systemError)}}};
  if (error.event) {
    block.lines.push_back({Tone::kPlain, "at " + EventText(plan.events[*error.event])});
  }
  if (!plan.cause.empty()) {
    block.lines.push_back({Tone::kPlain, Printable(plan.cause) + CauseText(plan)});
  }
  return block;
}

}  // namespace

std::vector<ShownBlock> BlocksOf(const QueuePlan& plan) {
  if (plan.error) return {ErrorBlock(plan)};
  std::vector<ShownBlock> blocks{{{Tone::kPlain, "Runs now"}, {}, {}}};
  Turn turn = Turn::kRuns;
  std::size_t restarts = 0;
  std::vector<std::string> reasons;
  for (std::size_t i = 0; i < plan.commands.size(); ++i) {
    const PlannedCommand& command = plan.commands[i];
    const bool isRestart = command.Is("Reboot");
    // What is never done needs no restart.
    if (isRestart && !command.course.reached) continue;
    const std::string restart = isRestart ? RestartText(++restarts, reasons) : "";
    if (isRestart) reasons.clear();
    if (const std::string reason = RestartReason(command); !reason.empty()) {
      reasons.push_back(reason);
    }
    if (isRestart && command.course.willFail) {
      blocks.back().lines = {
          {Tone::kBad, "-- restart, which RebootAfterConfig=False forbids: the run fails here --" +
                           CauseText(plan)},
          {Tone::kBad, "lost by it: " + LostText(plan)}};
    } else if (isRestart && turn == Turn::kRuns) {
      blocks.back().lines.push_back({Tone::kNotice, "-- " + restart + ": the run stops here --"});
      turn = Turn::kWaits;
      if (i + 1 == plan.commands.size()) continue;
      blocks.push_back({{Tone::kPlain, "Waits for the restart, and is planned anew then"}, {}, {}});
    } else {
      if (turn != Turn::kNever && !command.course.reached) {
        turn = Turn::kNever;
        blocks.push_back(
            {{Tone::kBad, "Never done: the run fails and the file is put away"}, {}, {}});
      }
      blocks.back().commands.push_back(Queued(plan, i, turn));
      if (isRestart) blocks.back().commands.back().notes.push_back({Tone::kNotice, restart});
    }
  }
  if (blocks.front().commands.empty()) {
    blocks.front().lines.insert(blocks.front().lines.begin(), {Tone::kPlain, "nothing"});
  }
  if (!plan.dropped.empty()) blocks.push_back({{Tone::kPlain, "Dropped"}, {}, {}});
  for (const PlannedCommand& command : plan.dropped) {
    blocks.back().commands.push_back(Shown(plan, command, Turn::kNotNeeded));
  }
  return blocks;
}

std::string SummaryText(const QueuePlan& plan) {
  constexpr const char* kOutcomes[] = {"nothing to do", "succeeds", "succeeds with its restarts"};
  const std::uint64_t tenths = (plan.pauseMs + 3000) / 6000;
  std::string text = base::Counted(plan.changes, "change") + ", " +
                     base::Counted(plan.restarts, "restart") + ", " +
                     (plan.pauseMs == 0 ? "no"
                                        : std::to_string(tenths / 10) + "." +
                                              std::to_string(tenths % 10) + " minutes of") +
                     " pauses; ";
  std::string failure = "fails: there is no plan";
  std::set<std::string> unknown;
  for (std::size_t i = plan.commands.size(); i > 0; --i) {
    const PlannedCommand& command = plan.commands[i - 1];
    const std::string name = std::to_string(i) + " " + command.ShortName();
    if (!command.course.unknown.empty()) unknown.insert(command.course.unknown);
    if (command.course.reached && IsLost(command)) failure = "fails at " + name;
  }
  text += plan.outcome == PlanOutcome::kFailure ? failure
                                                : kOutcomes[static_cast<std::size_t>(plan.outcome)];
  for (const std::string& name : unknown) {
    text += ", if \"" + name + "\" allows it, which the machine file does not tell";
  }
  return text;
}

std::string SectionText(const std::string& section) {
  return section.empty() ? "before the first section" : "[" + Printable(section) + "]";
}

std::set<std::size_t> LinesOf(const QueuePlan& plan, const PlannedCommand& command) {
  std::set<std::size_t> lines;
  for (const std::size_t event : command.events) lines.insert(plan.events[event].line);
  if (lines.size() > 1) lines.erase(0);
  return lines;
}

std::string LinesText(const std::set<std::size_t>& lines) {
  if (lines.empty()) return {};
  if (*lines.begin() == 0) return kRegistry;
  return (lines.size() == 1 ? "line " : "lines ") + Ranges(lines);
}

std::string EventText(const PlannedEvent& event) {
  return Words(event) + (event.section.empty() ? "" : ", line " + std::to_string(event.line));
}

std::string ShownValue(const PlannedEvent& event) {
  if (simulated::NamesPassword(event.key)) return "***";
  return Printable(simulated::RedactedText(event.value));
}

std::string OrNone(const std::string& value) { return value.empty() ? "none" : Printable(value); }

std::string ComparisonText(const PlannedCommand& command) {
  if (!command.wanted) return {};
  const std::string wanted = OrNone(*command.wanted);
  if (!command.current) return "-> " + wanted + (command.needed ? ", whatever it is now" : "");
  const std::string current = OrNone(*command.current);
  if (command.needed) return current + " -> " + wanted;
  if (base::SameText(current, wanted)) return "not needed: " + current + " already";
  return "not needed: is " + current + ", wanted " + wanted;
}

std::vector<std::string> BindingTexts(const QueuePlan& plan, std::size_t position) {
  const PlannedBinding& binding = *plan.commands[position].binding;
  std::vector<std::string> texts{
      binding.adapter ? Printable(plan.adapters[*binding.adapter].name) : "no adapter is left",
      HowFound(plan, position), PassedOver(plan, binding)};
  std::erase(texts, "");
  return texts;
}

std::string AdapterFate(const QueuePlan& plan, const PlannedAdapter& adapter) {
  if (adapter.IsFree()) return "free";
  std::string text = adapter.refused;
  for (const std::size_t taker : adapter.takers) {
    text += (text.empty() ? "taken by " : " and ") + SectionOf(plan, plan.commands[taker]);
  }
  return text;
}

std::vector<std::string> TakersOf(const QueuePlan& plan) {
  std::vector<std::string> takers(plan.events.size());
  const auto note = [&](const PlannedCommand& command, const std::string& number) {
    for (const std::size_t event : command.events) {
      takers[event] = number + " " + command.ShortName();
    }
  };
  for (std::size_t i = 0; i < plan.commands.size(); ++i) {
    const std::string number = std::to_string(i + 1);
    note(plan.commands[i], number);
    for (const PlannedCommand& inner : plan.commands[i].commands) note(inner, number);
  }
  for (const PlannedCommand& command : plan.dropped) note(command, "dropped");
  return takers;
}

PauseForecast ForecastPauses(const QueuePlan& plan) {
  PauseForecast forecast;
  std::uint64_t adapterMs = 0;
  std::size_t adapters = 0;
  const std::size_t runsNow = plan.RunsNow();
  for (std::size_t i = 0; i < plan.commands.size(); ++i) {
    const PlannedCommand& command = plan.commands[i];
    if (!command.course.reached) break;
    (i < runsNow ? forecast.nowMs : forecast.laterMs) += command.pauseMs;
    if (command.pauseMs == 0 || i >= runsNow) continue;
    if (command.binding) {
      adapterMs += command.pauseMs;
      ++adapters;
    } else {
      forecast.parts.push_back(
          DurationText(command.pauseMs) +
          (command.Is("Sleep") ? " between join and rename" : " for the networking services"));
    }
  }
  if (adapters > 0) {
    forecast.parts.insert(forecast.parts.begin(), DurationText(adapterMs) + " for " +
                                                      base::Counted(adapters, "static adapter"));
  }
  return forecast;
}

std::string PauseText(const QueuePlan& plan) {
  const PauseForecast forecast = ForecastPauses(plan);
  const std::string later = DurationText(forecast.laterMs) + " after the restart";
  if (forecast.nowMs == 0) return forecast.laterMs == 0 ? "" : later;
  std::string text = DurationText(forecast.nowMs) + " now";
  if (forecast.parts.size() > 1) text += " (" + base::Join(forecast.parts, ", ") + ")";
  if (forecast.parts.size() == 1) {
    text += forecast.parts.front().substr(DurationText(forecast.nowMs).size());
  }
  return forecast.laterMs > 0 ? text + ", " + later : text;
}

std::vector<Unanswered> CameToNothing(const QueuePlan& plan) {
  std::vector<Unanswered> asks;
  for (const PlannedEvent& event : plan.events) {
    if (!event.cameToNothing.empty())
      asks.push_back({Words(event), {event.line}, event.cameToNothing});
  }
  for (const UnusedKeys& unused : plan.unused) {
    asks.push_back(
        {SectionText(unused.section) + " " + unused.keys, unused.lines, "no event comes of it"});
  }
  return asks;
}

Tone ToneOf(const std::string& result) {
  return result == "Reboot" ? Tone::kNotice : result == "Success" ? Tone::kGood : Tone::kBad;
}

Tone ToneOf(const RestartChain& chain) {
  if (!chain.Succeeded()) return Tone::kBad;
  return chain.ending == ChainEnding::kSettled && chain.notTrue.empty() ? Tone::kGood
                                                                        : Tone::kNotice;
}

}  // namespace tool
