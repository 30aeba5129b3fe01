#include "tool/plan/PlanPage.h"

#include <algorithm>
#include <cstddef>
#include <map>
#include <set>
#include <string_view>
#include <utility>
#include <vector>

#include "base/Numbers.h"
#include "base/Utf8.h"
#include "platform/simulated/Secrets.h"
#include "tool/io/CodePage.h"
#include "tool/io/Text.h"
#include "tool/machine/ChangeText.h"
#include "tool/machine/MachineDifference.h"
#include "tool/plan/PlanText.h"
#include "tool/plan/UnusedKeys.h"

namespace tool {
namespace {

constexpr char kStyle[] = R"css(
:root { color-scheme: light dark; --ground: #f7f7f5; --sheet: #fff; --ink: #1d2126; --soft: #59626d;
  --line: #d9dcdf; --now: #0b62a8; --wait: #8a5300; --good: #1d6b38; --bad: #b3261e; --code: #eef1f4; }
@media (prefers-color-scheme: dark) {
  :root { --ground: #14171a; --sheet: #1d2125; --ink: #e5e8eb; --soft: #a0a9b3; --line: #363c43;
    --now: #7cbcf2; --wait: #efb765; --good: #82cf9b; --bad: #ff9d94; --code: #272d33; } }
* { box-sizing: border-box; }
body { margin: 0 auto; padding: 1rem; max-width: 62rem; background: var(--ground); color: var(--ink);
  font: 1rem/1.5 system-ui, sans-serif; overflow-wrap: anywhere; }
h1 { margin: .5rem 0; font-size: 1.5rem; line-height: 1.25; }
h2 { margin: 2rem 0 .5rem; font-size: 1.2rem; }
h3 { margin: 1.25rem 0 .5rem; font-size: 1rem; color: var(--soft); }
p { margin: .25rem 0; }
a { color: var(--now); }
nav a { display: inline-block; padding: .35rem .9rem .35rem 0; }
code, pre, .mono { font-family: ui-monospace, Consolas, monospace; font-size: .9em; }
.soft { color: var(--soft); }
.good { color: var(--good); } .bad { color: var(--bad); } .wait { color: var(--wait); }
.ending { padding: .6rem .9rem; border-left: .3rem solid; background: var(--sheet); }
ol.queue, ul.plain { margin: 0; padding: 0; list-style: none; }
ol.queue > li, .card { margin: .5rem 0; padding: .6rem .9rem; background: var(--sheet);
  border: 1px solid var(--line); border-left: .3rem solid var(--now); border-radius: .3rem; }
ol.queue > li.waits { border-left-color: var(--wait); }
ol.queue > li.fails, ol.queue > li.never, .card.bad { border-left-color: var(--bad); color: inherit; }
ol.queue > li.never { opacity: .7; }
ol.queue > li.restart { padding: .35rem .9rem; text-align: center; color: var(--wait);
  background: none; border: 1px dashed; }
ol.queue > li.restart.bad { color: var(--bad); }
.card.idle { border-left-color: var(--line); }
li .head { display: flex; flex-wrap: wrap; gap: .1rem .75rem; align-items: baseline; }
li .head b { min-width: 1.5rem; }
.from { font-size: .9em; }
li ul { margin: .4rem 0 0; padding: 0 0 0 1rem; border-left: 1px solid var(--line); list-style: none; }
li ul li { padding: .2rem 0; }
.values { display: inline-block; padding: 0 .4rem; background: var(--code); border-radius: .2rem; }
.not-needed { color: var(--soft); }
table { width: 100%; border-collapse: collapse; background: var(--sheet); }
th, td { padding: .35rem .6rem; border: 1px solid var(--line); text-align: left; vertical-align: top;
  overflow-wrap: anywhere; }
td[data-name="Setting"] { min-width: 9rem; }
th { color: var(--soft); font-weight: 600; }
tr.subject td { font-weight: 600; background: var(--code); }
tr:target, .file li:target { outline: 2px solid var(--now); }
summary { cursor: pointer; padding: .35rem 0; color: var(--now); }
ol.file { margin: 0; padding: .6rem 0; background: var(--sheet); border: 1px solid var(--line);
  list-style: none; font: .9em/1.55 ui-monospace, Consolas, monospace; }
.file li { display: flex; gap: .75rem; padding: 0 .75rem; }
.file li.asks { background: var(--code); }
.file .number { flex: 0 0 2.5rem; text-align: right; color: var(--soft); user-select: none; }
.file .text { flex: 1; white-space: pre-wrap; }
.file .to { white-space: nowrap; }
@media (max-width: 40rem) {
  body { padding: .75rem; }
  .from { flex-basis: 100%; }
  table, tbody, tr, td { display: block; }
  thead { display: none; }
  tr { border: 1px solid var(--line); border-bottom: 0; }
  tbody tr:last-child { border-bottom: 1px solid var(--line); }
  td { border: 0; padding: .2rem .6rem; overflow-wrap: anywhere; }
  td:empty { display: none; }
  td[data-name]::before { content: attr(data-name) ": "; color: var(--soft); }
  .file .number { flex-basis: 1.75rem; }
}
)css";

std::string Escaped(std::string_view text) {
  std::string escaped;
  escaped.reserve(text.size());
  for (const char c : text) {
    escaped += c == '&'   ? "&amp;"
               : c == '<' ? "&lt;"
               : c == '>' ? "&gt;"
               : c == '"' ? "&quot;"
                          : std::string(1, c);
  }
  return escaped;
}

/// Text of a file or a machine, safe on a page.
std::string Shown(std::string_view text) { return Escaped(Printable(text)); }

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

std::string Element(const char* name, const char* className, const std::string& content) {
  return "<" + std::string(name) + (*className != '\0' ? " class=\"" : "") + className +
         (*className != '\0' ? "\">" : ">") + content + "</" + name + ">";
}

std::string LineLink(std::size_t line) {
  const std::string number = std::to_string(line);
  return "<a href=\"#L" + number + "\">" + number + "</a>";
}

std::string LineLinks(const std::set<std::size_t>& lines) {
  std::string html = lines.size() == 1 ? "line" : "lines";
  for (const std::size_t line : lines) html += " " + LineLink(line);
  return html;
}

/// A taker's text, as a link to its place in the first plan's queue.
std::string TakerLink(const std::string& taker, const std::string& shown) {
  const std::string number = taker.substr(0, taker.find(' '));
  if (number.empty() || number == "dropped") return Escaped(shown);
  return "<a href=\"#s1c" + number + "\">" + Escaped(shown) + "</a>";
}

/// Rows of cells; on a narrow page each cell is shown with its column's name. A row of one cell is
/// a heading across the table.
std::string Table(const std::vector<const char*>& names,
                  const std::vector<std::vector<std::string>>& rows) {
  std::string html = "<table><thead><tr>";
  for (const char* name : names) html += Element("th", "", name);
  html += "</tr></thead><tbody>\n";
  for (const std::vector<std::string>& row : rows) {
    if (row.size() == 1) {
      html += "<tr class=\"subject\"><td colspan=\"" + std::to_string(names.size()) + "\">" +
              row[0] + "</td></tr>\n";
      continue;
    }
    html += "<tr>";
    for (std::size_t i = 0; i < row.size(); ++i) {
      html += "<td data-name=\"" + std::string(names[i]) + "\">" + row[i] + "</td>";
    }
    html += "</tr>\n";
  }
  return html + "</tbody></table>\n";
}

/// The commands of one start.
class StartSection {
 public:
  StartSection(const QueuePlan& plan, std::size_t start)
      : plan_(plan),
        prefix_("s" + std::to_string(start + 1) + "c"),
        goesOn_(FateOfRestart(plan) == RestartFate::kStops) {}

  std::string Queue() const {
    if (plan_.error) return Error(*plan_.error);
    const std::size_t runsNow = plan_.RunsNow();
    std::string html = "<h3>Runs now</h3>\n";
    if (runsNow == 0) html += Element("p", "soft", "Nothing.") + "\n";
    html += "<ol class=\"queue\">\n";
    for (std::size_t i = 0; i < plan_.commands.size(); ++i) {
      html += plan_.commands[i].Is("Reboot") ? RestartItem(i) : Item(i, /*waits=*/i > runsNow);
    }
    html += "</ol>\n";
    if (!plan_.dropped.empty()) {
      html += "<h3>Dropped</h3>\n<ul class=\"plain\">\n";
      for (const PlannedCommand& command : plan_.dropped) {
        html += "<li class=\"card idle not-needed\">" + Head("", command) + "</li>\n";
      }
      html += "</ul>\n";
    }
    return html;
  }

 private:
  static std::string Error(const PlanError& error) {
    return Element("p", "card bad",
                   "<b>No plan.</b> " + Shown(error.source) + ":" + std::to_string(error.line) +
                       " - " + Shown(error.message) + " <span class=\"soft\">(" +
                       Shown(error.className) + ", value " + std::to_string(error.value) +
                       ", system error " + std::to_string(error.systemError) + ")</span>") +
           "\n";
  }

  std::string RestartItem(std::size_t position) const {
    const bool isFirst = position == plan_.RunsNow();
    const bool isLast = position + 1 == plan_.commands.size();
    if (!isFirst) return goesOn_ ? Element("li", "restart", "one more restart") + "\n" : "";
    std::string text = RestartText(plan_);
    if (!isLast) {
      text += goesOn_ ? "; what follows waits for it and is planned anew then"
                      : "; what follows is never done: the run fails and the file is put away";
    }
    return Element("li", goesOn_ ? "restart" : "restart bad", text) + "\n";
  }

  std::string Item(std::size_t position, bool waits) const {
    const PlannedCommand& command = plan_.commands[position];
    const std::string number = std::to_string(position + 1);
    std::string html = "<li id=\"" + prefix_ + number + "\"";
    html += command.LacksAdapter() ? " class=\"fails\">"
            : !waits               ? ">"
            : goesOn_              ? " class=\"waits\">"
                                   : " class=\"never\">";
    html += Head(number, command);
    if (command.binding) html += Binding(position);
    if (!command.commands.empty()) {
      html += "<ul>\n";
      for (const PlannedCommand& inner : command.commands) {
        html += Element("li", inner.needed ? "" : "not-needed", Head("", inner, /*isInner=*/true)) +
                "\n";
      }
      html += "</ul>";
    }
    return html + "</li>\n";
  }

  std::string Binding(std::size_t position) const {
    const bool fails = plan_.commands[position].LacksAdapter();
    std::string html = Element("p", fails ? "bad" : "", Shown(AdapterText(plan_, position)));
    html += Element("p", "soft", Shown(BindingText(plan_, position)));
    std::string passedOver;
    for (const std::string& reason : PassedOver(plan_, position)) {
      passedOver += (passedOver.empty() ? "Passed over: " : ", ") + Shown(reason);
    }
    return passedOver.empty() ? html : html + Element("p", "soft", passedOver);
  }

  std::string Head(const std::string& number, const PlannedCommand& command,
                   bool isInner = false) const {
    std::string html = "<div class=\"head\">";
    if (!number.empty()) html += Element("b", "", number);
    html += Element("b", "", Shown(command.ShortName()));
    if (!command.description.empty()) html += Element("span", "mono", Listed(command.description));
    const std::string values = ComparisonText(command);
    if (!values.empty()) html += Element("span", "values mono", WithArrow(Listed(values)));
    std::string from = isInner ? "" : Escaped(SectionOf(plan_, command));
    if (!from.empty()) from += " ";
    if (!command.events.empty()) from += Origin(command);
    return html + (from.empty() ? "" : Element("span", "from soft", from)) + "</div>";
  }

  /// The lines of the file as links.
  std::string Origin(const PlannedCommand& command) const {
    std::set<std::size_t> lines;
    for (const std::size_t event : command.events) lines.insert(plan_.events[event].line);
    return *lines.begin() == 0 ? Escaped(LinesOf(plan_, command)) : LineLinks(lines);
  }

  const QueuePlan& plan_;
  std::string prefix_;
  /// What stands behind the restart gets its turn.
  bool goesOn_;
};

std::string NothingHtml(const QueuePlan& plan) {
  std::string items;
  for (const Unanswered& ask : CameToNothing(plan)) {
    items += Element("li", "card idle",
                     Escaped(ask.what) + ", " + LineLinks(ask.lines) + ": " + Shown(ask.reason)) +
             "\n";
  }
  return items.empty() ? items
                       : "<h3>Asks for nothing</h3>\n<ul class=\"plain\">\n" + items + "</ul>\n";
}

std::string RunHtml(const Delivery& delivery) {
  const std::string result = delivery.Result();
  std::string html = "<h3>Its run</h3>\n<p>The reply is ";
  html += Element("b",
                  result == "Reboot"    ? "wait"
                  : result == "Success" ? "good"
                                        : "bad",
                  result.empty() ? "missing" : Shown(result)) +
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
    const StartSection section(step.plan, i);
    html += "<h2 id=\"start" + std::to_string(i + 1) + "\">";
    html += step.delivery.restarts == 0
                ? "Plan"
                : "Plan after restart " + std::to_string(step.delivery.restarts);
    html += "</h2>\n";
    if (step.plan.restored) {
      html += Element("p", "wait",
                      "A restore file is pending: it takes the place of this one and is planned.") +
              "\n";
    }
    html += section.Queue() + NothingHtml(step.plan);
    const std::string pauses = PauseText(step.plan);
    if (!pauses.empty()) html += Element("p", "soft", "Pauses: " + Escaped(pauses)) + "\n";
    html += RunHtml(step.delivery);
  }
  return html;
}

std::string NotTrueHtml(const RestartChain& chain) {
  if (chain.notTrue.empty()) return {};
  std::string html = R"(<h2 id="not-true">Still not true</h2>
<ul class="plain">
)";
  for (const NotTrue& wish : chain.notTrue) {
    html += "<li class=\"card bad\"><div class=\"head\">" + Element("b", "", Shown(wish.what)) +
            Element("span", "mono", Listed(wish.description));
    if (wish.current) {
      html += Element("span", "values mono",
                      Listed("is " + OrNone(*wish.current) + ", wanted " + OrNone(*wish.wanted)));
    }
    html +=
        Element("span", "from soft", Escaped(SectionText(wish.section)) + " " + Shown(wish.lines)) +
        "</div>" + Element("p", "", Shown(wish.reason)) + "</li>\n";
  }
  return html + "</ul>\n";
}

std::string MachineHtml(const simulated::Machine& before, const simulated::Machine& after) {
  const std::string html = "<h2 id=\"machine\">Machine, before and after</h2>\n";
  const std::vector<Difference> differences = Differences(before, after);
  if (differences.empty()) return html + Element("p", "soft", "No difference.") + "\n";
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
  const std::string text = ToUtf8(simulated::RedactedFile(plan.text));
  std::size_t number = 0;
  for (std::size_t start = 0; start < text.size();) {
    const std::size_t end = std::min(text.find('\n', start), text.size());
    std::string_view line = std::string_view(text).substr(start, end - start);
    if (line.ends_with('\r')) line.remove_suffix(1);
    std::string shown(line);
    std::replace(shown.begin(), shown.end(), '\t', ' ');
    const auto asks = byLine.find(++number);
    html += "<li id=\"L" + std::to_string(number) + "\"";
    html += asks != byLine.end() ? " class=\"asks\">" : ">";
    html +=
        Element("span", "number", std::to_string(number)) + Element("span", "text", Shown(shown));
    if (asks != byLine.end()) {
      std::string links;
      for (const std::string& taker : asks->second) links += " " + TakerLink(taker, taker);
      html += Element("span", "to soft", links.empty() ? "nothing" : links);
    }
    html += "</li>\n";
    start = end + 1;
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
  const std::string title = "Plan of " + Shown(input.fileName);
  const char* const tone = !chain.Succeeded()                    ? "ending bad"
                           : chain.ending == ChainEnding::kLimit ? "ending wait"
                           : chain.notTrue.empty()               ? "ending good"
                                                                 : "ending wait";
  return R"(<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<meta http-equiv="Content-Security-Policy" content="default-src 'none'; style-src 'unsafe-inline'">
<title>)" +
         title + "</title>\n<style>" + kStyle + "</style>\n</head>\n<body>\n<header>\n<h1>" +
         title + "</h1>\n" +
         Element("p", "soft", "Machine: " + Escaped(MachineText(input.machineName, input.before))) +
         "\n" +
         (input.checkRemark.empty()
              ? ""
              : Element("p", "bad", "Check: " + Shown(input.checkRemark)) + "\n") +
         Element("p", tone, Shown(EndingText(chain))) + "\n" + Navigation(chain) +
         "</header>\n<main>\n" + Starts(chain) + NotTrueHtml(chain) +
         MachineHtml(input.before, chain.after) + AdaptersHtml(first) + EventsHtml(first) +
         FileHtml(first, first.restored ? "The restore file" : input.fileName) +
         "</main>\n</body>\n</html>\n";
}

}  // namespace tool
