// The command `man`: the manual page.
#pragma once

#include <vector>

#include "tool/cli/Command.h"
#include "tool/io/Streams.h"

namespace tool {

Command ManPageCommand();

/// Writes the page in the language of man(7). Returns the exit code.
int ManPage(const std::vector<Command>& commands, const Streams& streams);

}  // namespace tool
