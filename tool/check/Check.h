// The command `check`: finds faults in configuration files before a computer meets them.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tool/io/Streams.h"

namespace CLI {
class App;
}

namespace tool {

struct CheckOptions {
  /// Files, folders and patterns; "-" for standard input.
  std::vector<std::string> files;
  /// The machine to check against, if any.
  std::optional<std::string> machineFile;
  bool json = false;
  bool sarif = false;
  bool noColor = false;
};

/// Adds the command with its options; `options` must live until they were parsed.
CLI::App* AddCheck(CLI::App& app, CheckOptions& options);

/// Runs the command and shows its report. Returns the exit code; throws ToolError when an argument
/// or a file that it names cannot be used.
int Check(const CheckOptions& options, const Streams& streams);

}  // namespace tool
