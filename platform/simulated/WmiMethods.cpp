#include <algorithm>

#include "base/FindIn.h"
#include "base/LetterCase.h"
#include "platform/simulated/Codes.h"
#include "platform/simulated/DirectoryTree.h"
#include "platform/simulated/Ipv4.h"
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

/// An argument as its method takes it; what is null, of another type or was never put counts as
/// the empty value.
template <class Type>
Type Get(const Properties& arguments, std::string_view name) {
  const Variant* value = FindProperty(arguments, name);
  const auto* given = value == nullptr ? nullptr : std::get_if<Type>(value);
  return given == nullptr ? Type() : *given;
}

Texts ListOf(const Properties& arguments, std::string_view name) {
  return Get<platform::TextArray>(arguments, name).items;
}

std::string TextOf(const Properties& arguments, std::string_view name) {
  return Get<std::string>(arguments, name);
}

bool IsInSubnet(const std::string& text, const std::string& address, const std::string& mask) {
  const auto left = ParseIpv4(text);
  const auto right = ParseIpv4(address);
  const auto bits = ParseIpv4(mask);
  return left && right && bits && ((Bits(*left) ^ Bits(*right)) & Bits(*bits)) == 0;
}

/// An address that a name would have, were it known which names resolve.
bool IsAssumed(Machine& machine, const std::string& address) {
  if (!machine.AssumesHosts() || address != kUnknownText) return false;
  machine.assumed = "hosts";
  return true;
}

bool IsReachable(Machine& machine, const Adapter& adapter, const std::string& gateway) {
  const std::size_t count = std::min(adapter.ipAddresses.size(), adapter.subnetMasks.size());
  for (std::size_t i = 0; i < count; ++i) {
    if (IsAssumed(machine, adapter.ipAddresses[i])) return true;
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

std::uint32_t EnableStatic(Machine& machine, Adapter* adapter, const Properties& arguments) {
  const Texts addresses = ListOf(arguments, "IPAddress");
  const Texts masks = ListOf(arguments, "SubNetMask");
  if (addresses.empty() || addresses.size() != masks.size()) return kInvalidInput;
  const auto isUsable = [&](const std::string& address) {
    return IsHostAddress(address) || IsAssumed(machine, address);
  };
  if (!std::all_of(addresses.begin(), addresses.end(), isUsable) ||
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

std::uint32_t SetGateways(Machine& machine, Adapter* adapter, const Properties& arguments) {
  const Texts gateways = ListOf(arguments, "DefaultIPGateway");
  if (adapter->dhcpEnabled) return kDhcpInUse;
  for (const std::string& gateway : gateways) {
    if (IsAssumed(machine, gateway)) continue;
    if (!IsHostAddress(gateway) || !IsReachable(machine, *adapter, gateway)) return kInvalidGateway;
  }
  adapter->gateways = gateways;
  return 0;
}

std::uint32_t SetDnsServers(Machine& machine, Adapter* adapter, const Properties& arguments) {
  adapter->dnsServers = ListOf(arguments, "DNSServerSearchOrder");
  for (const std::string& server : adapter->dnsServers) IsAssumed(machine, server);
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
  const std::int32_t options = Get<std::int32_t>(arguments, "FJoinOptions");
  const bool joined = std::holds_alternative<DomainMembership>(machine.membership);
  const bool isRefused = joined && (options & kJoinIfJoined) == 0;
  if (!isRefused && machine.AssumesDirectory()) {
    machine.assumed = "directory";
    machine.membership = DomainMembership{name, name.substr(0, name.find('.')), true};
    const std::string ou = TextOf(arguments, "AccountOU");
    if (!ou.empty()) machine.assumedContainer = ou;
    return 0;
  }
  DirectoryDomain* domain = FindDomain(machine, name);
  if (domain == nullptr) return kNoSuchDomain;
  if (!MayUse(machine, *domain, TextOf(arguments, "UserName"), TextOf(arguments, "Password"))) {
    return kLogonFailure;
  }
  if (isRefused) return kAlreadyJoined;

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
  if ((Get<std::int32_t>(arguments, "FJoinOptions") & kJoinDomain) != 0) {
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
constexpr std::string_view kNameKey = "Name=";
constexpr std::string_view kIndexKey = "Index=";
constexpr std::string_view kAdapterClass = "Win32_NetworkAdapterConfiguration";

constexpr WmiMethod kMethods[] = {
    {kComputerClass, "Rename", kNameKey, "Name UserName Password", Rename},
    {kComputerClass, "JoinDomainOrWorkgroup", kNameKey,
     "Name UserName Password AccountOU FJoinOptions", JoinDomainOrWorkgroup},
    {kComputerClass, "UnjoinDomainOrWorkgroup", kNameKey, "UserName Password FUnjoinOptions",
     UnjoinDomainOrWorkgroup},
    {kAdapterClass, "EnableDHCP", kIndexKey, "", EnableDhcp},
    {kAdapterClass, "EnableStatic", kIndexKey, "IPAddress SubNetMask", EnableStatic},
    {kAdapterClass, "SetGateways", kIndexKey, "DefaultIPGateway GatewayCostMetric", SetGateways},
    {kAdapterClass, "SetDNSServerSearchOrder", kIndexKey, "DNSServerSearchOrder", SetDnsServers},
    {kAdapterClass, "SetDNSSuffixSearchOrder", "", "DNSDomainSuffixSearchOrder", SetDnsSuffixes}};

/// Finds the object a method is to work on.
HResult FindTarget(Simulation& simulation, const WmiMethod& method, std::string_view key,
                   Adapter** adapter) {
  if (key.empty() != method.key.empty() || !base::StartsWith(key, method.key)) {
    return kWmiInvalidPath;
  }
  if (key.empty()) return platform::kOk;
  if (method.key == kNameKey) {
    const std::string own = "Name=\"" + simulation.machine.computerName + "\"";
    return base::SameText(key, own) ? platform::kOk : kWmiNotFound;
  }
  const auto index = IndexIn(key);
  if (!index) return kWmiInvalidPath;
  *adapter = simulation.AdapterByIndex(*index);
  return *adapter == nullptr ? kWmiNotFound : platform::kOk;
}

}  // namespace

const WmiMethod* FindMethod(std::string_view className, std::string_view method) {
  return base::FindIn(kMethods, [&](const WmiMethod& known) {
    return base::SameText(known.className, className) && base::SameText(known.name, method);
  });
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
