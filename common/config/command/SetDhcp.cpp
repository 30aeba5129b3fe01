#include "common/config/command/SetDhcp.h"

#include "common/sys/Wmi.h"

namespace config::command {
namespace {

constexpr err::Site kFailed{"SetDhcp", "Configuring DHCP failed", 48};

}  // namespace

void SetDhcp::Execute() { RequireDone(sys::Wmi::EnableDHCP(Index()), kFailed); }

Comparison SetDhcp::Compare() {
  bool enabled = false;
  sys::Wmi::IsDhcpEnabled(Index(), &enabled);
  return {!enabled, enabled ? "dhcp" : "static", "dhcp"};
}

std::string SetDhcp::Describe() { return {}; }

}  // namespace config::command
