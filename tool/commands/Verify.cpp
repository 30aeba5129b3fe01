#include "tool/commands/Verify.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <nlohmann/json.hpp>
#include <optional>
#include <ostream>
#include <utility>
#include <vector>

#include "base/FindIn.h"
#include "base/Numbers.h"
#include "tool/check/FileCheck.h"
#include "tool/io/CodePage.h"
#include "tool/io/Files.h"
#include "tool/io/HostSystem.h"
#include "tool/io/JsonText.h"
#include "tool/io/Text.h"
#include "tool/io/ToolError.h"
#include "tool/machine/MachineDifference.h"
#include "tool/plan/PlanText.h"
#include "tool/plan/Settings.h"

namespace tool {
namespace {

using simulated::Json;
using simulated::Machine;

constexpr char kPlace[] = R"(C:\verified.cfg)";
constexpr char kComputer[] = "computer";

constexpr char kVerifyFooter[] =
    R"(Compares every setting of FILE with the machine as it is now, lists in full. Sections get
their adapters as in a run. A setting that cannot be read, such as a password, is unknown;
so are the OU if the machine file does not describe the directory, and the address of a
host that it does not list. On Windows the machine is this computer by default; elsewhere
--machine is required.

Exit codes:
  0  no setting differs
  1  a setting differs
  2  an argument or a file cannot be used, or a run would refuse the file; one line on
     standard error says why

Examples:
  orvanta-config verify pc.cfg
  orvanta-config verify pc.cfg --machine my-pc.json --json)";

/// A line of the report. Texts are UTF-8, and to be printed with care.
struct Verified {
  std::string subject;
  std::string name;
  std::string wanted;
  /// Nothing when it cannot be read.
  std::optional<std::string> found;
  bool holds = false;
  std::size_t line = 0;

  bool Differs() const { return found && !holds; }
};

/// What the commands set that compare something.
constexpr std::pair<const char*, const char*> kNames[] = {
    {"ChangeCompName", "name"},     {"JoinDomain", "domain"},
    {"JoinWorkgroup", "workgroup"}, {"MoveOu", "OU"},
    {"SetDhcp", "addressing"},      {"SetStatic", "addresses"},
    {"SetGateway", "gateways"},     {"SetDns", "DNS servers"},
    {"SetDnsSuffix", "suffixes"},   {"SetStaticRoute", "persistent routes"},
};

/// In the order of the file.
std::vector<Verified> Verification(const QueuePlan& plan, Machine& machine) {
  std::vector<Verified> all;
  for (const Setting& setting : CompareSettings(plan, machine)) {
    const PlannedCommand& command = *setting.command;
    const PlannedEvent& event = plan.events[command.events.front()];
    if (command.LacksAdapter()) {
      all.push_back({SectionText(event.section), "adapter", "an adapter of its own", setting.found,
                     setting.holds, event.line});
      continue;
    }
    const auto* name =
        base::FindIn(kNames, [&](const auto& each) { return command.Is(each.first); });
    all.push_back({setting.adapter != nullptr ? ToUtf8(AdapterName(*setting.adapter)) : kComputer,
                   name != nullptr ? name->second : command.ShortName(), *command.wanted,
                   setting.found, setting.holds, event.line});
    if (command.Is("ChangeCompName") && machine.pendingComputerName) {
      *all.back().found += ToUtf8(" (" + *machine.pendingComputerName + " after the restart)");
    }
  }
  const bool isMember = std::holds_alternative<simulated::DomainMembership>(machine.membership);
  for (const PlannedEvent& event : plan.events) {
    const bool isNew = std::none_of(all.begin(), all.end(),
                                    [&](const Verified& each) { return each.line == event.line; });
    if (event.kind == "DOMAIN" && !event.cameToNothing.empty()) {
      all.push_back({kComputer, "domain", event.value, event.value, true, event.line});
    } else if (isNew && (event.kind == "DOMAIN_USER" || event.kind == "DOMAIN_PASSWORD")) {
      all.push_back({kComputer, event.key, event.value, std::nullopt, false, event.line});
    } else if (isNew && event.kind == "DOMAIN_OU") {  // of a join; a move has its command
      all.push_back({kComputer, "OU", event.value, std::nullopt, false, event.line});
      if (!isMember) all.back().found = "no domain";
    }
  }
  std::stable_sort(all.begin(), all.end(),
                   [](const auto& left, const auto& right) { return left.line < right.line; });
  return all;
}

/// Leaves out IPv6, which no file speaks of and the library cannot read.
void DropIpv6(Machine& machine) {
  for (simulated::Adapter& adapter : machine.adapters) {
    for (auto* texts : {&adapter.gateways, &adapter.dnsServers}) {
      std::erase_if(*texts, [](const std::string& text) { return text.find(':') != text.npos; });
    }
  }
}

std::vector<Verified> VerifyText(const std::string& text, const std::string& name,
                                 const std::string& hint, Machine& machine) {
  DropIpv6(machine);
  // Neither what waits for its turn on the machine nor what fails there changes what FILE asks for.
  Machine copy = machine;
  copy.files.clear();
  copy.registry.clear();
  copy.faults.clear();
  copy.decrypt.emplace();  // so that an account is asked for, whatever it is
  copy.assumesUnknown = copy.hostsUnknown = true;
  copy.PutFile(kPlace, text);
  const QueuePlan plan = MakePlan(copy, kPlace, name, Comparing::kAsItIs);
  if (!plan.error) return Verification(plan, machine);
  throw ToolError(name, std::string("a run would refuse it: ") + plan.error->record.message, hint);
}

std::string Report(const std::vector<Verified>& all, const Style& style) {
  std::string text;
  std::string subject;
  for (const Verified& each : all) {
    if (each.subject != subject) text += Printable(each.subject) + "\n";
    subject = each.subject;
    text += "  " + Padded(each.name, 17) + "  " +
            (!each.found  ? style.Notice("unknown")
             : each.holds ? style.Good("holds  ")
                          : style.Bad("differs")) +
            "  " + OrNone(each.wanted) + (each.Differs() ? ", found " + OrNone(*each.found) : "") +
            style.Dim("  line " + std::to_string(each.line)) + "\n";
  }
  const auto differ = std::count_if(all.begin(), all.end(), std::mem_fn(&Verified::Differs));
  return text + (text.empty() ? "" : "\n") +
         (differ > 0
              ? style.Bad(std::to_string(differ) + " of " + base::Counted(all.size(), "setting") +
                          (differ == 1 ? " differs." : " differ."))
          : all.empty() ? style.Notice("Nothing is asked for.")
                        : style.Good("Nothing differs.")) +
         "\n";
}

Json AsJson(const std::vector<Verified>& all, bool holds) {
  Json list = Json::array();
  for (const Verified& each : all) {
    list.push_back({{"subject", each.subject},
                    {"setting", each.name},
                    {"wanted", each.wanted},
                    {"found", each.found ? Json(*each.found) : Json()},
                    {"holds", each.found ? Json(each.holds) : Json()},
                    {"line", each.line}});
  }
  return {{"schema", 1}, {"holds", holds}, {"settings", std::move(list)}};
}

}  // namespace

Command VerifyCommand(VerifyOptions& options) {
  return {"verify",
          "check whether a machine has the settings of a configuration file",
          kVerifyFooter,
          {{"FILE", &options.file, "", "a configuration file, or - for standard input",
            /*isRequired=*/true},
           {"--machine", &options.machine.machineFile, "M.json",
            "the machine: a file, - for standard input, or live, the default on Windows"},
           {"--json", &options.machine.json, "", "one JSON document on standard output"},
           NoColorOption(options.machine.noColor)}};
}

int Verify(const VerifyOptions& options, const Streams& streams) {
  std::optional<std::string> machineName = options.machine.machineFile;
  if (!machineName && RunsWindows()) machineName = "live";
  if (!machineName) {
    throw ToolError("verify", "--machine is missing", "name the machine file to compare with");
  }
  const std::string name = options.file == "-" ? "standard input" : options.file;
  const std::string text = ReadInput(options.file, streams.in);
  Machine machine = LoadMachine(machineName, streams, {options.file});
  const std::string hint = "see orvanta-config check " + options.file +
                           (machineName != "live" ? " --machine " + *machineName : "");
  const std::vector<Verified> all = VerifyText(text, name, hint, machine);
  const bool holds = std::none_of(all.begin(), all.end(), std::mem_fn(&Verified::Differs));
  if (options.machine.json) {
    streams.out << PrintedJson(AsJson(all, holds));
  } else {
    const Style style(streams.color && !options.machine.noColor);
    std::vector<Row> rows{{"File", Printable(name)},
                          {"Machine", MachineText(MachineName(machineName), machine)}};
    const std::string remark = check::Remark(options.file, text);
    if (!remark.empty()) rows.insert(rows.begin() + 1, {"Check", remark});
    streams.out << Rows(rows, "") << '\n' << Report(all, style);
  }
  return holds ? kDone : kFailed;
}

}  // namespace tool
