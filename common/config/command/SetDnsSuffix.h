// DNS suffix search order.
#pragma once

#include "base/Pieces.h"
#include "common/config/command/NicCommand.h"
#include "common/sys/Wmi.h"

namespace config::command {

/// Sets the suffix list. It is compared with the adapter's but set for the whole machine.
class SetDnsSuffix final : public NicCommand {
 public:
  void Add(const std::string& suffix) { suffixes_.push_back(suffix); }

  /// Throws ConfigError (value 4) unless the machine returns 0 or 1.
  void Execute() override { RequireDone(sys::Wmi::SetDNSSuffixSearchOrder(suffixes_), kFailed); }

  /// Not needed when the adapter has exactly these suffixes, letter by letter, in this order.
  bool Differs(Comparison* comparison) override {
    std::vector<ipc::IPv4Address> servers;
    std::vector<std::string> current;
    sys::Wmi::GetDnsServersAndSuffixes(Index(), &servers, &current);
    if (comparison != nullptr) {
      comparison->Set(base::Join(current, ","), base::Join(suffixes_, ","));
    }
    return current != suffixes_;
  }

  /// "DNS Suffixes=a.example,b.example".
  std::string Describe() override { return "DNS Suffixes=" + base::Join(suffixes_, ","); }

 private:
  static constexpr err::Site kFailed{"SetDnsSuffix", "Configuring DNS suffixes failed", 54};

  std::vector<std::string> suffixes_;
};

}  // namespace config::command
