// The command `fleet`: an inventory of computers, each rehearsed through its restarts.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tool/cli/Command.h"
#include "tool/io/Streams.h"

namespace tool {

struct FleetOptions {
  /// The inventory; with `merge` the reports of its shards.
  std::vector<std::string> files;
  bool merge = false;
  /// The machine that rows describe; without one the built-in example.
  std::optional<std::string> machineFile;
  std::optional<std::string> directory;
  /// "2/8".
  std::optional<std::string> shard;
  std::optional<std::uint32_t> atOnce;
  std::optional<std::uint32_t> restartMinutes;
  bool json = false;
  std::optional<std::string> html;
  bool noColor = false;
};

/// The command; the parser fills `options`.
Command FleetCommand(FleetOptions& options);

/// Runs the command and shows its report. Returns the exit code; throws ToolError when an option,
/// the inventory or a report cannot be used.
int Fleet(const FleetOptions& options, const Streams& streams);

}  // namespace tool
