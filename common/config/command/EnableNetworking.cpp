#include "common/config/command/EnableNetworking.h"

#include "base/Services.h"
#include "common/sys/Domain.h"
#include "common/sys/Pause.h"
#include "common/sys/Services.h"

namespace config::command {
namespace {

constexpr std::uint32_t kSettlingMs = 3000;

void EnableServices() {
  sys::ServiceManager manager;
  if (!manager.IsOpen()) return;
  for (const base::NetworkService& known : base::kNetworkServices) {
    sys::Service service = manager.Open(known.name);
    if (!service.IsOpen()) continue;
    service.SetStartType(known.start);
    service.Start();  // one that runs already refuses, which is as good
  }
}

}  // namespace

void EnableNetworking::Execute() {
  sys::Domain& domain = sys::Domain::Instance();
  if (leaveDomain_ && domain.IsDomainMember()) domain.JoinWorkgroup("WrkGrp");
  EnableServices();
  sys::Pause(kSettlingMs);
}

std::string EnableNetworking::Describe() { return {}; }

std::uint32_t EnableNetworking::PauseMs() const { return kSettlingMs; }

}  // namespace config::command
