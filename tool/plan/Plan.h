// The command `plan`: the queue of a configuration file after its analysis, rehearsed.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "tool/io/Streams.h"
#include "tool/machine/MachineOptions.h"

namespace tool {

/// With this option the exit code shows whether there is something to do. Unusable arguments then
/// have a code of their own, since the usual one means changes.
inline constexpr char kDetailedExitCode[] = "--detailed-exitcode";
inline constexpr int kUnusableInDetail = 3;

struct PlanOptions {
  MachineOptions machine;
  /// "-" for standard input.
  std::string file;
  bool verbose = false;
  bool detailedExitcode = false;
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
