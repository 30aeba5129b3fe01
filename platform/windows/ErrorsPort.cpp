#include "platform/IErrors.h"
#include "platform/windows/Handles.h"
#include "platform/windows/WindowsHeader.h"
#include "platform/windows/WindowsPlatform.h"

namespace platform::windows {
namespace {

class ErrorsPort final : public IErrors {
 public:
  Win32Error LastError() override { return ::GetLastError(); }

  void SetLastError(Win32Error error) override { ::SetLastError(error); }

  bool Describe(HResult result, std::string* text) override {
    char* message = nullptr;
    // Deliberate: inserts are expanded though there are none, so a message that needs some counts
    // as no text.
    const DWORD length =
        ::FormatMessageA(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM, nullptr,
                         static_cast<DWORD>(result), LANG_USER_DEFAULT,
                         reinterpret_cast<LPSTR>(&message), 0, nullptr);
    const LocalText owner(message);
    if (length == 0) return false;
    text->assign(message, length);
    return true;
  }
};

}  // namespace

IErrors& WindowsPlatform::Errors() {
  static ErrorsPort port;
  return port;
}

}  // namespace platform::windows
