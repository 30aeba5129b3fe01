#include <atomic>

#include "platform/ICriticalSection.h"
#include "platform/simulated/SimulatedPlatform.h"

namespace simulated {
namespace {

thread_local char thisThread;  // its address is the thread's own

/// Without the standard library's locks, which not every compiler for Windows has.
class CriticalSection final : public platform::ICriticalSection {
 public:
  void Enter() override {
    if (holder_ != &thisThread) {
      for (const char* none = nullptr; !holder_.compare_exchange_weak(none, &thisThread);) {
        none = nullptr;
      }
    }
    ++depth_;
  }
  void Leave() override {
    if (--depth_ == 0) holder_ = nullptr;
  }

 private:
  std::atomic<const char*> holder_ = nullptr;
  int depth_ = 0;
};

}  // namespace

std::unique_ptr<platform::ICriticalSection> SimulatedPlatform::MakeCriticalSection() {
  return std::make_unique<CriticalSection>();
}

}  // namespace simulated
