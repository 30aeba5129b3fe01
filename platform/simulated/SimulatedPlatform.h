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
  const Usage& InUse() const;
  /// Calls to the machine so far; a fault on "*" counts the same calls. Reading and setting the
  /// last error are not calls to the machine.
  std::uint32_t CallCount() const;

 private:
  struct Ports;

  std::unique_ptr<Ports> ports_;
};

}  // namespace simulated
