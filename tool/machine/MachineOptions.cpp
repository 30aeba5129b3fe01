#include "tool/machine/MachineOptions.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

#include "tool/io/HostSystem.h"
#include "tool/io/ToolError.h"
#include "tool/machine/LiveMachine.h"
#include "tool/machine/MachineDocument.h"

namespace tool {
namespace {

namespace fs = std::filesystem;

constexpr char kLive[] = "live";
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
      {"--machine", &options.machineFile, "M.json",
       "the machine: a file, - for standard input, or live (Windows); default: an example"},
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

simulated::Machine LoadMachine(const std::optional<std::string>& name, const Streams& streams,
                               const std::vector<std::string>& inputs) {
  if (!name) return simulated::ExampleMachine();
  if (*name != kLive) {
    if (*name == "-" && std::find(inputs.begin(), inputs.end(), "-") != inputs.end()) {
      throw ToolError("--machine -", "standard input holds the configuration file already",
                      "name a file for one of them");
    }
    return ReadMachine(ReadInput(*name, streams.in, ReadTextBlocks), MachineName(name));
  }
  if (!RunsWindows()) {
    throw ToolError("--machine live", "only Windows tells what this computer is",
                    "name a machine file");
  }
  const CapturedMachine captured = CaptureMachine();
  TellGaps(captured, "--machine live", streams);
  return captured.machine;
}

std::string MachineName(const std::optional<std::string>& name) {
  if (name == kLive) return "this computer";
  if (name == "-") return "standard input";
  const char* example =
      RunsWindows() ? "built-in example, not this computer (--machine live)" : "built-in example";
  return name.value_or(example);
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
