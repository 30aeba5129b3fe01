#include "common/sys/NicSettings.h"

#include <memory>

#include "common/sys/Registry.h"

namespace sys {
namespace {

constexpr char kInterfacesKey[] =
    R"(SYSTEM\CurrentControlSet\Services\Tcpip\Parameters\Interfaces\)";

bool HasServersSetByHand(std::uint32_t index) {
  std::string settingId;
  Wmi::GetSettingId(index, &settingId);
  try {
    Registry key;
    key.SetSubkey(kInterfacesKey + settingId);
    key.OpenForReading(/*view64=*/false);
    std::string servers;
    key.ReadString("NameServer", &servers);
    return !servers.empty();
  } catch (...) {
    return false;
  }
}

}  // namespace

IP::IP(std::uint32_t index, PersistentRoutes& routes) {
  Wmi::GetIpAddressAndMask(index, &address_, &mask_);
  Wmi::GetDnsDomainAndHostName(index, &dnsDomain_, &dnsHostName_);
  if (!routes) {
    std::vector<RouteRecord> read;
    Wmi::GetStaticRoutes(&read);
    routes = std::move(read);
  }
  for (const RouteRecord& route : *routes) add(std::make_unique<StaticRoute>(route));
}

Gateway::Gateway(std::uint32_t index) {
  std::vector<ipc::IPv4Address> gateways;
  Wmi::GetGateways(index, &gateways);
  for (const ipc::IPv4Address& gateway : gateways) add(std::make_unique<GatewayEntry>(gateway));
}

DNS::DNS(std::uint32_t index) : enabled_(HasServersSetByHand(index)) {
  std::vector<ipc::IPv4Address> servers;
  std::vector<std::string> suffixes;
  Wmi::GetDnsServersAndSuffixes(index, &servers, &suffixes);
  for (const ipc::IPv4Address& server : servers) {
    add(std::make_unique<DNSServer>(server.ToString()));
  }
  for (const std::string& suffix : suffixes) add(std::make_unique<DNSSuffix>(suffix));
}

}  // namespace sys
