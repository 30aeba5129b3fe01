// The command `simulate`: one message on a simulated machine.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tool/agent/AgentMessage.h"
#include "tool/io/Streams.h"
#include "tool/machine/MachineOptions.h"

namespace tool {

struct SimulateOptions {
  MachineOptions machine;
  /// Empty for none, "-" for standard input.
  std::string file;
  std::string message = "configure";
  std::string at = R"(C:\tarvo.cfg)";
  /// "KEY=VALUE" texts as they were given.
  std::vector<std::string> set;
  bool deliverPosted = false;
  std::optional<std::uint32_t> followRestarts;
  bool verbose = false;
};

/// The command; the parser fills `options`.
Command SimulateCommand(SimulateOptions& options);

/// Runs the command and shows its report. Returns the exit code; throws ToolError before anything
/// ran when an option or a file cannot be used.
int Simulate(const SimulateOptions& options, const Streams& streams);

/// The option for more values of a message, which stores its texts in `texts`.
Option SetOption(std::vector<std::string>& texts);

/// Adds the values of "KEY=VALUE" texts. If two values have the same key, the later one counts, so
/// a value that is already there can be replaced. Throws ToolError for a text without a key.
void AddSetValues(const std::vector<std::string>& texts, AgentMessage::GivenValues& values);

}  // namespace tool
