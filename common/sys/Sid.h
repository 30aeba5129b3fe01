// The SID of a user.
#pragma once

#include "common/sys/HeapBlock.h"
#include "platform/ISecurity.h"

namespace sys {

/// A copy of a SID. Its operations throw CImpersonationError.
class CSID {
 public:
  /// The user of a token, which is borrowed for the call.
  explicit CSID(platform::Token token);

  /// Becomes a copy of `sid`; keeps its value when that fails.
  void SetSID(const platform::Sid* sid);

  const platform::Sid* Get() const { return sid_.get(); }

 private:
  HeapBlock<platform::Sid> sid_;
};

}  // namespace sys
