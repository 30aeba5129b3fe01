// The services of networking as the handlers and commands use them: a failure is a result, not an
// error.
#pragma once

#include <cstddef>
#include <functional>

#include "platform/IServices.h"

namespace sys {

using platform::ServiceStart;

/// An open service; the one who opened it closes it.
class Service {
 public:
  explicit Service(platform::ServiceHandle handle) : handle_(handle) {}

  /// Changes the start type and nothing else. False when the system refuses.
  bool SetStartType(ServiceStart start) const;
  /// False when the system refuses, as for a service that is running already.
  bool Start() const;

 private:
  platform::ServiceHandle handle_;
};

/// Opens the services of `base::kNetworkServices` in their order and hands each to `use` with its
/// position there. Skips a service that does not exist or that the system refuses; does nothing
/// when the service control manager refuses.
void ForEachNetworkService(const std::function<void(std::size_t position, const Service&)>& use);

}  // namespace sys
