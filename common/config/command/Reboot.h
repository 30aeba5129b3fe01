// The point at which a run stops for a restart.
#pragma once

#include "common/config/command/IConfigureCommand.h"

namespace config::command {

/// Never run: a run that meets it ends there and leaves the rest for after the restart.
class Reboot final : public IConfigureCommand {
 public:
  void Execute() override {}
  /// Empty.
  std::string Describe() override { return {}; }
};

}  // namespace config::command
