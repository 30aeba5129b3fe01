// The command `simulate`: one message on a simulated machine.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

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

}  // namespace tool
