// The lock behind `lang::CriticalSection`, which alone uses it.
#pragma once

namespace platform {

/// A lock that its holder may enter again. Made free; destroyed when nobody is in it.
class ICriticalSection {
 public:
  virtual ~ICriticalSection() = default;
  /// Waits until no other thread is in it. Every `Enter` is paired with one `Leave` on its thread.
  virtual void Enter() = 0;
  virtual void Leave() = 0;
};

}  // namespace platform
