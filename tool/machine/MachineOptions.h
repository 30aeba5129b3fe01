// The options that every command on a simulated machine shares.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/simulated/Machine.h"
#include "tool/cli/Command.h"
#include "tool/io/Files.h"
#include "tool/io/Streams.h"

namespace tool {

struct MachineOptions {
  /// What `LoadMachine` takes.
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

/// The machine that "--machine" names: a machine file, "-" for standard input where no `input` of
/// the command is that, "live" for this computer on Windows, and without a name the built-in
/// example. What cannot be read of this computer is told on standard error. Throws ToolError.
simulated::Machine LoadMachine(const std::optional<std::string>& name, const Streams& streams,
                               const std::vector<std::string>& inputs = {});
/// What reports call it.
std::string MachineName(const std::optional<std::string>& name);

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
