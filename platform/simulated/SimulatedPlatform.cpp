#include "platform/simulated/SimulatedPlatform.h"

#include "platform/IClock.h"
#include "platform/IDirectory.h"
#include "platform/IErrors.h"
#include "platform/IFiles.h"
#include "platform/ILibraries.h"
#include "platform/IProcesses.h"
#include "platform/IRegistry.h"
#include "platform/IResolver.h"
#include "platform/ISecurity.h"
#include "platform/IServices.h"
#include "platform/IWmi.h"
#include "platform/simulated/Ports.h"

namespace simulated {

SimulatedPlatform::SimulatedPlatform(Machine& machine)
    : simulation_(machine),
      clock_(MakeClock(simulation_)),
      directory_(MakeDirectory(simulation_)),
      errors_(MakeErrors(simulation_)),
      files_(MakeFiles(simulation_)),
      libraries_(MakeLibraries(simulation_)),
      processes_(MakeProcesses(simulation_)),
      registry_(MakeRegistry(simulation_)),
      resolver_(MakeResolver(simulation_)),
      security_(MakeSecurity(simulation_)),
      services_(MakeServices(simulation_)),
      wmi_(MakeWmi(simulation_)) {}

SimulatedPlatform::~SimulatedPlatform() = default;

}  // namespace simulated
