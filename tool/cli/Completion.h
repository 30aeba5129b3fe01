// The command `completion`: what makes a shell complete the tool's command line.
#pragma once

#include <string>
#include <vector>

#include "tool/cli/CommandTable.h"
#include "tool/io/Streams.h"

namespace tool {

struct CompletionOptions {
  std::string shell;
};

/// Adds the command with its options; `options` must live until they were parsed.
CLI::App* AddCompletion(CLI::App& app, CompletionOptions& options);

/// Writes the script for the chosen shell. Returns the exit code; throws ToolError when no shell is
/// chosen.
int Completion(const CompletionOptions& options, const std::vector<CommandRow>& commands,
               const Streams& streams);

}  // namespace tool
