#include "platform/ICriticalSection.h"
#include "platform/windows/WindowsHeader.h"
#include "platform/windows/WindowsPlatform.h"

namespace platform::windows {
namespace {

class CriticalSection final : public ICriticalSection {
 public:
  CriticalSection() { ::InitializeCriticalSection(&section_); }
  ~CriticalSection() override { ::DeleteCriticalSection(&section_); }
  CriticalSection(const CriticalSection&) = delete;
  CriticalSection& operator=(const CriticalSection&) = delete;
  void Enter() override { ::EnterCriticalSection(&section_); }
  void Leave() override { ::LeaveCriticalSection(&section_); }

 private:
  CRITICAL_SECTION section_;
};

}  // namespace

std::unique_ptr<ICriticalSection> WindowsPlatform::MakeCriticalSection() {
  return std::make_unique<CriticalSection>();
}

}  // namespace platform::windows
