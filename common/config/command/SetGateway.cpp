#include "common/config/command/SetGateway.h"

#include "common/sys/Wmi.h"

namespace config::command {
namespace {

constexpr err::Site kFailed{"SetGateway", "Configuring gateways failed", 52};

}  // namespace

void SetGateway::Execute() { RequireDone(sys::Wmi::SetGateways(Index(), gateways_), kFailed); }

bool SetGateway::Differs(Comparison* comparison) {
  std::vector<ipc::IPv4Address> current;
  sys::Wmi::GetGateways(Index(), &current);
  if (comparison != nullptr) comparison->Set(ipc::Join(current), ipc::Join(gateways_));
  return current != gateways_;
}

std::string SetGateway::Describe() { return "Gateways=" + ipc::Join(gateways_); }

}  // namespace config::command
