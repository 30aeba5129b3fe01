// Makes each port of the simulated computer; the simulation must outlive it.
#pragma once

#include <memory>

#include "platform/IPlatform.h"
#include "platform/simulated/Simulation.h"

namespace simulated {

std::unique_ptr<platform::IClock> MakeClock(Simulation& simulation);
std::unique_ptr<platform::IDirectory> MakeDirectory(Simulation& simulation);
std::unique_ptr<platform::IErrors> MakeErrors(Simulation& simulation);
std::unique_ptr<platform::IFiles> MakeFiles(Simulation& simulation);
std::unique_ptr<platform::ILibraries> MakeLibraries(Simulation& simulation);
std::unique_ptr<platform::IProcesses> MakeProcesses(Simulation& simulation);
std::unique_ptr<platform::IRegistry> MakeRegistry(Simulation& simulation);
std::unique_ptr<platform::IResolver> MakeResolver(Simulation& simulation);
std::unique_ptr<platform::ISecurity> MakeSecurity(Simulation& simulation);
std::unique_ptr<platform::IServices> MakeServices(Simulation& simulation);
std::unique_ptr<platform::IWmi> MakeWmi(Simulation& simulation);

}  // namespace simulated
