// The command `explain`: what a finding, a number or a log means.
#pragma once

#include <string>
#include <vector>

#include "tool/cli/Command.h"
#include "tool/io/Streams.h"

namespace tool {

struct ExplainOptions {
  /// Codes of findings, numbers and files; "-" for standard input.
  std::vector<std::string> what;
  bool json = false;
  bool noColor = false;
};

/// The command; the parser fills `options`.
Command ExplainCommand(ExplainOptions& options);

/// Runs the command. Returns the exit code; throws ToolError for a file that cannot be read.
int Explain(const ExplainOptions& options, const Streams& streams);

}  // namespace tool
