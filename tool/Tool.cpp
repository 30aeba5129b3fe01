#include "tool/Tool.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <ostream>
#include <utility>

#include "handlers/Version.h"
#include "tool/check/Check.h"
#include "tool/cli/Command.h"
#include "tool/cli/CommandLine.h"
#include "tool/cli/Completion.h"
#include "tool/cli/ManPage.h"
#include "tool/commands/Capture.h"
#include "tool/commands/Explain.h"
#include "tool/commands/Schema.h"
#include "tool/commands/Send.h"
#include "tool/commands/Simulate.h"
#include "tool/commands/Verify.h"
#include "tool/fleet/Fleet.h"
#include "tool/io/CodePage.h"
#include "tool/io/Text.h"
#include "tool/io/ToolError.h"
#include "tool/plan/Plan.h"
#include "tool/roundtrip/Roundtrip.h"

namespace tool {
namespace {

constexpr char kFooter[] = R"(Examples:
  orvanta-config check first-boot.cfg
      find the faults in a file
  orvanta-config plan first-boot.cfg
      show what the file would do to the built-in example machine, and why
  orvanta-config simulate first-boot.cfg
      run the file on the built-in example machine
  orvanta-config simulate first-boot.cfg --machine my-pc.json --json
      run it on a machine of your own, with JSON output
  orvanta-config simulate --help
      list a command's options and exit codes, with more examples)";

int Refuse(const std::string& line, const Streams& streams) {
  streams.err << "orvanta-config: " << Printable(line) << '\n';
  return kUnusable;
}

}  // namespace

int RunTool(std::vector<std::string> arguments, const Streams& streams) {
  const Option help{"-h,--help", {}, "", "show this help and exit"};
  std::vector<Command> commands{
      {"orvanta-config",
       "Checks configuration files and rehearses them on a simulated machine before they touch a "
       "computer.",
       kFooter,
       {help, {kVersionOption, {}, "", "show the version and exit"}}}};
  const auto add = [&](Command command, std::function<int()> run) {
    command.options.insert(command.options.begin(), help);
    command.run = std::move(run);
    commands.push_back(std::move(command));
  };
  std::optional<std::uint32_t> codePage;
  const auto addReading = [&](Command command, std::function<int()> run) {
    command.Add({{"--code-page", &codePage, "N", "code page of configuration files and machines",
                  /*isRequired=*/false, 65535}});
    add(std::move(command), std::move(run));
  };
  MachineOptions capture;
  CheckOptions check;
  CompletionOptions completion;
  ExplainOptions explain;
  FleetOptions fleet;
  PlanOptions plan;
  MachineOptions roundtrip;
  std::string schema;
  SendOptions send;
  SimulateOptions simulate;
  VerifyOptions verify;
  addReading(CheckCommand(check), [&] { return Check(check, streams); });
  addReading(PlanCommand(plan), [&] { return Plan(plan, streams); });
  addReading(SimulateCommand(simulate), [&] { return Simulate(simulate, streams); });
  addReading(VerifyCommand(verify), [&] { return Verify(verify, streams); });
  addReading(RoundtripCommand(roundtrip), [&] { return Roundtrip(roundtrip, streams); });
  addReading(FleetCommand(fleet), [&] { return Fleet(fleet, streams); });
  addReading(CaptureCommand(capture), [&] { return Capture(capture, streams); });
  add(SchemaCommand(schema), [&] { return Schema(schema, streams); });
  addReading(ExplainCommand(explain), [&] { return Explain(explain, streams); });
  add(SendCommand(send), [&] { return Send(send, streams); });
  add(CompletionCommand(completion), [&] { return Completion(completion, commands, streams); });
  add(ManPageCommand(), [&] { return ManPage(commands, streams); });

  const bool isDetailed =
      std::find(arguments.begin(), arguments.end(), kDetailedExitCode) != arguments.end();
  int exitCode = kDone;
  try {
    const Command* chosen = ParseCommandLine(commands, "orvanta-config " + version::Text(),
                                             std::move(arguments), streams.out);
    UseCodePage(codePage);
    if (chosen != nullptr) exitCode = chosen->run();
  } catch (const ToolError& error) {
    const int refused = Refuse(error.what(), streams);
    return isDetailed ? kUnusableInDetail : refused;
  }
  if (!streams.out.flush()) {
    return Refuse("standard output: cannot be written; check where it leads", streams);
  }
  return exitCode;
}

}  // namespace tool
