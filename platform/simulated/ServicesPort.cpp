// The service control manager of the simulated computer.
#include <cstdint>
#include <string>
#include <unordered_map>
#include <utility>

#include "platform/IServices.h"
#include "platform/simulated/Codes.h"
#include "platform/simulated/Ports.h"
#include "platform/simulated/Simulation.h"

namespace simulated {
namespace {

using platform::ServiceHandle;
using platform::ServiceStart;
using platform::Win32Error;

class ServicesPort final : public platform::IServices {
 public:
  explicit ServicesPort(Simulation& simulation) : simulation_(simulation) {}

  platform::ServiceHandle OpenManager() override {
    if (simulation_.Fails({.name = "service.open_manager"})) return ServiceHandle::kNone;
    return Remember("");
  }

  platform::ServiceHandle OpenService(ServiceHandle manager, const std::string& name) override {
    if (simulation_.Fails({.name = "service.open", .service = name})) return ServiceHandle::kNone;
    if (!open_.contains(static_cast<std::uint64_t>(manager))) {
      simulation_.lastError = kInvalidHandle;
      return ServiceHandle::kNone;
    }
    if (simulation_.machine.FindService(name) == nullptr) {
      simulation_.lastError = kServiceUnknown;
      return ServiceHandle::kNone;
    }
    return Remember(name);
  }

  bool SetStartType(ServiceHandle handle, ServiceStart start) override {
    const std::string name = NameOf(handle);
    Service* service = simulation_.machine.FindService(name);
    const auto refused = simulation_.Refuse({.name = "service.start_type", .service = name});
    if (!refused && service != nullptr) service->start = start;
    return Finish({"service.start_type", {{"service", name}, {"start", base::TypeOf(start).name}}},
                  refused.value_or(service == nullptr ? kInvalidHandle : kSuccess));
  }

  bool Start(ServiceHandle handle) override {
    const std::string name = NameOf(handle);
    Service* service = simulation_.machine.FindService(name);
    Win32Error error = kSuccess;
    if (service == nullptr) {
      error = kInvalidHandle;
    } else if (service->running) {
      error = kServiceAlreadyRunning;
    } else if (service->start == ServiceStart::kDisabled) {
      error = kServiceDisabled;
    }
    const auto refused = simulation_.Refuse({.name = "service.start", .service = name});
    if (!refused && error == kSuccess) service->running = true;
    return Finish({"service.start", {{"service", name}}}, refused.value_or(error));
  }

  void Close(ServiceHandle handle) override {
    simulation_.Strike({.name = "service.close"});
    if (open_.erase(static_cast<std::uint64_t>(handle)) != 0) --simulation_.usage.serviceHandles;
  }

 private:
  platform::ServiceHandle Remember(const std::string& name) {
    nextHandle_ += 16;
    open_.emplace(nextHandle_, name);
    ++simulation_.usage.serviceHandles;
    return ServiceHandle{nextHandle_};
  }

  /// The name a handle was opened with; empty for the manager and for no handle.
  std::string NameOf(ServiceHandle handle) const {
    const auto found = open_.find(static_cast<std::uint64_t>(handle));
    return found == open_.end() ? std::string() : found->second;
  }

  /// Journals a change and tells whether it succeeded.
  bool Finish(Change change, Win32Error error) {
    change.fields.emplace_back("result", error);
    simulation_.machine.journal.push_back(std::move(change));
    return error == kSuccess || simulation_.Fail(error);
  }

  Simulation& simulation_;
  std::unordered_map<std::uint64_t, std::string> open_;
  std::uint64_t nextHandle_ = 0x10000;
};

}  // namespace

std::unique_ptr<platform::IServices> MakeServices(Simulation& simulation) {
  return std::make_unique<ServicesPort>(simulation);
}

}  // namespace simulated
