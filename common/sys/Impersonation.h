// What is taken for a run as another user, and its way back: the thread acts as the process again,
// the profile is unloaded, the user's rights to desktop and window station are withdrawn. Runs as
// another user are not done in this system, so nothing is ever taken; `CExecuteAsUser` is for them.
#pragma once

#include <optional>

#include "common/logging/ILogSink.h"
#include "common/sys/UserProfile.h"
#include "platform/ISecurity.h"

namespace sys {

/// Everything that a run as another user takes; `kNone` where it did not.
struct UserContext {
  platform::Token token = platform::Token::kNone;
  /// The thread acts as the user.
  bool isImpersonated = false;
  platform::Profile profile = platform::Profile::kNone;
  /// Where the user was given rights.
  platform::UserObject desktop = platform::UserObject::kNone;
  platform::UserObject station = platform::UserObject::kNone;
  /// The process's own window station when it has moved to `station`; not owned.
  platform::UserObject oldStation = platform::UserObject::kNone;
};

/// Each operation gives one thing back and does nothing once that is done. It throws
/// CImpersonationError, or a pointer to one when memory has run out; what it could not give back
/// can be tried again.
class CImpersonation {
 public:
  /// Takes over what `taken` holds. `logSink` is borrowed.
  explicit CImpersonation(logging::ILogSink& logSink, const UserContext& taken = {});
  /// Gives back what is left and closes every handle. A failure is dropped and stops nothing.
  virtual ~CImpersonation();

  void Revert();
  void UnloadUserProfile();

  /// Takes every entry about the user off the object's access list and closes the object. False
  /// when the list cannot be copied, which is logged; the rights then stay as they are.
  bool RestoreWinstaRights();
  bool RestoreDesktopRights();

  /// Moves the process back to its own window station, then restores the rights to both objects.
  bool RestoreDesktopAndRights();

 private:
  void RestoreStation();
  bool WithdrawRights(platform::UserObject object) const;

  logging::ILogSink& logSink_;
  UserContext taken_;
  /// Goes before the token does.
  std::optional<CUserProfile> profile_;
};

}  // namespace sys
