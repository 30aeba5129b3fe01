// All ports of a computer over the plain data of a `Machine`: an engine that runs on it changes the
// data and leaves its trace in the machine's journal.
#pragma once

#include <cstdint>
#include <memory>

#include "platform/IPlatform.h"
#include "platform/simulated/Machine.h"
#include "platform/simulated/Simulation.h"

namespace simulated {

class SimulatedPlatform : public platform::IPlatform {
 public:
  /// Borrows the machine, which may be edited between calls. One thread at a time may use it.
  explicit SimulatedPlatform(Machine& machine) : simulation_(machine) {
    SimulatedPlatform::Errors();  // the last error must be there for callers without memory, too
  }

  // Each port is made in its own source, when it is first asked for; the errors' at once.
  platform::IClock& Clock() override;
  platform::IDirectory& Directory() override;
  platform::IErrors& Errors() override;
  platform::IFiles& Files() override;
  platform::ILibraries& Libraries() override;
  platform::IProcesses& Processes() override;
  platform::IRegistry& Registry() override;
  platform::IResolver& Resolver() override;
  platform::ISecurity& Security() override;
  platform::IServices& Services() override;
  platform::IWmi& Wmi() override;
  std::unique_ptr<platform::ICriticalSection> MakeCriticalSection() override;

  /// What callers hold at the moment; equal to `Usage{}` when everything was given back.
  const Usage& InUse() const { return simulation_.usage; }
  /// Calls to the machine so far; a fault on "*" counts the same calls. Reading and setting the
  /// last error are not calls to the machine.
  std::uint32_t CallCount() const { return simulation_.callCount; }

 private:
  template <class Own, class Interface>
  Interface& Made(std::shared_ptr<Interface>* port) {
    if (!*port) *port = std::make_shared<Own>(simulation_);
    return **port;
  }

  Simulation simulation_;
  std::shared_ptr<platform::IClock> clock_;
  std::shared_ptr<platform::IDirectory> directory_;
  std::shared_ptr<platform::IErrors> errors_;
  std::shared_ptr<platform::IFiles> files_;
  std::shared_ptr<platform::ILibraries> libraries_;
  std::shared_ptr<platform::IProcesses> processes_;
  std::shared_ptr<platform::IRegistry> registry_;
  std::shared_ptr<platform::IResolver> resolver_;
  std::shared_ptr<platform::ISecurity> security_;
  std::shared_ptr<platform::IServices> services_;
  std::shared_ptr<platform::IWmi> wmi_;
};

}  // namespace simulated
