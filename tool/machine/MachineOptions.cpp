#include "tool/machine/MachineOptions.h"

#include <filesystem>
#include <sstream>
#include <system_error>
#include <utility>

#include "tool/io/HostSystem.h"
#include "tool/io/ToolError.h"
#include "tool/machine/MachineDocument.h"

namespace tool {
namespace {

namespace fs = std::filesystem;

constexpr std::uint32_t kMostRestarts = 1000;

/// Neither need be there yet.
bool AreSameFile(const std::string& left, const std::string& right) {
  std::error_code ignored;
  const fs::path one = PathOf(left);
  const fs::path other = PathOf(right);
  if (fs::equivalent(one, other, ignored)) return true;
  // Absolute first: "new" and "./new" differ for good when neither is there.
  const fs::path path = fs::weakly_canonical(fs::absolute(one, ignored), ignored);
  return !path.empty() && path == fs::weakly_canonical(fs::absolute(other, ignored), ignored);
}

}  // namespace

std::vector<Option> MachineOptionRows(MachineOptions& options) {
  return {
      {"--machine", &options.machineFile, "M.json", "the simulated machine (default: an example)"},
      {"--json", &options.json, "", "one JSON document on standard output"},
      {"--save-machine", &options.saveMachine, "OUT.json", "save the machine as it is afterwards"},
      NoColorOption(options.noColor),
  };
}

Option NoColorOption(bool& noColor) {
  return {"--no-color", &noColor, "", "no colour (as when NO_COLOR is set)"};
}

Option FollowRestartsOption(std::optional<std::uint32_t>& most, const char* description) {
  return {"--follow-restarts", &most, "N", description, /*isRequired=*/false, kMostRestarts};
}

simulated::Machine LoadMachine(const MachineOptions& options) {
  if (!options.machineFile) return simulated::ExampleMachine();
  if (*options.machineFile == "-") {
    throw ToolError("--machine -", "cannot come from standard input", "name a machine file");
  }
  std::istringstream noInput;
  return ReadMachine(ReadInput(*options.machineFile, noInput), *options.machineFile);
}

std::optional<PrivateFile> OpenOutput(const char* option, const std::optional<std::string>& path,
                                      const std::vector<FileInUse>& inUse) {
  if (!path) return std::nullopt;
  if (*path == "-") {
    throw ToolError(std::string(option) + " -", "cannot go to standard output", "name a file");
  }
  for (const FileInUse& other : inUse) {
    if (other.path && AreSameFile(*other.path, *path)) {
      throw ToolError(*path, std::string("is the ") + other.what + " itself",
                      "write to another file");
    }
  }
  return std::optional<PrivateFile>(std::in_place, *path);
}

std::optional<PrivateFile> OpenSavedMachine(const MachineOptions& options,
                                            const std::string& input) {
  return OpenOutput("--save-machine", options.saveMachine, {{input, "configuration file"}});
}

}  // namespace tool
