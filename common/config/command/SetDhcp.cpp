#include "common/config/command/SetDhcp.h"

#include "common/sys/Wmi.h"

namespace config::command {
namespace {

constexpr err::Site kFailed{"SetDhcp", "Configuring DHCP failed", 48};

}  // namespace

void SetDhcp::Execute() { RequireDone(sys::Wmi::EnableDHCP(Index()), kFailed); }

bool SetDhcp::Differs(Comparison* comparison) {
  bool enabled = false;
  sys::Wmi::IsDhcpEnabled(Index(), &enabled);
  if (comparison != nullptr) comparison->Set(enabled ? "dhcp" : "static", "dhcp");
  return !enabled;
}

std::string SetDhcp::Describe() { return {}; }

}  // namespace config::command
