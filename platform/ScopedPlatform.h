// Lets tests and tools put another machine in the place of the default one.
#pragma once

#include "platform/IPlatform.h"

namespace platform {

/// Sends all work to `machine` until the end of the scope, then to what was current before. Scopes
/// nest; the machine is borrowed. One thread at a time may hold a scope.
class ScopedPlatform {
 public:
  explicit ScopedPlatform(IPlatform& machine);
  ~ScopedPlatform();
  ScopedPlatform(const ScopedPlatform&) = delete;
  ScopedPlatform& operator=(const ScopedPlatform&) = delete;

 private:
  IPlatform* previous_;
};

}  // namespace platform
