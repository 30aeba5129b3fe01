#include <algorithm>
#include <cstddef>
#include <vector>

#include "base/Pieces.h"
#include "tool/plan/PlanOutput.h"
#include "tool/plan/PlanText.h"

namespace tool {
namespace {

/// Values that take more characters stand on two lines.
constexpr std::size_t kWidestValues = 72;

std::string Toned(const Style& style, Tone tone, const std::string& text) {
  constexpr std::string (Style::*kTones[])(std::string_view)
      const = {&Style::Dim, &Style::Good, &Style::Notice, &Style::Bad};
  return tone == Tone::kPlain ? text : (style.*kTones[static_cast<std::size_t>(tone) - 1])(text);
}

/// Writes the commands of one plan, their names in one column.
class Tree {
 public:
  Tree(const std::vector<ShownBlock>& blocks, const Style& style) : style_(style) {
    for (const ShownBlock& block : blocks) {
      for (const ShownCommand& command : block.commands) {
        numberWidth_ = std::max(numberWidth_, command.number.size());
        nameWidth_ = std::max(nameWidth_, command.name.size());
        for (const ShownCommand& inner : command.commands) {
          nameWidth_ = std::max(nameWidth_, inner.name.size() + 2);
        }
      }
    }
  }

  std::string Block(const ShownBlock& block) const {
    const auto& [tone, heading] = block.heading;
    std::string text =
        (tone == Tone::kPlain ? style_.Heading(heading) : Toned(style_, tone, heading)) + "\n";
    for (const ShownCommand& command : block.commands) {
      const std::string indent(numberWidth_ + 2 - command.number.size(), ' ');
      text += Entry(indent + command.number + "  ", command, nameWidth_);
      for (const ShownCommand& inner : command.commands) {
        text += Entry(std::string(numberWidth_ + 6, ' '), inner, nameWidth_ - 2);
      }
    }
    for (const Line& line : block.lines) text += Toned(style_, line.tone, "  " + line.text) + "\n";
    return text;
  }

 private:
  static std::vector<Line> LinesOf(const ShownCommand& command) {
    const std::string& values = command.values;
    const std::size_t arrow =
        values.size() > kWidestValues ? values.find(" -> ") : std::string::npos;
    std::vector<Line> lines{{Tone::kPlain, command.description},
                            {Tone::kNotice, values.substr(0, arrow)}};
    if (arrow != std::string::npos) lines.push_back({Tone::kNotice, values.substr(arrow + 1)});
    lines.insert(lines.end(), command.notes.begin(), command.notes.end());
    std::erase_if(lines, [](const Line& line) { return line.text.empty(); });
    return lines;
  }

  std::string Entry(const std::string& indent, const ShownCommand& command,
                    std::size_t width) const {
    const std::string origin =
        command.section + (command.section.empty() ? "" : " ") + LinesText(command.lines);
    std::vector<Line> lines = LinesOf(command);
    if (lines.empty() && origin.empty()) return indent + command.name + "\n";
    if (lines.empty()) lines.emplace_back();
    const std::string name = Padded(command.name, width);
    const bool isDim = command.turn == Turn::kNotNeeded || command.turn == Turn::kNever;
    const Tone tone = isDim ? Tone::kDim : command.turn == Turn::kFails ? Tone::kBad : Tone::kPlain;
    std::string text = indent + Toned(style_, tone, name);
    for (const Line& line : lines) {
      const bool isFirst = &line == &lines.front();
      if (!isFirst) text += std::string(indent.size() + name.size(), ' ');
      if (!line.text.empty()) text += "  ";
      text += Toned(style_, isDim ? Tone::kDim : line.tone, line.text);
      if (isFirst && !origin.empty()) text += "  " + style_.Dim(origin);
      text += "\n";
    }
    return text;
  }

  const Style& style_;
  std::size_t numberWidth_ = 1;
  std::size_t nameWidth_ = 0;
};

/// A heading with the lines below it; nothing without lines.
std::string Block(const char* heading, const std::string& lines, const Style& style) {
  return lines.empty() ? lines : style.Heading(heading) + "\n" + lines;
}

std::string Adapters(const QueuePlan& plan, const Style& style) {
  std::vector<Row> rows;
  for (const PlannedAdapter& adapter : plan.adapters) {
    std::string text = AdapterFate(plan, adapter);
    if (!adapter.pciLocation.empty()) text += ", PCI location " + adapter.pciLocation;
    if (!adapter.macAddress.empty()) text += ", MAC address " + Printable(adapter.macAddress);
    rows.push_back({Printable(adapter.name), text});
  }
  return Block("Adapters", Rows(rows, "  "), style);
}

std::string Events(const QueuePlan& plan, const Style& style) {
  const std::vector<std::string> takers = TakersOf(plan);
  std::vector<Row> rows;
  for (std::size_t i = 0; i < plan.events.size(); ++i) {
    rows.push_back({EventText(plan.events[i]), takers[i].empty() ? "-" : takers[i]});
  }
  return Block("Events", Rows(rows, "  "), style);
}

std::string NotTrueText(const RestartChain& chain, const Style& style) {
  std::string text;
  for (const NotTrue& wish : chain.notTrue) {
    text += "  " + SectionText(wish.section) + " " + wish.lines + "  " + wish.what;
    if (!wish.description.empty()) text += "  " + Printable(wish.description);
    text += "\n";
    if (wish.current) text += "    " + IsAndWanted(wish) + "\n";
    text += "    " + style.Notice(Printable(wish.reason)) + "\n";
  }
  return Block("Still not true", text, style);
}

}  // namespace

std::string PlanReport(const QueuePlan& plan, const Style& style, bool verbose) {
  std::string text;
  if (plan.restored) text = style.Notice(kRestoreNotice) + "\n\n";
  const std::vector<ShownBlock> blocks = BlocksOf(plan);
  const Tree tree(blocks, style);
  for (const ShownBlock& block : blocks) text += tree.Block(block);
  std::string nothing;
  for (const auto& [what, lines, reason] : CameToNothing(plan)) {
    nothing += "  " + what + ", " + LinesText(lines) + ": " + reason + "\n";
  }
  text += Block("Asks for nothing", nothing, style);
  const std::string pauses = PauseText(plan);
  if (!pauses.empty()) text += Block("Pauses", "  " + pauses + "\n", style);
  return verbose ? text + Adapters(plan, style) + Events(plan, style) : text;
}

std::string ChainReport(const RestartChain& chain, const Style& style, bool verbose) {
  std::string text;
  for (const auto& step : chain.steps) {
    const std::uint32_t restarts = step.delivery.restarts;
    if (restarts > 0)
      text += style.Notice("-- restart " + std::to_string(restarts) + " --") + "\n\n";
    const std::string result = step.delivery.Result();
    text += PlanReport(step.plan, style, verbose) + style.Heading("Run") + "\n  reply " +
            Toned(style, ToneOf(result), result.empty() ? "none" : result) + "\n\n";
  }
  return text + style.Heading("End") + "\n  " +
         Toned(style, ToneOf(chain), Printable(EndingText(chain))) + "\n" +
         NotTrueText(chain, style);
}

}  // namespace tool
