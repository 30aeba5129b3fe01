#include "tool/commands/Verify.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <nlohmann/json.hpp>
#include <optional>
#include <ostream>
#include <string_view>
#include <utility>
#include <vector>

#include "base/Numbers.h"
#include "base/Pieces.h"
#include "tool/io/CodePage.h"
#include "tool/io/Files.h"
#include "tool/io/HostSystem.h"
#include "tool/io/JsonText.h"
#include "tool/io/Text.h"
#include "tool/io/ToolError.h"
#include "tool/machine/MachineDifference.h"
#include "tool/plan/PlanText.h"
#include "tool/plan/QueuePlan.h"

namespace tool {
namespace {

using simulated::Json;
using simulated::Machine;

constexpr char kPlace[] = R"(C:\verified.cfg)";
constexpr char kComputer[] = "computer";
constexpr char kDhcp[] = "dhcp";

constexpr char kVerifyFooter[] =
    R"(Every setting that FILE asks for is compared with the machine as it is now, lists in full.
Adapters are found as in a run. What no machine tells, as a password, is unknown; so is the
OU where the machine file says nothing of the directory. On Windows the machine is this
computer, elsewhere --machine names it.

Exit codes:
  0  everything holds, or is unknown
  1  a setting does not hold
  2  unusable arguments or files, also a file that a run refuses, with one line on
     standard error

Examples:
  orvanta-config verify pc.cfg
  orvanta-config verify pc.cfg --machine my-pc.json --json)";

/// A setting that the file asks for. Texts are UTF-8, and to be printed with care.
struct Setting {
  std::string subject;
  std::string name;
  std::string wanted;
  /// Nothing when it cannot be read.
  std::optional<std::string> found;
  bool holds = false;
  std::size_t line = 0;
};

/// What the commands set that compare something.
constexpr struct {
  const char* command;
  const char* setting;
} kSettings[] = {
    {"ChangeCompName", "name"},     {"JoinDomain", "domain"},
    {"JoinWorkgroup", "workgroup"}, {"MoveOu", "OU"},
    {"SetDhcp", "addressing"},      {"SetStatic", "addresses"},
    {"SetGateway", "gateways"},     {"SetDns", "DNS servers"},
    {"SetDnsSuffix", "suffixes"},   {"SetStaticRoute", "persistent routes"},
};

std::string Sorted(std::string_view list) {
  std::vector<std::string> pieces = base::Split(list, ",");
  std::sort(pieces.begin(), pieces.end());
  return base::Join(pieces, ",");
}

/// All that the adapter has; the library itself looks at the first address only, and at no DNS
/// server that is to come from DHCP. Nothing for any other command.
std::optional<std::string> FoundOn(const simulated::Adapter& adapter,
                                   const PlannedCommand& command) {
  if (command.Is("SetDns") && command.wanted == kDhcp) {
    return adapter.staticDns ? base::Join(adapter.dnsServers, ",") : kDhcp;
  }
  if (!command.Is("SetStatic")) return std::nullopt;
  if (adapter.dhcpEnabled) return kDhcp;
  std::vector<std::string> addresses = Addresses(adapter);
  std::erase_if(addresses, [](const std::string& text) {  // no file speaks of IPv6
    return text.find(':') != std::string::npos;
  });
  return base::Join(addresses, ",");
}

/// Reads the library's own comparisons.
class Verification {
 public:
  Verification(const QueuePlan& plan, Machine& machine) : plan_(plan), machine_(machine) {
    for (const auto* commands : {&plan.commands, &plan.dropped}) {
      for (const PlannedCommand& command : *commands) AddCommand(command);
    }
    for (const PlannedEvent& event : plan.events) AddEvent(event);
    std::stable_sort(settings.begin(), settings.end(),
                     [](const auto& left, const auto& right) { return left.line < right.line; });
  }

  std::vector<Setting> settings;

 private:
  void AddCommand(const PlannedCommand& command) {
    if (!command.binding) return Add(command, nullptr);
    const simulated::Adapter* const adapter =
        command.LacksAdapter() ? nullptr : machine_.FindAdapter(*command.binding->index);
    for (const PlannedCommand& each : command.commands) Add(each, adapter);
    if (adapter == nullptr && !command.events.empty()) {
      const PlannedEvent& section = plan_.events[command.events.front()];
      settings.push_back({SectionText(section.section), "adapter", "an adapter of its own", "none",
                          false, section.line});
    }
  }

  void Add(const PlannedCommand& command, const simulated::Adapter* adapter) {
    const auto* const row =
        std::find_if(std::begin(kSettings), std::end(kSettings),
                     [&](const auto& each) { return command.Is(each.command); });
    if (row == std::end(kSettings) || !command.wanted || command.events.empty()) return;
    Setting setting{adapter != nullptr ? ToUtf8(AdapterName(*adapter)) : kComputer,
                    row->setting,
                    *command.wanted,
                    command.current,
                    !command.needed,
                    plan_.events[command.events.front()].line};
    if (const auto all = adapter != nullptr ? FoundOn(*adapter, command) : std::nullopt) {
      setting.found = ToUtf8(*all);
      setting.holds = Sorted(*setting.found) == Sorted(setting.wanted);
    } else if (command.Is("ChangeCompName") && machine_.pendingComputerName) {
      *setting.found += ToUtf8(" (" + *machine_.pendingComputerName + " after the restart)");
    } else if (command.Is("MoveOu")) {
      const bool isMember =
          std::holds_alternative<simulated::DomainMembership>(machine_.membership);
      if (isMember && !machine_.KnowsDirectory()) setting.found.reset();
      setting.holds = setting.holds && isMember;
    }
    settings.push_back(std::move(setting));
  }

  /// What no command was made of, and what no machine tells.
  void AddEvent(const PlannedEvent& event) {
    if (event.kind == "DOMAIN" && !event.cameToNothing.empty()) {
      settings.push_back({kComputer, "domain", event.value, event.value, true, event.line});
    }
    const bool isAccount = event.kind == "DOMAIN_USER" || event.kind == "DOMAIN_PASSWORD";
    const bool isKnown = std::any_of(settings.begin(), settings.end(),
                                     [&](const Setting& each) { return each.line == event.line; });
    if (isAccount && !isKnown) {
      settings.push_back({kComputer, event.key, event.value, std::nullopt, false, event.line});
    }
  }

  const QueuePlan& plan_;
  Machine& machine_;
};

std::vector<Setting> VerifyText(const std::string& text, const std::string& name,
                                Machine& machine) {
  // Neither what waits for its turn on the machine nor what fails there changes what FILE asks for.
  Machine copy = machine;
  copy.files.clear();
  copy.registry.clear();
  copy.faults.clear();
  copy.decrypt.emplace();  // so that an account is asked for, whatever it is
  copy.assumesUnknown = true;
  copy.PutFile(kPlace, text);
  const QueuePlan plan = MakePlan(std::move(copy), kPlace, name, Comparing::kAsItIs);
  if (plan.error) {
    throw ToolError(name, "a run refuses it: " + plan.error->message,
                    "see orvanta-config check " + name);
  }
  return Verification(plan, machine).settings;
}

/// What cannot be read does not.
bool Differs(const Setting& setting) { return setting.found && !setting.holds; }

std::string Report(const std::vector<Setting>& settings, const Style& style) {
  std::string text;
  const std::string* subject = nullptr;
  for (const Setting& setting : settings) {
    if (subject == nullptr || *subject != setting.subject)
      text += Printable(setting.subject) + "\n";
    subject = &setting.subject;
    text += "  " + Padded(setting.name, 17) + "  " +
            (!setting.found  ? style.Notice("unknown")
             : setting.holds ? style.Good("holds  ")
                             : style.Bad("differs")) +
            "  " + Printable(OrNone(setting.wanted)) +
            (Differs(setting) ? ", found " + Printable(OrNone(*setting.found)) : "") +
            style.Dim("  line " + std::to_string(setting.line)) + "\n";
  }
  const auto differ = std::count_if(settings.begin(), settings.end(), Differs);
  return text + "\n" +
         (differ > 0 ? style.Bad(std::to_string(differ) + " of " +
                                 base::Counted(settings.size(), "setting") + " differ.")
                     : style.Good("Nothing differs.")) +
         "\n";
}

Json AsJson(const std::vector<Setting>& settings, bool holds) {
  Json list = Json::array();
  for (const Setting& setting : settings) {
    list.push_back({{"subject", setting.subject},
                    {"setting", setting.name},
                    {"wanted", setting.wanted},
                    {"found", setting.found ? Json(*setting.found) : Json()},
                    {"holds", setting.found ? Json(setting.holds) : Json()},
                    {"line", setting.line}});
  }
  return {{"schema", 1}, {"holds", holds}, {"settings", std::move(list)}};
}

}  // namespace

Command VerifyCommand(VerifyOptions& options) {
  return {"verify",
          "tell whether what a configuration file asks for is true of a machine",
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
  const std::vector<Setting> settings = VerifyText(text, name, machine);
  const bool holds = std::none_of(settings.begin(), settings.end(), Differs);
  if (options.machine.json) {
    streams.out << PrintedJson(AsJson(settings, holds));
  } else {
    const Style style(streams.color && !options.machine.noColor);
    streams.out << Rows({{"File", Printable(name)},
                         {"Machine", MachineText(MachineName(machineName), machine)}},
                        "")
                << '\n'
                << Report(settings, style);
  }
  return holds ? kDone : kFailed;
}

}  // namespace tool
