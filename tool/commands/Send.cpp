#include "tool/commands/Send.h"

#include <ostream>
#include <utility>

#include "handlers/Version.h"
#include "tool/agent/Delivery.h"
#include "tool/commands/Simulate.h"
#include "tool/commands/SimulateReport.h"
#include "tool/explain/ErrorNumbers.h"
#include "tool/io/HostSystem.h"
#include "tool/io/ToolError.h"
#include "tool/machine/MachineOptions.h"

namespace tool {
namespace {

constexpr std::uintptr_t kKnownRevision = 1;

constexpr char kSendFooter[] =
    R"(The message changes this computer: rehearse it with "simulate" first.
Windows only. Without --plugin, the library next to the tool is loaded.

Exit codes:
  0  the reply is "Success" or "Reboot", or the message was handled without a result
  1  the reply is "Failure", or the message was not handled (status 0)
  2  an argument or the library cannot be used; one line on standard error says why

Examples:
  orvanta-config send Internal Configure --set "Filename=C:\tarvo.cfg"
  orvanta-config send Internal UpdateInfo --plugin C:\agent\orvanta-config.dll --json)";

/// The library's table. Throws ToolError if the file is not a plug-in library.
const ToolboxApi& LoadPlugin(const std::string& path) {
  std::uint32_t error = 0;
  const auto entry =
      reinterpret_cast<decltype(&GetToolboxAPI)>(LoadFunction(path, "GetToolboxAPI", &error));
  if (error != 0) {
    const explain::Reading* const reading = explain::FindAnswer(error, /*isOfAdapter=*/false);
    throw ToolError(path,
                    "cannot be loaded (error " + std::to_string(error) +
                        (reading != nullptr ? std::string(": ") + reading->meaning : "") + ")",
                    "name the plug-in library with --plugin");
  }
  const ToolboxApi* api = entry != nullptr ? entry() : nullptr;
  if (api == nullptr || api->interfaceRevision != kKnownRevision) {
    throw ToolError(path, "is not a plug-in library of this agent",
                    "name another one with --plugin");
  }
  return *api;
}

}  // namespace

Command SendCommand(SendOptions& options) {
  return {"send",
          "send one message to the plug-in library on this computer",
          kSendFooter,
          {{"TYPE", &options.type, "", "the message's type, for example Internal",
            /*isRequired=*/true},
           {"NAME", &options.name, "", "the message's name, for example Configure",
            /*isRequired=*/true},
           {"--plugin", &options.plugin, "PATH", "the library (default: the one next to the tool)"},
           SetOption(options.set),
           {"--json", &options.json, "", "one JSON document on standard output"},
           {"--verbose", &options.verbose, "", "also show the log"},
           NoColorOption(options.noColor)}};
}

int Send(const SendOptions& options, const Streams& streams) {
  if (!RunsWindows()) {
    throw ToolError("send", "works on Windows only",
                    "rehearse the message with orvanta-config simulate");
  }
  AgentMessage::GivenValues values;
  AddSetValues(options.set, values);
  const std::string plugin =
      options.plugin.empty() ? ProgramFolder() + "\\" + version::LibraryFileName() : options.plugin;
  const Delivery delivery =
      Deliver(LoadPlugin(plugin), {options.type, options.name, std::move(values)});
  if (options.json) {
    streams.out << PrintedLiveJson(delivery);
  } else {
    streams.out << DeliveryReport(delivery, Style(streams.color && !options.noColor),
                                  options.verbose);
  }
  return delivery.Succeeded() ? kDone : kFailed;
}

}  // namespace tool
