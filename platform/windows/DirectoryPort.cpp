#include <string_view>
#include <utility>

#include "platform/IDirectory.h"
#include "platform/windows/Com.h"
#include "platform/windows/Handles.h"
#include "platform/windows/Text.h"
#include "platform/windows/WindowsHeader.h"
#include "platform/windows/WindowsPlatform.h"

namespace platform::windows {
namespace {

std::string TextOf(const LSA_UNICODE_STRING& text) {
  return ToNarrow({text.Buffer, text.Length / sizeof(wchar_t)});
}

/// Asks the policy for one kind of information; `*answer` keeps its value on failure.
template <class Information>
NtStatus QueryPolicy(PolicyHandle policy, POLICY_INFORMATION_CLASS kind,
                     LsaAnswer<Information>* answer) {
  void* information = nullptr;
  const NTSTATUS status =
      ::LsaQueryInformationPolicy(ToSystem<LSA_HANDLE>(policy), kind, &information);
  if (status >= 0) answer->reset(static_cast<Information*>(information));
  return status;
}

class DirectoryContainer final : public IDirectoryContainer {
 public:
  explicit DirectoryContainer(ComPointer<IADsContainer> container)
      : container_(std::move(container)) {}

  HResult MoveHere(const std::string& sourcePath) override {
    IDispatch* moved = nullptr;
    const HRESULT result = container_->MoveHere(MakeBstr(sourcePath).get(), nullptr, &moved);
    const ComPointer<IDispatch> owner(moved);
    return result;
  }

 private:
  ComPointer<IADsContainer> container_;
};

class DirectoryPort final : public IDirectory {
 public:
  NtStatus OpenPolicy(PolicyHandle* policy) override {
    LSA_OBJECT_ATTRIBUTES attributes{};
    LSA_HANDLE opened = nullptr;
    const NTSTATUS status =
        ::LsaOpenPolicy(nullptr, &attributes, POLICY_VIEW_LOCAL_INFORMATION, &opened);
    if (status >= 0) *policy = ToSeam<PolicyHandle>(opened);
    return status;
  }

  NtStatus QueryPrimaryDomain(PolicyHandle policy, bool* hasSid, std::string* name) override {
    LsaAnswer<POLICY_PRIMARY_DOMAIN_INFO> domain;
    const NtStatus status = QueryPolicy(policy, PolicyPrimaryDomainInformation, &domain);
    if (domain) {
      *hasSid = domain->Sid != nullptr;
      *name = TextOf(domain->Name);
    }
    return status;
  }

  NtStatus QueryDnsDomain(PolicyHandle policy, std::string* dnsName) override {
    LsaAnswer<POLICY_DNS_DOMAIN_INFO> domain;
    const NtStatus status = QueryPolicy(policy, PolicyDnsDomainInformation, &domain);
    if (domain) *dnsName = TextOf(domain->DnsDomainName);
    return status;
  }

  void ClosePolicy(PolicyHandle policy) override {
    const LastErrorKeeper keeper;
    ::LsaClose(ToSystem<LSA_HANDLE>(policy));
  }

  Win32Error StatusToError(NtStatus status) override { return ::LsaNtStatusToWinError(status); }

  bool LanGroup(std::string* name) override {
    BYTE* buffer = nullptr;
    ::NetWkstaGetInfo(nullptr, 100, &buffer);
    const NetAnswer<BYTE> owner(buffer);
    if (buffer == nullptr) return false;
    *name = ToNarrow(reinterpret_cast<const WKSTA_INFO_100*>(buffer)->wki100_langroup);
    return true;
  }

  bool ComputerObjectName(char* buffer, std::uint32_t* length) override {
    ULONG count = *length;
    const BOOLEAN done = ::GetComputerObjectNameA(NameFullyQualifiedDN, buffer, &count);
    *length = count;
    return done != FALSE;
  }

  HResult EnterApartment() override { return ::CoInitialize(nullptr); }

  void LeaveApartment() override {
    const LastErrorKeeper keeper;
    ::CoUninitialize();
  }

  HResult BindContainer(const std::string& path, const std::string& account,
                        const std::string& password,
                        std::unique_ptr<IDirectoryContainer>* container) override {
    void* bound = nullptr;
    const HRESULT result =
        ::ADsOpenObject(ToWide(path).c_str(), ToWide(account).c_str(), ToWide(password).c_str(),
                        ADS_SECURE_AUTHENTICATION, IID_IADsContainer, &bound);
    ComPointer<IADsContainer> owner(static_cast<IADsContainer*>(bound));
    if (SUCCEEDED(result) && owner) {
      *container = std::make_unique<DirectoryContainer>(std::move(owner));
    }
    return result;
  }
};

}  // namespace

IDirectory& WindowsPlatform::Directory() {
  static DirectoryPort port;
  return port;
}

}  // namespace platform::windows
