#include "platform/simulated/SimulatedPlatform.h"

#include "platform/simulated/DirectoryPort.h"
#include "platform/simulated/FilesPort.h"
#include "platform/simulated/ProcessesPort.h"
#include "platform/simulated/RegistryPort.h"
#include "platform/simulated/SecurityPort.h"
#include "platform/simulated/ServicesPort.h"
#include "platform/simulated/SystemPorts.h"
#include "platform/simulated/WmiPort.h"

namespace simulated {

struct SimulatedPlatform::Ports {
  explicit Ports(Machine& machine) : simulation(machine) {}

  Simulation simulation;
  ClockPort clock{simulation};
  DirectoryPort directory{simulation};
  ErrorsPort errors{simulation};
  FilesPort files{simulation};
  LibrariesPort libraries{simulation};
  ProcessesPort processes{simulation};
  RegistryPort registry{simulation};
  ResolverPort resolver{simulation};
  SecurityPort security{simulation};
  ServicesPort services{simulation};
  WmiPort wmi{simulation};
};

SimulatedPlatform::SimulatedPlatform(Machine& machine) : ports_(std::make_unique<Ports>(machine)) {}

SimulatedPlatform::~SimulatedPlatform() = default;

platform::IClock& SimulatedPlatform::Clock() { return ports_->clock; }
platform::IDirectory& SimulatedPlatform::Directory() { return ports_->directory; }
platform::IErrors& SimulatedPlatform::Errors() { return ports_->errors; }
platform::IFiles& SimulatedPlatform::Files() { return ports_->files; }
platform::ILibraries& SimulatedPlatform::Libraries() { return ports_->libraries; }
platform::IProcesses& SimulatedPlatform::Processes() { return ports_->processes; }
platform::IRegistry& SimulatedPlatform::Registry() { return ports_->registry; }
platform::IResolver& SimulatedPlatform::Resolver() { return ports_->resolver; }
platform::ISecurity& SimulatedPlatform::Security() { return ports_->security; }
platform::IServices& SimulatedPlatform::Services() { return ports_->services; }
platform::IWmi& SimulatedPlatform::Wmi() { return ports_->wmi; }

const Usage& SimulatedPlatform::InUse() const { return ports_->simulation.usage; }

std::uint32_t SimulatedPlatform::CallCount() const { return ports_->simulation.callCount; }

}  // namespace simulated
