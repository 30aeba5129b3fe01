// Default gateways of one adapter.
#pragma once

#include <vector>

#include "common/config/command/NicCommand.h"
#include "common/ipc/IpAddress.h"

namespace config::command {

class SetGateway final : public NicCommand {
 public:
  /// Throws ipc::CIPAddressError for a host name that does not resolve.
  void Add(const std::string& gateway) { gateways_.emplace_back(gateway); }

  /// Throws ConfigError (value 4) unless the adapter answers 0 or 1.
  void Execute() override;
  /// Not needed when the adapter has exactly these gateways in this order.
  bool Differs(Comparison* comparison) override;
  /// "Gateways=10.0.0.1,10.0.0.2".
  std::string Describe() override;

 private:
  std::vector<ipc::IPv4Address> gateways_;
};

}  // namespace config::command
