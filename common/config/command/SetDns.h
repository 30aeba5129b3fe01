// DNS servers of one adapter.
#pragma once

#include <vector>

#include "common/config/command/NicCommand.h"
#include "common/ipc/IpAddress.h"

namespace config::command {

/// Sets the servers, or (in DHCP mode) hands DNS back to DHCP.
class SetDns final : public NicCommand {
 public:
  enum class Mode : std::uint8_t { kServers, kDhcp };

  explicit SetDns(Mode mode) : mode_(mode) {}

  /// Throws ipc::CIPAddressError for a host name that does not resolve.
  void Add(const std::string& server) { servers_.emplace_back(server); }

  /// Throws ConfigError (value 4) unless the adapter answers 0 or 1.
  void Execute() override;
  /// Not needed when the adapter has exactly these servers in this order; always needed in DHCP
  /// mode.
  bool Differs(Comparison* comparison) override;
  /// "DNS Servers=10.0.0.1,10.0.0.2" or "DNS via DHCP".
  std::string Describe() override;

 private:
  std::vector<ipc::IPv4Address> servers_;
  Mode mode_;
};

}  // namespace config::command
