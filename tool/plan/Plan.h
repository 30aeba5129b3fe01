// The command `plan`: the queue as the analysis leaves it, without running it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "tool/io/Streams.h"
#include "tool/machine/MachineOptions.h"

namespace tool {

struct PlanOptions {
  MachineOptions machine;
  /// "-" for standard input.
  std::string file;
  bool verbose = false;
  /// Absent: the plan alone.
  std::optional<std::uint32_t> followRestarts;
  /// Where the page goes; absent for none.
  std::optional<std::string> html;
};

/// The command; the parser fills `options`.
Command PlanCommand(PlanOptions& options);

/// Runs the command and shows the plan. Returns the exit code; throws ToolError when an option or a
/// file cannot be used.
int Plan(const PlanOptions& options, const Streams& streams);

}  // namespace tool
