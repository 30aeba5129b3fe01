#include "platform/ISecurity.h"
#include "platform/windows/Handles.h"
#include "platform/windows/WindowsHeader.h"
#include "platform/windows/WindowsPlatform.h"

namespace platform::windows {
namespace {

static_assert(kDescriptorSize == SECURITY_DESCRIPTOR_MIN_LENGTH);
static_assert(kInsufficientBuffer == ERROR_INSUFFICIENT_BUFFER);

// The system only reads what stands behind these, whatever its parameters' types say.
PSID ToSid(const Sid* sid) { return const_cast<Sid*>(sid); }
PACL ToAcl(const Acl* list) { return reinterpret_cast<PACL>(const_cast<Acl*>(list)); }
PSECURITY_DESCRIPTOR ToDescriptor(const Descriptor* descriptor) {
  return const_cast<Descriptor*>(descriptor);
}

/// Whom an entry is about; null for an entry of another layout than header, mask and SID, as those
/// about single objects are.
const Sid* SidOf(const ACE_HEADER* header) {
  const BYTE type = header->AceType;
  const bool isCallback =
      type == ACCESS_ALLOWED_CALLBACK_ACE_TYPE || type == ACCESS_DENIED_CALLBACK_ACE_TYPE ||
      type == SYSTEM_AUDIT_CALLBACK_ACE_TYPE || type == SYSTEM_ALARM_CALLBACK_ACE_TYPE;
  if (type > SYSTEM_ALARM_ACE_TYPE && !isCallback) return nullptr;
  return reinterpret_cast<const Sid*>(
      &reinterpret_cast<const ACCESS_ALLOWED_ACE*>(header)->SidStart);
}

class SecurityPort final : public ISecurity {
 public:
  void* Allocate(std::uint32_t size) override { return ::HeapAlloc(::GetProcessHeap(), 0, size); }

  void Free(void* block) override {
    const LastErrorKeeper keeper;
    ::HeapFree(::GetProcessHeap(), 0, block);
  }

  bool TokenUser(Token token, void* buffer, std::uint32_t size, std::uint32_t* needed,
                 const Sid** user) override {
    DWORD bytes = 0;
    const BOOL done =
        ::GetTokenInformation(ToSystem<HANDLE>(token), ::TokenUser, buffer, size, &bytes);
    *needed = bytes;
    if (!done) return false;
    *user = static_cast<const Sid*>(static_cast<const TOKEN_USER*>(buffer)->User.Sid);
    return true;
  }

  bool Revert() override { return ::RevertToSelf() != FALSE; }

  bool UnloadProfile(Token token, Profile profile) override {
    return ::UnloadUserProfile(ToSystem<HANDLE>(token), ToSystem<HANDLE>(profile)) != FALSE;
  }

  void CloseToken(Token token) override {
    const LastErrorKeeper keeper;
    ::CloseHandle(ToSystem<HANDLE>(token));
  }

  std::uint32_t SidSize(const Sid* sid) override { return ::GetLengthSid(ToSid(sid)); }

  bool CopySid(std::uint32_t size, Sid* copy, const Sid* sid) override {
    return ::CopySid(size, copy, ToSid(sid)) != FALSE;
  }

  bool SameSid(const Sid* left, const Sid* right) override {
    return ::EqualSid(ToSid(left), ToSid(right)) != FALSE;
  }

  bool InitializeAcl(Acl* list, std::uint32_t size) override {
    return ::InitializeAcl(ToAcl(list), size, ACL_REVISION) != FALSE;
  }

  bool GetAclSize(const Acl* list, AclSize* size) override {
    ACL_SIZE_INFORMATION information{};
    if (!::GetAclInformation(ToAcl(list), &information, sizeof information, AclSizeInformation)) {
      return false;
    }
    *size = {information.AceCount, information.AclBytesInUse + information.AclBytesFree};
    return true;
  }

  bool EntryAt(const Acl* list, std::uint32_t index, AccessEntry* entry) override {
    void* record = nullptr;
    if (!::GetAce(ToAcl(list), index, &record)) return false;
    const auto* const header = static_cast<const ACE_HEADER*>(record);
    *entry = {record, header->AceSize, SidOf(header)};
    return true;
  }

  bool AddEntry(Acl* list, const AccessEntry& entry) override {
    return ::AddAce(ToAcl(list), ACL_REVISION, MAXDWORD, const_cast<void*>(entry.record),
                    entry.size) != FALSE;
  }

  bool InitializeDescriptor(Descriptor* descriptor) override {
    return ::InitializeSecurityDescriptor(descriptor, SECURITY_DESCRIPTOR_REVISION) != FALSE;
  }

  bool IsValidDescriptor(const Descriptor* descriptor) override {
    return ::IsValidSecurityDescriptor(ToDescriptor(descriptor)) != FALSE;
  }

  std::uint32_t DescriptorSize(const Descriptor* descriptor) override {
    return ::GetSecurityDescriptorLength(ToDescriptor(descriptor));
  }

  bool DescriptorList(const Descriptor* descriptor, const Acl** list) override {
    BOOL isPresent = FALSE;
    BOOL isDefaulted = FALSE;
    PACL found = nullptr;
    if (!::GetSecurityDescriptorDacl(ToDescriptor(descriptor), &isPresent, &found, &isDefaulted)) {
      return false;
    }
    *list = isPresent ? reinterpret_cast<const Acl*>(found) : nullptr;
    return true;
  }

  bool SetDescriptorList(Descriptor* descriptor, Acl* list) override {
    return ::SetSecurityDescriptorDacl(descriptor, TRUE, ToAcl(list), FALSE) != FALSE;
  }

  bool GetObjectSecurity(UserObject object, Descriptor* descriptor, std::uint32_t size,
                         std::uint32_t* needed) override {
    SECURITY_INFORMATION wanted = DACL_SECURITY_INFORMATION;
    DWORD bytes = 0;
    const BOOL done =
        ::GetUserObjectSecurity(ToSystem<HANDLE>(object), &wanted, descriptor, size, &bytes);
    *needed = bytes;
    return done != FALSE;
  }

  bool SetObjectSecurity(UserObject object, const Descriptor* descriptor) override {
    SECURITY_INFORMATION given = DACL_SECURITY_INFORMATION;
    return ::SetUserObjectSecurity(ToSystem<HANDLE>(object), &given, ToDescriptor(descriptor)) !=
           FALSE;
  }

  bool SetProcessStation(UserObject station) override {
    return ::SetProcessWindowStation(ToSystem<HWINSTA>(station)) != FALSE;
  }

  void CloseStation(UserObject station) override {
    const LastErrorKeeper keeper;
    ::CloseWindowStation(ToSystem<HWINSTA>(station));
  }

  void CloseDesktop(UserObject desktop) override {
    const LastErrorKeeper keeper;
    ::CloseDesktop(ToSystem<HDESK>(desktop));
  }
};

}  // namespace

ISecurity& WindowsPlatform::Security() {
  static SecurityPort port;
  return port;
}

}  // namespace platform::windows
