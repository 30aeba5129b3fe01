// Windows Management Instrumentation over the simulated computer.
#pragma once

#include <memory>

#include "platform/IWmi.h"
#include "platform/simulated/Simulation.h"

namespace simulated {

class WmiPort final : public platform::IWmi {
 public:
  explicit WmiPort(Simulation& simulation) : simulation_(simulation) {}

  platform::HResult EnterApartment() override;
  void LeaveApartment() override;
  platform::HResult SecureProcess() override;
  platform::HResult MakeLocator(std::unique_ptr<platform::IWmiLocator>* locator) override;

 private:
  Simulation& simulation_;
};

}  // namespace simulated
