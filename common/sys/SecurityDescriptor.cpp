#include "common/sys/SecurityDescriptor.h"

#include <utility>

#include "common/util/LastError.h"

namespace sys {
namespace {

constexpr char kSource[] = R"(common\sys\SecurityDescriptor)";
constexpr err::Site kNoSize{kSource, "Unable to get size from GetUserObjectSecurity", 44};
constexpr err::Site kNoMemoryForObject{kSource, "Unable to allocate memory", 50};
constexpr err::Site kNoInformation{kSource, "Unable to get info from GetUserObjectSecurity", 57};
constexpr err::Site kNoList{kSource, "Unable to get the DACL from the descriptor", 88};
constexpr err::Site kNoMemory{kSource, "Unable to allocate memory", 121};
constexpr err::Site kNotInitialized{kSource, "Unable to initialize the security descriptor", 127};
constexpr err::Site kListNotSet{kSource, "Unable to set descriptor dacl", 146};
constexpr err::Site kObjectNotSet{kSource, "Unable to set object security", 163};

constexpr std::int32_t kInvalidDescriptor = 1338;  // ERROR_INVALID_SECURITY_DESCR

}  // namespace

CSecurityDescriptor::CSecurityDescriptor() { Create(); }

CSecurityDescriptor::CSecurityDescriptor(platform::UserObject object) {
  RethrowFrom("CSecurityDescriptor::CSecurityDescriptor(HANDLE hObject)", [&] {
    std::uint32_t size = 0;
    if (Security().GetObjectSecurity(object, nullptr, 0, &size) ||
        util::LastError() != platform::kInsufficientBuffer) {
      ThrowImpersonationError(kNoSize);
    }
    auto descriptor = AllocateBlock<platform::Descriptor>(size, kNoMemoryForObject);
    if (!Security().GetObjectSecurity(object, descriptor.get(), size, &size)) {
      ThrowImpersonationError(kNoInformation);
    }
    descriptor_ = std::move(descriptor);
  });
}

const platform::Acl* CSecurityDescriptor::GetDACL() const {
  return RethrowFrom("CSecurityDescriptor::GetDACL", [&] {
    const platform::Acl* list = nullptr;
    if (!Security().DescriptorList(descriptor_.get(), &list)) ThrowImpersonationError(kNoList);
    return list;
  });
}

std::uint32_t CSecurityDescriptor::Size() const {
  if (!Security().IsValidDescriptor(descriptor_.get())) throw std::int32_t{kInvalidDescriptor};
  return Security().DescriptorSize(descriptor_.get());
}

void CSecurityDescriptor::Create() {
  RethrowFrom("CSecurityDescriptor::Create", [&] {
    auto descriptor = AllocateBlock<platform::Descriptor>(platform::kDescriptorSize, kNoMemory);
    if (!Security().InitializeDescriptor(descriptor.get()))
      ThrowImpersonationError(kNotInitialized);
    descriptor_ = std::move(descriptor);
  });
}

void CSecurityDescriptor::SetDACL(const CDACL& list) {
  RethrowFrom("CSecurityDescriptor::SetDACL", [&] {
    if (!Security().SetDescriptorList(descriptor_.get(), list.Get())) {
      ThrowImpersonationError(kListNotSet);
    }
  });
}

void CSecurityDescriptor::SetUserObjectSecurity(platform::UserObject object) const {
  RethrowFrom("CSecurityDescriptor::SetUserObjectSecurity", [&] {
    if (!Security().SetObjectSecurity(object, descriptor_.get())) {
      ThrowImpersonationError(kObjectNotSet);
    }
  });
}

}  // namespace sys
