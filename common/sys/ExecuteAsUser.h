// A run as another user: declared, not done. `proc::CChildProcess` makes the object, logs that it
// would run, and destroys it.
#pragma once

#include "common/sys/Impersonation.h"

namespace sys {

/// Takes nothing, so destroying it asks nothing of the machine.
class CExecuteAsUser final : public CImpersonation {
 public:
  using CImpersonation::CImpersonation;
};

}  // namespace sys
