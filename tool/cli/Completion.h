// The command `completion`: a script that makes a shell complete the tool's command line, and the
// answers to what the script asks.
#pragma once

#include <string>
#include <vector>

#include "tool/cli/Command.h"
#include "tool/io/Streams.h"

namespace tool {

struct CompletionOptions {
  std::string shell;
  /// What a script asks: "=" and the word at the cursor, then the words before it. Empty to get the
  /// script.
  std::vector<std::string> words;
};

/// The command; the parser fills `options`.
Command CompletionCommand(CompletionOptions& options);

/// Writes the script for one of the shells that the command allows, or what can follow the words:
/// one word a line, then a tab and its description, or ":files" for one of the user's files.
/// Returns the exit code.
int Completion(const CompletionOptions& options, const std::vector<Command>& commands,
               const Streams& streams);

}  // namespace tool
