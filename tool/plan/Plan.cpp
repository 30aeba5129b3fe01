#include "tool/plan/Plan.h"

#include <optional>
#include <ostream>
#include <vector>

#include "tool/check/FileCheck.h"
#include "tool/io/Files.h"
#include "tool/io/ToolError.h"
#include "tool/machine/MachineDifference.h"
#include "tool/machine/MachineDocument.h"
#include "tool/plan/PlanOutput.h"
#include "tool/plan/PlanText.h"
#include "tool/plan/QueuePlan.h"
#include "tool/plan/RestartChain.h"

namespace tool {
namespace {

/// Where the agent's file is.
constexpr char kPlace[] = R"(C:\tarvo.cfg)";

/// With --detailed-exitcode.
constexpr int kHasChanges = 2;

constexpr char kFooter[] =
    R"(The plan is the library's own queue for FILE, placed as C:\tarvo.cfg, after its
analysis: what runs now, what waits for the restart, what was dropped, and why. Every
command is tried on a copy of the machine; one that fails is shown with the answer.

--follow-restarts runs each plan on the simulated machine, restarts it after "Reboot" and
plans again, at most N times. It reports restarts that never end, and the settings of
FILE that the machine does not have at the end.

--html writes one page that needs no network: the plan, what its run does, the machine
before and after, and FILE. Only its owner can read it.

Exit codes:
  0  the plan was made; with --follow-restarts, also every run succeeded
  1  the library refuses a value or cannot read the machine; the plan shows the error
  2  an argument or a file cannot be used, such as an empty file or a header without
     "]"; one line on standard error says why
A plan that shows a failure also ends with 0. With --detailed-exitcode: 0 nothing to do,
1 the run fails, 2 there are changes, 3 an argument or a file cannot be used.

Examples:
  orvanta-config plan pc.cfg
  orvanta-config plan pc.cfg --machine my-pc.json --verbose
  orvanta-config plan pc.cfg --machine my-pc.json --detailed-exitcode
  orvanta-config plan pc.cfg --machine my-pc.json --follow-restarts 5
  orvanta-config plan pc.cfg --follow-restarts 5 --html pc.html
  orvanta-config plan - --json < pc.cfg)";

}  // namespace

Command PlanCommand(PlanOptions& options) {
  Command command{"plan",
                  "show what a configuration file would do and why",
                  kFooter,
                  {{"FILE", &options.file, "", "a configuration file, or - for standard input",
                    /*isRequired=*/true}}};
  command.Add(MachineOptionRows(options.machine));
  command.Add({FollowRestartsOption(options.followRestarts,
                                    "run the plan, restart, and plan again, N <= 1000"),
               {"--html", &options.html, "OUT.html", "write a page about the plan and its run"},
               {kDetailedExitCode, &options.detailedExitcode, "",
                "exit code 0 for nothing to do, 2 for changes, 1 for a failure"},
               {"--verbose", &options.verbose, "", "also show every event and every adapter"}});
  return command;
}

int Plan(const PlanOptions& options, const Streams& streams) {
  const std::string name = options.file == "-" ? "standard input" : options.file;
  const std::string text = ReadInput(options.file, streams.in);
  simulated::Machine machine = LoadMachine(options.machine.machineFile, streams, {options.file});
  machine.PutFile(kPlace, text);
  std::optional<PrivateFile> saved = OpenSavedMachine(options.machine, options.file);
  std::optional<PrivateFile> page = OpenOutput("--html", options.html,
                                               {{options.file, "configuration file"},
                                                {options.machine.machineFile, "machine file"},
                                                {options.machine.saveMachine, "saved machine"}});
  const std::string machineName = MachineName(options.machine.machineFile);

  std::optional<RestartChain> chain;
  QueuePlan plan;
  if (options.followRestarts || page) {
    chain = FollowRestarts(machine, kPlace, name, options.followRestarts.value_or(0));
    plan = chain->steps.front().plan;
  } else {
    plan = MakePlan(machine, kPlace, name, Comparing::kInTurn);
  }
  const bool isShown = page || !options.machine.json;
  const std::string remark = isShown ? check::Remark(options.file, text) : "";
  if (page) page->Commit(PlanPage({name, remark, machineName, machine, *chain}));
  if (!options.followRestarts) chain.reset();

  if (saved) saved->Commit(PrintedMachine(chain ? chain->after : machine));
  if (options.machine.json) {
    streams.out << (chain ? PrintedJson(*chain, options.verbose)
                          : PrintedJson(plan, options.verbose));
  } else {
    const Style style(streams.color && !options.machine.noColor);
    std::vector<Row> rows{{"File", Printable(name + ", placed as " + kPlace)}};
    if (!remark.empty()) rows.push_back({"Check", remark});
    rows.push_back({"Machine", MachineText(machineName, machine)});
    rows.push_back({"Summary", chain ? SummaryText(*chain) : SummaryText(plan)});
    streams.out << Rows(rows, "") << '\n'
                << (chain ? ChainReport(*chain, style, options.verbose)
                          : PlanReport(plan, style, options.verbose));
  }
  const bool good = chain ? chain->Succeeded() : !plan.error;
  if (!options.detailedExitcode || !good) return good ? kDone : kFailed;
  return plan.outcome == PlanOutcome::kNothing   ? kDone
         : plan.outcome == PlanOutcome::kFailure ? kFailed
                                                 : kHasChanges;
}

}  // namespace tool
