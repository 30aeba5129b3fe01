// The machines of which the contract is asked, and all their ports.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/IClock.h"
#include "platform/ICriticalSection.h"
#include "platform/IDirectory.h"
#include "platform/IErrors.h"
#include "platform/IFiles.h"
#include "platform/ILibraries.h"
#include "platform/IPlatform.h"
#include "platform/IProcesses.h"
#include "platform/IRegistry.h"
#include "platform/IResolver.h"
#include "platform/ISecurity.h"
#include "platform/IServices.h"
#include "platform/IWmi.h"
#include "platform/simulated/Machine.h"
#include "platform/simulated/Simulation.h"

namespace contract {

/// A machine behind the ports of one adapter.
struct World {
  platform::IPlatform& machine;
  /// What callers have taken and not given back.
  std::function<simulated::Usage()> inUse;
  std::shared_ptr<void> kept;
};

/// The worlds whose machine is the one that a test describes: the simulated adapter on its own and,
/// on Windows, the Windows adapter over calls that the machine answers.
extern const std::vector<std::string> kDescribedWorlds;
/// Those, and on Windows the system itself with a registry that holds nothing.
extern const std::vector<std::string> kEveryWorld;

/// Makes the world of this name; `described` is borrowed.
World MakeWorld(const std::string& name, simulated::Machine& described);

}  // namespace contract
