// Host names and dotted addresses (WinSock). Addresses are 32-bit values in network byte order.
#pragma once

#include <cstdint>
#include <string>

#include "platform/Types.h"

namespace platform {

/// What `ParseDotted` answers for a text that is no address (`INADDR_NONE`).
constexpr std::uint32_t kNoAddress = 0xFFFFFFFF;

class IResolver {
 public:
  virtual ~IResolver() = default;
  /// `WSAStartup`; the result is its error number.
  virtual Win32Error Start() = 0;
  /// The first address of a host name; false when it does not resolve.
  virtual bool LookUpHost(const std::string& name, std::uint32_t* address) = 0;
  /// `WSAGetLastError`.
  virtual Win32Error LastError() = 0;
  /// `inet_addr`: one to four parts, decimal, octal or hexadecimal.
  virtual std::uint32_t ParseDotted(const std::string& text) = 0;
};

}  // namespace platform
