// Default gateways of one adapter.
#pragma once

#include "common/config/command/NicCommand.h"
#include "common/sys/Wmi.h"

namespace config::command {

class SetGateway final : public NicCommand {
 public:
  /// Throws ipc::CIPAddressError for a host name that does not resolve.
  void Add(const std::string& gateway) { gateways_.emplace_back(gateway); }

  /// Throws ConfigError (value 4) unless the adapter returns 0 or 1.
  void Execute() override { RequireDone(sys::Wmi::SetGateways(Index(), gateways_), kFailed); }

  /// Not needed when the adapter has exactly these gateways in this order.
  bool Differs(Comparison* comparison) override {
    std::vector<ipc::IPv4Address> current;
    sys::Wmi::GetGateways(Index(), &current);
    if (comparison != nullptr) comparison->Set(ipc::Join(current), ipc::Join(gateways_));
    return current != gateways_;
  }

  /// "Gateways=10.0.0.1,10.0.0.2".
  std::string Describe() override { return "Gateways=" + ipc::Join(gateways_); }

 private:
  static constexpr err::Site kFailed{"SetGateway", "Configuring gateways failed", 52};

  std::vector<ipc::IPv4Address> gateways_;
};

}  // namespace config::command
