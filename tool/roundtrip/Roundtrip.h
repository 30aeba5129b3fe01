// The command `roundtrip`: what a machine gets back of its settings from an image of itself.
#pragma once

#include "tool/io/Streams.h"
#include "tool/machine/MachineOptions.h"

namespace CLI {
class App;
}

namespace tool {

/// Adds the command with its options; `options` must live until they were parsed.
CLI::App* AddRoundtrip(CLI::App& app, MachineOptions& options);

/// Runs the command and shows its report. Returns the exit code; throws ToolError before anything
/// ran when an option or a file cannot be used.
int Roundtrip(const MachineOptions& options, const Streams& streams);

}  // namespace tool
