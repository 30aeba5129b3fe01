#include "tool/machine/MachineOptions.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <filesystem>
#include <sstream>
#include <system_error>
#include <utility>

#include "common/util/Text.h"
#include "platform/simulated/MachineFile.h"
#include "tool/io/ToolError.h"

namespace tool {
namespace {

namespace fs = std::filesystem;

constexpr std::uint32_t kMostRestarts = 1000;

/// Neither need be there yet.
bool AreSameFile(const std::string& left, const std::string& right) {
  std::error_code ignored;
  if (fs::equivalent(left, right, ignored)) return true;
  const fs::path path = fs::weakly_canonical(left, ignored);
  return !path.empty() && path == fs::weakly_canonical(right, ignored);
}

}  // namespace

void AddMachineOptions(CLI::App& command, MachineOptions& options) {
  command
      .add_option("--machine", options.machineFile, "the simulated machine (default: an example)")
      ->type_name("M.json");
  command.add_flag("--json", options.json, "one JSON document on standard output");
  command
      .add_option("--save-machine", options.saveMachine, "write the machine as it is afterwards")
      ->type_name("OUT.json");
  command.add_flag("--no-color", options.noColor, "no colour (as with NO_COLOR set)");
}

void LimitRestarts(CLI::Option& option) {
  const auto check = [](const std::string& text) -> std::string {
    const bool isNumber =
        !text.empty() && text.size() <= 4 &&
        std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
    if (isNumber && util::ParseUnsigned(text) <= kMostRestarts) return {};
    return "\"" + text + "\" is no number from 0 to " + std::to_string(kMostRestarts);
  };
  option.check(CLI::Validator(check, ""))->type_name("N");
}

simulated::Machine LoadMachine(const MachineOptions& options) {
  if (!options.machineFile) return simulated::ExampleMachine();
  if (*options.machineFile == "-") {
    throw ToolError("--machine -", "cannot come from standard input", "name a machine file");
  }
  std::istringstream noInput;
  const std::string text = ReadInput(*options.machineFile, noInput);
  try {
    return simulated::ParseMachine(text, *options.machineFile);
  } catch (const simulated::MachineFileError& error) {
    throw ToolError(error.what());
  }
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
