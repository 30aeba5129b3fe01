#include "common/config/command/EnableNetworking.h"

#include "common/sys/Domain.h"
#include "common/sys/Pause.h"
#include "common/sys/Services.h"

namespace config::command {
namespace {

constexpr std::uint32_t kSettlingMs = 3000;

constexpr struct {
  const char* name;
  sys::ServiceStart start;
} kServices[] = {
    {"Dhcp", sys::ServiceStart::kAutomatic},
    {"NetBT", sys::ServiceStart::kSystem},
    {"LmHosts", sys::ServiceStart::kAutomatic},
    {"NwlnkNb", sys::ServiceStart::kAutomatic},
};

void EnableServices() {
  sys::ServiceManager manager;
  if (!manager.IsOpen()) return;
  for (const auto& row : kServices) {
    sys::Service service = manager.Open(row.name);
    if (!service.IsOpen()) continue;
    service.SetStartType(row.start);
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
