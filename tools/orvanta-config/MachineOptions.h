// The options that every command on a simulated machine shares.
#pragma once

#include <optional>
#include <string>

#include "platform/simulated/Machine.h"
#include "tools/orvanta-config/Files.h"

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

/// The file that `option` names for writing, if any. Throws ToolError when it cannot be written or
/// is `input`, the configuration file.
std::optional<PrivateFile> OpenOutput(const char* option, const std::optional<std::string>& path,
                                      const std::string& input);

/// The file that the machine is to be saved in, if any; throws as above.
std::optional<PrivateFile> OpenSavedMachine(const MachineOptions& options,
                                            const std::string& input = {});

}  // namespace tool
