// Reads arbitrary texts as addresses, distinguished names and the texts that describe an adapter.
// The first line is a domain, the rest everything else.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "base/LetterCase.h"
#include "base/Pieces.h"
#include "common/ipc/IpAddress.h"
#include "common/sys/Domain.h"
#include "common/sys/NicText.h"
#include "fuzz/Check.h"
#include "platform/ScopedPlatform.h"
#include "platform/simulated/Ipv4.h"
#include "platform/simulated/SimulatedPlatform.h"

namespace {

std::optional<ipc::IPv4Address> Read(const std::string& text) {
  try {
    return ipc::IPv4Address(text);
  } catch (const ipc::CIPAddressError&) {
    // Only what starts with a letter is looked up.
    Check(base::Folded(text).front() >= 'a' && base::Folded(text).front() <= 'z');
    return std::nullopt;
  }
}

void CheckAddress(const std::string& text, const std::string& other) {
  const auto address = Read(text);
  const auto strict = simulated::ParseIpv4(text);
  Check(address.has_value() || !strict);
  if (!address) return;
  const std::string shown = address->ToString();
  Check(simulated::ParseIpv4(shown).has_value());
  Check(ipc::IPv4Address(shown) == *address);
  if (strict) Check(simulated::ParseIpv4(shown) == strict);
  if (const auto second = Read(other)) {
    Check((*address <=> *second == 0) == (*address == *second));
    Check((*address < *second) == (*second > *address));
  }
}

void CheckNames(const std::string& domain, const std::string& ou) {
  const std::string dn = sys::BuildDn(domain, ou);
  // A name that is whole stays what it is.
  const bool isWhole = dn.find("OU=") != std::string::npos && dn.find("DC=") != std::string::npos;
  if (isWhole) Check(sys::BuildDn(domain, dn) == dn);
  const std::string path = sys::DnToOuPath(dn);
  const bool isPlainPath = ou.find_first_of(",=") == std::string::npos;
  const bool isPlainDomain = domain.find("OU=") == std::string::npos;
  // A path comes back but for stray separators.
  if (isPlainPath && isPlainDomain) Check(path == base::Join(base::Split(ou, "/"), "/"));
}

void CheckAdapterTexts(const std::string& text) {
  sys::ParseLocationInformation(text);
  const std::string mac = sys::NormalizedMac(text);
  Check(sys::NormalizedMac(mac) == mac);
  Check(sys::DescriptionOf(text).size() <= text.size());
  Check(sys::ParsePnpDeviceId(text).isPci == text.starts_with("PCI"));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string input(data, data + size);
  const std::size_t end = std::min(input.find('\n'), input.size());
  const std::string first = input.substr(0, end);
  const std::string rest = input.substr(std::min(end + 1, input.size()));

  simulated::Machine machine;
  machine.hosts = {{"host", "10.0.0.1"}};
  simulated::SimulatedPlatform platform(machine);
  const platform::ScopedPlatform scope(platform);
  CheckAddress(rest, first);
  CheckNames(first, rest);
  CheckAdapterTexts(rest);
  return 0;
}
