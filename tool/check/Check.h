// The command `check`: finds faults in configuration files before a computer meets them.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tool/cli/Command.h"
#include "tool/io/Streams.h"

namespace tool {

struct CheckOptions {
  /// Files, folders and patterns; "-" for standard input.
  std::vector<std::string> files;
  /// The machine to check against, if any.
  std::optional<std::string> machineFile;
  /// Codes of findings that are left out.
  std::vector<std::string> ignored;
  /// The JSON of an earlier check, whose findings are left out.
  std::optional<std::string> baseline;
  /// Warnings count as errors.
  bool strict = false;
  /// Show the certain fixes as a difference or, with `write`, make them.
  bool fix = false;
  bool write = false;
  bool json = false;
  bool sarif = false;
  bool noColor = false;
};

/// The command; the parser fills `options`.
Command CheckCommand(CheckOptions& options);

/// Runs the command and shows its report. Returns the exit code; throws ToolError when an argument
/// or a file that it names cannot be used.
int Check(const CheckOptions& options, const Streams& streams);

}  // namespace tool
