// The service control manager as the handlers and commands use it: failures are answers, not
// errors.
#pragma once

#include <string>

#include "platform/IServices.h"

namespace sys {

using platform::ServiceStart;

/// An open service; closed with the object.
class Service {
 public:
  explicit Service(platform::ServiceHandle handle) : handle_(handle) {}
  ~Service();
  Service(const Service&) = delete;
  Service& operator=(const Service&) = delete;

  bool IsOpen() const { return handle_ != platform::ServiceHandle::kNone; }
  /// Changes the start type and nothing else. False when the system refuses.
  bool SetStartType(ServiceStart start);
  /// False when the system refuses, as for a service that is running already.
  bool Start();

 private:
  platform::ServiceHandle handle_;
};

/// The manager, opened with full access; closed with the object.
class ServiceManager {
 public:
  ServiceManager();
  ~ServiceManager();
  ServiceManager(const ServiceManager&) = delete;
  ServiceManager& operator=(const ServiceManager&) = delete;

  bool IsOpen() const { return handle_ != platform::ServiceHandle::kNone; }
  /// Opens a service with full access; the result is not open when there is none or the system
  /// refuses.
  Service Open(const std::string& name);

 private:
  platform::ServiceHandle handle_;
};

}  // namespace sys
