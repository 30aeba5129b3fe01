#include "tool/commands/Simulate.h"

#include <nlohmann/json.hpp>
#include <optional>
#include <ostream>
#include <utility>

#include "base/FindIn.h"
#include "base/Pieces.h"
#include "tool/agent/Conversation.h"
#include "tool/check/FileCheck.h"
#include "tool/commands/SimulateReport.h"
#include "tool/io/CodePage.h"
#include "tool/io/Files.h"
#include "tool/io/JsonText.h"
#include "tool/io/ToolError.h"
#include "tool/machine/MachineDocument.h"

namespace tool {
namespace {

using simulated::Json;
using simulated::Machine;

constexpr struct {
  const char* option;
  const char* name;
} kMessages[] = {
    {"configure", "Configure"}, {"prep-for-image", "PrepForImage"}, {"update-info", "UpdateInfo"}};

constexpr char kSimulateFooter[] =
    R"(FILE is copied to the simulated machine; your own file is not changed. Only
"configure" requires one.

With both --deliver-posted and --follow-restarts, a message with the reply "Reboot" is
sent again before the posted messages are delivered.

Exit codes:
  0  every reply is "Success" or "Reboot", or the message was handled without a
     result (prep-for-image, update-info, a restore that posts the next message)
  1  a reply is "Failure", or a message was not handled (status 0)
  2  an argument or a file cannot be used; one line on standard error says why

Examples:
  orvanta-config simulate first-boot.cfg
  orvanta-config simulate pc.cfg --machine my-pc.json --follow-restarts 3
  orvanta-config simulate --message prep-for-image --deliver-posted --json
  orvanta-config simulate --message update-info --set Auto-Update-Count=3)";

const char* MessageNameOf(const std::string& option) {
  return base::FindIn(kMessages, [&](const auto& message) { return option == message.option; })
      ->name;
}

Json AsJson(const SimulateOptions& options, const SimulatedRun& run) {
  const std::vector<Delivery>& deliveries = run.conversation.deliveries;
  Json json = ToJson(deliveries.back());
  if (options.deliverPosted || options.followRestarts.value_or(0) > 0) {
    Json& earlier = json["earlier"] = Json::array();
    for (std::size_t i = 0; i + 1 < deliveries.size(); ++i) {
      earlier.push_back(ToJson(deliveries[i]));
    }
  }
  json["machine"] = ShownMachine(run.after);
  return json;
}

}  // namespace

Option SetOption(std::vector<std::string>& texts) {
  return {"--set", &texts, "KEY=VALUE", "an additional value of the message; may be repeated"};
}

void AddSetValues(const std::vector<std::string>& texts, AgentMessage::GivenValues& values) {
  for (const std::string& text : texts) {
    const std::size_t sign = text.find('=');
    if (sign == std::string::npos || sign == 0) {
      throw ToolError("--set " + text, "has no KEY=", "write --set KEY=VALUE");
    }
    const std::string key = text.substr(0, sign);
    std::erase_if(values, [&](const auto& value) { return value.first == key; });
    values.emplace_back(key, text.substr(sign + 1));
  }
}

Command SimulateCommand(SimulateOptions& options) {
  std::vector<std::string> messages;
  for (const auto& message : kMessages) messages.emplace_back(message.option);
  Command command{"simulate",
                  "send one message to the library on a simulated machine",
                  kSimulateFooter,
                  {{"FILE", &options.file, "", "a configuration file, or - for standard input"}}};
  command.Add(MachineOptionRows(options.machine));
  command.Add({
      {"--message", &options.message, base::Join(messages, "|"),
       "which message (default: configure)"},
      {"--at", &options.at, "PATH", "where to put FILE on the machine (default: C:\\tarvo.cfg)"},
      SetOption(options.set),
      {"--deliver-posted", &options.deliverPosted, "",
       "deliver the messages that the library posts"},
      FollowRestartsOption(options.followRestarts,
                           "restart after \"Reboot\" and send the message again, N <= 1000"),
      {"--verbose", &options.verbose, "", "also show the log"},
  });
  return command;
}

int Simulate(const SimulateOptions& options, const Streams& streams) {
  if (options.file.empty() && options.message == "configure") {
    throw ToolError("simulate", "FILE is missing",
                    "name a configuration file, or - for standard input");
  }
  if (options.at.empty()) throw ToolError("--at", "is empty", "give a path such as C:\\tarvo.cfg");
  Request request{"Internal", MessageNameOf(options.message), {}};
  if (options.message == "configure") request.values.emplace_back("Filename", options.at);
  AddSetValues(options.set, request.values);
  SimulatedRun run;
  run.machineName = MachineName(options.machine.machineFile);
  std::optional<std::string> text;
  if (!options.file.empty()) text = ReadInput(options.file, streams.in);
  Machine& machine = run.after;
  machine = LoadMachine(options.machine.machineFile, streams, {options.file});
  if (text) {
    machine.PutFile(BytesOf("--at", options.at), *text);
    run.file =
        (options.file == "-" ? "standard input" : options.file) + ", placed as " + options.at;
    if (options.message == "configure" && !options.machine.json) {
      run.checkRemark = check::Remark(options.file, *text);
    }
  }
  std::optional<PrivateFile> saved = OpenSavedMachine(options.machine, options.file);
  run.before = machine;

  run.conversation = Converse(std::move(request),
                              {options.deliverPosted, options.followRestarts.value_or(0)}, machine);

  if (saved) saved->Commit(PrintedMachine(machine));
  if (options.machine.json) {
    streams.out << PrintedJson(AsJson(options, run));
  } else {
    const Style style(streams.color && !options.machine.noColor);
    streams.out << SimulateReport(run, style, options.verbose);
  }
  return run.conversation.Succeeded() ? kDone : kFailed;
}

}  // namespace tool
