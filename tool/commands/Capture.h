// The command `capture`: a machine as a machine file.
#pragma once

#include "tool/io/Streams.h"
#include "tool/machine/MachineOptions.h"

namespace tool {

/// The command; the parser fills `options`.
Command CaptureCommand(MachineOptions& options);

/// Writes the machine file: of this computer where it runs Windows and no machine was named, of the
/// simulated machine otherwise. Returns the exit code; throws ToolError before anything was written
/// when an option or a file cannot be used.
int Capture(const MachineOptions& options, const Streams& streams);

}  // namespace tool
