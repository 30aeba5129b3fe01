// The command `roundtrip`: what a machine gets back of its settings from an image of itself.
#pragma once

#include "tool/io/Streams.h"
#include "tool/machine/MachineOptions.h"

namespace tool {

/// The command; the parser fills `options`.
Command RoundtripCommand(MachineOptions& options);

/// Runs the command and shows its report. Returns the exit code; throws ToolError before anything
/// ran when an option or a file cannot be used.
int Roundtrip(const MachineOptions& options, const Streams& streams);

}  // namespace tool
