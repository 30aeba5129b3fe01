#include "platform/IClock.h"
#include "platform/windows/WindowsHeader.h"
#include "platform/windows/WindowsPlatform.h"

namespace platform::windows {
namespace {

class ClockPort final : public IClock {
 public:
  void Sleep(std::uint32_t milliseconds) override { ::Sleep(milliseconds); }
};

}  // namespace

IClock& WindowsPlatform::Clock() {
  static ClockPort port;
  return port;
}

}  // namespace platform::windows
