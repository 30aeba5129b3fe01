// Which sections and keys a configuration file may have and what their values are: the one place
// that names them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string>
#include <string_view>

namespace base {

/// What a section is for.
enum class SectionKind : std::uint8_t { kUnknown, kGlobal, kAgentSettings, kNetworking, kAdapter };

enum class Key : std::uint8_t {
  kRebootAfterConfig,
  kScheduleId,
  kTaskSequence,
  kConfig,
  kDomainUsername,
  kDomainPassword,
  kWorkgroup,
  kDomain,
  kDnsDomain,
  kOrganizationalUnit,
  kComputerName,
  kJoinDomainBeforeNameChange,
  kDescription,
  kPciBus,
  kPciDevice,
  kPciFunction,
  kMacAddress,
  kDhcp,
  kAddress,
  kNetmask,
  kGateway,
  kDnsUseDhcp,
  kSetDnsInfo,
  kDnsServerCount,
  kDnsServer,
  kDnsSuffixes,
  kStaticRouteCount,
  kRoute,
  kVendorId,
  kDeviceId,
  kOwnDnsDomain,
  kOwnDnsHostName,
  kDnsEnabled,
};

/// What the value of a key is. Lists come last; only they may continue over several lines.
enum class ValueKind : std::uint8_t {
  kText,
  kFlag,  ///< "True" or "False"
  kMode,
  kCipherText,
  kComputerName,
  kDomainName,  ///< of a workgroup or a domain
  kOrganizationalUnit,
  kPciNumber,
  kMacAddress,
  kCount,     ///< so many numbered keys of another name
  kRecorded,  ///< written before an image is taken, never read
  kAddresses,
  kMasks,
  kSuffixes,
  kRoute,
};

inline bool IsList(ValueKind kind) { return kind >= ValueKind::kAddresses; }

struct KnownKey {
  std::string_view name;
  Key key;
  SectionKind section;
  ValueKind value;
  /// A decimal number follows the name.
  bool isNumbered = false;
};

/// In the order of `Key`.
inline constexpr KnownKey kKnownKeys[] = {
    {"RebootAfterConfig", Key::kRebootAfterConfig, SectionKind::kGlobal, ValueKind::kFlag},
    {"ScheduleId", Key::kScheduleId, SectionKind::kGlobal, ValueKind::kText},
    {"TaskSequence", Key::kTaskSequence, SectionKind::kGlobal, ValueKind::kText},
    {"Config", Key::kConfig, SectionKind::kGlobal, ValueKind::kMode},
    {"DomainUsername", Key::kDomainUsername, SectionKind::kNetworking, ValueKind::kCipherText},
    {"DomainPassword", Key::kDomainPassword, SectionKind::kNetworking, ValueKind::kCipherText},
    {"Workgroup", Key::kWorkgroup, SectionKind::kNetworking, ValueKind::kFlag},
    {"Domain", Key::kDomain, SectionKind::kNetworking, ValueKind::kDomainName},
    {"DNSDomain", Key::kDnsDomain, SectionKind::kNetworking, ValueKind::kDomainName},
    {"DSOrganizationalUnit", Key::kOrganizationalUnit, SectionKind::kNetworking,
     ValueKind::kOrganizationalUnit},
    {"ComputerName", Key::kComputerName, SectionKind::kNetworking, ValueKind::kComputerName},
    {"JoinDomainBeforeNameChange", Key::kJoinDomainBeforeNameChange, SectionKind::kNetworking,
     ValueKind::kFlag},
    {"Description", Key::kDescription, SectionKind::kAdapter, ValueKind::kText},
    {"PCIBus", Key::kPciBus, SectionKind::kAdapter, ValueKind::kPciNumber},
    {"PCIDevice", Key::kPciDevice, SectionKind::kAdapter, ValueKind::kPciNumber},
    {"PCIFunction", Key::kPciFunction, SectionKind::kAdapter, ValueKind::kPciNumber},
    {"MACAddress", Key::kMacAddress, SectionKind::kAdapter, ValueKind::kMacAddress},
    {"DHCP", Key::kDhcp, SectionKind::kAdapter, ValueKind::kFlag},
    {"Address", Key::kAddress, SectionKind::kAdapter, ValueKind::kAddresses},
    {"Netmask", Key::kNetmask, SectionKind::kAdapter, ValueKind::kMasks},
    {"Gateway", Key::kGateway, SectionKind::kAdapter, ValueKind::kAddresses},
    {"DNS-Use-DHCP", Key::kDnsUseDhcp, SectionKind::kAdapter, ValueKind::kFlag},
    {"SetDNSInfo", Key::kSetDnsInfo, SectionKind::kAdapter, ValueKind::kFlag},
    {"DNS-Server-Count", Key::kDnsServerCount, SectionKind::kAdapter, ValueKind::kCount},
    {"DNS-Server", Key::kDnsServer, SectionKind::kAdapter, ValueKind::kAddresses,
     /*isNumbered=*/true},
    {"DNS-SuffixSearchOrder", Key::kDnsSuffixes, SectionKind::kAdapter, ValueKind::kSuffixes},
    {"Static-Route-Count", Key::kStaticRouteCount, SectionKind::kAdapter, ValueKind::kCount},
    {"Route", Key::kRoute, SectionKind::kAdapter, ValueKind::kRoute, /*isNumbered=*/true},
    {"VendorID", Key::kVendorId, SectionKind::kAdapter, ValueKind::kRecorded},
    {"DeviceID", Key::kDeviceId, SectionKind::kAdapter, ValueKind::kRecorded},
    {"DNS-Domain", Key::kOwnDnsDomain, SectionKind::kAdapter, ValueKind::kRecorded},
    {"DNS-Hostname", Key::kOwnDnsHostName, SectionKind::kAdapter, ValueKind::kRecorded},
    {"DNS-Enabled", Key::kDnsEnabled, SectionKind::kAdapter, ValueKind::kRecorded},
};
inline constexpr std::size_t kKnownKeyCount = std::size(kKnownKeys);
static_assert([] {
  for (std::size_t i = 0; i < kKnownKeyCount; ++i) {
    if (kKnownKeys[i].key != static_cast<Key>(i)) return false;
  }
  return true;
}());

constexpr const KnownKey& RowOf(Key key) { return kKnownKeys[static_cast<std::size_t>(key)]; }
constexpr std::string_view NameOf(Key key) { return RowOf(key).name; }
/// The name of a numbered key.
inline std::string NameOf(Key key, std::size_t number) {
  return std::string(NameOf(key)) + std::to_string(number);
}

/// A section by its name, in which letter case does not count.
struct KnownSection {
  SectionKind kind;
  std::string_view name;
};
/// In the order of `SectionKind`.
inline constexpr KnownSection kKnownSections[] = {{SectionKind::kGlobal, "Global"},
                                                  {SectionKind::kAgentSettings, "ConfigSettings"},
                                                  {SectionKind::kNetworking, "Networking"},
                                                  {SectionKind::kAdapter, "TCP/IP"}};
/// A section's name by default. Not for `kUnknown`.
constexpr std::string_view NameOf(SectionKind kind) {
  return kKnownSections[static_cast<std::size_t>(kind) - 1].name;
}

/// A section whose name contains this, in this letter case, is an adapter too.
inline constexpr std::string_view kAdapterMark = "NicEntry";

/// What a section of this name is for.
SectionKind KindOfSection(std::string_view name);

/// Values of "Config": a restore file waits; the machine was imaged and keeps its identity.
inline constexpr std::string_view kRestore = "Restore";
inline constexpr std::string_view kRestoreAfterCreate = "RestoreAfterCreate";

/// What separates the items of a list; continuation lines end in line feeds.
inline constexpr std::string_view kListSeparators = ",; \t\r\n";

}  // namespace base
