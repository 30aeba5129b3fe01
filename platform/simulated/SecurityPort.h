// Tokens and access lists of the simulated computer: as much of them as taking a user's rights back
// needs. A SID is a number, and a token's user has the number of its handle.
#pragma once

#include <cstdint>

#include "platform/ISecurity.h"
#include "platform/simulated/Simulation.h"

namespace simulated {

class SecurityPort final : public platform::ISecurity {
 public:
  explicit SecurityPort(Simulation& simulation) : simulation_(simulation) {}

  void* Allocate(std::uint32_t size) override;
  void Free(void* block) override;

  bool TokenUser(platform::Token token, void* buffer, std::uint32_t size, std::uint32_t* needed,
                 const platform::Sid** user) override;
  bool Revert() override;
  bool UnloadProfile(platform::Token token, platform::Profile profile) override;
  void CloseToken(platform::Token token) override;

  std::uint32_t SidSize(const platform::Sid* sid) override;
  bool CopySid(std::uint32_t size, platform::Sid* copy, const platform::Sid* sid) override;
  bool SameSid(const platform::Sid* left, const platform::Sid* right) override;

  bool InitializeAcl(platform::Acl* list, std::uint32_t size) override;
  bool GetAclSize(const platform::Acl* list, platform::AclSize* size) override;
  bool EntryAt(const platform::Acl* list, std::uint32_t index,
               platform::AccessEntry* entry) override;
  bool AddEntry(platform::Acl* list, const platform::AccessEntry& entry) override;

  bool InitializeDescriptor(platform::Descriptor* descriptor) override;
  bool IsValidDescriptor(const platform::Descriptor* descriptor) override;
  std::uint32_t DescriptorSize(const platform::Descriptor* descriptor) override;
  bool DescriptorList(const platform::Descriptor* descriptor, const platform::Acl** list) override;
  bool SetDescriptorList(platform::Descriptor* descriptor, platform::Acl* list) override;

  bool GetObjectSecurity(platform::UserObject object, platform::Descriptor* descriptor,
                         std::uint32_t size, std::uint32_t* needed) override;
  bool SetObjectSecurity(platform::UserObject object,
                         const platform::Descriptor* descriptor) override;
  bool SetProcessStation(platform::UserObject station) override;
  void CloseStation(platform::UserObject station) override;
  void CloseDesktop(platform::UserObject desktop) override;

 private:
  /// Runs a call that changes the machine: journals it and tells whether it succeeded.
  bool Change(CallName name, std::uint64_t handle);

  Simulation& simulation_;
};

}  // namespace simulated
