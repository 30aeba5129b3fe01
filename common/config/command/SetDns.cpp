#include "common/config/command/SetDns.h"

#include "common/sys/Wmi.h"

namespace config::command {
namespace {

constexpr char kSource[] = "SetDns";
constexpr err::Site kDhcpFailed{kSource, "Configuring DNS via DHCP failed", 60};
constexpr err::Site kFailed{kSource, "Configuring DNS servers failed", 68};

}  // namespace

void SetDns::Execute() {
  if (mode_ == Mode::kDhcp) servers_.clear();
  RequireDone(sys::Wmi::SetDNSServerSearchOrder(Index(), servers_),
              mode_ == Mode::kDhcp ? kDhcpFailed : kFailed);
}

bool SetDns::Differs(Comparison* comparison) {
  if (mode_ == Mode::kDhcp) {
    if (comparison != nullptr) comparison->wanted = "dhcp";
    return true;
  }
  std::vector<ipc::IPv4Address> current;
  std::vector<std::string> suffixes;
  sys::Wmi::GetDnsServersAndSuffixes(Index(), &current, &suffixes);
  if (comparison != nullptr) comparison->Set(ipc::Join(current), ipc::Join(servers_));
  return current != servers_;
}

std::string SetDns::Describe() {
  return mode_ == Mode::kDhcp ? "DNS via DHCP" : "DNS Servers=" + ipc::Join(servers_);
}

}  // namespace config::command
