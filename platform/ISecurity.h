// Tokens, SIDs, access lists, descriptors and profiles, for the user-context classes only. Each
// operation is one system call and decides nothing; what answers false leaves its reason in
// `IErrors::LastError` and its outputs as they were.
#pragma once

#include <cstdint>

namespace platform {

enum class Token : std::uint64_t { kNone = 0 };
/// A loaded user profile.
enum class Profile : std::uint64_t { kNone = 0 };
/// A window station or a desktop.
enum class UserObject : std::uint64_t { kNone = 0 };

/// The system's own records. Only their addresses cross the seam; they stand in blocks that callers
/// allocate, or inside one another.
struct Sid;
struct Acl;
struct Descriptor;

/// One entry of an access list; both addresses point into the list.
struct AccessEntry {
  const void* record = nullptr;
  std::uint32_t size = 0;
  /// Whom the entry is about; null for the kinds of entry that hold no SID in the usual place.
  const Sid* sid = nullptr;
};

struct AclSize {
  std::uint32_t entryCount = 0;
  /// Of the whole list, room that is still free included.
  std::uint32_t bytes = 0;
};

/// Bytes of a descriptor that refers to its parts (`SECURITY_DESCRIPTOR`).
constexpr std::uint32_t kDescriptorSize = 40;
constexpr std::uint32_t kInsufficientBuffer = 122;  // ERROR_INSUFFICIENT_BUFFER

class ISecurity {
 public:
  virtual ~ISecurity() = default;

  /// A block of the process heap, null when there is no memory. The caller frees it.
  virtual void* Allocate(std::uint32_t size) = 0;
  virtual void Free(void* block) = 0;

  /// Writes a token's user into `buffer`, where `*user` then points. `*needed` is answered also
  /// when `size` is too small.
  virtual bool TokenUser(Token token, void* buffer, std::uint32_t size, std::uint32_t* needed,
                         const Sid** user) = 0;
  /// The thread acts as its process again.
  virtual bool Revert() = 0;
  virtual bool UnloadProfile(Token token, Profile profile) = 0;
  virtual void CloseToken(Token token) = 0;

  virtual std::uint32_t SidSize(const Sid* sid) = 0;
  /// `copy` has room for `size` bytes.
  virtual bool CopySid(std::uint32_t size, Sid* copy, const Sid* sid) = 0;
  virtual bool SameSid(const Sid* left, const Sid* right) = 0;

  /// Makes an empty list of a block of `size` bytes.
  virtual bool InitializeAcl(Acl* list, std::uint32_t size) = 0;
  virtual bool GetAclSize(const Acl* list, AclSize* size) = 0;
  virtual bool EntryAt(const Acl* list, std::uint32_t index, AccessEntry* entry) = 0;
  /// Adds a copy of an entry at the end.
  virtual bool AddEntry(Acl* list, const AccessEntry& entry) = 0;

  /// Makes an empty descriptor of a block of `kDescriptorSize` bytes.
  virtual bool InitializeDescriptor(Descriptor* descriptor) = 0;
  virtual bool IsValidDescriptor(const Descriptor* descriptor) = 0;
  virtual std::uint32_t DescriptorSize(const Descriptor* descriptor) = 0;
  /// `*list` points into the descriptor; null when there is no list, which lets everyone in.
  virtual bool DescriptorList(const Descriptor* descriptor, const Acl** list) = 0;
  /// The descriptor refers to the list.
  virtual bool SetDescriptorList(Descriptor* descriptor, Acl* list) = 0;

  /// Writes the access list of an object into `descriptor`. `*needed` is answered also when `size`
  /// is too small.
  virtual bool GetObjectSecurity(UserObject object, Descriptor* descriptor, std::uint32_t size,
                                 std::uint32_t* needed) = 0;
  /// Replaces the access list of an object.
  virtual bool SetObjectSecurity(UserObject object, const Descriptor* descriptor) = 0;
  /// Moves the process to a window station.
  virtual bool SetProcessStation(UserObject station) = 0;
  virtual void CloseStation(UserObject station) = 0;
  virtual void CloseDesktop(UserObject desktop) = 0;
};

}  // namespace platform
