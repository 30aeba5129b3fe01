#include "common/sys/UserProfile.h"

#include "common/sys/HeapBlock.h"

namespace sys {
namespace {

constexpr err::Site kNotUnloaded{R"(common\sys\UserProfile)", "Unable to call UnloadUserProfile",
                                 63};

}  // namespace

CUserProfile::~CUserProfile() {
  try {
    Unload();
  } catch (const CImpersonationError&) {
    // Nobody is left to report to.
  }
}

void CUserProfile::Unload() {
  RethrowFrom("CUserProfile::Unload", [&] {
    if (profile_ == platform::Profile::kNone) return;
    if (!Security().UnloadProfile(token_, profile_)) {
      ThrowImpersonationError(kNotUnloaded);
    }
    profile_ = platform::Profile::kNone;
  });
}

}  // namespace sys
