#include "tool/plan/PlanText.h"

#include <algorithm>

#include "base/LetterCase.h"
#include "base/Numbers.h"
#include "base/Pieces.h"
#include "common/sys/NicText.h"
#include "platform/simulated/MachineFile.h"
#include "platform/simulated/Secrets.h"
#include "tool/io/Text.h"
#include "tool/plan/UnusedKeys.h"

namespace tool {
namespace {

/// How many adapters are told before the rest is only counted.
constexpr std::size_t kMostPassedOver = 4;

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

const PlannedAdapter* FindAdapter(const QueuePlan& plan, std::uint32_t index) {
  const auto found =
      std::find_if(plan.adapters.begin(), plan.adapters.end(),
                   [=](const PlannedAdapter& adapter) { return adapter.index == index; });
  return found != plan.adapters.end() ? &*found : nullptr;
}

/// The event and where it comes from, without the line.
std::string Words(const PlannedEvent& event) {
  const std::string value = ShownValue(event);
  const std::string words = event.kind + (value.empty() ? "" : " " + value) + " from ";
  if (event.section.empty()) return words + "registry value NetworkDisabled";
  return words + SectionText(event.section) + (event.key.empty() ? "" : " " + Printable(event.key));
}

/// "8 s" or "1500 ms".
std::string DurationText(std::uint64_t milliseconds) {
  return milliseconds % 1000 == 0 ? std::to_string(milliseconds / 1000) + " s"
                                  : std::to_string(milliseconds) + " ms";
}

}  // namespace

std::string SectionText(const std::string& section) {
  return section.empty() ? "before the first section" : "[" + Printable(section) + "]";
}

std::string SectionOf(const QueuePlan& plan, const PlannedCommand& command) {
  if (command.events.empty()) return {};
  const std::string& section = plan.events[command.events.front()].section;
  return section.empty() ? "" : SectionText(section);
}

std::string LinesOf(const QueuePlan& plan, const PlannedCommand& command) {
  if (command.events.empty()) return {};
  std::set<std::size_t> lines;
  for (const std::size_t event : command.events) {
    if (plan.events[event].line != 0) lines.insert(plan.events[event].line);
  }
  if (lines.empty()) return "registry value NetworkDisabled";
  return LinesText(lines);
}

std::string LinesText(const std::set<std::size_t>& lines) {
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

std::string AdapterText(const QueuePlan& plan, std::size_t position) {
  const PlannedBinding& binding = *plan.commands[position].binding;
  return binding.index ? Printable(FindAdapter(plan, *binding.index)->name)
                       : "no adapter is left, so the run fails here";
}

std::string BindingText(const QueuePlan& plan, std::size_t position) {
  const PlannedBinding& binding = *plan.commands[position].binding;
  std::string text;
  if (binding.by == By::kPci) {
    text = "found by its PCI location " + binding.pciLocation;
  } else if (binding.by == By::kMac) {
    text = "found by its MAC address " + Printable(binding.macAddress);
  } else if (binding.by == By::kNext) {
    text = "the next free one";
  }
  const std::string tried = Tried(plan, binding);
  if (!tried.empty()) text += (text.empty() ? "" : ", ") + tried;
  if (binding.index) {
    const std::size_t first = FindAdapter(plan, *binding.index)->takers.front();
    if (first < position) text += "; " + SectionOf(plan, plan.commands[first]) + " has it too";
  }
  return text;
}

std::vector<std::string> PassedOver(const QueuePlan& plan, std::size_t position) {
  const PlannedBinding& binding = *plan.commands[position].binding;
  std::vector<std::string> reasons;
  if (binding.by == By::kPci || binding.by == By::kMac) return reasons;
  std::size_t more = 0;
  for (const PlannedAdapter& adapter : plan.adapters) {
    if (adapter.index == binding.index) break;
    if (reasons.size() == kMostPassedOver) {
      ++more;
    } else if (!adapter.refused.empty()) {
      reasons.push_back("adapter " + std::to_string(adapter.index) + " is " + adapter.refused);
    } else if (!adapter.takers.empty()) {
      reasons.push_back("adapter " + std::to_string(adapter.index) + " is taken by " +
                        SectionOf(plan, plan.commands[adapter.takers.front()]));
    }
  }
  if (more > 0) reasons.push_back("and " + std::to_string(more) + " more");
  return reasons;
}

std::string AdapterFate(const QueuePlan& plan, const PlannedAdapter& adapter) {
  if (!adapter.refused.empty()) return adapter.refused;
  std::string text;
  for (const std::size_t taker : adapter.takers) {
    text += (text.empty() ? "taken by " : " and ") + SectionOf(plan, plan.commands[taker]);
  }
  return text.empty() ? "free" : text;
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

RestartFate FateOfRestart(const QueuePlan& plan) {
  const std::size_t runsNow = plan.RunsNow();
  if (runsNow == plan.commands.size()) return RestartFate::kNone;
  const auto runs = static_cast<std::ptrdiff_t>(runsNow);
  const bool isReached =
      std::none_of(plan.commands.begin(), plan.commands.begin() + runs,
                   [](const PlannedCommand& command) { return command.LacksAdapter(); });
  if (!isReached) return RestartFate::kNotReached;
  return plan.restartForbidden ? RestartFate::kForbidden : RestartFate::kStops;
}

std::string RestartText(const QueuePlan& plan) {
  switch (FateOfRestart(plan)) {
    case RestartFate::kStops:
      return "restart: the run stops here";
    case RestartFate::kForbidden:
      return "restart, which RebootAfterConfig=False forbids: the run fails here";
    case RestartFate::kNotReached:
      return "restart, which is not reached";
    case RestartFate::kNone:
      break;
  }
  return {};
}

PauseForecast ForecastPauses(const QueuePlan& plan) {
  PauseForecast forecast;
  const bool goesOn = FateOfRestart(plan) == RestartFate::kStops;
  std::uint64_t adapterMs = 0;
  std::size_t adapters = 0;
  const std::size_t runsNow = plan.RunsNow();
  for (std::size_t i = 0; i < plan.commands.size(); ++i) {
    const PlannedCommand& command = plan.commands[i];
    // Nothing behind a failure is reached.
    if (command.LacksAdapter() || (i > runsNow && !goesOn)) break;
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
  for (const UnusedKeys& unused : FindUnusedKeys(plan)) {
    asks.push_back({SectionText(unused.section) + " " + UnusedText(unused), unused.lines,
                    "no event comes of it"});
  }
  return asks;
}

}  // namespace tool
