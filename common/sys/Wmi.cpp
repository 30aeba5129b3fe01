#include "common/sys/Wmi.h"

#include <functional>
#include <stdexcept>
#include <utility>

#include "common/util/LastError.h"
#include "platform/IPlatform.h"

namespace sys {
namespace {

using platform::Failed;
using platform::HResult;
using platform::IWmiObject;
using platform::IWmiRows;
using platform::IWmiServices;
using platform::Variant;

constexpr char kSource[] = "Wmi";
constexpr char kNamespace[] = R"(root\cimv2)";
constexpr std::int32_t kForwardOnlyReturnAtOnce = 0x30;

/// Where a developer may hang a debugger's tracing; it writes nowhere.
template <typename... Arguments>
void Trace(const char* /*format*/, const Arguments&... /*arguments*/) {}

[[noreturn]] void Throw(const err::Site& site, std::int32_t value) {
  throw CWmiError{site, value, util::LastError()};
}

// ---- Queries ------------------------------------------------------------------------------------

/// The text of a query, to be followed by the adapter's index where it ends in "Index=", and the
/// failure it raises.
struct Query {
  const char* operation;
  const char* text;
  err::Site failure;
};

constexpr Query kComputerName{"GetComputerName",
                              "select Name from Win32_ComputerSystem",
                              {kSource, "Wmi query failed to get computer name", 182}};
constexpr Query kDhcpEnabled{
    "IsDhcpEnabled",
    "select DHCPEnabled from Win32_NetworkAdapterConfiguration where Index=",
    {kSource, "Wmi DHCP enabled query failed", 265}};
constexpr Query kIpAddressAndMask{
    "GetIpAddressAndMask",
    "select IPAddress, IPSubnet from Win32_NetworkAdapterConfiguration where Index=",
    {kSource, "Wmi query failed to get ip address and mask", 351}};
constexpr Query kSettingId{"GetSettingId",
                           "select SettingID from Win32_NetworkAdapterConfiguration where Index=",
                           {kSource, "Wmi query failed to get Setting ID", 421}};
constexpr Query kDnsDomainAndHostName{
    "GetDnsDomainAndHostName",
    "select DNSDomain, DNSHostName from Win32_NetworkAdapterConfiguration where Index=",
    {kSource, "Wmi query failed to get DNS domain and computer host name", 497}};
constexpr Query kMacAddress{"GetMacAddress",
                            "select MACAddress from Win32_NetworkAdapterConfiguration where Index=",
                            {kSource, "Wmi query failed to get MAC address", 566}};
constexpr Query kNicTypeAndManufacturer{
    "GetNicTypeAndManufacturer",
    "select AdapterType, Manufacturer from Win32_NetworkAdapter where Index=",
    {kSource, "Wmi query failed to get NIC type and manufacturer", 643}};
constexpr Query kNicCaption{"GetNicCaption",
                            "select Caption from Win32_NetworkAdapter where Index=",
                            {kSource, "Wmi query failed to get NIC caption", 711}};
constexpr Query kPnpDeviceId{"GetPnpDeviceId",
                             "select PNPDeviceID from Win32_NetworkAdapter where Index=",
                             {kSource, "Wmi query failed to get PNP device id", 779}};
constexpr Query kIpEnabledDevices{
    "GetIpEnabledNetworkDevices",
    "select Index, SettingID from Win32_NetworkAdapterConfiguration where IPEnabled=true",
    {kSource, "Wmi query failed to IP enabled devices", 858}};
constexpr Query kDnsServersAndSuffixes{
    "GetDnsServersAndSuffixes",
    "select DNSServerSearchOrder, DNSDomainSuffixSearchOrder from "
    "Win32_NetworkAdapterConfiguration where Index=",
    {kSource, "Wmi query failed to get DNS servers and suffixes", 957}};
constexpr Query kGateways{
    "GetGateways",
    "select DefaultIPGateway from Win32_NetworkAdapterConfiguration where Index=",
    {kSource, "Wmi query failed to get gateways", 1041}};
constexpr Query kStaticRoutes{
    "GetStaticRoutes",
    "select Destination, Mask, NextHop, Metric1 from Win32_IP4PersistedRouteTable",
    {kSource, "Wmi query failed to get static routes", 1136}};

std::unique_ptr<IWmiRows> Execute(IWmiServices& services, const Query& query,
                                  const std::string& text) {
  std::unique_ptr<IWmiRows> rows;
  const HResult result = services.ExecQuery(text, kForwardOnlyReturnAtOnce, &rows);
  Trace("Finished Query Wmi::%s:%d", query.operation, query.failure.line);
  if (Failed(result) || rows == nullptr) Throw(query.failure, result);
  return rows;
}

/// The next row; null at the end.
std::unique_ptr<IWmiObject> NextRow(IWmiRows& rows, const Query& query) {
  std::unique_ptr<IWmiObject> row;
  std::uint32_t returned = 0;
  const HResult result = rows.Next(platform::kForever, &row, &returned);
  Trace("Wmi::%s%d hr=%d", query.operation, query.failure.line, result);
  if (Failed(result)) Throw(query.failure, result);
  return row;
}

using RowReader = std::function<HResult(IWmiObject& row)>;

/// What every query does: connect, run the text, hand the first row, or each row, to `read`.
HResult ReadRows(const Query& query, const std::string& text, bool firstRowOnly,
                 const RowReader& read) {
  Trace("Entering Wmi::%s:%d", query.operation, query.failure.line);
  ScopedWmiComInit connection;
  connection.Connect();
  if (connection.Services() == nullptr) Throw(query.failure, platform::kOk);
  const std::unique_ptr<IWmiRows> rows = Execute(*connection.Services(), query, text);
  HResult result = platform::kOk;
  while (const std::unique_ptr<IWmiObject> row = NextRow(*rows, query)) {
    result = read(*row);
    if (firstRowOnly) break;
  }
  return result;
}

HResult ReadAdapter(const Query& query, std::uint32_t index, const RowReader& read) {
  return ReadRows(query, query.text + std::to_string(index), /*firstRowOnly=*/true, read);
}

// ---- Properties ---------------------------------------------------------------------------------

HResult ReadText(IWmiObject& row, const char* property, std::string* text) {
  Variant value;
  const HResult result = row.Get(property, &value);
  if (const auto* stored = std::get_if<std::string>(&value)) *text = *stored;
  return result;
}

HResult ReadTexts(IWmiObject& row, const char* property, std::string* first, const char* property2,
                  std::string* second) {
  ReadText(row, property, first);
  return ReadText(row, property2, second);
}

HResult ReadNumber(IWmiObject& row, const char* property, std::int32_t* number) {
  Variant value;
  const HResult result = row.Get(property, &value);
  if (const auto* stored = std::get_if<std::int32_t>(&value)) *number = *stored;
  return result;
}

/// The texts of an array property; none when the property has no value.
HResult ReadList(IWmiObject& row, const char* property, std::vector<std::string>* texts) {
  Variant value;
  const HResult result = row.Get(property, &value);
  if (auto* array = std::get_if<platform::TextArray>(&value)) {
    if (array->dimensions == 0) {
      throw std::invalid_argument("Invalid argument passed to attach()");
    }
    if (array->dimensions != 1) {
      throw std::invalid_argument("Only one-dimensional arrays are supported");
    }
    *texts = std::move(array->items);
  }
  return result;
}

HResult AppendAddresses(IWmiObject& row, const char* property,
                        std::vector<ipc::IPv4Address>* addresses) {
  std::vector<std::string> texts;
  const HResult result = ReadList(row, property, &texts);
  for (const std::string& text : texts) addresses->emplace_back(text);
  return result;
}

HResult ReadFirstAddress(IWmiObject& row, const char* property, ipc::IPv4Address* address) {
  std::vector<std::string> texts;
  const HResult result = ReadList(row, property, &texts);
  if (!texts.empty()) *address = ipc::IPv4Address(texts.front());
  return result;
}

// ---- Methods ------------------------------------------------------------------------------------

constexpr char kAdapterClass[] = "Win32_NetWorkAdapterConfiguration";
constexpr char kComputerClass[] = "Win32_ComputerSystem";

struct Method {
  const char* className;
  const char* name;
  err::Site failure;
};

constexpr Method kRename{
    kComputerClass, "Rename", {kSource, "Wmi method failed to set computer name", 1241}};
constexpr Method kJoin{kComputerClass,
                       "JoinDomainOrWorkgroup",
                       {kSource, "Wmi method failed to join the domain or workgroup", 1382}};
constexpr Method kUnjoin{kComputerClass,
                         "UnjoinDomainOrWorkgroup",
                         {kSource, "Wmi method failed to unjoin the domain or workgroup", 1510}};
constexpr Method kEnableDhcp{
    kAdapterClass, "EnableDHCP", {kSource, "Wmi method failed to enable DHCP", 1590}};
constexpr Method kEnableStatic{
    kAdapterClass, "EnableStatic", {kSource, "Wmi method failed to set static ip addresses", 1701}};
constexpr Method kSetGateways{
    kAdapterClass, "SetGateways", {kSource, "Wmi method failed to set gateways", 1803}};
constexpr Method kSetDnsServers{kAdapterClass,
                                "SetDNSServerSearchOrder",
                                {kSource, "Wmi method failed to configure DNS servers", 1902}};
constexpr Method kSetDnsSuffixes{kAdapterClass,
                                 "SetDNSSuffixSearchOrder",
                                 {kSource, "Wmi method failed to configure DNS suffixes", 1998}};

/// In-parameters in the order in which they are put.
using Parameters = std::vector<std::pair<const char*, Variant>>;

/// Raises the method's failure for a failed step, or for one that answered no object.
void Require(const Method& method, HResult result, bool present = true) {
  Trace("Wmi::%s%d hr = %x", method.name, method.failure.line, result);
  if (Failed(result) || !present) Throw(method.failure, result);
}

std::unique_ptr<IWmiObject> SpawnParameters(IWmiObject& definition, const Method& method,
                                            const Parameters& parameters) {
  std::unique_ptr<IWmiObject> instance;
  const HResult spawned = definition.SpawnInstance(&instance);
  Require(method, spawned, instance != nullptr);
  for (const auto& [name, value] : parameters) Require(method, instance->Put(name, value));
  return instance;
}

/// Runs `method` on `path` over an open connection. Without `parameters` the method takes none.
std::int32_t Run(IWmiServices& services, const Method& method, const std::string& path,
                 const Parameters* parameters) {
  std::unique_ptr<IWmiObject> classObject;
  const HResult fetched = services.FetchClass(method.className, &classObject);
  Require(method, fetched, classObject != nullptr);

  std::unique_ptr<IWmiObject> definition;
  const HResult found = classObject->GetMethod(method.name, &definition);
  Require(method, found, parameters == nullptr || definition != nullptr);

  std::unique_ptr<IWmiObject> in;
  if (parameters != nullptr) in = SpawnParameters(*definition, method, *parameters);

  std::unique_ptr<IWmiObject> out;
  const HResult executed = services.ExecMethod(path, method.name, in.get(), &out);
  Require(method, executed, out != nullptr);

  Variant returned;
  Require(method, out->Get("ReturnValue", &returned));
  const auto* value = std::get_if<std::int32_t>(&returned);
  return value != nullptr ? *value : platform::kOk;
}

std::int32_t CallAdapter(const Method& method, std::uint32_t index, const Parameters* parameters) {
  ScopedWmiComInit connection;
  connection.Connect();
  Require(method, platform::kOk, connection.Services() != nullptr);
  return Run(*connection.Services(), method,
             "Win32_NetworkAdapterConfiguration.Index=" + std::to_string(index), parameters);
}

/// Calls a method of the computer itself, which is named as WMI reports it in this connection.
std::int32_t CallComputer(const Method& method, const Parameters& parameters) {
  ScopedWmiComInit connection;
  connection.Connect();
  Require(method, platform::kOk, connection.Services() != nullptr);
  IWmiServices& services = *connection.Services();

  std::unique_ptr<IWmiRows> rows;
  const HResult queried = services.ExecQuery(kComputerName.text, kForwardOnlyReturnAtOnce, &rows);
  Require(method, queried, rows != nullptr);
  std::unique_ptr<IWmiObject> row;
  std::uint32_t returned = 0;
  const HResult fetched = rows->Next(platform::kForever, &row, &returned);
  Require(method, fetched, row != nullptr);
  std::string name;
  Require(method, ReadText(*row, "Name", &name));

  return Run(services, method, "Win32_ComputerSystem.Name=\"" + name + "\"", &parameters);
}

Variant TextOrNull(const std::string& text) {
  if (text.empty()) return platform::Null{};
  return text;
}

/// The password goes with the user: without one both are null, whatever the password is.
Variant PasswordFor(const std::string& user, const std::string& password) {
  if (user.empty()) return platform::Null{};
  return password;
}

Variant NumberBits(std::uint32_t number) { return static_cast<std::int32_t>(number); }

Variant Texts(const std::vector<ipc::IPv4Address>& addresses) {
  platform::TextArray array;
  array.items.reserve(addresses.size());
  for (const ipc::IPv4Address& address : addresses) array.items.push_back(address.ToString());
  return array;
}

}  // namespace

// ---- ScopedWmiComInit ---------------------------------------------------------------------------

namespace {

constexpr err::Site kInitFailed{kSource, "WMI initialization failed.", 96};

void RequireStep(HResult result, bool present = true) {
  if (Failed(result) || !present) Throw(kInitFailed, result);
}

}  // namespace

ScopedWmiComInit::~ScopedWmiComInit() {
  locator_.reset();
  services_.reset();
  // Deliberate: also when entering failed, so that every connection ends with exactly one leave.
  platform::Current().Wmi().LeaveApartment();
}

HResult ScopedWmiComInit::Connect() {
  platform::IWmi& wmi = platform::Current().Wmi();
  RequireStep(wmi.EnterApartment());
  // Deliberate: a process that has set its security already is refused as well.
  RequireStep(wmi.SecureProcess());
  const HResult located = wmi.MakeLocator(&locator_);
  RequireStep(located, locator_ != nullptr);
  const HResult connected = locator_->ConnectServer(kNamespace, &services_);
  RequireStep(connected);
  if (services_ == nullptr) return connected;
  const HResult secured = services_->SecureProxy();
  RequireStep(secured);
  return secured;
}

// ---- Wmi: reads ---------------------------------------------------------------------------------

HResult Wmi::GetComputerName(std::string* name) {
  return ReadRows(kComputerName, kComputerName.text, /*firstRowOnly=*/true, [=](IWmiObject& row) {
    name->clear();  // an absent value is an empty name
    return ReadText(row, "Name", name);
  });
}

HResult Wmi::IsDhcpEnabled(std::uint32_t index, bool* enabled) {
  return ReadAdapter(kDhcpEnabled, index, [=](IWmiObject& row) {
    Variant value;
    const HResult result = row.Get("DHCPEnabled", &value);
    *enabled = value == Variant(platform::kVariantTrue);
    return result;
  });
}

HResult Wmi::GetIpAddressAndMask(std::uint32_t index, ipc::IPv4Address* address,
                                 ipc::IPv4Address* mask) {
  return ReadAdapter(kIpAddressAndMask, index, [=](IWmiObject& row) {
    ReadFirstAddress(row, "IPAddress", address);
    return ReadFirstAddress(row, "IPSubnet", mask);
  });
}

HResult Wmi::GetSettingId(std::uint32_t index, std::string* settingId) {
  return ReadAdapter(kSettingId, index,
                     [=](IWmiObject& row) { return ReadText(row, "SettingID", settingId); });
}

HResult Wmi::GetDnsDomainAndHostName(std::uint32_t index, std::string* domain,
                                     std::string* hostName) {
  return ReadAdapter(kDnsDomainAndHostName, index, [=](IWmiObject& row) {
    return ReadTexts(row, "DNSDomain", domain, "DNSHostName", hostName);
  });
}

HResult Wmi::GetMacAddress(std::uint32_t index, std::string* address) {
  return ReadAdapter(kMacAddress, index,
                     [=](IWmiObject& row) { return ReadText(row, "MACAddress", address); });
}

HResult Wmi::GetNicTypeAndManufacturer(std::uint32_t index, std::string* type,
                                       std::string* manufacturer) {
  return ReadAdapter(kNicTypeAndManufacturer, index, [=](IWmiObject& row) {
    return ReadTexts(row, "AdapterType", type, "Manufacturer", manufacturer);
  });
}

HResult Wmi::GetNicCaption(std::uint32_t index, std::string* caption) {
  return ReadAdapter(kNicCaption, index,
                     [=](IWmiObject& row) { return ReadText(row, "Caption", caption); });
}

HResult Wmi::GetPnpDeviceId(std::uint32_t index, std::string* deviceId) {
  return ReadAdapter(kPnpDeviceId, index,
                     [=](IWmiObject& row) { return ReadText(row, "PNPDeviceID", deviceId); });
}

HResult Wmi::GetIpEnabledNetworkDevices(std::vector<std::int32_t>* indexes) {
  return ReadRows(kIpEnabledDevices, kIpEnabledDevices.text, /*firstRowOnly=*/false,
                  [=](IWmiObject& row) {
                    std::int32_t index = 0;
                    const HResult result = ReadNumber(row, "Index", &index);
                    indexes->push_back(index);
                    return result;
                  });
}

HResult Wmi::GetDnsServersAndSuffixes(std::uint32_t index, std::vector<ipc::IPv4Address>* servers,
                                      std::vector<std::string>* suffixes) {
  return ReadAdapter(kDnsServersAndSuffixes, index, [=](IWmiObject& row) {
    AppendAddresses(row, "DNSServerSearchOrder", servers);
    std::vector<std::string> texts;
    const HResult result = ReadList(row, "DNSDomainSuffixSearchOrder", &texts);
    suffixes->insert(suffixes->end(), texts.begin(), texts.end());
    return result;
  });
}

HResult Wmi::GetGateways(std::uint32_t index, std::vector<ipc::IPv4Address>* gateways) {
  return ReadAdapter(kGateways, index, [=](IWmiObject& row) {
    return AppendAddresses(row, "DefaultIPGateway", gateways);
  });
}

HResult Wmi::GetStaticRoutes(std::vector<RouteRecord>* routes) {
  return ReadRows(kStaticRoutes, kStaticRoutes.text, /*firstRowOnly=*/false, [=](IWmiObject& row) {
    std::string destination;
    std::string mask;
    std::string nextHop;
    RouteRecord route;
    ReadText(row, "Destination", &destination);
    ReadText(row, "Mask", &mask);
    ReadText(row, "NextHop", &nextHop);
    std::int32_t metric = 0;
    const HResult result = ReadNumber(row, "Metric1", &metric);
    route.metric = static_cast<std::uint32_t>(metric);
    route.destination = ipc::IPv4Address(destination);
    route.mask = ipc::IPv4Address(mask);
    route.gateway = ipc::IPv4Address(nextHop);
    routes->push_back(route);
    return result;
  });
}

// ---- Wmi: objects over the caller's connection --------------------------------------------------

namespace {

constexpr err::Site kEnumFailed{
    kSource, "Wmi::GetWbemClassObject() - IWbemServices->CreateInstanceEnum() failed.", 122};
constexpr err::Site kNoEnumerator{kSource, "Wmi::GetWbemClassObject() - pOsObject == NULL", 129};
constexpr err::Site kNotOneReturned{kSource, "Wmi::GetWbemClassObject() - uReturned != 1", 137};
constexpr err::Site kNoInstance{kSource, "Wmi::GetWbemClassObject() - pOs == NULL", 144};
constexpr err::Site kGetFailed{kSource, "Wmi::GetVariant() - IWbemClassObject->Get() failed.", 158};
constexpr std::int32_t kNoResultCode = 1;

}  // namespace

std::unique_ptr<IWmiObject> Wmi::GetWbemClassObject(IWmiServices& services,
                                                    const std::string& className) {
  std::unique_ptr<IWmiRows> instances;
  const HResult result = services.CreateInstanceEnum(className, &instances);
  if (Failed(result)) Throw(kEnumFailed, result);
  if (instances == nullptr) Throw(kNoEnumerator, kNoResultCode);
  std::unique_ptr<IWmiObject> instance;
  std::uint32_t returned = 0;
  instances->Next(/*timeoutMs=*/0, &instance, &returned);
  if (returned != 1) Throw(kNotOneReturned, kNoResultCode);
  if (instance == nullptr) Throw(kNoInstance, kNoResultCode);
  return instance;
}

Variant Wmi::GetVariant(IWmiObject& object, const std::string& property) {
  Variant value;
  const HResult result = object.Get(property, &value);
  if (Failed(result)) Throw(kGetFailed, result);
  return value;
}

// ---- Wmi: methods -------------------------------------------------------------------------------

std::int32_t Wmi::SetComputerName(const std::string& name, const std::string& user,
                                  const std::string& password) {
  return CallComputer(
      kRename,
      {{"Name", name}, {"UserName", TextOrNull(user)}, {"Password", PasswordFor(user, password)}});
}

std::int32_t Wmi::JoinDomainOrWorkgroup(const std::string& name, const std::string& password,
                                        const std::string& user, const std::string& accountOu,
                                        std::uint32_t options) {
  return CallComputer(kJoin, {{"Name", name},
                              {"UserName", TextOrNull(user)},
                              {"Password", PasswordFor(user, password)},
                              {"AccountOU", TextOrNull(accountOu)},
                              {"FJoinOptions", NumberBits(options)}});
}

std::int32_t Wmi::UnjoinDomainOrWorkgroup(const std::string& password, const std::string& user,
                                          std::uint32_t options) {
  return CallComputer(kUnjoin, {{"UserName", TextOrNull(user)},
                                {"Password", PasswordFor(user, password)},
                                {"FUnjoinOptions", NumberBits(options)}});
}

std::int32_t Wmi::EnableDHCP(std::uint32_t index) {
  return CallAdapter(kEnableDhcp, index, /*parameters=*/nullptr);
}

std::int32_t Wmi::EnableStatic(std::uint32_t index, const std::vector<ipc::IPv4Address>& addresses,
                               const std::vector<ipc::IPv4Address>& masks) {
  const Parameters parameters{{"IPAddress", Texts(addresses)}, {"SubNetMask", Texts(masks)}};
  return CallAdapter(kEnableStatic, index, &parameters);
}

std::int32_t Wmi::SetGateways(std::uint32_t index, const std::vector<ipc::IPv4Address>& gateways) {
  const Parameters parameters{
      {"DefaultIPGateway", gateways.empty() ? Variant(platform::Null{}) : Texts(gateways)}};
  return CallAdapter(kSetGateways, index, &parameters);
}

std::int32_t Wmi::SetDNSServerSearchOrder(std::uint32_t index,
                                          const std::vector<ipc::IPv4Address>& servers) {
  Parameters parameters;
  // Without servers nothing is put at all: the parameter keeps the null it was spawned with.
  if (!servers.empty()) parameters.emplace_back("DNSServerSearchOrder", Texts(servers));
  return CallAdapter(kSetDnsServers, index, &parameters);
}

std::int32_t Wmi::SetDNSSuffixSearchOrder(const std::vector<std::string>& suffixes) {
  ScopedWmiComInit connection;
  connection.Connect();
  Require(kSetDnsSuffixes, platform::kOk, connection.Services() != nullptr);
  const Parameters parameters{
      {"DNSDomainSuffixSearchOrder", Variant(platform::TextArray{suffixes, 1})}};
  return Run(*connection.Services(), kSetDnsSuffixes, kAdapterClass, &parameters);
}

}  // namespace sys
