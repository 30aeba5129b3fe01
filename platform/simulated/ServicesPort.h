// The service control manager of the simulated computer.
#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>

#include "platform/IServices.h"
#include "platform/simulated/Simulation.h"

namespace simulated {

class ServicesPort final : public platform::IServices {
 public:
  explicit ServicesPort(Simulation& simulation) : simulation_(simulation) {}

  platform::ServiceHandle OpenManager() override;
  platform::ServiceHandle OpenService(platform::ServiceHandle manager,
                                      const std::string& name) override;
  bool SetStartType(platform::ServiceHandle handle, platform::ServiceStart start) override;
  bool Start(platform::ServiceHandle handle) override;
  void Close(platform::ServiceHandle handle) override;

 private:
  platform::ServiceHandle Remember(const std::string& name);
  /// The name a handle was opened with; empty for the manager and for no handle.
  std::string NameOf(platform::ServiceHandle handle) const;
  /// Journals a change and tells whether it succeeded.
  bool Finish(Change change, platform::Win32Error error);

  Simulation& simulation_;
  std::unordered_map<std::uint64_t, std::string> open_;
  std::uint64_t nextHandle_ = 0x10000;
};

}  // namespace simulated
