#include "common/sys/Dacl.h"

#include <utility>

namespace sys {
namespace {

constexpr char kSource[] = R"(common\sys\DACL)";
constexpr err::Site kNoSize{kSource, "Unable to get acl size info", 58};
constexpr err::Site kNoMemory{kSource, "Unable to allocate memory", 81};
constexpr err::Site kNotInitialized{kSource, "Unable to initialize acl", 87};
constexpr int kNoEntryLine = 117;
constexpr int kRemovedLine = 125;
constexpr int kNotAddedLine = 132;

}  // namespace

CDACL::CDACL(const platform::Acl* list, logging::ILogSink& logSink) : logSink_(logSink) {
  RethrowFrom("CDACL::CDACL( PACL pacl )", [&] { Create(GetAclSizeInfo(list).bytes); });
}

platform::AclSize CDACL::GetAclSizeInfo(const platform::Acl* list) {
  return RethrowFrom("CDACL::GetAclSizeInfo", [&] {
    platform::AclSize size;
    if (!Security().GetAclSize(list, &size)) ThrowImpersonationError(kNoSize);
    return size;
  });
}

void CDACL::Create(std::uint32_t size) {
  RethrowFrom("CDACL::Create", [&] {
    auto list = AllocateBlock<platform::Acl>(size, kNoMemory);
    if (!Security().InitializeAcl(list.get(), size)) ThrowImpersonationError(kNotInitialized);
    list_ = std::move(list);
  });
}

bool CDACL::CopyACL(const platform::Acl* source, const CSID& removed) {
  return RethrowFrom("CDACL::CopyACL", [&] {
    const std::uint32_t count = GetAclSizeInfo(source).entryCount;
    for (std::uint32_t i = 0; i < count; ++i) {
      platform::AccessEntry entry;
      if (!Security().EntryAt(source, i, &entry)) {
        logSink_.Log(logging::kFailure, "%s:%d CDACL::CopyACL(): Cannot get ace from acl!", kSource,
                     kNoEntryLine);
        return false;
      }
      if (entry.sid != nullptr && Security().SameSid(entry.sid, removed.Get())) {
        logSink_.Log(logging::kDetail, "%s:%d CDACL::CopyACL(): Removing a sid!", kSource,
                     kRemovedLine);
        continue;
      }
      if (!Security().AddEntry(list_.get(), entry)) {
        logSink_.Log(logging::kFailure, "%s:%d CDACL::CopyACL(): Cannot add ace to acl!", kSource,
                     kNotAddedLine);
        return false;
      }
    }
    return true;
  });
}

}  // namespace sys
