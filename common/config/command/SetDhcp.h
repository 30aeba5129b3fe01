// DHCP addressing of one adapter.
#pragma once

#include "common/config/command/NicCommand.h"

namespace config::command {

/// Turns DHCP on for the adapter that the enclosing ConfigureNic was bound to.
class SetDhcp final : public NicCommand {
 public:
  /// Throws ConfigError (value 4) unless the adapter answers 0 or 1.
  void Execute() override;
  /// Not needed when the adapter already uses DHCP.
  bool Differs(Comparison* comparison) override;
  /// Empty.
  std::string Describe() override;
};

}  // namespace config::command
