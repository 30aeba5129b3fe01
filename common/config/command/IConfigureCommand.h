// What every command of the configuration engine can do.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace config::command {

/// The current state of the machine and the one that a command wants.
struct Comparison {
  /// False when the machine already is as the command would make it.
  bool needed = true;
  /// What was read; nothing when nothing had to be read.
  std::optional<std::string> current = {};
  std::optional<std::string> wanted = {};

  void Set(std::string read, std::string aim) {
    current = std::move(read);
    wanted = std::move(aim);
  }
};

class IConfigureCommand {
 public:
  // The interface, in the order of its slots.

  /// Carries the command out. Throws ConfigError when the machine refuses, or the error of the
  /// layer that failed.
  virtual void Execute() = 0;
  /// A hook that no command uses and nobody calls.
  virtual void Hook() {}
  /// Reads the machine afresh; false when it already is as the command would make it. Throws the
  /// error of the layer that failed.
  virtual bool IsNeeded() { return Differs(nullptr); }
  /// The command's settings for the log; never a password.
  virtual std::string Describe() = 0;
  virtual ~IConfigureCommand() = default;

  // For whoever explains a queue.

  /// The result of `IsNeeded`; when `comparison` is not null, also the values it came from, never a
  /// password. Unless a command overrides it, it is always needed and compares nothing.
  virtual bool Differs(Comparison* /*comparison*/) { return true; }
  /// `Differs` with the values.
  Comparison Compare() {
    Comparison comparison;
    comparison.needed = Differs(&comparison);
    return comparison;
  }
  /// How long `Execute` waits on purpose.
  virtual std::uint32_t PauseMs() const { return 0; }
};

/// Commands in the order in which they run.
using CommandList = std::vector<std::unique_ptr<IConfigureCommand>>;

}  // namespace config::command
