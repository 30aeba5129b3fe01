#include "tool/Tool.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdint>
#include <functional>
#include <ostream>

#include "tool/check/Check.h"
#include "tool/cli/CommandLine.h"
#include "tool/cli/CommandTable.h"
#include "tool/cli/Completion.h"
#include "tool/cli/ManPage.h"
#include "tool/commands/Capture.h"
#include "tool/commands/Send.h"
#include "tool/commands/Simulate.h"
#include "tool/io/Text.h"
#include "tool/io/ToolError.h"
#include "tool/plan/Plan.h"
#include "tool/roundtrip/Roundtrip.h"
#include "toolbox/ToolboxApi.h"

namespace tool {
namespace {

constexpr char kFooter[] = R"(Examples:
  orvanta-config check first-boot.cfg
      what is wrong with this file, line by line
  orvanta-config plan first-boot.cfg
      what this file asks of the built-in example machine, and why
  orvanta-config simulate first-boot.cfg
      what this file would do on the built-in example machine
  orvanta-config simulate first-boot.cfg --machine my-pc.json --json
      the same on a machine of your own, for a program to read
  orvanta-config simulate --help
      all options of a command, its exit codes and more examples)";

std::string Version() {
  std::uint32_t major = 0;
  std::uint32_t minor = 0;
  std::uint32_t build = 0;
  GetToolboxAPI()->getVersion(&major, &minor, &build);
  return "orvanta-config " + std::to_string(major) + "." + std::to_string(minor) + "." +
         std::to_string(build);
}

int Refuse(const std::string& line, const Streams& streams) {
  streams.err << "orvanta-config: " << Printable(line) << '\n';
  return kUnusable;
}

}  // namespace

int RunTool(std::vector<std::string> arguments, const Streams& streams) {
  CLI::App app(
      "Checks a configuration, and rehearses it on a simulated machine before it touches a "
      "computer.",
      "orvanta-config");
  // Otherwise a path that begins with "/" would be taken for an option on Windows.
  app.allow_windows_style_options(false);
  app.set_version_flag("--version", Version);
  app.require_subcommand(1);
  app.footer(kFooter);
  struct Command {
    const CLI::App* app;
    std::function<int()> run;
  };
  MachineOptions captureOptions;
  CheckOptions checkOptions;
  CompletionOptions completionOptions;
  PlanOptions planOptions;
  MachineOptions roundtripOptions;
  SendOptions sendOptions;
  SimulateOptions simulateOptions;
  const Command commands[] = {
      {AddCheck(app, checkOptions), [&] { return Check(checkOptions, streams); }},
      {AddPlan(app, planOptions), [&] { return Plan(planOptions, streams); }},
      {AddSimulate(app, simulateOptions), [&] { return Simulate(simulateOptions, streams); }},
      {AddRoundtrip(app, roundtripOptions), [&] { return Roundtrip(roundtripOptions, streams); }},
      {AddCapture(app, captureOptions), [&] { return Capture(captureOptions, streams); }},
      {AddSend(app, sendOptions), [&] { return Send(sendOptions, streams); }},
      {AddCompletion(app, completionOptions),
       [&] { return Completion(completionOptions, ReadCommands(app), streams); }},
      {AddManPage(app), [&] { return ManPage(ReadCommands(app), streams); }},
  };

  int exitCode = kDone;
  const std::string fault = FindCommandLineFault(ReadCommands(app), arguments);
  if (!fault.empty()) return Refuse(fault, streams);
  try {
    std::reverse(arguments.begin(), arguments.end());
    app.parse(std::move(arguments));
    for (const Command& command : commands) {
      if (command.app->parsed()) exitCode = command.run();
    }
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() != 0) {
      const auto parsed = app.get_subcommands();
      const std::string command = parsed.empty() ? "" : " " + parsed.front()->get_name();
      return Refuse(std::string(error.what()) + "; see orvanta-config" + command + " --help",
                    streams);
    }
    app.exit(error, streams.out, streams.err);
  } catch (const ToolError& error) {
    return Refuse(error.what(), streams);
  }
  if (!streams.out.flush()) {
    return Refuse("standard output: cannot be written; check where it leads", streams);
  }
  return exitCode;
}

}  // namespace tool
