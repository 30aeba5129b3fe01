// What a module of this process calls of Windows, answered by a simulated machine.
#pragma once

#include <functional>

#include "platform/simulated/SimulatedPlatform.h"
#include "platform/windows/WindowsHeader.h"

namespace contract {

/// For its own lifetime, every call of `module` that asks or changes a machine is answered by
/// `machine`, whose faults strike it; memory, threads, conversions and the last error stay the
/// system's own, and a call that fails sets the thread's real last error. A call with arguments
/// other than the ones that the library owes is a test failure, and so is an answer of the system
/// that was not freed. Only one object may live at a time.
class SystemDouble {
 public:
  /// `machine` is borrowed.
  SystemDouble(HMODULE module, simulated::Machine& machine);
  ~SystemDouble();
  SystemDouble(const SystemDouble&) = delete;
  SystemDouble& operator=(const SystemDouble&) = delete;

  /// What the module has taken and not given back.
  const simulated::Usage& InUse() const;
  /// Runs while the module sleeps.
  void DuringSleep(std::function<void()> action);
};

}  // namespace contract
