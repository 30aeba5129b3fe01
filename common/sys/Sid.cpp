#include "common/sys/Sid.h"

#include <utility>

#include "common/util/LastError.h"

namespace sys {
namespace {

constexpr char kSource[] = R"(common\sys\SID)";
constexpr err::Site kNoTokenSize{kSource, "Unexpected return value from GetTokenInformation", 41};
constexpr err::Site kNoTokenUser{kSource, "Unexpected return value from GetTokenInformation", 52};
constexpr err::Site kNotCopied{kSource, "Unable to copy new SID", 79};
constexpr err::Site kNoMemoryForToken{kSource, "Unable to allocate memory", 47};
constexpr err::Site kNoMemoryForSid{kSource, "Unable to allocate memory", 73};

}  // namespace

CSID::CSID(platform::Token token) {
  RethrowFrom("CSID::CSID( HANDLE hToken )", [&] {
    std::uint32_t size = 0;
    const platform::Sid* user = nullptr;
    // Without a buffer the call must fail and report the size needed.
    if (Security().TokenUser(token, nullptr, 0, &size, &user) ||
        util::LastError() != platform::kInsufficientBuffer) {
      ThrowImpersonationError(kNoTokenSize);
    }
    const auto buffer = AllocateBlock<void>(size, kNoMemoryForToken);
    if (!Security().TokenUser(token, buffer.get(), size, &size, &user)) {
      ThrowImpersonationError(kNoTokenUser);
    }
    SetSID(user);
  });
}

void CSID::SetSID(const platform::Sid* sid) {
  RethrowFrom("CSID::SetSID", [&] {
    const std::uint32_t size = Security().SidSize(sid);
    auto copy = AllocateBlock<platform::Sid>(size, kNoMemoryForSid);
    if (!Security().CopySid(size, copy.get(), sid)) ThrowImpersonationError(kNotCopied);
    sid_ = std::move(copy);
  });
}

}  // namespace sys
