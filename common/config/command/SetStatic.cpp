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

Comparison SetStatic::Compare() {
  if (addresses_.empty() || masks_.empty()) return {.wanted = Wanted()};
  bool dhcp = false;
  sys::Wmi::IsDhcpEnabled(Index(), &dhcp);
  if (dhcp) return {true, "dhcp", Wanted()};
  ipc::IPv4Address address;
  ipc::IPv4Address mask;
  sys::Wmi::GetIpAddressAndMask(Index(), &address, &mask);
  // Deliberate: further addresses and masks never make the command needed.
  return {address != addresses_.front() || mask != masks_.front(),
          address.ToString() + "/" + mask.ToString(), Wanted()};
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
