// The command `completion`: a script that makes a shell complete the tool's command line.
#pragma once

#include <string>
#include <vector>

#include "tool/cli/Command.h"
#include "tool/io/Streams.h"

namespace tool {

/// The command; the parser stores the chosen shell in `shell`.
Command CompletionCommand(std::string& shell);

/// Writes the script for one of the shells that the command allows. Returns the exit code.
int Completion(const std::string& shell, const std::vector<Command>& commands,
               const Streams& streams);

}  // namespace tool
