// Static addresses of one adapter.
#pragma once

#include <vector>

#include "common/config/command/NicCommand.h"
#include "common/ipc/IpAddress.h"

namespace config::command {

/// Gives the adapter its addresses and masks, paired by position.
class SetStatic final : public NicCommand {
 public:
  /// Both throw ipc::CIPAddressError for a host name that does not resolve.
  void AddAddress(const std::string& address) { addresses_.emplace_back(address); }
  void AddMask(const std::string& mask) { masks_.emplace_back(mask); }

  /// Throws ConfigError: value 2 when there is no address or no mask, value 4 unless the adapter
  /// answers 0 or 1. Lists of different length are the adapter's to refuse.
  void Execute() override;
  /// Needed when DHCP is on or the adapter's first address or mask is another one; also when a list
  /// is empty, so that running the command tells it.
  bool Differs(Comparison* comparison) override;
  /// "IP and Subnet Masks: {ip=10.0.0.5,mask=255.0.0.0}", one group a pair.
  std::string Describe() override;

 private:
  /// "10.0.0.5/255.0.0.0,10.0.0.6/255.0.0.0".
  std::string Wanted() const;

  std::vector<ipc::IPv4Address> addresses_;
  std::vector<ipc::IPv4Address> masks_;
};

}  // namespace config::command
