// Tokens and access lists of the simulated computer: as much of them as taking a user's rights back
// needs. A SID is a number, and a token's user has the number of its handle.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <utility>
#include <vector>

#include "platform/ISecurity.h"
#include "platform/simulated/Codes.h"
#include "platform/simulated/SimulatedPlatform.h"
#include "platform/simulated/Simulation.h"

// What the engine knows by name only.
namespace platform {

struct Sid {
  std::uint64_t number;
};

/// The SIDs that a list lets in follow it.
struct Acl {
  std::uint32_t bytes;
  std::uint32_t count;
};

/// The descriptor that an object answers holds its list behind itself, any other refers to one.
struct Descriptor {
  Acl* list;
};

}  // namespace platform

namespace simulated {
namespace {

using platform::AccessEntry;
using platform::Acl;
using platform::Descriptor;
using platform::Sid;
using platform::UserObject;

static_assert(sizeof(Descriptor) <= platform::kDescriptorSize);

Sid* Entries(Acl* list) { return reinterpret_cast<Sid*>(list + 1); }
const Sid* Entries(const Acl* list) { return reinterpret_cast<const Sid*>(list + 1); }

std::uint32_t BytesFor(std::size_t entryCount) {
  return static_cast<std::uint32_t>(sizeof(Acl) + entryCount * sizeof(Sid));
}

class SecurityPort final : public Port<platform::ISecurity> {
 public:
  using Port::Port;

  void* Allocate(std::uint32_t size) override {
    if (simulation_.Fails({"security.allocate"})) return nullptr;
    ++simulation_.usage.heapBlocks;
    return std::malloc(size);
  }

  void Free(void* block) override {
    --simulation_.usage.heapBlocks;
    std::free(block);
  }

  bool TokenUser(platform::Token token, void* buffer, std::uint32_t size, std::uint32_t* needed,
                 const Sid** user) override {
    if (simulation_.Fails({"security.token_user"})) return false;
    *needed = sizeof(Sid);
    if (size < *needed) return simulation_.Answer(kBufferTooSmall);
    auto* const sid = static_cast<Sid*>(buffer);
    sid->number = static_cast<std::uint64_t>(token);
    *user = sid;
    return true;
  }

  bool Revert() override { return Change("security.revert", 0); }

  bool UnloadProfile(platform::Token /*token*/, platform::Profile profile) override {
    return Change("security.unload_profile", static_cast<std::uint64_t>(profile));
  }

  void CloseToken(platform::Token token) override {
    Change("security.close", static_cast<std::uint64_t>(token));
  }

  std::uint32_t SidSize(const Sid* /*sid*/) override { return sizeof(Sid); }

  bool CopySid(std::uint32_t size, Sid* copy, const Sid* sid) override {
    if (simulation_.Fails({"security.copy_sid"})) return false;
    if (size < sizeof(Sid)) return simulation_.Answer(kBufferTooSmall);
    *copy = *sid;
    return true;
  }

  bool SameSid(const Sid* left, const Sid* right) override { return left->number == right->number; }

  bool InitializeAcl(Acl* list, std::uint32_t size) override {
    if (simulation_.Fails({"security.init_acl"})) return false;
    if (size < sizeof(Acl)) return simulation_.Answer(kBufferTooSmall);
    *list = {size, 0};
    return true;
  }

  bool GetAclSize(const Acl* list, platform::AclSize* size) override {
    if (simulation_.Fails({"security.acl_size"})) return false;
    *size = {list->count, list->bytes};
    return true;
  }

  bool EntryAt(const Acl* list, std::uint32_t index, AccessEntry* entry) override {
    if (simulation_.Fails({"security.get_entry"})) return false;
    if (index >= list->count) return simulation_.Answer(kInvalidParameter);
    const Sid* const found = Entries(list) + index;
    *entry = {found, sizeof *found, found};
    return true;
  }

  bool AddEntry(Acl* list, const AccessEntry& entry) override {
    if (simulation_.Fails({"security.add_entry"})) return false;
    if (BytesFor(list->count + 1) > list->bytes) return simulation_.Answer(kAllottedSpaceExceeded);
    Entries(list)[list->count++] = *static_cast<const Sid*>(entry.record);
    return true;
  }

  bool InitializeDescriptor(Descriptor* descriptor) override {
    if (simulation_.Fails({"security.init_descriptor"})) return false;
    *descriptor = {nullptr};
    return true;
  }

  bool IsValidDescriptor(const Descriptor* /*descriptor*/) override {
    return !simulation_.Refuse({"security.valid_descriptor"});
  }

  std::uint32_t DescriptorSize(const Descriptor* descriptor) override {
    const std::uint32_t behind = descriptor->list != nullptr ? descriptor->list->bytes : 0;
    return static_cast<std::uint32_t>(sizeof *descriptor) + behind;
  }

  bool DescriptorList(const Descriptor* descriptor, const Acl** list) override {
    if (simulation_.Fails({"security.get_list"})) return false;
    *list = descriptor->list;
    return true;
  }

  bool SetDescriptorList(Descriptor* descriptor, Acl* list) override {
    if (simulation_.Fails({"security.set_list"})) return false;
    descriptor->list = list;
    return true;
  }

  bool GetObjectSecurity(UserObject object, Descriptor* descriptor, std::uint32_t size,
                         std::uint32_t* needed) override {
    if (simulation_.Fails({"security.get_object"})) return false;
    const auto& objects = simulation_.machine.userObjects;
    const auto found = objects.find(static_cast<std::uint64_t>(object));
    const std::uint32_t bytes = found != objects.end() ? BytesFor(found->second.size()) : 0;
    *needed = static_cast<std::uint32_t>(sizeof *descriptor) + bytes;
    if (size < *needed) return simulation_.Answer(kBufferTooSmall);
    descriptor->list = bytes != 0 ? reinterpret_cast<Acl*>(descriptor + 1) : nullptr;
    if (bytes == 0) return true;
    *descriptor->list = {bytes, static_cast<std::uint32_t>(found->second.size())};
    std::transform(found->second.begin(), found->second.end(), Entries(descriptor->list),
                   [](std::uint64_t number) { return Sid{number}; });
    return true;
  }

  bool SetObjectSecurity(UserObject object, const Descriptor* descriptor) override {
    const auto handle = static_cast<std::uint64_t>(object);
    if (!Change("security.set_object", handle)) return false;
    auto& objects = simulation_.machine.userObjects;
    objects.erase(handle);
    const Acl* const list = descriptor->list;
    for (std::uint32_t i = 0; list != nullptr && i < list->count; ++i) {
      objects[handle].push_back(Entries(list)[i].number);
    }
    return true;
  }

  bool SetProcessStation(UserObject station) override {
    return Change("security.set_station", static_cast<std::uint64_t>(station));
  }

  void CloseStation(UserObject station) override {
    Change("security.close", static_cast<std::uint64_t>(station));
  }

  void CloseDesktop(UserObject desktop) override {
    Change("security.close", static_cast<std::uint64_t>(desktop));
  }

 private:
  /// Runs a call that changes the machine: journals it and tells whether it succeeded.
  bool Change(CallName name, std::uint64_t handle) {
    return simulation_.Answer(simulation_.Commit(
        {name}, {{"handle", static_cast<std::int64_t>(handle)}}, kSuccess, [] {}));
  }
};

}  // namespace

platform::ISecurity& SimulatedPlatform::Security() { return Made<SecurityPort>(&security_); }

}  // namespace simulated
