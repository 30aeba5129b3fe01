// DNS servers of one adapter.
#pragma once

#include "common/config/command/NicCommand.h"
#include "common/sys/Wmi.h"

namespace config::command {

/// Sets the servers, or (in DHCP mode) hands DNS back to DHCP.
class SetDns final : public NicCommand {
 public:
  enum class Mode : std::uint8_t { kServers, kDhcp };

  explicit SetDns(Mode mode = Mode::kServers) : mode_(mode) {}

  /// Throws ipc::CIPAddressError for a host name that does not resolve.
  void Add(const std::string& server) { servers_.emplace_back(server); }

  /// Throws ConfigError (value 4) unless the adapter returns 0 or 1.
  void Execute() override {
    if (mode_ == Mode::kDhcp) servers_.clear();
    RequireDone(sys::Wmi::SetDNSServerSearchOrder(Index(), servers_),
                mode_ == Mode::kDhcp ? kDhcpFailed : kFailed);
  }

  /// Not needed when the adapter has exactly these servers in this order; always needed in DHCP
  /// mode.
  bool Differs(Comparison* comparison) override {
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

  /// "DNS Servers=10.0.0.1,10.0.0.2" or "DNS via DHCP".
  std::string Describe() override {
    return mode_ == Mode::kDhcp ? "DNS via DHCP" : "DNS Servers=" + ipc::Join(servers_);
  }

 private:
  static constexpr err::Site kDhcpFailed{"SetDns", "Configuring DNS via DHCP failed", 60};
  static constexpr err::Site kFailed{"SetDns", "Configuring DNS servers failed", 68};

  std::vector<ipc::IPv4Address> servers_;
  Mode mode_;
};

}  // namespace config::command
