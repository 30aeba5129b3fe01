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

/// The same for lists and distinguished names, which may break behind their commas.
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

/// A taker's text, as a link to its place in the first plan's queue.
std::string TakerLink(const std::string& taker, const std::string& shown) {
  const std::string number = taker.substr(0, taker.find(' '));
  if (number.empty() || number == "dropped") return Escaped(shown);
  return "<a href=\"#s1c" + number + "\">" + Escaped(shown) + "</a>";
}

const char* ClassOf(Turn turn) {
  constexpr const char* kClasses[] = {"", "fails", "waits", "never", "not-needed"};
  return kClasses[static_cast<std::size_t>(turn)];
}

std::string CommandHtml(const ShownCommand& command) {
  std::string html = "<div class=\"head\">";
  if (!command.number.empty()) html += Element("b", "", command.number);
  html += Element("b", "", Shown(command.name));
  if (!command.description.empty()) html += Element("span", "mono", Listed(command.description));
  if (!command.values.empty()) {
    html += Element("span", "values mono", WithArrow(Listed(command.values)));
  }
  if (!command.lines.empty()) {
    html += Element("span", "from soft", Escaped(command.section) + " " + LineLinks(command.lines));
  }
  html += "</div>";
  for (const Line& note : command.notes) {
    html += Element("p", note.tone == Tone::kPlain ? "soft" : ClassOf(note.tone), Shown(note.text));
  }
  if (command.commands.empty()) return html;
  html += "<ul>\n";
  for (const ShownCommand& inner : command.commands) {
    html += Element("li", ClassOf(inner.turn), CommandHtml(inner));
  }
  return html + "</ul>";
}

/// The queue of one start, whose commands have identifiers that begin with `prefix`.
std::string QueueHtml(const QueuePlan& plan, const std::string& prefix) {
  std::string html;
  for (const ShownBlock& block : BlocksOf(plan)) {
    html += Element("h3", ClassOf(block.heading.tone), Escaped(block.heading.text)) + "\n";
    if (!block.commands.empty()) html += "<ol class=\"queue\">\n";
    for (const ShownCommand& command : block.commands) {
      html += command.number.empty() ? "<li" : "<li id=\"" + prefix + command.number + "\"";
      html += " class=\"" + std::string(ClassOf(command.turn)) + "\">" + CommandHtml(command) +
              "</li>\n";
    }
    if (!block.commands.empty()) html += "</ol>\n";
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

std::string RunHtml(const Delivery& delivery) {
  const std::string result = delivery.Result();
  std::string html =
      "<h3>Its run</h3>\n<p>The reply is " +
      Element("b", ClassOf(ToneOf(result)), result.empty() ? "missing" : Shown(result)) +
      ".</p>\n<details><summary>" + base::Counted(delivery.changes.size(), "change") +
      "</summary>\n<ol>\n";
  for (const simulated::Change& change : delivery.changes) {
    const ChangeText text = Describe(change);
    html += "<li>" + Escaped(text.words);
    if (!text.refusal.empty())
      html += " " + Element("span", "bad", "refused: " + Escaped(text.refusal));
    html += "</li>\n";
  }
  return html + "</ol></details>\n";
}

std::string Starts(const RestartChain& chain) {
  std::string html;
  for (std::size_t i = 0; i < chain.steps.size(); ++i) {
    const ChainStep& step = chain.steps[i];
    const std::string number = std::to_string(i + 1);
    html += "<h2 id=\"start" + number + "\">Plan";
    if (step.delivery.restarts > 0) {
      html += " after restart " + std::to_string(step.delivery.restarts);
    }
    html += "</h2>\n";
    html += Paragraph("", Escaped(SummaryText(step.plan)));
    if (step.plan.restored) html += Paragraph("wait", kRestoreNotice);
    html += QueueHtml(step.plan, "s" + number + "c") + NothingHtml(step.plan);
    const std::string pauses = PauseText(step.plan);
    if (!pauses.empty()) html += Paragraph("soft", "Pauses: " + Escaped(pauses));
    html += RunHtml(step.delivery);
  }
  return html;
}

std::string NotTrueHtml(const RestartChain& chain) {
  std::string items;
  for (const NotTrue& wish : chain.notTrue) {
    ShownCommand shown{Turn::kFails, "", wish.what, wish.description, "", "", {}, {}, {}};
    shown.notes = {{Tone::kPlain, SectionText(wish.section) + " " + wish.lines},
                   {Tone::kPlain, wish.reason}};
    if (wish.current) {
      shown.values = "is " + OrNone(*wish.current) + ", wanted " + OrNone(*wish.wanted);
    }
    items += Element("li", "fails", CommandHtml(shown));
  }
  return items.empty()
             ? items
             : "<h2 id=\"not-true\">Still not true</h2>\n" + Element("ul", "queue", items) + "\n";
}

std::string MachineHtml(const simulated::Machine& before, const simulated::Machine& after) {
  const std::string html = "<h2 id=\"machine\">Machine, before and after</h2>\n";
  const std::vector<Difference> differences = Differences(before, after);
  if (differences.empty()) return html + Paragraph("soft", "No difference.");
  std::vector<std::vector<std::string>> rows;
  std::string subject;
  for (const Difference& difference : differences) {
    if (difference.subject != subject) rows.push_back({Escaped(difference.subject)});
    subject = difference.subject;
    rows.push_back(
        {Escaped(difference.setting), Listed(difference.before), Listed(difference.after)});
  }
  return html + Table({"Setting", "Before", "After"}, rows);
}

std::string AdaptersHtml(const QueuePlan& plan) {
  if (plan.adapters.empty()) return {};
  std::vector<std::vector<std::string>> rows;
  for (const PlannedAdapter& adapter : plan.adapters) {
    rows.push_back({Shown(adapter.name), adapter.pciLocation, Shown(adapter.macAddress),
                    Escaped(AdapterFate(plan, adapter))});
  }
  return "<h2 id=\"adapters\">Adapters</h2>\n" + Table({"Adapter", "PCI", "MAC", "Use"}, rows);
}

std::string EventsHtml(const QueuePlan& plan) {
  if (plan.events.empty()) return {};
  const std::vector<std::string> takers = TakersOf(plan);
  std::vector<std::vector<std::string>> rows;
  for (std::size_t i = 0; i < plan.events.size(); ++i) {
    const PlannedEvent& event = plan.events[i];
    rows.push_back({event.line != 0 ? LineLink(event.line) : "registry", Shown(event.section),
                    Shown(event.key), "<code>" + event.kind + "</code>", Escaped(ShownValue(event)),
                    TakerLink(takers[i], takers[i])});
  }
  return "<h2 id=\"events\">Events of the file</h2>\n<details><summary>" +
         base::Counted(plan.events.size(), "event") + "</summary>\n" +
         Table({"Line", "Section", "Key", "Event", "Value", "Command"}, rows) + "</details>\n";
}

std::string FileHtml(const QueuePlan& plan, const std::string& name) {
  // Which commands of the first start each line asks for.
  const std::vector<std::string> takers = TakersOf(plan);
  std::map<std::size_t, std::set<std::string>> byLine;
  for (std::size_t i = 0; i < plan.events.size(); ++i) {
    auto& numbers = byLine[plan.events[i].line];
    if (!takers[i].empty()) numbers.insert(takers[i].substr(0, takers[i].find(' ')));
  }
  std::string html = "<h2 id=\"file\">" + Shown(name) + "</h2>\n<ol class=\"file\">\n";
  std::istringstream text(ToUtf8(simulated::RedactedFile(plan.text)));
  std::size_t number = 0;
  for (std::string line; std::getline(text, line);) {
    if (line.ends_with('\r')) line.pop_back();
    std::replace(line.begin(), line.end(), '\t', ' ');
    const auto asks = byLine.find(++number);
    html += "<li id=\"L" + std::to_string(number) + "\"";
    html += asks != byLine.end() ? " class=\"asks\">" : ">";
    html +=
        Element("span", "number", std::to_string(number)) + Element("span", "text", Shown(line));
    if (asks != byLine.end()) {
      std::string links;
      for (const std::string& taker : asks->second) links += " " + TakerLink(taker, taker);
      html += Element("span", "to soft", links.empty() ? "nothing" : links);
    }
    html += "</li>\n";
  }
  return html + "</ol>\n";
}

std::string Navigation(const RestartChain& chain) {
  std::string html = "<nav>";
  for (std::size_t i = 0; i < chain.steps.size(); ++i) {
    html += "<a href=\"#start" + std::to_string(i + 1) + "\">" +
            (i == 0 ? "Plan" : "Restart " + std::to_string(chain.steps[i].delivery.restarts)) +
            "</a>";
  }
  if (!chain.notTrue.empty()) html += "<a href=\"#not-true\">Still not true</a>";
  html += "<a href=\"#machine\">Machine</a>";
  const QueuePlan& plan = chain.steps.front().plan;
  if (!plan.adapters.empty()) html += "<a href=\"#adapters\">Adapters</a>";
  if (!plan.events.empty()) html += "<a href=\"#events\">Events</a>";
  return html + "<a href=\"#file\">File</a></nav>\n";
}

}  // namespace

std::string PlanPage(const PlanPageInput& input) {
  const RestartChain& chain = input.chain;
  const QueuePlan& first = chain.steps.front().plan;
  return Page(
      "Plan of " + Shown(input.fileName),
      Paragraph("soft", "Machine: " + Escaped(MachineText(input.machineName, input.before))) +
          (input.checkRemark.empty() ? ""
                                     : Paragraph("bad", "Check: " + Shown(input.checkRemark))) +
          Paragraph(std::string("ending ") + ClassOf(ToneOf(chain)), Shown(EndingText(chain))) +
          Navigation(chain),
      Starts(chain) + NotTrueHtml(chain) + MachineHtml(input.before, chain.after) +
          AdaptersHtml(first) + EventsHtml(first) +
          FileHtml(first, first.restored ? "The restore file" : input.fileName));
}

}  // namespace tool
