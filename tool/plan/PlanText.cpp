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
using Texts = std::vector<std::string>;

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

/// What the section names and no adapter has.
std::string NotFound(const QueuePlan& plan, const PlannedBinding& binding) {
  if (binding.by == By::kPci) return {};
  Texts tried;
  Texts refused;
  const bool triedMac = !binding.macAddress.empty() && binding.by != By::kMac;
  if (!binding.pciLocation.empty()) tried.push_back("at PCI location " + binding.pciLocation);
  if (triedMac) tried.push_back("with MAC address " + Printable(binding.macAddress));
  if (tried.empty()) return binding.by == By::kMac ? "" : "no PCI location or MAC address given";
  const std::string mac = triedMac ? sys::NormalizedMac(binding.macAddress) : "";
  for (const PlannedAdapter& adapter : plan.adapters) {
    const bool isMeant =
        (!binding.pciLocation.empty() && adapter.pciLocation == binding.pciLocation) ||
        (!mac.empty() && sys::NormalizedMac(adapter.macAddress) == mac);
    if (adapter.refused.empty() || !isMeant) continue;
    refused.push_back("adapter " + std::to_string(adapter.index) + " is " + adapter.refused);
  }
  return "no adapter " + base::Join(tried, " or ") +
         (refused.empty() ? "" : " available: " + base::Join(refused, ", "));
}

std::string HowFound(const QueuePlan& plan, const PlannedCommand& command) {
  const PlannedBinding& binding = *command.binding;
  Texts texts{binding.by == By::kPci   ? "found by its PCI location " + binding.pciLocation
              : binding.by == By::kMac ? "found by its MAC address " + Printable(binding.macAddress)
              : binding.by == By::kNext ? "the next free one"
                                        : "",
              NotFound(plan, binding)};
  std::erase(texts, "");
  const std::string text = base::Join(texts, ", ");
  if (!binding.adapter) return text;
  const PlannedCommand& first = plan.commands[plan.adapters[*binding.adapter].takers.front()];
  return &first == &command ? text : text + "; " + SectionOf(plan, first) + " has it too";
}

std::string PassedOver(const QueuePlan& plan, const PlannedBinding& binding) {
  if (binding.by == By::kPci || binding.by == By::kMac) return {};
  Texts reasons;
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
  return reasons.empty() ? "" : "passed over: " + FirstFew(std::move(reasons), more);
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

/// Of a plan or a chain: "3 changes, 1 restart, 0.5 minutes of pauses; ".
std::string Sums(const auto& run) {
  const std::uint64_t tenths = (run.pauseMs + 3000) / 6000;
  const std::string minutes = std::to_string(tenths / 10) + "." + std::to_string(tenths % 10);
  return base::Counted(run.changes, "change") + ", " + base::Counted(run.restarts, "restart") +
         ", " + (run.pauseMs == 0 ? "no" : minutes + " minutes of") + " pauses; ";
}

/// What the restart is for.
std::string RestartReason(const PlannedCommand& command) {
  if (command.Is("ChangeCompName")) return "the new name";
  if (command.Is("JoinDomain")) return "the join";
  // A domain member has no workgroup to compare.
  return command.Is("JoinWorkgroup") && command.current == "" ? "leaving the domain" : "";
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
      {"SetStaticRoute", ", the routes are not all as wanted"},
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

/// What is taken for granted where the machine file leaves `name` out.
const char* Assumption(const std::string& name) {
  return name == "directory" ? "the directory allows it"
         : name == "decrypt" ? "the deciphered account is right"
                             : "the host names resolve";
}

Line FailureLine(const QueuePlan& plan, const Failure& failure) {
  return {Tone::kBad, "will fail: " + failure.answer + " (" + Printable(failure.meaning) + ")" +
                          CauseText(plan)};
}

Line LossLine(const QueuePlan& plan) { return {Tone::kBad, "lost by it: " + LostText(plan)}; }

ShownCommand Shown(const QueuePlan& plan, const PlannedCommand& command, Turn turn) {
  const Course& course = command.course;
  ShownCommand shown{!command.needed   ? Turn::kNotNeeded
                     : course.willFail ? Turn::kFails
                     : !course.reached ? Turn::kNever
                                       : turn,
                     command.ShortName(),
                     Printable(command.description),
                     ComparisonText(command),
                     SectionOf(plan, command),
                     LinesOf(plan, command)};
  std::vector<Line>& notes = shown.notes;
  if (command.Is("SetStaticRoute") && command.needed && command.current) {
    shown.values.clear();
    NoteMissing("- ", *command.current, *command.wanted, notes);
    NoteMissing("+ ", *command.wanted, *command.current, notes);
  }
  for (const std::size_t event : command.events) {
    if (!command.Is("JoinDomain") || plan.events[event].kind != "DOMAIN_OU") continue;
    notes.push_back({Tone::kNotice, "in the OU " + ShownValue(plan.events[event])});
  }
  if (command.binding) {
    for (const std::string& text : BindingTexts(plan, command)) notes.push_back({{}, text});
  }
  for (const std::string& text : course.notes) notes.push_back({Tone::kNotice, Printable(text)});
  if (!course.unknown.empty()) {
    notes.push_back({Tone::kNotice, std::string("unknown on this machine whether ") +
                                        Assumption(course.unknown) + "; it is assumed to succeed"});
  }
  if (course.willFail) {
    notes.push_back(FailureLine(plan, *course.willFail));
    notes.push_back(LossLine(plan));
  }
  for (const PlannedCommand& inner : command.commands) {
    ShownCommand& added = shown.commands.emplace_back(Shown(plan, inner, turn));
    added.section.clear();
    if (shown.turn != Turn::kNever && added.turn == Turn::kNever) {
      added.notes.push_back({Tone::kBad, "never done"});
    }
  }
  return shown;
}

ShownBlock ErrorBlock(const QueuePlan& plan) {
  const err::CGeneralError& error = plan.error->record;
  ShownBlock block{{{}, "No plan"}};
  block.lines = {{Tone::kBad, Printable(error.file + (":" + std::to_string(error.line)) + " - " +
                                        error.message)},
                 {{},
                  plan.error->className + ", value " + std::to_string(error.Value) +
                      ", system error " + std::to_string(error.SystemError)}};
  if (const auto& event = plan.error->event) {
    block.lines.push_back({{}, "at " + EventText(plan.events[*event])});
  }
  if (!plan.cause.empty()) block.lines.push_back({{}, Printable(plan.cause) + CauseText(plan)});
  return block;
}

}  // namespace

std::vector<ShownBlock> BlocksOf(const QueuePlan& plan) {
  if (plan.error) return {ErrorBlock(plan)};
  std::vector<ShownBlock> blocks{{{{}, "Runs now"}}};
  Turn turn = Turn::kRuns;
  std::size_t restarts = 0;
  Texts reasons;
  for (std::size_t i = 0; i < plan.commands.size(); ++i) {
    const PlannedCommand& command = plan.commands[i];
    const Course& course = command.course;
    const bool isRestart = command.Is("Reboot");
    if (const std::string reason = RestartReason(command); course.reached && !reason.empty()) {
      reasons.push_back(reason);
    }
    if (isRestart && course.willFail) {
      blocks.back().lines = {
          {Tone::kBad, "-- restart, which RebootAfterConfig=False forbids: the run fails here --" +
                           CauseText(plan)},
          LossLine(plan)};
      continue;
    }
    const bool takesPlace = isRestart && course.reached;
    const std::string restart = takesPlace ? "restart " + std::to_string(++restarts) + ", for " +
                                                 base::Join(std::exchange(reasons, {}), " and ")
                                           : "";
    if (takesPlace && turn == Turn::kRuns) {
      blocks.back().lines.push_back({Tone::kNotice, "-- " + restart + ": the run stops here --"});
      turn = Turn::kWaits;
      if (i + 1 == plan.commands.size()) continue;
      blocks.push_back({{{}, "Waits for the restart, and is planned anew then"}});
      continue;
    }
    if (turn != Turn::kNever && !course.reached) {
      turn = Turn::kNever;
      blocks.push_back({{Tone::kBad, "Never done: the run fails and the file is put away"}});
    }
    ShownCommand& shown = blocks.back().commands.emplace_back(Shown(plan, command, turn));
    shown.number = std::to_string(i + 1);
    if (takesPlace) shown.notes.push_back({Tone::kNotice, restart});
  }
  ShownBlock& first = blocks.front();
  if (plan.agentSettings > 0) {
    first.lines.insert(
        first.lines.begin(),
        {{}, base::Counted(plan.agentSettings, "line") + " of [ConfigSettings] for the agent"});
  } else if (first.commands.empty()) {
    first.lines.insert(first.lines.begin(), {{}, "nothing"});
  }
  if (plan.staysBehind) {
    blocks.push_back({{Tone::kBad, "At the end the file cannot be put away, and the run fails"}});
    blocks.back().lines = {FailureLine(plan, *plan.staysBehind)};
  }
  if (!plan.dropped.empty()) blocks.push_back({{{}, "Dropped"}});
  for (const PlannedCommand& command : plan.dropped) {
    blocks.back().commands.push_back(Shown(plan, command, Turn::kNotNeeded));
  }
  return blocks;
}

std::string SummaryText(const QueuePlan& plan) {
  constexpr const char* kOutcomeTexts[] = {"nothing to do", "succeeds",
                                           "succeeds with its restarts"};
  std::string outcome = plan.error ? "fails: there is no plan" : "fails at its end";
  std::set<std::string> unknown;
  for (std::size_t i = plan.commands.size(); i > 0; --i) {
    const PlannedCommand& command = plan.commands[i - 1];
    unknown.insert(command.course.unknown);
    for (const PlannedCommand& inner : command.commands) unknown.insert(inner.course.unknown);
    if (!command.course.reached || !IsLost(command)) continue;
    outcome = "fails at " + std::to_string(i) + " " + command.ShortName();
  }
  if (plan.outcome != PlanOutcome::kFailure) {
    outcome = kOutcomeTexts[static_cast<std::size_t>(plan.outcome)];
  }
  unknown.erase("");
  for (const std::string& name : unknown) {
    outcome += std::string(", if ") + Assumption(name) + " (unknown on this machine)";
  }
  return Sums(plan) + outcome;
}

std::string SummaryText(const RestartChain& chain) {
  return Sums(chain) + Printable(EndingText(chain));
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

std::string IsAndWanted(const NotTrue& wish) {
  return wish.current ? "is " + OrNone(*wish.current) + ", wanted " + OrNone(*wish.wanted) : "";
}

std::string ComparisonText(const PlannedCommand& command) {
  if (!command.wanted) return {};
  const std::string wanted = OrNone(*command.wanted);
  if (!command.current) return "-> " + wanted + (command.needed ? ", whatever it is now" : "");
  const std::string current = OrNone(*command.current);
  if (command.needed) return current + " -> " + wanted;
  if (base::SameText(current, wanted)) return "not needed: " + current + " already";
  return "not needed: is " + current + ", wanted " + wanted;
}

Texts BindingTexts(const QueuePlan& plan, const PlannedCommand& command) {
  const PlannedBinding& binding = *command.binding;
  Texts texts{
      binding.adapter ? Printable(plan.adapters[*binding.adapter].name) : "no adapter is left",
      HowFound(plan, command), PassedOver(plan, binding)};
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

Texts TakersOf(const QueuePlan& plan) {
  Texts takers(plan.events.size());
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
  const std::size_t runsNow = plan.RunsNow();
  for (std::size_t i = 0; i < plan.commands.size() && plan.commands[i].course.reached; ++i) {
    (i < runsNow ? forecast.nowMs : forecast.laterMs) += plan.commands[i].pauseMs;
  }
  return forecast;
}

std::string PauseText(const QueuePlan& plan) {
  const auto [nowMs, laterMs] = ForecastPauses(plan);
  std::uint64_t adapterMs = nowMs;
  std::size_t adapters = 0;
  Texts parts;
  const std::size_t runsNow = plan.RunsNow();
  for (std::size_t i = 0; i < runsNow && plan.commands[i].course.reached; ++i) {
    const PlannedCommand& command = plan.commands[i];
    if (command.pauseMs > 0 && command.binding) ++adapters;
    if (command.pauseMs == 0 || command.binding) continue;
    adapterMs -= command.pauseMs;
    parts.push_back(DurationText(command.pauseMs) + (command.Is("Sleep")
                                                         ? " between join and rename"
                                                         : " for the networking services"));
  }
  if (adapters > 0) {
    parts.insert(parts.begin(),
                 DurationText(adapterMs) + " for " + base::Counted(adapters, "static adapter"));
  }
  Texts texts;
  if (nowMs > 0) texts.push_back(DurationText(nowMs) + " now");
  if (parts.size() > 1) texts.back() += " (" + base::Join(parts, ", ") + ")";
  if (parts.size() == 1) texts.back() += parts.front().substr(DurationText(nowMs).size());
  if (laterMs > 0) texts.push_back(DurationText(laterMs) + " after the restart");
  return base::Join(texts, ", ");
}

std::vector<Unanswered> CameToNothing(const QueuePlan& plan) {
  std::vector<Unanswered> asks;
  for (const PlannedEvent& event : plan.events) {
    if (event.cameToNothing.empty()) continue;
    asks.push_back({Words(event), {event.line}, event.cameToNothing});
  }
  for (const auto& [section, keys, lines] : plan.unused) {
    asks.push_back({SectionText(section) + " " + keys, lines, "not used by the library"});
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
