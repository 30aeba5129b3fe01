#include "common/sys/Impersonation.h"

#include <utility>

#include "common/sys/Dacl.h"
#include "common/sys/SecurityDescriptor.h"
#include "common/sys/Sid.h"

namespace sys {
namespace {

using platform::UserObject;

constexpr char kSource[] = R"(common\sys\Impersonation)";
constexpr err::Site kNotReverted{kSource, "Unable to revert to self", 71};
constexpr err::Site kStationNotRestored{kSource, "Unable to restore old window station", 146};

/// Runs one step of a destructor.
template <class Step>
void Attempt(Step step) {
  try {
    step();
  } catch (...) {
    // Nobody is left to report to, and the other steps must run.
  }
}

void Close(UserObject* object, void (platform::ISecurity::*close)(UserObject)) {
  if (*object != UserObject::kNone) (Security().*close)(std::exchange(*object, UserObject::kNone));
}

}  // namespace

CImpersonation::CImpersonation(logging::ILogSink& logSink, const UserContext& taken)
    : logSink_(logSink), taken_(taken), profile_(std::in_place, taken.token, taken.profile) {}

CImpersonation::~CImpersonation() {
  // As the process itself first: the user may not be allowed the rest.
  Attempt([this] { Revert(); });
  profile_.reset();
  Attempt([this] { RestoreStation(); });
  Attempt([this] { RestoreDesktopRights(); });
  Attempt([this] { RestoreWinstaRights(); });
  Close(&taken_.desktop, &platform::ISecurity::CloseDesktop);
  Close(&taken_.station, &platform::ISecurity::CloseStation);
  if (taken_.token != platform::Token::kNone) Security().CloseToken(taken_.token);
}

void CImpersonation::Revert() {
  RethrowFrom("CImpersonation::Revert", [&] {
    if (!taken_.isImpersonated) return;
    if (!Security().Revert()) ThrowImpersonationError(kNotReverted);
    taken_.isImpersonated = false;
  });
}

void CImpersonation::UnloadUserProfile() {
  RethrowFrom("CImpersonation::UnloadUserProfile", [&] { profile_->Unload(); });
}

bool CImpersonation::RestoreWinstaRights() {
  return RethrowFrom("CImpersonation::RestoreWinstaRights", [&] {
    if (!WithdrawRights(taken_.station)) return false;
    Close(&taken_.station, &platform::ISecurity::CloseStation);
    return true;
  });
}

bool CImpersonation::RestoreDesktopRights() {
  return RethrowFrom("CImpersonation::RestoreDesktopRights", [&] {
    if (!WithdrawRights(taken_.desktop)) return false;
    Close(&taken_.desktop, &platform::ISecurity::CloseDesktop);
    return true;
  });
}

bool CImpersonation::RestoreDesktopAndRights() {
  return RethrowFrom("CImpersonation::RestoreDesktopAndRights", [&] {
    RestoreStation();
    const bool desktopRestored = RestoreDesktopRights();
    return RestoreWinstaRights() && desktopRestored;
  });
}

/// The process must have left a window station before that can be closed.
void CImpersonation::RestoreStation() {
  if (taken_.oldStation == UserObject::kNone) return;
  if (!Security().SetProcessStation(taken_.oldStation))
    ThrowImpersonationError(kStationNotRestored);
  taken_.oldStation = UserObject::kNone;
}

bool CImpersonation::WithdrawRights(UserObject object) const {
  if (object == UserObject::kNone) return true;
  const CSID user(taken_.token);
  const CSecurityDescriptor current(object);
  const platform::Acl* const list = current.GetDACL();
  // Everyone is let in. An empty list in its place would let nobody in.
  if (list == nullptr) return true;
  CDACL rest(list, logSink_);
  if (!rest.CopyACL(list, user)) return false;
  CSecurityDescriptor restored;
  restored.SetDACL(rest);
  restored.SetUserObjectSecurity(object);
  return true;
}

}  // namespace sys
