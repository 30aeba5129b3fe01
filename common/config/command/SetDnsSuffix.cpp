#include "common/config/command/SetDnsSuffix.h"

#include "base/Pieces.h"
#include "common/sys/Wmi.h"

namespace config::command {
namespace {

constexpr err::Site kFailed{"SetDnsSuffix", "Configuring DNS suffixes failed", 54};

}  // namespace

void SetDnsSuffix::Execute() { RequireDone(sys::Wmi::SetDNSSuffixSearchOrder(suffixes_), kFailed); }

bool SetDnsSuffix::Differs(Comparison* comparison) {
  std::vector<ipc::IPv4Address> servers;
  std::vector<std::string> current;
  sys::Wmi::GetDnsServersAndSuffixes(Index(), &servers, &current);
  if (comparison != nullptr) comparison->Set(base::Join(current, ","), base::Join(suffixes_, ","));
  return current != suffixes_;
}

std::string SetDnsSuffix::Describe() { return "DNS Suffixes=" + base::Join(suffixes_, ","); }

}  // namespace config::command
