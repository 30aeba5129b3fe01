// What the library calls of Windows, answered by a simulated machine and by Windows side by side.
#pragma once

#include "platform/simulated/Machine.h"
#include "platform/simulated/Simulation.h"
#include "platform/windows/WindowsHeader.h"

namespace contract {

/// For its own lifetime, each call of `library` that a machine answers goes to `machine` and to
/// Windows, where the machine is laid out; the two must answer alike, or the test fails. A call
/// that the machine's faults let fail never reaches Windows. Membership, the directory, host names
/// and the agent's place are the machine's alone, and nobody sleeps. At the end Windows must have
/// come to what the machine has come to, and everything that the library took must have been given
/// back.
class MirroredCalls {
 public:
  /// `machine` is borrowed. Only one object may live at a time.
  MirroredCalls(HMODULE library, simulated::Machine& machine);
  ~MirroredCalls();
  MirroredCalls(const MirroredCalls&) = delete;
  MirroredCalls& operator=(const MirroredCalls&) = delete;

  /// What the library has taken and not given back.
  const simulated::Usage& InUse() const;
};

}  // namespace contract
