// Domain membership of the simulated computer, and the directory of the domains it can reach.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_set>

#include "platform/IDirectory.h"
#include "platform/simulated/Simulation.h"

namespace simulated {

class DirectoryPort final : public platform::IDirectory {
 public:
  explicit DirectoryPort(Simulation& simulation) : simulation_(simulation) {}

  platform::NtStatus OpenPolicy(platform::PolicyHandle* policy) override;
  platform::NtStatus QueryPrimaryDomain(platform::PolicyHandle policy, bool* hasSid,
                                        std::string* name) override;
  platform::NtStatus QueryDnsDomain(platform::PolicyHandle policy, std::string* dnsName) override;
  void ClosePolicy(platform::PolicyHandle policy) override;
  platform::Win32Error StatusToError(platform::NtStatus status) override;
  bool LanGroup(std::string* name) override;
  bool ComputerObjectName(char* buffer, std::uint32_t* length) override;
  platform::HResult EnterApartment() override;
  void LeaveApartment() override;
  platform::HResult BindContainer(
      const std::string& path, const std::string& account, const std::string& password,
      std::unique_ptr<platform::IDirectoryContainer>* container) override;

 private:
  /// Counts a policy call; its failure, or success.
  platform::NtStatus Check(const Call& call, platform::PolicyHandle policy);

  Simulation& simulation_;
  std::unordered_set<std::uint64_t> policies_;
  std::uint64_t nextPolicy_ = 0;
};

}  // namespace simulated
