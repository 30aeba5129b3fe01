// The command `man`: the manual page, made of the same table as the help.
#pragma once

#include <vector>

#include "tool/cli/CommandTable.h"
#include "tool/io/Streams.h"

namespace tool {

CLI::App* AddManPage(CLI::App& app);

/// Writes the page in the language of man(7). Returns the exit code.
int ManPage(const std::vector<CommandRow>& commands, const Streams& streams);

}  // namespace tool
