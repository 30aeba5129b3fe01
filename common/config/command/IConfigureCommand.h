// What every command of the configuration engine can do.
#pragma once

#include <memory>
#include <string>
#include <vector>

namespace config::command {

class IConfigureCommand {
 public:
  virtual ~IConfigureCommand() = default;
  /// Carries the command out. Throws ConfigError when the machine refuses, or the error of the
  /// layer that failed.
  virtual void Execute() = 0;
  /// False when the machine, read afresh, already is as the command would make it.
  virtual bool IsNeeded() = 0;
  /// The command's settings for the log; never a password.
  virtual std::string Describe() = 0;
};

/// Commands in the order in which they run.
using CommandList = std::vector<std::unique_ptr<IConfigureCommand>>;

}  // namespace config::command
