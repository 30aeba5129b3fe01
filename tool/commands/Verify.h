// The command `verify`: whether a machine has the settings of a configuration file.
#pragma once

#include <string>

#include "tool/io/Streams.h"
#include "tool/machine/MachineOptions.h"

namespace tool {

struct VerifyOptions {
  MachineOptions machine;
  /// "-" for standard input.
  std::string file;
};

/// The command; the parser fills `options`.
Command VerifyCommand(VerifyOptions& options);

/// Runs the command. Returns the exit code; throws ToolError when an option or a file cannot be
/// used.
int Verify(const VerifyOptions& options, const Streams& streams);

}  // namespace tool
