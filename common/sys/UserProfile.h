// A user's loaded profile.
#pragma once

#include "platform/ISecurity.h"

namespace sys {

/// Unloads the profile at the latest when it is destroyed.
class CUserProfile {
 public:
  /// Takes over a profile that is loaded, or `kNone`; the user's token is borrowed.
  CUserProfile(platform::Token token, platform::Profile profile)
      : token_(token), profile_(profile) {}
  /// A failure is dropped.
  ~CUserProfile();
  CUserProfile& operator=(CUserProfile&&) = delete;

  /// Does nothing when no profile is loaded any more. Throws CImpersonationError; the profile is
  /// then still loaded.
  void Unload();

 private:
  platform::Token token_;
  platform::Profile profile_;
};

}  // namespace sys
