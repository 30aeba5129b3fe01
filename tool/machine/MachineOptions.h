// The options that every command on a simulated machine shares.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/simulated/Machine.h"
#include "tool/cli/Command.h"
#include "tool/io/Files.h"

namespace tool {

struct MachineOptions {
  /// Without one the built-in example.
  std::optional<std::string> machineFile;
  bool json = false;
  std::optional<std::string> saveMachine;
  bool noColor = false;
};

/// The rows of these options.
std::vector<Option> MachineOptionRows(MachineOptions& options);

Option NoColorOption(bool& noColor);

/// The option that follows a number of restarts, 1000 at most.
Option FollowRestartsOption(std::optional<std::uint32_t>& most, const char* description);

/// Reads the chosen machine. Throws ToolError.
simulated::Machine LoadMachine(const MachineOptions& options);

/// A file that a command reads or writes already, and what it is to the user.
struct FileInUse {
  std::optional<std::string> path;
  const char* what;
};

/// The file that `option` names for writing, if any. Throws ToolError when it cannot be written or
/// is one of those `inUse`, whatever path or link leads to it.
std::optional<PrivateFile> OpenOutput(const char* option, const std::optional<std::string>& path,
                                      const std::vector<FileInUse>& inUse);

/// The file that the machine is to be saved in, if any, which may be the one that it came from;
/// `input` is the configuration file. Throws as above.
std::optional<PrivateFile> OpenSavedMachine(const MachineOptions& options,
                                            const std::string& input = {});

}  // namespace tool
