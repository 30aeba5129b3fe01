#include "platform/simulated/ServicesPort.h"

#include <utility>

#include "platform/simulated/Codes.h"

namespace simulated {

using platform::ServiceHandle;
using platform::ServiceStart;
using platform::Win32Error;

ServiceHandle ServicesPort::OpenManager() {
  if (simulation_.Fails({.name = "service.open_manager"})) return ServiceHandle::kNone;
  return Remember("");
}

ServiceHandle ServicesPort::OpenService(ServiceHandle manager, const std::string& name) {
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

bool ServicesPort::SetStartType(ServiceHandle handle, ServiceStart start) {
  const std::string name = NameOf(handle);
  Service* service = simulation_.machine.FindService(name);
  const auto refused = simulation_.Refuse({.name = "service.start_type", .service = name});
  if (!refused && service != nullptr) service->start = start;
  return Finish({"service.start_type", {{"service", name}, {"start", base::TypeOf(start).name}}},
                refused.value_or(service == nullptr ? kInvalidHandle : kSuccess));
}

bool ServicesPort::Start(ServiceHandle handle) {
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

void ServicesPort::Close(ServiceHandle handle) {
  simulation_.Strike({.name = "service.close"});
  if (open_.erase(static_cast<std::uint64_t>(handle)) != 0) --simulation_.usage.serviceHandles;
}

ServiceHandle ServicesPort::Remember(const std::string& name) {
  nextHandle_ += 16;
  open_.emplace(nextHandle_, name);
  ++simulation_.usage.serviceHandles;
  return ServiceHandle{nextHandle_};
}

std::string ServicesPort::NameOf(ServiceHandle handle) const {
  const auto found = open_.find(static_cast<std::uint64_t>(handle));
  return found == open_.end() ? std::string() : found->second;
}

bool ServicesPort::Finish(Change change, Win32Error error) {
  change.fields.emplace_back("result", error);
  simulation_.machine.journal.push_back(std::move(change));
  return error == kSuccess || simulation_.Fail(error);
}

}  // namespace simulated
