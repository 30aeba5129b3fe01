// DHCP addressing of one adapter.
#pragma once

#include "common/config/command/NicCommand.h"
#include "common/sys/Wmi.h"

namespace config::command {

/// Turns DHCP on for the adapter that the enclosing ConfigureNic was bound to.
class SetDhcp final : public NicCommand {
 public:
  /// Throws ConfigError (value 4) unless the adapter returns 0 or 1.
  void Execute() override { RequireDone(sys::Wmi::EnableDHCP(Index()), kFailed); }

  /// Not needed when the adapter already uses DHCP.
  bool Differs(Comparison* comparison) override {
    bool enabled = false;
    sys::Wmi::IsDhcpEnabled(Index(), &enabled);
    if (comparison != nullptr) comparison->Set(enabled ? "dhcp" : "static", "dhcp");
    return !enabled;
  }

  /// Empty.
  std::string Describe() override { return {}; }

 private:
  static constexpr err::Site kFailed{"SetDhcp", "Configuring DHCP failed", 48};
};

}  // namespace config::command
