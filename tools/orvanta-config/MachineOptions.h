// The options that every command on a simulated machine shares.
#pragma once

#include <optional>
#include <string>

#include "platform/simulated/Machine.h"

namespace CLI {
class App;
}

namespace tool {

struct MachineOptions {
  /// Without one the built-in example.
  std::optional<std::string> machineFile;
  bool json = false;
  std::optional<std::string> saveMachine;
  bool noColor = false;
};

/// Adds the options to a command; `options` must live until they were parsed.
void AddMachineOptions(CLI::App& command, MachineOptions& options);

/// Reads the chosen machine. Throws ToolError.
simulated::Machine LoadMachine(const MachineOptions& options);

}  // namespace tool
