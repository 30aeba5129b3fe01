#include "tool/commands/Send.h"

#include <nlohmann/json.hpp>
#include <ostream>
#include <utility>

#include "common/util/FileUtils.h"
#include "handlers/Version.h"
#include "platform/IErrors.h"
#include "platform/ILibraries.h"
#include "platform/IPlatform.h"
#include "tool/agent/Delivery.h"
#include "tool/commands/SetOption.h"
#include "tool/commands/SimulateReport.h"
#include "tool/io/HostSystem.h"
#include "tool/io/ToolError.h"
#include "tool/machine/MachineOptions.h"

namespace tool {
namespace {

constexpr std::uintptr_t kKnownRevision = 1;

constexpr char kFooter[] =
    R"(The message does on this computer what it says: rehearse it with "simulate" first.
Windows only. Without --plugin the library beside the tool is loaded.

Exit codes:
  0  the reply is "Success" or "Reboot", or the message was handled without a result
  1  the reply is "Failure", or the message was not handled (status 0)
  2  unusable arguments or library, with one line on standard error

Examples:
  orvanta-config send Internal Configure --set "Filename=C:\tarvo.cfg"
  orvanta-config send Internal UpdateInfo --plugin C:\agent\orvanta-config.dll --json)";

/// The library's table. Throws ToolError when the file is no such library.
const ToolboxApi& LoadPlugin(const std::string& path) {
  platform::ILibraries& libraries = platform::Current().Libraries();
  const platform::LibraryHandle library = libraries.Load(path);
  if (library == platform::LibraryHandle::kNone) {
    const platform::Win32Error error = platform::Current().Errors().LastError();
    throw ToolError(path, "cannot be loaded (error " + std::to_string(error) + ")",
                    "name the plug-in library with --plugin");
  }
  const auto entry =
      reinterpret_cast<decltype(&GetToolboxAPI)>(libraries.FindExport(library, "GetToolboxAPI"));
  const ToolboxApi* api = entry != nullptr ? entry() : nullptr;
  if (api == nullptr || api->interfaceRevision != kKnownRevision) {
    throw ToolError(path, "is no plug-in library of this agent", "name another one with --plugin");
  }
  return *api;
}

}  // namespace

Command SendCommand(SendOptions& options) {
  return {"send",
          "hand one message to the plug-in library on this computer",
          kFooter,
          {{"TYPE", &options.type, "", "the message's type, for example Internal",
            /*isRequired=*/true},
           {"NAME", &options.name, "", "the message's name, for example Configure",
            /*isRequired=*/true},
           {"--plugin", &options.plugin, "PATH", "the library (default: the one beside the tool)"},
           SetOption(options.set),
           {"--json", &options.json, "", "one JSON document on standard output"},
           {"--verbose", &options.verbose, "", "show the log lines too"},
           NoColorOption(options.noColor)}};
}

int Send(const SendOptions& options, const Streams& streams) {
  if (!RunsWindows()) {
    throw ToolError("send", "works on Windows only",
                    "rehearse the message with orvanta-config simulate");
  }
  AgentMessage::GivenValues values;
  AddSetValues(options.set, values);
  const std::string plugin = options.plugin.empty()
                                 ? util::ExecutableFolder() + "\\" + version::LibraryFileName()
                                 : options.plugin;
  const Delivery delivery =
      Hand(LoadPlugin(plugin), {options.type, options.name, std::move(values)});
  if (options.json) {
    // The changes of a real machine are not recorded.
    simulated::Json json = ToJson(delivery);
    json.erase("changes");
    json.erase("restarts");
    streams.out << json.dump(2, ' ', /*ensure_ascii=*/false,
                             simulated::Json::error_handler_t::replace)
                << '\n';
  } else {
    streams.out << DeliveryReport(delivery, Style(streams.color && !options.noColor),
                                  options.verbose);
  }
  return delivery.Succeeded() ? kDone : kFailed;
}

}  // namespace tool
