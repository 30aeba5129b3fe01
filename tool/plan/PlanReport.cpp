#include "tool/plan/PlanReport.h"

#include <algorithm>
#include <cstddef>
#include <vector>

#include "base/Pieces.h"
#include "tool/plan/PlanText.h"

namespace tool {
namespace {

/// Values that take more characters stand on two lines.
constexpr std::size_t kWidestValues = 72;

std::size_t WidestName(const std::vector<PlannedCommand>& commands) {
  std::size_t width = 0;
  for (const PlannedCommand& command : commands) {
    width = std::max(width, command.ShortName().size());
    for (const PlannedCommand& inner : command.commands) {
      width = std::max(width, inner.ShortName().size() + 2);
    }
  }
  return width;
}

/// Writes the commands of one plan, their names in one column.
class Tree {
 public:
  Tree(const QueuePlan& plan, const Style& style)
      : plan_(plan),
        style_(style),
        numberWidth_(std::to_string(plan.commands.size()).size()),
        nameWidth_(std::max(WidestName(plan.commands), WidestName(plan.dropped))) {}

  std::string Queued(std::size_t position) const {
    const PlannedCommand& command = plan_.commands[position];
    const std::string number = std::to_string(position + 1);
    std::string text = Entry("  " + std::string(numberWidth_ - number.size(), ' ') + number + "  ",
                             command, command.binding ? Binding(position) : Lines(command));
    for (const PlannedCommand& inner : command.commands) {
      text += Entry(std::string(numberWidth_ + 6, ' '), inner, Lines(inner), /*isInner=*/true);
    }
    return text;
  }

  std::string Dropped(const PlannedCommand& command) const {
    return Entry(std::string(numberWidth_ + 4, ' '), command, Lines(command));
  }

 private:
  /// The description, and the values where there are any.
  static std::vector<std::string> Lines(const PlannedCommand& command) {
    std::vector<std::string> lines{Printable(command.description)};
    const std::string values = ComparisonText(command);
    const std::size_t arrow =
        values.size() > kWidestValues ? values.find(" -> ") : std::string::npos;
    lines.push_back(values.substr(0, arrow));
    if (arrow != std::string::npos) lines.push_back(values.substr(arrow + 1));
    std::erase(lines, "");
    return lines;
  }

  std::vector<std::string> Binding(std::size_t position) const {
    std::vector<std::string> lines{AdapterText(plan_, position), BindingText(plan_, position)};
    const std::string passedOver = base::Join(PassedOver(plan_, position), ", ");
    if (!passedOver.empty()) lines.push_back("passed over: " + passedOver);
    return lines;
  }

  std::string Entry(const std::string& indent, const PlannedCommand& command,
                    std::vector<std::string> lines, bool isInner = false) const {
    const std::string origin = Origin(command, isInner);
    std::string name = command.ShortName();
    if (lines.empty() && origin.empty()) return indent + name + "\n";
    if (lines.empty()) lines.emplace_back();
    name = Padded(name, nameWidth_ - (isInner ? 2 : 0));
    std::string text = indent;
    text += command.LacksAdapter() ? style_.Bad(name) : command.needed ? name : style_.Dim(name);
    for (std::size_t i = 0; i < lines.size(); ++i) {
      if (i > 0) text += std::string(indent.size() + name.size(), ' ');
      if (!lines[i].empty()) text += "  ";
      text += !command.needed             ? style_.Dim(lines[i])
              : command.LacksAdapter()    ? style_.Bad(lines[i])
              : i > 0 && !command.binding ? style_.Notice(lines[i])
                                          : lines[i];
      if (i == 0 && !origin.empty()) text += "  " + style_.Dim(origin);
      text += "\n";
    }
    return text;
  }

  std::string Origin(const PlannedCommand& command, bool isInner) const {
    const std::string section = isInner ? "" : SectionOf(plan_, command);
    return section + (section.empty() ? "" : " ") + LinesOf(plan_, command);
  }

  const QueuePlan& plan_;
  const Style& style_;
  std::size_t numberWidth_;
  std::size_t nameWidth_;
};

std::string Restart(const QueuePlan& plan, const Style& style) {
  const std::string text = "  -- " + RestartText(plan) + " --";
  const RestartFate fate = FateOfRestart(plan);
  return fate == RestartFate::kForbidden    ? style.Bad(text)
         : fate == RestartFate::kNotReached ? style.Dim(text)
                                            : style.Notice(text);
}

std::string Queue(const QueuePlan& plan, const Style& style) {
  const Tree tree(plan, style);
  const std::size_t runsNow = plan.RunsNow();
  std::string text = style.Heading("Runs now") + "\n";
  if (runsNow == 0) text += "  nothing\n";
  for (std::size_t i = 0; i < runsNow; ++i) text += tree.Queued(i);
  if (runsNow < plan.commands.size()) text += Restart(plan, style) + "\n";
  // The restart at the very end has nothing behind it.
  if (runsNow + 1 < plan.commands.size()) {
    const bool goesOn = FateOfRestart(plan) == RestartFate::kStops;
    text += (goesOn ? style.Heading("Waits for the restart, and is planned anew then")
                    : style.Bad("Never done: the run fails and the file is put away")) +
            "\n";
    for (std::size_t i = runsNow + 1; i < plan.commands.size(); ++i) {
      if (goesOn || !plan.commands[i].Is("Reboot")) text += tree.Queued(i);
    }
  }
  if (!plan.dropped.empty()) text += style.Heading("Dropped") + "\n";
  for (const PlannedCommand& command : plan.dropped) text += tree.Dropped(command);
  return text;
}

/// A heading with the lines below it; nothing without lines.
std::string Block(const char* heading, const std::vector<std::string>& lines, const Style& style) {
  if (lines.empty()) return {};
  return style.Heading(heading) + "\n  " + base::Join(lines, "\n  ") + "\n";
}

std::string Error(const QueuePlan& plan, const Style& style) {
  const PlanError& error = *plan.error;
  std::string text =
      style.Heading("No plan") + "\n  " +
      style.Bad(error.source + ":" + std::to_string(error.line) + " - " + error.message) + "\n  " +
      error.className + ", value " + std::to_string(error.value) + ", system error " +
      std::to_string(error.systemError) + "\n";
  if (error.event) text += "  at " + EventText(plan.events[*error.event]) + "\n";
  return text;
}

std::string Adapters(const QueuePlan& plan, const Style& style) {
  if (plan.adapters.empty()) return {};
  std::vector<Row> rows;
  for (const PlannedAdapter& adapter : plan.adapters) {
    std::string text = AdapterFate(plan, adapter);
    if (!adapter.pciLocation.empty()) text += ", PCI location " + adapter.pciLocation;
    if (!adapter.macAddress.empty()) text += ", MAC address " + Printable(adapter.macAddress);
    rows.push_back({Printable(adapter.name), text});
  }
  return style.Heading("Adapters") + "\n" + Rows(rows, "  ");
}

std::string Events(const QueuePlan& plan, const Style& style) {
  const std::vector<std::string> takers = TakersOf(plan);
  std::vector<Row> rows;
  for (std::size_t i = 0; i < plan.events.size(); ++i) {
    rows.push_back({EventText(plan.events[i]), takers[i].empty() ? "-" : takers[i]});
  }
  return rows.empty() ? "" : style.Heading("Events") + "\n" + Rows(rows, "  ");
}

std::string NotTrueText(const RestartChain& chain, const Style& style) {
  if (chain.notTrue.empty()) return {};
  std::string text = style.Heading("Still not true") + "\n";
  for (const NotTrue& wish : chain.notTrue) {
    text += "  " + SectionText(wish.section) + " " + wish.lines + "  " + wish.what;
    if (!wish.description.empty()) text += "  " + Printable(wish.description);
    text += "\n";
    if (wish.current) {
      text += "    is " + OrNone(*wish.current) + ", wanted " + OrNone(*wish.wanted) + "\n";
    }
    text += "    " + style.Notice(Printable(wish.reason)) + "\n";
  }
  return text;
}

}  // namespace

std::string PlanReport(const QueuePlan& plan, const Style& style, bool verbose) {
  std::string text;
  if (plan.restored) {
    text +=
        style.Notice("A restore file is pending: it takes the place of this one and is planned.");
    text += "\n\n";
  }
  text += plan.error ? Error(plan, style) : Queue(plan, style);
  std::vector<std::string> nothing;
  for (const auto& [what, lines, reason] : CameToNothing(plan)) {
    nothing.push_back(what + ", " + LinesText(lines) + ": " + reason);
  }
  text += Block("Asks for nothing", nothing, style);
  const std::string pauses = PauseText(plan);
  if (!pauses.empty()) text += Block("Pauses", {pauses}, style);
  return verbose ? text + Adapters(plan, style) + Events(plan, style) : text;
}

std::string ChainReport(const RestartChain& chain, const Style& style, bool verbose) {
  std::string text;
  for (const auto& step : chain.steps) {
    const std::uint32_t restarts = step.delivery.restarts;
    if (restarts > 0)
      text += style.Notice("-- restart " + std::to_string(restarts) + " --") + "\n\n";
    const std::string result = step.delivery.Result();
    text += PlanReport(step.plan, style, verbose) + style.Heading("Run") + "\n  reply ";
    text += (result == "Reboot"    ? style.Notice(result)
             : result == "Success" ? style.Good(result)
                                   : style.Bad(result.empty() ? "none" : result)) +
            "\n\n";
  }
  const std::string ending = Printable(EndingText(chain));
  text += style.Heading("End") + "\n  " +
          (!chain.Succeeded()      ? style.Bad(ending)
           : chain.notTrue.empty() ? style.Good(ending)
                                   : style.Notice(ending)) +
          "\n";
  return text + NotTrueText(chain, style);
}

}  // namespace tool
