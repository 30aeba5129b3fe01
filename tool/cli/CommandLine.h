// The only user of CLI11: binds the commands' options to it and lets it parse.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "tool/cli/Command.h"

namespace tool {

/// Stores the arguments' values in the options' targets and returns the command that they name;
/// null when they ask for help or the version, which is then written to `out`. `commands` begins
/// with the program itself. Throws ToolError for arguments that no command takes, with the nearest
/// one that it does.
const Command* ParseCommandLine(const std::vector<Command>& commands, const std::string& version,
                                std::vector<std::string> arguments, std::ostream& out);

}  // namespace tool
