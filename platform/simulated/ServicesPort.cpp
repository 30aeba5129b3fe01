// The service control manager of the simulated computer.
#include <cstdint>
#include <string>
#include <unordered_map>
#include <utility>

#include "platform/IServices.h"
#include "platform/simulated/Codes.h"
#include "platform/simulated/SimulatedPlatform.h"
#include "platform/simulated/Simulation.h"

namespace simulated {
namespace {

using platform::ServiceHandle;
using platform::ServiceStart;
using platform::Win32Error;

class ServicesPort final : public Port<platform::IServices> {
 public:
  using Port::Port;

  platform::ServiceHandle OpenManager() override {
    if (simulation_.Fails({"service.open_manager"})) return ServiceHandle::kNone;
    return Remember("");
  }

  platform::ServiceHandle OpenService(ServiceHandle manager, const std::string& name) override {
    if (simulation_.Fails({.name = "service.open", .service = name})) return ServiceHandle::kNone;
    const Win32Error error = !open_.contains(manager)                           ? kInvalidHandle
                             : simulation_.machine.FindService(name) == nullptr ? kServiceUnknown
                                                                                : kSuccess;
    return simulation_.Answer(error) ? Remember(name) : ServiceHandle::kNone;
  }

  bool SetStartType(ServiceHandle handle, ServiceStart start) override {
    const std::string name = NameOf(handle);
    Service* service = simulation_.machine.FindService(name);
    return simulation_.Answer(simulation_.Commit(
        {.name = "service.start_type", .service = name},
        {{"service", name}, {"start", base::TypeOf(start).name}},
        service == nullptr ? kInvalidHandle : kSuccess, [&] { service->start = start; },
        /*tellsResult=*/true));
  }

  bool Start(ServiceHandle handle) override {
    const std::string name = NameOf(handle);
    Service* service = simulation_.machine.FindService(name);
    const Win32Error error = service == nullptr                          ? kInvalidHandle
                             : service->running                          ? kServiceAlreadyRunning
                             : service->start == ServiceStart::kDisabled ? kServiceDisabled
                                                                         : kSuccess;
    return simulation_.Answer(simulation_.Commit(
        {.name = "service.start", .service = name}, {{"service", name}}, error,
        [&] { service->running = true; }, /*tellsResult=*/true));
  }

  void Close(ServiceHandle handle) override {
    simulation_.Strike({"service.close"});
    if (open_.erase(handle) != 0) --simulation_.usage.serviceHandles;
  }

 private:
  platform::ServiceHandle Remember(const std::string& name) {
    nextHandle_ += 16;
    ++simulation_.usage.serviceHandles;
    return open_.emplace(ServiceHandle{nextHandle_}, name).first->first;
  }

  /// The name a handle was opened with; empty for the manager and for no handle.
  std::string NameOf(ServiceHandle handle) const {
    const auto found = open_.find(handle);
    return found == open_.end() ? std::string() : found->second;
  }

  std::unordered_map<ServiceHandle, std::string> open_;
  std::uint64_t nextHandle_ = 0x10000;
};

}  // namespace

platform::IServices& SimulatedPlatform::Services() { return Made<ServicesPort>(&services_); }

}  // namespace simulated
