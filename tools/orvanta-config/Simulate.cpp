#include "tools/orvanta-config/Simulate.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <deque>
#include <filesystem>
#include <optional>
#include <ostream>
#include <system_error>
#include <utility>

#include "platform/simulated/MachineFile.h"
#include "tools/orvanta-config/Delivery.h"
#include "tools/orvanta-config/Files.h"
#include "tools/orvanta-config/SimulateReport.h"
#include "tools/orvanta-config/ToolError.h"

namespace tool {
namespace {

using simulated::Json;
using simulated::Machine;

constexpr struct {
  const char* option;
  const char* name;
} kMessages[] = {
    {"configure", "Configure"}, {"prep-for-image", "PrepForImage"}, {"update-info", "UpdateInfo"}};

constexpr char kFooter[] =
    R"(FILE is copied onto the simulated machine, and the message's "Filename" names it
there; your own file stays as it is. Only "configure" must have one.

With --deliver-posted and --follow-restarts together, a message that was answered
"Reboot" is sent again before the posted messages that still wait.

Exit codes:
  0  every reply is "Success" or "Reboot", or the message was handled without a
     result (prep-for-image, update-info, a restore that posts the next message)
  1  a reply is "Failure", or a message was not handled (status 0)
  2  unusable arguments or files, with one line on standard error

Examples:
  orvanta-config simulate first-boot.cfg
  orvanta-config simulate pc.cfg --machine my-pc.json --follow-restarts 3
  orvanta-config simulate --message prep-for-image --deliver-posted --json
  orvanta-config simulate --message update-info --set Auto-Update-Count=3)";

const char* MessageNameOf(const std::string& option) {
  return std::find_if(std::begin(kMessages), std::end(kMessages),
                      [&](const auto& message) { return option == message.option; })
      ->name;
}

/// Of two values with the same key the later one counts, so --set can also replace "Filename".
AgentMessage::GivenValues GivenValues(const SimulateOptions& options) {
  AgentMessage::GivenValues values;
  if (options.message == "configure") values.emplace_back("Filename", options.at);
  for (const std::string& text : options.set) {
    const std::size_t sign = text.find('=');
    if (sign == std::string::npos || sign == 0) {
      throw ToolError("--set " + text, "has no KEY=", "write --set KEY=VALUE");
    }
    const std::string key = text.substr(0, sign);
    std::erase_if(values, [&](const auto& value) { return value.first == key; });
    values.emplace_back(key, text.substr(sign + 1));
  }
  return values;
}

void Place(const std::string& path, std::string text, Machine& machine) {
  if (simulated::File* file = machine.FindFile(path)) {
    file->text = std::move(text);
  } else {
    machine.files.push_back({path, std::move(text)});
  }
}

Request AsRequest(const SentMessage& posted) {
  Request request{posted.type, posted.name, {}};
  for (const MessageValue& value : posted.values) {
    const auto* text = std::get_if<std::string>(&value.data);
    request.values.emplace_back(
        value.key, text != nullptr ? *text : std::to_string(std::get<std::int32_t>(value.data)));
  }
  return request;
}

/// Delivers the message and all that the options say should follow.
void Run(Request first, const SimulateOptions& options, Simulation& simulation) {
  Machine& machine = simulation.after;
  std::deque<Request> waiting;
  waiting.push_back(std::move(first));
  std::uint32_t restarts = 0;
  while (!waiting.empty()) {
    Delivery delivery = Deliver(std::move(waiting.front()), machine);
    waiting.pop_front();
    delivery.restarts = restarts;
    if (delivery.Result() == "Reboot" && restarts < options.followRestarts) {
      machine.Restart();
      ++restarts;
      simulation.confirmedMembership = machine.membership;
      waiting.push_front(delivery.request);
    }
    if (options.deliverPosted) {
      for (const SentMessage& posted : delivery.posted) waiting.push_back(AsRequest(posted));
    }
    simulation.deliveries.push_back(std::move(delivery));
  }
}

Json AsJson(const SimulateOptions& options, const Simulation& simulation) {
  Json json = ToJson(simulation.deliveries.back());
  if (options.deliverPosted || options.followRestarts > 0) {
    Json& earlier = json["earlier"] = Json::array();
    for (std::size_t i = 0; i + 1 < simulation.deliveries.size(); ++i) {
      earlier.push_back(ToJson(simulation.deliveries[i]));
    }
  }
  json["machine"] = simulated::ToJson(simulation.after, /*hideSecrets=*/true);
  return json;
}

}  // namespace

CLI::App* AddSimulate(CLI::App& app, SimulateOptions& options) {
  CLI::App* command =
      app.add_subcommand("simulate", "send one message to the library on a simulated machine");
  command->add_option("FILE", options.file, "configuration file, or - for standard input")
      ->type_name("");
  AddMachineOptions(*command, options.machine);
  std::vector<std::string> names;
  for (const auto& message : kMessages) names.emplace_back(message.option);
  // Their descriptions say what is allowed, in better words than the checks would.
  command
      ->add_option("--message", options.message,
                   "configure (default), prep-for-image or update-info")
      ->check(CLI::IsMember(names).description(""))
      ->type_name("NAME");
  command->add_option("--at", options.at, "FILE's place on the machine (default: C:\\tarvo.cfg)")
      ->type_name("PATH");
  command->add_option("--set", options.set, "an extra value of the message; may be repeated")
      ->type_name("KEY=VALUE")
      ->allow_extra_args(false);
  command->add_flag("--deliver-posted", options.deliverPosted,
                    "deliver the messages that the library posts");
  command
      ->add_option("--follow-restarts", options.followRestarts,
                   "restart after \"Reboot\" and send it again, N <= 1000")
      ->check(CLI::Range(0, 1000).description(""))
      ->type_name("N");
  command->add_flag("--verbose", options.verbose, "show the log lines too");
  command->footer(kFooter);
  return command;
}

int Simulate(const SimulateOptions& options, const Streams& streams) {
  if (options.file.empty() && options.message == "configure") {
    throw ToolError("simulate", "FILE is missing",
                    "name a configuration file, or - for standard input");
  }
  if (options.at.empty()) throw ToolError("--at", "is empty", "give a path such as C:\\tarvo.cfg");
  Request request{"Internal", MessageNameOf(options.message), GivenValues(options)};
  Simulation simulation;
  simulation.machineName = options.machine.machineFile.value_or("built-in example");
  std::optional<std::string> text;
  if (!options.file.empty()) text = ReadInput(options.file, streams.in);
  Machine& machine = simulation.after;
  machine = LoadMachine(options.machine);
  if (text) {
    Place(options.at, std::move(*text), machine);
    simulation.file =
        (options.file == "-" ? "standard input" : options.file) + ", placed as " + options.at;
  }
  std::optional<PrivateFile> saved;
  if (options.machine.saveMachine) {
    if (*options.machine.saveMachine == "-") {
      throw ToolError("--save-machine -", "cannot go to standard output", "name a file");
    }
    std::error_code ignored;
    if (std::filesystem::equivalent(options.file, *options.machine.saveMachine, ignored)) {
      throw ToolError(*options.machine.saveMachine, "is the configuration file itself",
                      "save the machine under another name");
    }
    saved.emplace(*options.machine.saveMachine);
  }
  simulation.before = machine;
  simulation.confirmedMembership = machine.membership;

  Run(std::move(request), options, simulation);

  if (saved) saved->Commit(simulated::PrintMachine(machine));
  if (options.machine.json) {
    // Texts come from the user's files, which may hold any bytes.
    streams.out << AsJson(options, simulation)
                       .dump(2, ' ', /*ensure_ascii=*/false, Json::error_handler_t::replace)
                << '\n';
  } else {
    const Style style(streams.color && !options.machine.noColor);
    streams.out << SimulateReport(simulation, style, options.verbose);
  }
  const auto& deliveries = simulation.deliveries;
  const bool good = std::all_of(deliveries.begin(), deliveries.end(),
                                [](const Delivery& delivery) { return delivery.Succeeded(); });
  return good ? kDone : kFailed;
}

}  // namespace tool
