#include "common/sys/Wmi.h"

#include <array>
#include <functional>
#include <stdexcept>
#include <utility>

#include "base/Pieces.h"
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

/// Throws `failure` for a failed step, or for one that returned no object.
void Require(const err::Site& failure, HResult result, bool present = true) {
  Trace("Wmi:%d hr=%x", failure.line, result);
  if (Failed(result) || !present) Throw(failure, result);
}

IWmiServices& Open(ScopedWmiComInit& connection, const err::Site& failure) {
  Trace("Entering Wmi:%d", failure.line);
  connection.Connect();
  Require(failure, platform::kOk, connection.Services() != nullptr);
  return *connection.Services();
}

// ---- Queries ------------------------------------------------------------------------------------

constexpr char kSettings[] = "Win32_NetworkAdapterConfiguration";
constexpr char kHardware[] = "Win32_NetworkAdapter";
constexpr char kSelectComputerName[] = "select Name from Win32_ComputerSystem";

std::unique_ptr<IWmiRows> RunQuery(IWmiServices& services, const std::string& text,
                                   const err::Site& failure) {
  std::unique_ptr<IWmiRows> rows;
  const HResult result = services.ExecQuery(text, kForwardOnlyReturnAtOnce, &rows);
  Require(failure, result, rows != nullptr);
  return rows;
}

/// The next row; null at the end, unless a row is required.
std::unique_ptr<IWmiObject> NextRow(IWmiRows& rows, const err::Site& failure,
                                    bool required = false) {
  std::unique_ptr<IWmiObject> row;
  std::uint32_t returned = 0;
  const HResult result = rows.Next(platform::kForever, &row, &returned);
  Require(failure, result, row != nullptr || !required);
  return row;
}

using RowReader = std::function<HResult(IWmiObject& row)>;

/// Hands the first row of a query, or each row, to `read`.
HResult ReadRows(const std::string& text, bool firstRowOnly, const err::Site& failure,
                 const RowReader& read) {
  ScopedWmiComInit connection;
  const auto rows = RunQuery(Open(connection, failure), text, failure);
  HResult result = platform::kOk;
  while (const auto row = NextRow(*rows, failure)) {
    result = read(*row);
    if (firstRowOnly) break;
  }
  return result;
}

/// Stores the value of a property in a target of its kind; the target of a property without a value
/// keeps its own.
struct Store {
  const Variant& value;

  void operator()(bool* flag) const { *flag = value == Variant(platform::kVariantTrue); }
  /// Of an array only the first address.
  void operator()(ipc::IPv4Address* address) const {
    const std::vector<std::string> texts = List();
    if (!texts.empty()) *address = ipc::IPv4Address(texts.front());
  }
  template <typename Item>
  void operator()(std::vector<Item>* items) const {
    for (const std::string& text : List()) items->emplace_back(text);
  }
  template <typename Plain>
  void operator()(Plain* target) const {
    if (const auto* stored = std::get_if<Plain>(&value)) *target = *stored;
  }

 private:
  std::vector<std::string> List() const {
    const auto* array = std::get_if<platform::TextArray>(&value);
    if (array == nullptr) return {};
    if (array->dimensions == 0) throw std::invalid_argument("Invalid argument passed to attach()");
    if (array->dimensions != 1) {
      throw std::invalid_argument("Only one-dimensional arrays are supported");
    }
    return array->items;
  }
};

struct Property {
  const char* name;
  std::variant<bool*, std::int32_t*, std::string*, ipc::IPv4Address*, std::vector<std::string>*,
               std::vector<ipc::IPv4Address>*>
      target;
};
using Properties = std::vector<Property>;

HResult Read(IWmiObject& row, const Properties& properties) {
  HResult result = platform::kOk;
  for (const auto& [name, target] : properties) {
    Variant value;
    result = row.Get(name, &value);
    std::visit(Store{value}, target);
  }
  return result;
}

/// Reads properties of the instance of `className` that has the index.
HResult ReadAdapter(const char* className, std::uint32_t index, const Properties& properties,
                    const err::Site& failure) {
  std::vector<std::string> names;
  for (const Property& property : properties) names.emplace_back(property.name);
  const std::string text = "select " + base::Join(names, ", ") + " from " + className +
                           " where Index=" + std::to_string(index);
  return ReadRows(text, /*firstRowOnly=*/true, failure,
                  [&](IWmiObject& row) { return Read(row, properties); });
}

// ---- Methods ------------------------------------------------------------------------------------

constexpr char kAdapterClass[] = "Win32_NetWorkAdapterConfiguration";
constexpr char kComputerClass[] = "Win32_ComputerSystem";

struct Method {
  const char* name;
  err::Site failure;
};

/// In-parameters in the order in which they are put.
using Parameters = std::vector<std::pair<const char*, Variant>>;

std::unique_ptr<IWmiObject> SpawnParameters(IWmiObject& definition, const err::Site& failure,
                                            const Parameters& parameters) {
  std::unique_ptr<IWmiObject> instance;
  const HResult spawned = definition.SpawnInstance(&instance);
  Require(failure, spawned, instance != nullptr);
  for (const auto& [name, value] : parameters) Require(failure, instance->Put(name, value));
  return instance;
}

/// Runs a method of `className` on `path`. Without `parameters` the method takes none.
std::int32_t Run(IWmiServices& services, const Method& method, const char* className,
                 const std::string& path, const Parameters* parameters) {
  const err::Site& failure = method.failure;
  std::unique_ptr<IWmiObject> classObject;
  const HResult fetched = services.FetchClass(className, &classObject);
  Require(failure, fetched, classObject != nullptr);

  std::unique_ptr<IWmiObject> definition;
  const HResult found = classObject->GetMethod(method.name, &definition);
  Require(failure, found, parameters == nullptr || definition != nullptr);

  std::unique_ptr<IWmiObject> in;
  if (parameters != nullptr) in = SpawnParameters(*definition, failure, *parameters);

  std::unique_ptr<IWmiObject> out;
  const HResult executed = services.ExecMethod(path, method.name, in.get(), &out);
  Require(failure, executed, out != nullptr);

  std::int32_t returned = platform::kOk;
  Require(failure, Read(*out, {{"ReturnValue", &returned}}));
  return returned;
}

/// Calls a method of an adapter or, on `kAdapterClass`, of all.
std::int32_t CallAdapter(const Method& method, const std::string& path,
                         const Parameters* parameters) {
  ScopedWmiComInit connection;
  return Run(Open(connection, method.failure), method, kAdapterClass, path, parameters);
}

std::string PathOf(std::uint32_t index) {
  return "Win32_NetworkAdapterConfiguration.Index=" + std::to_string(index);
}

/// Calls a method of the computer itself, which is named as WMI reports it in this connection.
std::int32_t CallComputer(const Method& method, const Parameters& parameters) {
  ScopedWmiComInit connection;
  IWmiServices& services = Open(connection, method.failure);
  const auto rows = RunQuery(services, kSelectComputerName, method.failure);
  const auto row = NextRow(*rows, method.failure, /*required=*/true);
  std::string name;
  Require(method.failure, Read(*row, {{"Name", &name}}));
  return Run(services, method, kComputerClass, "Win32_ComputerSystem.Name=\"" + name + "\"",
             &parameters);
}

Variant NullIf(bool absent, const std::string& text) {
  if (absent) return platform::Null{};
  return text;
}

Variant NumberBits(std::uint32_t number) { return static_cast<std::int32_t>(number); }

Variant List(const std::vector<ipc::IPv4Address>& addresses) {
  return platform::TextArray{ipc::Texts(addresses), 1};
}

constexpr err::Site kInitFailed{kSource, "WMI initialization failed.", 96};
constexpr err::Site kEnumFailed{
    kSource, "Wmi::GetWbemClassObject() - IWbemServices->CreateInstanceEnum() failed.", 122};
constexpr err::Site kNoEnumerator{kSource, "Wmi::GetWbemClassObject() - pOsObject == NULL", 129};
constexpr err::Site kNotOneReturned{kSource, "Wmi::GetWbemClassObject() - uReturned != 1", 137};
constexpr err::Site kNoInstance{kSource, "Wmi::GetWbemClassObject() - pOs == NULL", 144};
constexpr err::Site kGetFailed{kSource, "Wmi::GetVariant() - IWbemClassObject->Get() failed.", 158};
constexpr std::int32_t kNoResultCode = 1;

}  // namespace

// ---- ScopedWmiComInit ---------------------------------------------------------------------------

ScopedWmiComInit::~ScopedWmiComInit() {
  locator_.reset();
  services_.reset();
  // Deliberate: also when entering failed, so that every connection ends with exactly one leave.
  platform::Current().Wmi().LeaveApartment();
}

HResult ScopedWmiComInit::Connect() {
  platform::IWmi& wmi = platform::Current().Wmi();
  Require(kInitFailed, wmi.EnterApartment());
  // Deliberate: a process that has set its security already is refused as well.
  Require(kInitFailed, wmi.SecureProcess());
  const HResult located = wmi.MakeLocator(&locator_);
  Require(kInitFailed, located, locator_ != nullptr);
  const HResult connected = locator_->ConnectServer(kNamespace, &services_);
  Require(kInitFailed, connected);
  if (services_ == nullptr) return connected;
  const HResult secured = services_->SecureProxy();
  Require(kInitFailed, secured);
  return secured;
}

// ---- Wmi: reads ---------------------------------------------------------------------------------

HResult Wmi::GetComputerName(std::string* name) {
  constexpr err::Site kFailed{kSource, "Wmi query failed to get computer name", 182};
  return ReadRows(kSelectComputerName, /*firstRowOnly=*/true, kFailed, [=](IWmiObject& row) {
    name->clear();  // an absent value is an empty name
    return Read(row, {{"Name", name}});
  });
}

HResult Wmi::IsDhcpEnabled(std::uint32_t index, bool* enabled) {
  constexpr err::Site kFailed{kSource, "Wmi DHCP enabled query failed", 265};
  return ReadAdapter(kSettings, index, {{"DHCPEnabled", enabled}}, kFailed);
}

HResult Wmi::GetIpAddressAndMask(std::uint32_t index, ipc::IPv4Address* address,
                                 ipc::IPv4Address* mask) {
  constexpr err::Site kFailed{kSource, "Wmi query failed to get ip address and mask", 351};
  return ReadAdapter(kSettings, index, {{"IPAddress", address}, {"IPSubnet", mask}}, kFailed);
}

HResult Wmi::GetSettingId(std::uint32_t index, std::string* settingId) {
  constexpr err::Site kFailed{kSource, "Wmi query failed to get Setting ID", 421};
  return ReadAdapter(kSettings, index, {{"SettingID", settingId}}, kFailed);
}

HResult Wmi::GetDnsDomainAndHostName(std::uint32_t index, std::string* domain,
                                     std::string* hostName) {
  constexpr err::Site kFailed{kSource, "Wmi query failed to get DNS domain and computer host name",
                              497};
  return ReadAdapter(kSettings, index, {{"DNSDomain", domain}, {"DNSHostName", hostName}}, kFailed);
}

HResult Wmi::GetMacAddress(std::uint32_t index, std::string* address) {
  constexpr err::Site kFailed{kSource, "Wmi query failed to get MAC address", 566};
  return ReadAdapter(kSettings, index, {{"MACAddress", address}}, kFailed);
}

HResult Wmi::GetNicTypeAndManufacturer(std::uint32_t index, std::string* type,
                                       std::string* manufacturer) {
  constexpr err::Site kFailed{kSource, "Wmi query failed to get NIC type and manufacturer", 643};
  return ReadAdapter(kHardware, index, {{"AdapterType", type}, {"Manufacturer", manufacturer}},
                     kFailed);
}

HResult Wmi::GetNicCaption(std::uint32_t index, std::string* caption) {
  constexpr err::Site kFailed{kSource, "Wmi query failed to get NIC caption", 711};
  return ReadAdapter(kHardware, index, {{"Caption", caption}}, kFailed);
}

HResult Wmi::GetPnpDeviceId(std::uint32_t index, std::string* deviceId) {
  constexpr err::Site kFailed{kSource, "Wmi query failed to get PNP device id", 779};
  return ReadAdapter(kHardware, index, {{"PNPDeviceID", deviceId}}, kFailed);
}

HResult Wmi::GetIpEnabledNetworkDevices(std::vector<std::int32_t>* indexes) {
  constexpr err::Site kFailed{kSource, "Wmi query failed to IP enabled devices", 858};
  return ReadRows(
      "select Index, SettingID from Win32_NetworkAdapterConfiguration where IPEnabled=true",
      /*firstRowOnly=*/false, kFailed, [=](IWmiObject& row) {
        return Read(row, {{"Index", &indexes->emplace_back()}});
      });
}

HResult Wmi::GetDnsServersAndSuffixes(std::uint32_t index, std::vector<ipc::IPv4Address>* servers,
                                      std::vector<std::string>* suffixes) {
  constexpr err::Site kFailed{kSource, "Wmi query failed to get DNS servers and suffixes", 957};
  return ReadAdapter(kSettings, index,
                     {{"DNSServerSearchOrder", servers}, {"DNSDomainSuffixSearchOrder", suffixes}},
                     kFailed);
}

HResult Wmi::GetGateways(std::uint32_t index, std::vector<ipc::IPv4Address>* gateways) {
  constexpr err::Site kFailed{kSource, "Wmi query failed to get gateways", 1041};
  return ReadAdapter(kSettings, index, {{"DefaultIPGateway", gateways}}, kFailed);
}

HResult Wmi::GetStaticRoutes(std::vector<RouteRecord>* routes) {
  constexpr err::Site kFailed{kSource, "Wmi query failed to get static routes", 1136};
  return ReadRows(
      "select Destination, Mask, NextHop, Metric1 from Win32_IP4PersistedRouteTable",
      /*firstRowOnly=*/false, kFailed, [=](IWmiObject& row) {
        std::array<std::string, 3> texts;
        std::int32_t metric = 0;
        const HResult result = Read(row, {{"Destination", &texts[0]},
                                          {"Mask", &texts[1]},
                                          {"NextHop", &texts[2]},
                                          {"Metric1", &metric}});
        routes->push_back({ipc::IPv4Address(texts[0]), ipc::IPv4Address(texts[1]),
                           ipc::IPv4Address(texts[2]), static_cast<std::uint32_t>(metric)});
        return result;
      });
}

// ---- Wmi: objects over the caller's connection --------------------------------------------------

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
  constexpr Method kRename{"Rename", {kSource, "Wmi method failed to set computer name", 1241}};
  return CallComputer(kRename, {{"Name", name},
                                {"UserName", NullIf(user.empty(), user)},
                                {"Password", NullIf(user.empty(), password)}});
}

std::int32_t Wmi::JoinDomainOrWorkgroup(const std::string& name, const std::string& password,
                                        const std::string& user, const std::string& accountOu,
                                        std::uint32_t options) {
  constexpr Method kJoin{"JoinDomainOrWorkgroup",
                         {kSource, "Wmi method failed to join the domain or workgroup", 1382}};
  return CallComputer(kJoin, {{"Name", name},
                              {"UserName", NullIf(user.empty(), user)},
                              {"Password", NullIf(user.empty(), password)},
                              {"AccountOU", NullIf(accountOu.empty(), accountOu)},
                              {"FJoinOptions", NumberBits(options)}});
}

std::int32_t Wmi::UnjoinDomainOrWorkgroup(const std::string& password, const std::string& user,
                                          std::uint32_t options) {
  constexpr Method kUnjoin{"UnjoinDomainOrWorkgroup",
                           {kSource, "Wmi method failed to unjoin the domain or workgroup", 1510}};
  return CallComputer(kUnjoin, {{"UserName", NullIf(user.empty(), user)},
                                {"Password", NullIf(user.empty(), password)},
                                {"FUnjoinOptions", NumberBits(options)}});
}

std::int32_t Wmi::EnableDHCP(std::uint32_t index) {
  constexpr Method kMethod{"EnableDHCP", {kSource, "Wmi method failed to enable DHCP", 1590}};
  return CallAdapter(kMethod, PathOf(index), /*parameters=*/nullptr);
}

std::int32_t Wmi::EnableStatic(std::uint32_t index, const std::vector<ipc::IPv4Address>& addresses,
                               const std::vector<ipc::IPv4Address>& masks) {
  constexpr Method kMethod{"EnableStatic",
                           {kSource, "Wmi method failed to set static ip addresses", 1701}};
  const Parameters parameters{{"IPAddress", List(addresses)}, {"SubNetMask", List(masks)}};
  return CallAdapter(kMethod, PathOf(index), &parameters);
}

std::int32_t Wmi::SetGateways(std::uint32_t index, const std::vector<ipc::IPv4Address>& gateways) {
  constexpr Method kMethod{"SetGateways", {kSource, "Wmi method failed to set gateways", 1803}};
  const Parameters parameters{
      {"DefaultIPGateway", gateways.empty() ? platform::Null{} : List(gateways)}};
  return CallAdapter(kMethod, PathOf(index), &parameters);
}

std::int32_t Wmi::SetDNSServerSearchOrder(std::uint32_t index,
                                          const std::vector<ipc::IPv4Address>& servers) {
  constexpr Method kMethod{"SetDNSServerSearchOrder",
                           {kSource, "Wmi method failed to configure DNS servers", 1902}};
  Parameters parameters;
  // Without servers nothing is put at all: the parameter keeps the null it was spawned with.
  if (!servers.empty()) parameters.emplace_back("DNSServerSearchOrder", List(servers));
  return CallAdapter(kMethod, PathOf(index), &parameters);
}

std::int32_t Wmi::SetDNSSuffixSearchOrder(const std::vector<std::string>& suffixes) {
  constexpr Method kMethod{"SetDNSSuffixSearchOrder",
                           {kSource, "Wmi method failed to configure DNS suffixes", 1998}};
  const Parameters parameters{{"DNSDomainSuffixSearchOrder", platform::TextArray{suffixes, 1}}};
  return CallAdapter(kMethod, kAdapterClass, &parameters);
}

}  // namespace sys
