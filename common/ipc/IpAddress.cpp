#include "common/ipc/IpAddress.h"

#include <array>
#include <bit>

#include "base/Pieces.h"
#include "platform/IPlatform.h"
#include "platform/IResolver.h"

namespace ipc {
namespace {

constexpr err::Site kNotResolved{R"(common\ipc\IpAddress)",
                                 "IPAddress::Connect Name Resolution Error", 58};

using Parts = std::array<std::uint8_t, 4>;

Parts PartsOf(const IPAddress& address) { return std::bit_cast<Parts>(address.Bits()); }

bool IsLetter(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }

std::uint32_t BitsOf(const std::string& text) {
  platform::IResolver& resolver = platform::Current().Resolver();
  if (text.empty() || !IsLetter(text.front())) return resolver.ParseDotted(text);
  WinSockManager::Instance().EnsureStarted();
  std::uint32_t bits = 0;
  if (resolver.LookUpHost(text, &bits)) return bits;
  throw CIPAddressError{kNotResolved, /*value=*/0, resolver.LastError()};
}

}  // namespace

WinSockManager& WinSockManager::Instance() {
  static WinSockManager manager;
  return manager;
}

void WinSockManager::EnsureStarted() {
  if (!started_) started_ = platform::Current().Resolver().Start() == 0;
}

IPAddress::IPAddress(const std::string& text) : bits_(BitsOf(text)) {}

std::string IPv4Address::ToString() const {
  const Parts parts = PartsOf(*this);
  std::string text;
  for (const unsigned part : parts) {
    if (!text.empty()) text += ".";
    text += std::to_string(part);
  }
  return text;
}

std::strong_ordering IPv4Address::operator<=>(const IPv4Address& other) const {
  return PartsOf(*this) <=> PartsOf(other);
}

std::vector<std::string> Texts(const std::vector<IPv4Address>& addresses) {
  std::vector<std::string> texts;
  for (const IPv4Address& address : addresses) texts.push_back(address.ToString());
  return texts;
}

std::string Join(const std::vector<IPv4Address>& addresses) {
  return base::Join(Texts(addresses), ",");
}

}  // namespace ipc
