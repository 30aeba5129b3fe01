// What every command of the configuration engine can do.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace config::command {

/// The machine beside what a command would make of it.
struct Comparison {
  /// False when the machine already is as the command would make it.
  bool needed = true;
  /// What was read; nothing when the answer needed no reading.
  std::optional<std::string> current = {};
  std::optional<std::string> wanted = {};
};

class IConfigureCommand {
 public:
  virtual ~IConfigureCommand() = default;
  /// Carries the command out. Throws ConfigError when the machine refuses, or the error of the
  /// layer that failed.
  virtual void Execute() = 0;
  /// Reads the machine afresh. Unless a command says otherwise it is always needed and compares
  /// nothing. Throws the error of the layer that failed; never tells a password.
  virtual Comparison Compare() { return {}; }
  bool IsNeeded() { return Compare().needed; }
  /// The command's settings for the log; never a password.
  virtual std::string Describe() = 0;
  /// How long `Execute` waits on purpose.
  virtual std::uint32_t PauseMs() const { return 0; }
};

/// Commands in the order in which they run.
using CommandList = std::vector<std::unique_ptr<IConfigureCommand>>;

}  // namespace config::command
