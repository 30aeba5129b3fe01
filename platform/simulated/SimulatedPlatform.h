// All ports of a computer over the plain data of a `Machine`: an engine that runs on it changes the
// data and leaves its trace in the machine's journal.
#pragma once

#include <cstdint>
#include <memory>

#include "platform/IPlatform.h"
#include "platform/simulated/Machine.h"
#include "platform/simulated/Simulation.h"

namespace simulated {

class SimulatedPlatform final : public platform::IPlatform {
 public:
  /// Borrows the machine, which may be edited between calls. One thread at a time may use it.
  explicit SimulatedPlatform(Machine& machine);
  ~SimulatedPlatform() override;
  SimulatedPlatform(const SimulatedPlatform&) = delete;
  SimulatedPlatform& operator=(const SimulatedPlatform&) = delete;

  platform::IClock& Clock() override { return *clock_; }
  platform::IDirectory& Directory() override { return *directory_; }
  platform::IErrors& Errors() override { return *errors_; }
  platform::IFiles& Files() override { return *files_; }
  platform::ILibraries& Libraries() override { return *libraries_; }
  platform::IProcesses& Processes() override { return *processes_; }
  platform::IRegistry& Registry() override { return *registry_; }
  platform::IResolver& Resolver() override { return *resolver_; }
  platform::ISecurity& Security() override { return *security_; }
  platform::IServices& Services() override { return *services_; }
  platform::IWmi& Wmi() override { return *wmi_; }
  std::unique_ptr<platform::ICriticalSection> MakeCriticalSection() override;

  /// What callers hold at the moment; equal to `Usage{}` when everything was given back.
  const Usage& InUse() const { return simulation_.usage; }
  /// Calls to the machine so far; a fault on "*" counts the same calls. Reading and setting the
  /// last error are not calls to the machine.
  std::uint32_t CallCount() const { return simulation_.callCount; }

 private:
  Simulation simulation_;
  std::unique_ptr<platform::IClock> clock_;
  std::unique_ptr<platform::IDirectory> directory_;
  std::unique_ptr<platform::IErrors> errors_;
  std::unique_ptr<platform::IFiles> files_;
  std::unique_ptr<platform::ILibraries> libraries_;
  std::unique_ptr<platform::IProcesses> processes_;
  std::unique_ptr<platform::IRegistry> registry_;
  std::unique_ptr<platform::IResolver> resolver_;
  std::unique_ptr<platform::ISecurity> security_;
  std::unique_ptr<platform::IServices> services_;
  std::unique_ptr<platform::IWmi> wmi_;
};

}  // namespace simulated
