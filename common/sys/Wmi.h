// The library's only door to Windows Management Instrumentation. Every operation opens its own
// connection to root\cimv2, does one thing and closes it again; nothing is cached between calls.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "common/err/GeneralError.h"
#include "common/ipc/IpAddress.h"
#include "platform/IWmi.h"

#ifdef GetComputerName
#error "windows.h reached portable code; it belongs in platform/windows only"
#endif

namespace sys {

/// `Value` is the failing step's HRESULT (1 where there is none); `SystemError` is the system's
/// last error.
struct CWmiError : err::CGeneralError {
  using err::CGeneralError::CGeneralError;
};

/// One connection: made empty, connected once, gone at the end of the operation that made it.
class ScopedWmiComInit {
 public:
  /// Releases what was acquired and leaves the apartment, also after a failed or missing `Connect`.
  virtual ~ScopedWmiComInit();

  /// Enters the multithreaded apartment and connects. Returns the last step's result, which is no
  /// failure; throws CWmiError "WMI initialization failed." when a step fails.
  platform::HResult Connect();

  /// Borrowed; null until connected.
  platform::IWmiServices* Services() const { return services_.get(); }

 private:
  std::unique_ptr<platform::IWmiLocator> locator_;
  std::unique_ptr<platform::IWmiServices> services_;
};

/// A persistent IPv4 route of the machine. Ordered by destination, mask, gateway, metric.
struct RouteRecord {
  ipc::IPv4Address destination;
  ipc::IPv4Address mask;
  ipc::IPv4Address gateway;
  std::uint32_t metric = 0;

  auto operator<=>(const RouteRecord&) const = default;
  bool operator==(const RouteRecord&) const = default;
};

/// Adapters are named by the `Index` of their `Win32_NetworkAdapterConfiguration` instance.
///
/// Reads return the HRESULT of their last step. A missing row is not an error: the result is 0 and
/// the outputs keep their values, as they do for a property without a value. Lists are appended to.
/// Everything throws CWmiError when the connection or the query fails.
class Wmi {
 public:
  static platform::HResult GetComputerName(std::string* name);
  static platform::HResult IsDhcpEnabled(std::uint32_t index, bool* enabled);
  /// The first address and mask only, however many the adapter has.
  static platform::HResult GetIpAddressAndMask(std::uint32_t index, ipc::IPv4Address* address,
                                               ipc::IPv4Address* mask);
  static platform::HResult GetSettingId(std::uint32_t index, std::string* settingId);
  static platform::HResult GetDnsDomainAndHostName(std::uint32_t index, std::string* domain,
                                                   std::string* hostName);
  static platform::HResult GetMacAddress(std::uint32_t index, std::string* address);
  static platform::HResult GetNicTypeAndManufacturer(std::uint32_t index, std::string* type,
                                                     std::string* manufacturer);
  static platform::HResult GetNicCaption(std::uint32_t index, std::string* caption);
  static platform::HResult GetPnpDeviceId(std::uint32_t index, std::string* deviceId);
  static platform::HResult GetIpEnabledNetworkDevices(std::vector<std::int32_t>* indexes);
  static platform::HResult GetDnsServersAndSuffixes(std::uint32_t index,
                                                    std::vector<ipc::IPv4Address>* servers,
                                                    std::vector<std::string>* suffixes);
  static platform::HResult GetGateways(std::uint32_t index,
                                       std::vector<ipc::IPv4Address>* gateways);
  static platform::HResult GetStaticRoutes(std::vector<RouteRecord>* routes);

  /// The first instance of a class, over the caller's connection. Throws CWmiError.
  static std::unique_ptr<platform::IWmiObject> GetWbemClassObject(platform::IWmiServices& services,
                                                                  const std::string& className);
  /// One property of an object. Throws CWmiError.
  static platform::Variant GetVariant(platform::IWmiObject& object, const std::string& property);

  // Methods. Each returns the method's own result (0: done, 1: done after a restart); what it means
  // is the caller's decision. They throw CWmiError when the method could not be run. With an empty
  // user both user and password are passed as null.

  static std::int32_t SetComputerName(const std::string& name, const std::string& user,
                                      const std::string& password);
  static std::int32_t JoinDomainOrWorkgroup(const std::string& name, const std::string& password,
                                            const std::string& user, const std::string& accountOu,
                                            std::uint32_t options);
  static std::int32_t UnjoinDomainOrWorkgroup(const std::string& password, const std::string& user,
                                              std::uint32_t options);
  static std::int32_t EnableDHCP(std::uint32_t index);
  static std::int32_t EnableStatic(std::uint32_t index,
                                   const std::vector<ipc::IPv4Address>& addresses,
                                   const std::vector<ipc::IPv4Address>& masks);
  /// An empty list removes the gateways.
  static std::int32_t SetGateways(std::uint32_t index,
                                  const std::vector<ipc::IPv4Address>& gateways);
  /// An empty list hands DNS back to DHCP.
  static std::int32_t SetDNSServerSearchOrder(std::uint32_t index,
                                              const std::vector<ipc::IPv4Address>& servers);
  /// The list is the whole machine's.
  static std::int32_t SetDNSSuffixSearchOrder(const std::vector<std::string>& suffixes);
};

}  // namespace sys
