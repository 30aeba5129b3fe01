#include "common/sys/Services.h"

#include "platform/IPlatform.h"

namespace sys {
namespace {

platform::IServices& Port() { return platform::Current().Services(); }

}  // namespace

Service::~Service() {
  if (IsOpen()) Port().Close(handle_);
}

bool Service::SetStartType(ServiceStart start) { return Port().SetStartType(handle_, start); }

bool Service::Start() { return Port().Start(handle_); }

ServiceManager::ServiceManager() : handle_(Port().OpenManager()) {}

ServiceManager::~ServiceManager() {
  if (IsOpen()) Port().Close(handle_);
}

Service ServiceManager::Open(const std::string& name) {
  return Service(Port().OpenService(handle_, name));
}

}  // namespace sys
