// The command `completion`: a script that makes a shell complete the tool's command line, and the
// answers to what the script asks.
#pragma once

#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

#include "tool/cli/Command.h"
#include "tool/io/Streams.h"

namespace tool {

/// The command; the parser stores the chosen shell in `shell`.
Command CompletionCommand(std::string& shell);

/// Writes the script for one of the shells that the command allows. Returns the exit code.
int Completion(const std::string& shell, const Streams& streams);

/// Writes what may stand at the cursor, where `word` begins, behind the words `before`: one a line,
/// and a description behind a tab; ":files" for one of the user's files.
void Complete(const std::vector<std::string>& before, std::string_view word,
              const std::vector<Command>& commands, std::ostream& out);

}  // namespace tool
