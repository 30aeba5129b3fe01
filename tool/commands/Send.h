// The command `send`: one message to the plug-in library on this computer, for real.
#pragma once

#include <string>
#include <vector>

#include "tool/cli/Command.h"
#include "tool/io/Streams.h"

namespace tool {

struct SendOptions {
  std::string type;
  std::string name;
  /// Empty for the library that lies beside the tool.
  std::string plugin;
  /// "KEY=VALUE" texts as they were given.
  std::vector<std::string> set;
  bool json = false;
  bool noColor = false;
  bool verbose = false;
};

/// The command; the parser fills `options`.
Command SendCommand(SendOptions& options);

/// Loads the library, hands it the message and shows what came back. Returns the exit code; throws
/// ToolError before anything ran when there is no such library here.
int Send(const SendOptions& options, const Streams& streams);

}  // namespace tool
