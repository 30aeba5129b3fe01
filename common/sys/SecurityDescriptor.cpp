#include "common/sys/SecurityDescriptor.h"

#include <utility>

#include "common/util/LastError.h"
#include "platform/IPlatform.h"

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

platform::ISecurity& Port() { return platform::Current().Security(); }

}  // namespace

CSecurityDescriptor::CSecurityDescriptor() { Create(); }

CSecurityDescriptor::CSecurityDescriptor(platform::UserObject object) {
  RethrowFrom("CSecurityDescriptor::CSecurityDescriptor(HANDLE hObject)", [&] {
    std::uint32_t size = 0;
    if (Port().GetObjectSecurity(object, nullptr, 0, &size) ||
        util::LastError() != platform::kInsufficientBuffer) {
      ThrowImpersonationError(kNoSize);
    }
    auto descriptor = AllocateBlock<platform::Descriptor>(size, kNoMemoryForObject);
    if (!Port().GetObjectSecurity(object, descriptor.get(), size, &size)) {
      ThrowImpersonationError(kNoInformation);
    }
    descriptor_ = std::move(descriptor);
  });
}

const platform::Acl* CSecurityDescriptor::GetDACL() const {
  return RethrowFrom("CSecurityDescriptor::GetDACL", [&] {
    const platform::Acl* list = nullptr;
    if (!Port().DescriptorList(descriptor_.get(), &list)) ThrowImpersonationError(kNoList);
    return list;
  });
}

std::uint32_t CSecurityDescriptor::Size() const {
  if (!Port().IsValidDescriptor(descriptor_.get())) throw std::int32_t{kInvalidDescriptor};
  return Port().DescriptorSize(descriptor_.get());
}

void CSecurityDescriptor::Create() {
  RethrowFrom("CSecurityDescriptor::Create", [&] {
    auto descriptor = AllocateBlock<platform::Descriptor>(platform::kDescriptorSize, kNoMemory);
    if (!Port().InitializeDescriptor(descriptor.get())) ThrowImpersonationError(kNotInitialized);
    descriptor_ = std::move(descriptor);
  });
}

void CSecurityDescriptor::SetDACL(const CDACL& list) {
  RethrowFrom("CSecurityDescriptor::SetDACL", [&] {
    if (!Port().SetDescriptorList(descriptor_.get(), list.Get())) {
      ThrowImpersonationError(kListNotSet);
    }
  });
}

void CSecurityDescriptor::SetUserObjectSecurity(platform::UserObject object) const {
  RethrowFrom("CSecurityDescriptor::SetUserObjectSecurity", [&] {
    if (!Port().SetObjectSecurity(object, descriptor_.get())) {
      ThrowImpersonationError(kObjectNotSet);
    }
  });
}

}  // namespace sys
