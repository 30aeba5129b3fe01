#include <cstring>

#include "platform/IResolver.h"
#include "platform/windows/WindowsHeader.h"
#include "platform/windows/WindowsPlatform.h"

namespace platform::windows {
namespace {

static_assert(kNoAddress == INADDR_NONE);

class ResolverPort final : public IResolver {
 public:
  Win32Error Start() override {
    WSADATA data{};
    return static_cast<Win32Error>(::WSAStartup(MAKEWORD(2, 2), &data));
  }

  bool LookUpHost(const std::string& name, std::uint32_t* address) override {
    const hostent* host = ::gethostbyname(name.c_str());
    if (host == nullptr || host->h_addr_list[0] == nullptr) return false;
    std::memcpy(address, host->h_addr_list[0], sizeof *address);
    return true;
  }

  Win32Error LastError() override { return static_cast<Win32Error>(::WSAGetLastError()); }

  std::uint32_t ParseDotted(const std::string& text) override { return ::inet_addr(text.c_str()); }
};

}  // namespace

IResolver& WindowsPlatform::Resolver() {
  static ResolverPort port;
  return port;
}

}  // namespace platform::windows
