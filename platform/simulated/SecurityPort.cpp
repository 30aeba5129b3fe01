// Tokens and access lists of the simulated computer: as much of them as taking a user's rights back
// needs. A SID is a number, and a token's user has the number of its handle.
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <utility>
#include <vector>

#include "platform/ISecurity.h"
#include "platform/simulated/Codes.h"
#include "platform/simulated/Ports.h"
#include "platform/simulated/Simulation.h"

namespace simulated {
namespace {

using platform::AccessEntry;
using platform::Acl;
using platform::Descriptor;
using platform::Sid;
using platform::UserObject;

using SidNumber = std::uint64_t;

/// The SIDs that a list lets in follow it.
struct List {
  std::uint32_t bytes;
  std::uint32_t count;
};

/// The descriptor that an object answers holds its list behind itself, any other refers to one.
struct Header {
  List* list;
};

static_assert(sizeof(Header) <= platform::kDescriptorSize);

SidNumber* Entries(List* list) { return reinterpret_cast<SidNumber*>(list + 1); }
const SidNumber* Entries(const List* list) { return reinterpret_cast<const SidNumber*>(list + 1); }

SidNumber NumberOf(const Sid* sid) { return *reinterpret_cast<const SidNumber*>(sid); }
List* ListOf(Acl* list) { return reinterpret_cast<List*>(list); }
const List* ListOf(const Acl* list) { return reinterpret_cast<const List*>(list); }
Header* HeaderOf(Descriptor* descriptor) { return reinterpret_cast<Header*>(descriptor); }
const Header* HeaderOf(const Descriptor* descriptor) {
  return reinterpret_cast<const Header*>(descriptor);
}

std::uint32_t BytesFor(std::size_t entryCount) {
  return static_cast<std::uint32_t>(sizeof(List) + entryCount * sizeof(SidNumber));
}

class SecurityPort final : public platform::ISecurity {
 public:
  explicit SecurityPort(Simulation& simulation) : simulation_(simulation) {}

  void* Allocate(std::uint32_t size) override {
    if (simulation_.Fails({.name = "security.allocate"})) return nullptr;
    ++simulation_.usage.heapBlocks;
    return std::malloc(size);
  }

  void Free(void* block) override {
    --simulation_.usage.heapBlocks;
    std::free(block);
  }

  bool TokenUser(platform::Token token, void* buffer, std::uint32_t size, std::uint32_t* needed,
                 const Sid** user) override {
    if (simulation_.Fails({.name = "security.token_user"})) return false;
    *needed = sizeof(SidNumber);
    if (size < *needed) return simulation_.Fail(kBufferTooSmall);
    *static_cast<SidNumber*>(buffer) = static_cast<SidNumber>(token);
    *user = static_cast<const Sid*>(buffer);
    return true;
  }

  bool Revert() override { return Change("security.revert", 0); }

  bool UnloadProfile(platform::Token /*token*/, platform::Profile profile) override {
    return Change("security.unload_profile", static_cast<std::uint64_t>(profile));
  }

  void CloseToken(platform::Token token) override {
    Change("security.close", static_cast<std::uint64_t>(token));
  }

  std::uint32_t SidSize(const Sid* /*sid*/) override { return sizeof(SidNumber); }

  bool CopySid(std::uint32_t size, Sid* copy, const Sid* sid) override {
    if (simulation_.Fails({.name = "security.copy_sid"})) return false;
    if (size < sizeof(SidNumber)) return simulation_.Fail(kBufferTooSmall);
    *reinterpret_cast<SidNumber*>(copy) = NumberOf(sid);
    return true;
  }

  bool SameSid(const Sid* left, const Sid* right) override {
    return NumberOf(left) == NumberOf(right);
  }

  bool InitializeAcl(Acl* list, std::uint32_t size) override {
    if (simulation_.Fails({.name = "security.init_acl"})) return false;
    if (size < sizeof(List)) return simulation_.Fail(kBufferTooSmall);
    *ListOf(list) = {size, 0};
    return true;
  }

  bool GetAclSize(const Acl* list, platform::AclSize* size) override {
    if (simulation_.Fails({.name = "security.acl_size"})) return false;
    *size = {ListOf(list)->count, ListOf(list)->bytes};
    return true;
  }

  bool EntryAt(const Acl* list, std::uint32_t index, AccessEntry* entry) override {
    if (simulation_.Fails({.name = "security.get_entry"})) return false;
    if (index >= ListOf(list)->count) return simulation_.Fail(kInvalidParameter);
    const SidNumber* const found = Entries(ListOf(list)) + index;
    *entry = {found, sizeof *found, reinterpret_cast<const Sid*>(found)};
    return true;
  }

  bool AddEntry(Acl* list, const AccessEntry& entry) override {
    if (simulation_.Fails({.name = "security.add_entry"})) return false;
    List* const target = ListOf(list);
    if (BytesFor(target->count + 1) > target->bytes)
      return simulation_.Fail(kAllottedSpaceExceeded);
    Entries(target)[target->count++] = *static_cast<const SidNumber*>(entry.record);
    return true;
  }

  bool InitializeDescriptor(Descriptor* descriptor) override {
    if (simulation_.Fails({.name = "security.init_descriptor"})) return false;
    *HeaderOf(descriptor) = {nullptr};
    return true;
  }

  bool IsValidDescriptor(const Descriptor* /*descriptor*/) override {
    return !simulation_.Refuse({.name = "security.valid_descriptor"});
  }

  std::uint32_t DescriptorSize(const Descriptor* descriptor) override {
    const List* const list = HeaderOf(descriptor)->list;
    return static_cast<std::uint32_t>(sizeof(Header)) + (list != nullptr ? list->bytes : 0);
  }

  bool DescriptorList(const Descriptor* descriptor, const Acl** list) override {
    if (simulation_.Fails({.name = "security.get_list"})) return false;
    *list = reinterpret_cast<const Acl*>(HeaderOf(descriptor)->list);
    return true;
  }

  bool SetDescriptorList(Descriptor* descriptor, Acl* list) override {
    if (simulation_.Fails({.name = "security.set_list"})) return false;
    HeaderOf(descriptor)->list = ListOf(list);
    return true;
  }

  bool GetObjectSecurity(UserObject object, Descriptor* descriptor, std::uint32_t size,
                         std::uint32_t* needed) override {
    if (simulation_.Fails({.name = "security.get_object"})) return false;
    const auto& objects = simulation_.machine.userObjects;
    const auto found = objects.find(static_cast<std::uint64_t>(object));
    const bool hasList = found != objects.end();
    *needed = sizeof(Header) + (hasList ? BytesFor(found->second.size()) : 0);
    if (size < *needed) return simulation_.Fail(kBufferTooSmall);
    HeaderOf(descriptor)->list = nullptr;
    if (!hasList) return true;
    List* const list = reinterpret_cast<List*>(HeaderOf(descriptor) + 1);
    *list = {BytesFor(found->second.size()), static_cast<std::uint32_t>(found->second.size())};
    std::copy(found->second.begin(), found->second.end(), Entries(list));
    HeaderOf(descriptor)->list = list;
    return true;
  }

  bool SetObjectSecurity(UserObject object, const Descriptor* descriptor) override {
    if (!Change("security.set_object", static_cast<std::uint64_t>(object))) return false;
    const List* const list = HeaderOf(descriptor)->list;
    auto& objects = simulation_.machine.userObjects;
    if (list == nullptr) {
      objects.erase(static_cast<std::uint64_t>(object));
    } else {
      objects[static_cast<std::uint64_t>(object)].assign(Entries(list),
                                                         Entries(list) + list->count);
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
    const bool failed = simulation_.Fails({.name = name});
    simulated::Change& change = simulation_.machine.journal.emplace_back(simulated::Change{
        std::string(name.Text()), Fields{{"handle", static_cast<std::int64_t>(handle)}}});
    if (failed) change.fields.emplace_back("error", simulation_.lastError);
    return !failed;
  }

  Simulation& simulation_;
};

}  // namespace

std::unique_ptr<platform::ISecurity> MakeSecurity(Simulation& simulation) {
  return std::make_unique<SecurityPort>(simulation);
}

}  // namespace simulated
