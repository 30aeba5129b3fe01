// Waiting.
#pragma once

#include <cstdint>

namespace platform {

class IClock {
 public:
  virtual ~IClock() = default;
  /// Suspends the calling thread.
  virtual void Sleep(std::uint32_t milliseconds) = 0;
};

}  // namespace platform
