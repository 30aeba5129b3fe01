#include <algorithm>

#include "base/LetterCase.h"
#include "platform/simulated/Codes.h"
#include "platform/simulated/DirectoryTree.h"
#include "platform/simulated/Text.h"
#include "platform/simulated/WmiClasses.h"

namespace simulated {
namespace {

using platform::HResult;
using platform::Variant;
using Texts = std::vector<std::string>;

// Return values of the adapter methods.
constexpr std::uint32_t kInvalidMaskOrAddress = 66;
constexpr std::uint32_t kInvalidInput = 68;
constexpr std::uint32_t kInvalidGateway = 71;
constexpr std::uint32_t kDhcpInUse = 84;

// Join options.
constexpr std::int32_t kJoinDomain = 0x1;
constexpr std::int32_t kCreateAccount = 0x2;
constexpr std::int32_t kJoinIfJoined = 0x20;

/// The items of a list argument; empty when it is null or was never put.
Texts ListOf(const Properties& arguments, std::string_view name) {
  const Variant* value = FindProperty(arguments, name);
  const auto* list = value == nullptr ? nullptr : std::get_if<platform::TextArray>(value);
  return list == nullptr ? Texts() : list->items;
}

std::string TextOf(const Properties& arguments, std::string_view name) {
  const Variant* value = FindProperty(arguments, name);
  const auto* text = value == nullptr ? nullptr : std::get_if<std::string>(value);
  return text == nullptr ? std::string() : *text;
}

std::int32_t NumberOf(const Properties& arguments, std::string_view name) {
  const Variant* value = FindProperty(arguments, name);
  const auto* number = value == nullptr ? nullptr : std::get_if<std::int32_t>(value);
  return number == nullptr ? 0 : *number;
}

/// True for an address a computer can have; the broadcast address is what an unreadable text
/// becomes on its way here.
bool IsHostAddress(const std::string& text) { return ParseIpv4(text) && text != "255.255.255.255"; }

bool IsInSubnet(const std::string& text, const std::string& address, const std::string& mask) {
  const auto left = ParseIpv4(text);
  const auto right = ParseIpv4(address);
  const auto bits = ParseIpv4(mask);
  if (!left || !right || !bits) return false;
  for (std::size_t i = 0; i < bits->size(); ++i) {
    if (((*left)[i] & (*bits)[i]) != ((*right)[i] & (*bits)[i])) return false;
  }
  return true;
}

bool IsReachable(const Adapter& adapter, const std::string& gateway) {
  const std::size_t count = std::min(adapter.ipAddresses.size(), adapter.subnetMasks.size());
  for (std::size_t i = 0; i < count; ++i) {
    if (IsInSubnet(gateway, adapter.ipAddresses[i], adapter.subnetMasks[i])) return true;
  }
  return false;
}

std::uint32_t EnableDhcp(Machine&, Adapter* adapter, const Properties&) {
  adapter->dhcpEnabled = true;
  adapter->ipAddresses.clear();
  adapter->subnetMasks.clear();
  adapter->gateways.clear();
  return 0;
}

std::uint32_t EnableStatic(Machine&, Adapter* adapter, const Properties& arguments) {
  const Texts addresses = ListOf(arguments, "IPAddress");
  const Texts masks = ListOf(arguments, "SubNetMask");
  if (addresses.empty() || addresses.size() != masks.size()) return kInvalidInput;
  if (!std::all_of(addresses.begin(), addresses.end(), IsHostAddress) ||
      !std::all_of(masks.begin(), masks.end(), ParseIpv4)) {
    return kInvalidMaskOrAddress;
  }
  if (adapter->dhcpEnabled) {  // what came with the lease goes with it
    adapter->gateways.clear();
    if (!adapter->staticDns) adapter->dnsServers.clear();
  }
  adapter->dhcpEnabled = false;
  adapter->ipAddresses = addresses;
  adapter->subnetMasks = masks;
  return 0;
}

std::uint32_t SetGateways(Machine&, Adapter* adapter, const Properties& arguments) {
  const Texts gateways = ListOf(arguments, "DefaultIPGateway");
  if (adapter->dhcpEnabled) return kDhcpInUse;
  for (const std::string& gateway : gateways) {
    if (!IsHostAddress(gateway) || !IsReachable(*adapter, gateway)) return kInvalidGateway;
  }
  adapter->gateways = gateways;
  return 0;
}

std::uint32_t SetDnsServers(Machine&, Adapter* adapter, const Properties& arguments) {
  adapter->dnsServers = ListOf(arguments, "DNSServerSearchOrder");
  adapter->staticDns = !adapter->dnsServers.empty();
  return 0;
}

std::uint32_t SetDnsSuffixes(Machine& machine, Adapter*, const Properties& arguments) {
  const Texts suffixes = ListOf(arguments, "DNSDomainSuffixSearchOrder");
  for (Adapter& adapter : machine.adapters) adapter.dnsSuffixes = suffixes;
  return 0;
}

std::uint32_t Rename(Machine& machine, Adapter*, const Properties& arguments) {
  const std::string name = TextOf(arguments, "Name");
  if (name.empty()) return kInvalidParameter;
  machine.pendingComputerName = name;
  return 0;
}

std::uint32_t JoinDomain(Machine& machine, const std::string& name, const Properties& arguments) {
  DirectoryDomain* domain = FindDomain(machine, name);
  if (domain == nullptr) return kNoSuchDomain;
  if (!IsAccount(*domain, TextOf(arguments, "UserName"), TextOf(arguments, "Password"))) {
    return kLogonFailure;
  }
  const std::int32_t options = NumberOf(arguments, "FJoinOptions");
  const bool joined = std::holds_alternative<DomainMembership>(machine.membership);
  if (joined && (options & kJoinIfJoined) == 0) return kAlreadyJoined;

  if (FindComputer(*domain, machine.computerName) == nullptr) {
    if ((options & kCreateAccount) == 0) return kNoSuchAccount;
    const std::string ou = TextOf(arguments, "AccountOU");
    const auto container =
        FindContainer(*domain, ou.empty() ? "CN=Computers," + DomainDn(*domain) : ou);
    if (!container) return kFileNotFound;
    domain->computers.push_back(
        {machine.computerName, "CN=" + machine.computerName + "," + *container});
  }
  machine.membership = DomainMembership{domain->dnsName, domain->flatName, true};
  return 0;
}

std::uint32_t JoinDomainOrWorkgroup(Machine& machine, Adapter*, const Properties& arguments) {
  const std::string name = TextOf(arguments, "Name");
  if ((NumberOf(arguments, "FJoinOptions") & kJoinDomain) != 0) {
    return JoinDomain(machine, name, arguments);
  }
  machine.membership = WorkgroupMembership{name};
  return 0;
}

std::uint32_t UnjoinDomainOrWorkgroup(Machine& machine, Adapter*, const Properties&) {
  if (std::holds_alternative<WorkgroupMembership>(machine.membership)) return kNotJoined;
  machine.membership = WorkgroupMembership{};
  return 0;
}

constexpr std::string_view kComputerClass = "Win32_ComputerSystem";
constexpr std::string_view kAdapterClass = "Win32_NetworkAdapterConfiguration";

constexpr std::string_view kRenameParameters[] = {"Name", "UserName", "Password"};
constexpr std::string_view kJoinParameters[] = {"Name", "UserName", "Password", "AccountOU",
                                                "FJoinOptions"};
constexpr std::string_view kUnjoinParameters[] = {"UserName", "Password", "FUnjoinOptions"};
constexpr std::string_view kStaticParameters[] = {"IPAddress", "SubNetMask"};
constexpr std::string_view kGatewayParameters[] = {"DefaultIPGateway", "GatewayCostMetric"};
constexpr std::string_view kDnsParameters[] = {"DNSServerSearchOrder"};
constexpr std::string_view kSuffixParameters[] = {"DNSDomainSuffixSearchOrder"};

constexpr WmiMethod kMethods[] = {
    {kComputerClass, "Rename", WmiTarget::kComputer, kRenameParameters, Rename},
    {kComputerClass, "JoinDomainOrWorkgroup", WmiTarget::kComputer, kJoinParameters,
     JoinDomainOrWorkgroup},
    {kComputerClass, "UnjoinDomainOrWorkgroup", WmiTarget::kComputer, kUnjoinParameters,
     UnjoinDomainOrWorkgroup},
    {kAdapterClass, "EnableDHCP", WmiTarget::kAdapter, {}, EnableDhcp},
    {kAdapterClass, "EnableStatic", WmiTarget::kAdapter, kStaticParameters, EnableStatic},
    {kAdapterClass, "SetGateways", WmiTarget::kAdapter, kGatewayParameters, SetGateways},
    {kAdapterClass, "SetDNSServerSearchOrder", WmiTarget::kAdapter, kDnsParameters, SetDnsServers},
    {kAdapterClass, "SetDNSSuffixSearchOrder", WmiTarget::kClass, kSuffixParameters,
     SetDnsSuffixes}};

/// Finds the object a method is to work on.
HResult FindTarget(Simulation& simulation, const WmiMethod& method, std::string_view key,
                   Adapter** adapter) {
  switch (method.target) {
    case WmiTarget::kClass:
      return key.empty() ? platform::kOk : kWmiInvalidPath;
    case WmiTarget::kComputer:
      if (!base::StartsWith(key, "Name=")) return kWmiInvalidPath;
      return base::SameText(key, "Name=\"" + simulation.machine.computerName + "\"") ? platform::kOk
                                                                                     : kWmiNotFound;
    case WmiTarget::kAdapter: {
      const auto index = base::StartsWith(key, "Index=") ? IndexIn(key) : std::nullopt;
      if (!index) return kWmiInvalidPath;
      *adapter = simulation.AdapterByIndex(*index);
      return *adapter == nullptr ? kWmiNotFound : platform::kOk;
    }
  }
  return kWmiInvalidPath;
}

}  // namespace

const WmiMethod* FindMethod(std::string_view className, std::string_view method) {
  const auto found =
      std::find_if(std::begin(kMethods), std::end(kMethods), [&](const WmiMethod& known) {
        return base::SameText(known.className, className) && base::SameText(known.name, method);
      });
  return found == std::end(kMethods) ? nullptr : found;
}

HResult RunMethod(Simulation& simulation, const std::string& path, const std::string& methodName,
                  const Properties* arguments, std::int32_t* returnValue) {
  const std::size_t dot = path.find('.');
  const std::string className = path.substr(0, dot);
  const WmiMethod* method = FindMethod(className, methodName);
  if (method == nullptr) return IsWmiClass(className) ? kWmiInvalidMethod : kWmiInvalidClass;
  if (arguments == nullptr && !method->parameters.empty()) return kWmiInvalidParameters;
  const std::string key = dot == std::string::npos ? std::string() : path.substr(dot + 1);
  Adapter* adapter = nullptr;
  const HResult found = FindTarget(simulation, *method, key, &adapter);
  if (platform::Failed(found)) return found;
  const std::uint32_t value =
      method->run(simulation.machine, adapter, arguments == nullptr ? Properties() : *arguments);
  *returnValue = static_cast<std::int32_t>(value);
  return platform::kOk;
}

}  // namespace simulated
