// The command `simulate`: one message on a simulated machine.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tool/io/Streams.h"
#include "tool/machine/MachineOptions.h"

namespace CLI {
class App;
}

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
  std::uint32_t followRestarts = 0;
  bool verbose = false;
};

/// Adds the command with its options; `options` must live until they were parsed.
CLI::App* AddSimulate(CLI::App& app, SimulateOptions& options);

/// Runs the command and shows its report. Returns the exit code; throws ToolError before anything
/// ran when an option or a file cannot be used.
int Simulate(const SimulateOptions& options, const Streams& streams);

}  // namespace tool
