// The command line as a whole.
#pragma once

#include <string>
#include <vector>

#include "tool/io/Streams.h"

namespace tool {

/// Runs the command that `arguments` (without the program's name) ask for and returns its exit
/// code. Whatever the user must mend is one line on `streams.err` and the exit code 2.
int RunTool(std::vector<std::string> arguments, const Streams& streams);

}  // namespace tool
