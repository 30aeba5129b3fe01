// A lock that its holder may enter again.
#pragma once

#include <mutex>

namespace lang {

/// Every `Enter` is paired with one `Leave` on the same thread.
class CriticalSection {
 public:
  void Enter() { mutex_.lock(); }
  void Leave() { mutex_.unlock(); }

 private:
  std::recursive_mutex mutex_;
};

}  // namespace lang
