// Static addresses of one adapter.
#pragma once

#include <algorithm>

#include "common/config/command/NicCommand.h"
#include "common/sys/Wmi.h"

namespace config::command {

/// Gives the adapter its addresses and masks, paired by position.
class SetStatic final : public NicCommand {
 public:
  /// Both throw ipc::CIPAddressError for a host name that does not resolve.
  void AddAddress(const std::string& address) { addresses_.emplace_back(address); }
  void AddMask(const std::string& mask) { masks_.emplace_back(mask); }

  /// Throws ConfigError: value 2 when there is no address or no mask, value 4 unless the adapter
  /// returns 0 or 1. It is the adapter that refuses lists of different length.
  void Execute() override {
    if (addresses_.empty() || masks_.empty()) {
      throw ConfigError{kListEmpty, /*value=*/2, /*systemError=*/0};
    }
    RequireDone(sys::Wmi::EnableStatic(Index(), addresses_, masks_), kFailed);
  }

  /// Needed when DHCP is on or the adapter's first address or mask is another one; also when a list
  /// is empty, so that running the command reports it.
  bool Differs(Comparison* comparison) override {
    if (comparison != nullptr) comparison->wanted = Wanted();
    if (addresses_.empty() || masks_.empty()) return true;
    bool dhcp = false;
    sys::Wmi::IsDhcpEnabled(Index(), &dhcp);
    if (dhcp) {
      if (comparison != nullptr) comparison->current = "dhcp";
      return true;
    }
    ipc::IPv4Address address;
    ipc::IPv4Address mask;
    sys::Wmi::GetIpAddressAndMask(Index(), &address, &mask);
    if (comparison != nullptr) comparison->current = address.ToString() + "/" + mask.ToString();
    // Deliberate: further addresses and masks never make the command needed.
    return address != addresses_.front() || mask != masks_.front();
  }

  /// "IP and Subnet Masks: {ip=10.0.0.5,mask=255.0.0.0}", one group a pair.
  std::string Describe() override {
    std::string text = "IP and Subnet Masks: ";
    for (std::size_t i = 0; i < std::max(addresses_.size(), masks_.size()); ++i) {
      const bool hasAddress = i < addresses_.size();
      text += "{";
      if (hasAddress) text += "ip=" + addresses_[i].ToString();
      if (i < masks_.size()) text += (hasAddress ? ",mask=" : "mask=") + masks_[i].ToString();
      text += "}";
    }
    return text;
  }

 private:
  static constexpr err::Site kListEmpty{"SetStatic", "Static IP addresses/masks list empty", 62};
  static constexpr err::Site kFailed{"SetStatic", "Configuring static IP addresses failed", 68};

  /// "10.0.0.5/255.0.0.0,10.0.0.6/255.0.0.0".
  std::string Wanted() const {
    std::string text;
    for (std::size_t i = 0; i < std::max(addresses_.size(), masks_.size()); ++i) {
      if (i > 0) text += ",";
      if (i < addresses_.size()) text += addresses_[i].ToString();
      if (i < masks_.size()) text += "/" + masks_[i].ToString();
    }
    return text;
  }

  std::vector<ipc::IPv4Address> addresses_;
  std::vector<ipc::IPv4Address> masks_;
};

}  // namespace config::command
