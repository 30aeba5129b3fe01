#include "common/sys/Services.h"

#include "common/util/Finally.h"
#include "platform/IPlatform.h"

namespace sys {
namespace {

using platform::ServiceHandle;

platform::IServices& Port() { return platform::Current().Services(); }

}  // namespace

bool Service::SetStartType(ServiceStart start) const { return Port().SetStartType(handle_, start); }

bool Service::Start() const { return Port().Start(handle_); }

void ForEachNetworkService(const std::function<void(std::size_t position, const Service&)>& use) {
  const ServiceHandle manager = Port().OpenManager();
  if (manager == ServiceHandle::kNone) return;
  const util::Finally closeManager([&] { Port().Close(manager); });
  for (std::size_t i = 0; i < std::size(base::kNetworkServices); ++i) {
    const ServiceHandle service = Port().OpenService(manager, base::kNetworkServices[i].name);
    if (service == ServiceHandle::kNone) continue;
    const util::Finally closeService([&] { Port().Close(service); });
    use(i, Service(service));
  }
}

}  // namespace sys
