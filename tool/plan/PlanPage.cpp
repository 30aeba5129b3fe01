#include <algorithm>
#include <cstddef>
#include <map>
#include <set>
#include <sstream>
#include <string_view>
#include <utility>
#include <vector>

#include "base/Numbers.h"
#include "base/Utf8.h"
#include "platform/simulated/Secrets.h"
#include "tool/io/CodePage.h"
#include "tool/io/Html.h"
#include "tool/io/Text.h"
#include "tool/machine/ChangeText.h"
#include "tool/machine/MachineDifference.h"
#include "tool/plan/PlanOutput.h"
#include "tool/plan/PlanText.h"
#include "tool/plan/UnusedKeys.h"

namespace tool {
namespace {

/// A text as it is shown, with line breaks allowed after its commas.
std::string Listed(std::string_view text) {
  std::string listed;
  for (const char c : Shown(text)) {
    listed += c;
    if (c == ',') listed += "<wbr>";
  }
  return listed;
}

/// The arrow between two values as one character.
std::string WithArrow(std::string text) {
  constexpr std::string_view kTyped = "-&gt; ";
  const std::size_t arrow = text.find(kTyped);
  return arrow == std::string::npos ? text : text.replace(arrow, kTyped.size(), "\u2192 ");
}

const char* ClassOf(Tone tone) {
  constexpr const char* kClasses[] = {"", "soft", "good", "wait", "bad"};
  return kClasses[static_cast<std::size_t>(tone)];
}

std::string LineLink(std::size_t line) {
  const std::string number = std::to_string(line);
  return "<a href=\"#L" + number + "\">" + number + "</a>";
}

std::string LineLinks(const std::set<std::size_t>& lines) {
  if (lines.contains(0)) return LinesText(lines);
  std::string html = lines.size() > 1 ? "lines" : lines.empty() ? "" : "line";
  for (const std::size_t line : lines) html += " " + LineLink(line);
  return html;
}

/// The command that took an event, as a link to its place in the first plan's queue.
std::string TakerLink(const std::string& taker) {
  const std::string number = taker.substr(0, taker.find(' '));
  if (number.empty() || number == "dropped") return Escaped(taker);
  return "<a href=\"#s1c" + number + "\">" + Escaped(taker) + "</a>";
}

const char* ClassOf(Turn turn) {
  constexpr const char* kClasses[] = {"", "fails", "waits", "never", "not-needed"};
  return kClasses[static_cast<std::size_t>(turn)];
}

std::string CommandHtml(const ShownCommand& command) {
  std::string html;
  if (!command.number.empty()) html += Element("b", "", command.number);
  html += Element("b", "", Shown(command.name));
  if (!command.description.empty()) html += Element("span", "mono", Listed(command.description));
  if (!command.values.empty()) {
    html += Element("span", "values mono", WithArrow(Listed(command.values)));
  }
  if (!command.lines.empty()) {
    html += Element("span", "from soft", Escaped(command.section) + " " + LineLinks(command.lines));
  }
  html = Element("div", "head", html);
  for (const Line& note : command.notes) {
    html += Element("p", note.tone == Tone::kPlain ? "soft" : ClassOf(note.tone), Shown(note.text));
  }
  std::string items;
  for (const ShownCommand& inner : command.commands) {
    items += Element("li", ClassOf(inner.turn), CommandHtml(inner));
  }
  return items.empty() ? html : html + Element("ul", "", "\n" + items);
}

/// The queue of one start, whose commands have identifiers that begin with `prefix`.
std::string QueueHtml(const QueuePlan& plan, const std::string& prefix) {
  std::string html;
  for (const ShownBlock& block : BlocksOf(plan)) {
    html += Element("h3", ClassOf(block.heading.tone), Escaped(block.heading.text)) + "\n";
    std::string items;
    for (const ShownCommand& command : block.commands) {
      items += command.number.empty() ? "<li" : "<li id=\"" + prefix + command.number + "\"";
      items += " class=\"" + std::string(ClassOf(command.turn)) + "\">" + CommandHtml(command) +
               "</li>\n";
    }
    if (!items.empty()) html += Element("ol", "queue", "\n" + items) + "\n";
    for (const Line& line : block.lines) html += Paragraph(ClassOf(line.tone), Shown(line.text));
  }
  return html;
}

std::string NothingHtml(const QueuePlan& plan) {
  std::string items;
  for (const Unanswered& ask : CameToNothing(plan)) {
    items += Element("li", "not-needed",
                     Escaped(ask.what) + ", " + LineLinks(ask.lines) + ": " + Shown(ask.reason));
  }
  return items.empty() ? items
                       : "<h3>Asks for nothing</h3>\n" + Element("ul", "queue", items) + "\n";
}

std::string Folded(std::size_t count, const char* noun, const std::string& content) {
  return "<details><summary>" + base::Counted(count, noun) + "</summary>\n" + content +
         "</details>\n";
}

std::string RunHtml(const Delivery& delivery) {
  const std::string result = delivery.Result();
  std::string changes;
  for (const simulated::Change& change : delivery.changes) {
    const auto& [words, refusal, note] = Describe(change);
    changes += "<li>" + Escaped(words);
    if (!refusal.empty()) changes += " " + Element("span", "bad", "refused: " + Escaped(refusal));
    changes += "</li>\n";
  }
  return "<h3>Its run</h3>\n<p>The reply is " +
         Element("b", ClassOf(ToneOf(result)), result.empty() ? "missing" : Shown(result)) +
         ".</p>\n" + Folded(delivery.changes.size(), "change", "<ol>\n" + changes + "</ol>");
}

/// The `number`-th start, counted from 1.
std::string StartHtml(const ChainStep& step, const std::string& number) {
  const std::string pauses = PauseText(step.plan);
  return Paragraph("", Escaped(SummaryText(step.plan))) +
         (step.plan.restored ? Paragraph("wait", kRestoreNotice) : "") +
         QueueHtml(step.plan, "s" + number + "c") + NothingHtml(step.plan) +
         (pauses.empty() ? "" : Paragraph("soft", "Pauses: " + Escaped(pauses))) +
         RunHtml(step.delivery);
}

std::string NotTrueHtml(const RestartChain& chain) {
  std::string items;
  for (const NotTrue& wish : chain.notTrue) {
    ShownCommand shown{Turn::kFails, wish.what, wish.description, IsAndWanted(wish), "", {}};
    shown.notes = {{{}, SectionText(wish.section) + " " + wish.lines}, {{}, wish.reason}};
    items += Element("li", "fails", CommandHtml(shown));
  }
  return items.empty() ? items : Element("ul", "queue", items) + "\n";
}

std::string MachineHtml(const simulated::Machine& before, const simulated::Machine& after) {
  std::vector<std::vector<std::string>> rows;
  std::string last;
  for (const auto& [subject, setting, was, is] : Differences(before, after)) {
    if (subject != last) rows.push_back({Escaped(subject)});
    rows.push_back({Escaped(setting), Listed(was), Listed(is)});
    last = subject;
  }
  return rows.empty() ? Paragraph("soft", "No difference.")
                      : Table({"Setting", "Before", "After"}, rows);
}

std::string AdaptersHtml(const QueuePlan& plan) {
  std::vector<std::vector<std::string>> rows;
  for (const PlannedAdapter& adapter : plan.adapters) {
    rows.push_back({Shown(adapter.name), adapter.pciLocation, Shown(adapter.macAddress),
                    Escaped(AdapterFate(plan, adapter))});
  }
  return rows.empty() ? "" : Table({"Adapter", "PCI", "MAC", "Use"}, rows);
}

std::string EventsHtml(const QueuePlan& plan) {
  if (plan.events.empty()) return {};
  const std::vector<std::string> takers = TakersOf(plan);
  std::vector<std::vector<std::string>> rows;
  for (std::size_t i = 0; i < plan.events.size(); ++i) {
    const PlannedEvent& event = plan.events[i];
    rows.push_back({event.line != 0 ? LineLink(event.line) : "registry", Shown(event.section),
                    Shown(event.key), "<code>" + event.kind + "</code>", Escaped(ShownValue(event)),
                    TakerLink(takers[i])});
  }
  return Folded(rows.size(), "event",
                Table({"Line", "Section", "Key", "Event", "Value", "Command"}, rows));
}

std::string FileHtml(const QueuePlan& plan) {
  // Which commands of the first start each line asks for.
  const std::vector<std::string> takers = TakersOf(plan);
  std::map<std::size_t, std::set<std::string>> byLine;
  for (std::size_t i = 0; i < plan.events.size(); ++i) {
    auto& numbers = byLine[plan.events[i].line];
    if (!takers[i].empty()) numbers.insert(takers[i].substr(0, takers[i].find(' ')));
  }
  std::string html = "<ol class=\"file\">\n";
  std::istringstream text(ToUtf8(simulated::RedactedFile(plan.text)));
  std::size_t number = 0;
  for (std::string line; std::getline(text, line);) {
    if (line.ends_with('\r')) line.pop_back();
    std::replace(line.begin(), line.end(), '\t', ' ');
    const auto asks = byLine.find(++number);
    const std::string shown = std::to_string(number);
    html += "<li id=\"L" + shown + (asks != byLine.end() ? "\" class=\"asks\">" : "\">") +
            Element("span", "number", shown) + Element("span", "text", Shown(line));
    if (asks != byLine.end()) {
      std::string links;
      for (const std::string& taker : asks->second) links += " " + TakerLink(taker);
      html += Element("span", "to soft", links.empty() ? "nothing" : links);
    }
    html += "</li>\n";
  }
  return html + "</ol>\n";
}

/// A part of the page; without content it is left out.
struct Part {
  std::string id;
  /// In the navigation.
  std::string name;
  std::string heading;
  std::string content;
};

std::vector<Part> PartsOf(const PlanPageInput& input) {
  std::vector<Part> parts;
  for (const ChainStep& step : input.chain.steps) {
    const std::string number = std::to_string(parts.size() + 1);
    const std::string restarts = std::to_string(step.delivery.restarts);
    const bool isFirst = step.delivery.restarts == 0;
    parts.push_back({"start" + number, isFirst ? "Plan" : "Restart " + restarts,
                     isFirst ? "Plan" : "Plan after restart " + restarts, StartHtml(step, number)});
  }
  const QueuePlan& first = input.chain.steps.front().plan;
  parts.insert(parts.end(),
               {{"not-true", "Still not true", "Still not true", NotTrueHtml(input.chain)},
                {"machine", "Machine", "Machine, before and after",
                 MachineHtml(input.before, input.chain.after)},
                {"adapters", "Adapters", "Adapters", AdaptersHtml(first)},
                {"events", "Events", "Events of the file", EventsHtml(first)},
                {"file", "File", first.restored ? "The restore file" : Shown(input.fileName),
                 FileHtml(first)}});
  std::erase_if(parts, [](const Part& part) { return part.content.empty(); });
  return parts;
}

}  // namespace

std::string PlanPage(const PlanPageInput& input) {
  std::string links;
  std::string body;
  for (const auto& [id, name, heading, content] : PartsOf(input)) {
    links += "<a href=\"#" + id + "\">" + name + "</a>";
    body += "<h2 id=\"" + id + "\">" + heading + "</h2>\n" + content;
  }
  std::string header =
      Paragraph("soft", "Machine: " + Escaped(MachineText(input.machineName, input.before)));
  if (!input.checkRemark.empty()) header += Paragraph("bad", "Check: " + Shown(input.checkRemark));
  header += Paragraph(std::string("ending ") + ClassOf(ToneOf(input.chain)),
                      Escaped(SummaryText(input.chain))) +
            Element("nav", "", links) + "\n";
  return Page("Plan of " + Shown(input.fileName), header, body);
}

}  // namespace tool
