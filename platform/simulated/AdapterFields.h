// Every field of an adapter in one table: its name in machine files, where the system keeps it,
// what it is called in reports, and what an image makes of it. Machine files, queries, capture,
// differences, image clearing and the round trip read it here.
#pragma once

#include <array>
#include <cstdint>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "base/ConfigKeys.h"
#include "platform/simulated/FieldCount.h"
#include "platform/simulated/Machine.h"

namespace simulated {

template <class Type>
using AdapterMember = Type Adapter::*;
using AnyAdapterMember =
    std::variant<AdapterMember<std::uint32_t>, AdapterMember<bool>, AdapterMember<std::string>,
                 AdapterMember<NullableText>, AdapterMember<std::vector<std::string>>>;

/// Where the system keeps a field: in `Win32_NetworkAdapterConfiguration`, in
/// `Win32_NetworkAdapter`, in both, or as a registry value below one of the keys here.
enum class Home : std::uint8_t { kConfiguration, kHardware, kBoth, kDeviceKey, kInterfaceKey };
/// The PNP device id or the setting id follows.
inline constexpr std::string_view kDeviceKeys =
    R"(HKEY_LOCAL_MACHINE\SYSTEM\CurrentControlSet\Enum\)";
inline constexpr std::string_view kInterfaceKeys =
    R"(HKEY_LOCAL_MACHINE\SYSTEM\CurrentControlSet\Services\Tcpip\Parameters\Interfaces\)";

/// What becomes of a field when an image is laid down. The round trip tells of what is cleared or
/// turned on; what follows is cleared and belongs to another field.
enum class OnImage : std::uint8_t { kStays, kCleared, kTurnedOn, kFollows };

/// How the capture of an image records a field, and what sets it again.
struct ImageRecord {
  /// Keys of the adapter's section, a numbered one with the adapter's number.
  std::array<std::optional<base::Key>, 2> keys{};
  std::array<const char*, 2> methods{};
  /// The entry that must stand in the section for the record to count.
  struct {
    std::optional<base::Key> key;
    const char* value;
  } condition{};
};

inline constexpr ImageRecord kNotRecorded{};
inline constexpr ImageRecord kDhcpRecord{{base::Key::kDhcp}, {"EnableDHCP", "EnableStatic"}};
inline constexpr ImageRecord kAddressRecord{{base::Key::kAddress, base::Key::kNetmask},
                                            {"EnableDHCP", "EnableStatic"},
                                            {base::Key::kDhcp, "False"}};
inline constexpr ImageRecord kGatewayRecord{
    {base::Key::kGateway}, {"SetGateways"}, {base::Key::kDhcp, "False"}};
inline constexpr ImageRecord kServerRecord{
    {base::Key::kDnsServer}, {"SetDNSServerSearchOrder"}, {base::Key::kSetDnsInfo, "True"}};
inline constexpr ImageRecord kSuffixRecord{
    {base::Key::kDnsSuffixes}, {"SetDNSSuffixSearchOrder"}, {base::Key::kSetDnsInfo, "True"}};
inline constexpr ImageRecord kDomainRecord{{base::Key::kOwnDnsDomain}};

struct AdapterField {
  const char* name;
  AnyAdapterMember member;
  Home home;
  /// Of the class, or the registry value's name.
  const char* property;
  /// Null for what names the adapter, or is told with the field that it is the mate of.
  const char* word = nullptr;
  OnImage onImage = OnImage::kStays;
  ImageRecord record = kNotRecorded;
  /// DHCP gives the value, so that it is no setting of the machine; null for never.
  bool (*isGiven)(const Adapter&) = nullptr;
  /// A list whose items are told behind this one's, as a mask behind its address.
  AdapterMember<std::vector<std::string>> mate = nullptr;
  /// What a flag is called when it is set, and when not.
  const char* set = "on";
  const char* unset = "off";
};

inline constexpr auto kHasDhcp = [](const Adapter& adapter) { return adapter.dhcpEnabled; };
inline constexpr auto kHasDhcpDns = [](const Adapter& adapter) {
  return adapter.dhcpEnabled && !adapter.staticDns;
};

/// In the order of machine files.
inline constexpr AdapterField kAdapterFields[] = {
    {"index", &Adapter::index, Home::kBoth, "Index"},
    {"setting_id", &Adapter::settingId, Home::kConfiguration, "SettingID", "setting id"},
    {"ip_enabled", &Adapter::ipEnabled, Home::kConfiguration, "IPEnabled", "IP"},
    {"pnp_device_id", &Adapter::pnpDeviceId, Home::kHardware, "PNPDeviceID", "PNP device id"},
    {"location_information", &Adapter::locationInformation, Home::kDeviceKey, "LocationInformation",
     "location"},
    {"mac_address", &Adapter::macAddress, Home::kBoth, "MACAddress", "MAC address"},
    {"adapter_type", &Adapter::adapterType, Home::kHardware, "AdapterType", "type"},
    {"manufacturer", &Adapter::manufacturer, Home::kHardware, "Manufacturer", "manufacturer"},
    {"caption", &Adapter::caption, Home::kHardware, "Caption"},
    {"dhcp_enabled", &Adapter::dhcpEnabled, Home::kConfiguration, "DHCPEnabled", "DHCP",
     OnImage::kTurnedOn, kDhcpRecord},
    {"ip_addresses", &Adapter::ipAddresses, Home::kConfiguration, "IPAddress", "addresses",
     OnImage::kCleared, kAddressRecord, kHasDhcp, &Adapter::subnetMasks},
    {"subnet_masks", &Adapter::subnetMasks, Home::kConfiguration, "IPSubnet", nullptr,
     OnImage::kFollows},
    {"gateways", &Adapter::gateways, Home::kConfiguration, "DefaultIPGateway", "gateways",
     OnImage::kCleared, kGatewayRecord, kHasDhcp},
    {"dns_servers", &Adapter::dnsServers, Home::kConfiguration, "DNSServerSearchOrder",
     "DNS servers", OnImage::kCleared, kServerRecord, kHasDhcpDns},
    {"dns_suffixes", &Adapter::dnsSuffixes, Home::kConfiguration, "DNSDomainSuffixSearchOrder",
     "DNS suffixes", OnImage::kCleared, kSuffixRecord},
    {"dns_domain", &Adapter::dnsDomain, Home::kConfiguration, "DNSDomain", "DNS domain",
     OnImage::kCleared, kDomainRecord, kHasDhcp},
    {"dns_host_name", &Adapter::dnsHostName, Home::kConfiguration, "DNSHostName", "DNS host name"},
    {"static_dns", &Adapter::staticDns, Home::kInterfaceKey, "NameServer", "DNS servers set by",
     OnImage::kFollows, kNotRecorded, nullptr, nullptr, "hand", "DHCP"},
};
static_assert(std::size(kAdapterFields) == FieldCount<Adapter>(), "a member without a row");

/// Calls `action(field, member)` for each field, the member with its own type.
template <class Action>
constexpr void ForEachAdapterField(Action action) {
  for (const AdapterField& field : kAdapterFields) {
    std::visit([&](auto member) { action(field, member); }, field.member);
  }
}

}  // namespace simulated
