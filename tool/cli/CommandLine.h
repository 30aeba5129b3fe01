// What is wrong with a command line, before anything of it is done.
#pragma once

#include <string>
#include <vector>

#include "tool/cli/CommandTable.h"

namespace tool {

/// One line for the user about the first argument that the commands do not take, with the nearest
/// one that they do; empty when there is none, or when help is asked for before it. `commands` is
/// what ReadCommands makes.
std::string FindCommandLineFault(const std::vector<CommandRow>& commands,
                                 const std::vector<std::string>& arguments);

}  // namespace tool
