#include "common/config/command/SetStatic.h"

#include <algorithm>

#include "common/sys/Wmi.h"

namespace config::command {
namespace {

constexpr char kSource[] = "SetStatic";
constexpr err::Site kListEmpty{kSource, "Static IP addresses/masks list empty", 62};
constexpr err::Site kFailed{kSource, "Configuring static IP addresses failed", 68};

}  // namespace

void SetStatic::Execute() {
  if (addresses_.empty() || masks_.empty()) {
    throw ConfigError{kListEmpty, /*value=*/2, /*systemError=*/0};
  }
  RequireDone(sys::Wmi::EnableStatic(Index(), addresses_, masks_), kFailed);
}

bool SetStatic::Differs(Comparison* comparison) {
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

std::string SetStatic::Wanted() const {
  std::string text;
  for (std::size_t i = 0; i < std::max(addresses_.size(), masks_.size()); ++i) {
    if (i > 0) text += ",";
    if (i < addresses_.size()) text += addresses_[i].ToString();
    if (i < masks_.size()) text += "/" + masks_[i].ToString();
  }
  return text;
}

std::string SetStatic::Describe() {
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

}  // namespace config::command
