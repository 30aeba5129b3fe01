// IPv4 addresses made from dotted text or a host name.
#pragma once

#include <compare>
#include <cstdint>
#include <string>
#include <vector>

#include "common/err/GeneralError.h"

namespace ipc {

/// A host name that does not resolve; `SystemError` is the resolver's error.
struct CIPAddressError : err::CGeneralError {
  using err::CGeneralError::CGeneralError;
};

/// Starts WinSock once in the life of the process, before the first name is resolved.
class WinSockManager {
 public:
  static WinSockManager& Instance();
  /// A start that fails is tried again the next time.
  void EnsureStarted();

 private:
  friend struct WinSockTestAccess;
  bool started_ = false;
};

/// An address and a port that is always 0.
class IPAddress {
 public:
  /// 0.0.0.0, without a call to the machine.
  IPAddress() = default;
  /// A text that starts with a letter is a host name and is resolved: throws CIPAddressError when
  /// that fails. Any other text is read as a dotted address; one that is none becomes
  /// 255.255.255.255.
  explicit IPAddress(const std::string& text);

  /// The 32 bits in network byte order: the first part of the dotted text comes first in memory.
  std::uint32_t Bits() const { return bits_; }
  std::uint16_t Port() const { return 0; }

 private:
  std::uint32_t bits_ = 0;
};

/// Ordered as the dotted texts read, part by part.
class IPv4Address : public IPAddress {
 public:
  using IPAddress::IPAddress;

  /// Dotted decimal form.
  std::string ToString() const;

  bool operator==(const IPv4Address& other) const { return Bits() == other.Bits(); }
  std::strong_ordering operator<=>(const IPv4Address& other) const;
};

/// The addresses in dotted form.
std::vector<std::string> Texts(const std::vector<IPv4Address>& addresses);
/// The same with "," between them.
std::string Join(const std::vector<IPv4Address>& addresses);

}  // namespace ipc
