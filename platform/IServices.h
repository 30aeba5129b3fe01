// The service control manager. Each operation is one system call and decides nothing; what answers
// false leaves its reason in `IErrors::LastError`.
#pragma once

#include <cstdint>
#include <string>

#include "base/Services.h"

namespace platform {

/// An open service control manager or service.
enum class ServiceHandle : std::uint64_t { kNone = 0 };

using base::ServiceStart;

class IServices {
 public:
  virtual ~IServices() = default;
  /// Opens the manager with full access; `kNone` on failure. The caller closes it.
  virtual ServiceHandle OpenManager() = 0;
  /// Opens a service with full access; `kNone` on failure. The caller closes it.
  virtual ServiceHandle OpenService(ServiceHandle manager, const std::string& name) = 0;
  /// Changes the start type and nothing else.
  virtual bool SetStartType(ServiceHandle service, ServiceStart start) = 0;
  virtual bool Start(ServiceHandle service) = 0;
  virtual void Close(ServiceHandle handle) = 0;
};

}  // namespace platform
