#include <algorithm>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <variant>

#include "base/LetterCase.h"
#include "common/config/analyzer/AdapterBinding.h"
#include "common/config/command/ConfigureNic.h"
#include "common/err/GeneralError.h"
#include "common/ipc/IpAddress.h"
#include "common/logging/NullLogSink.h"
#include "common/sys/Domain.h"
#include "common/sys/NicList.h"
#include "handlers/internal/NetworkDisabledFlag.h"
#include "platform/IResolver.h"
#include "platform/ScopedPlatform.h"
#include "platform/simulated/DirectoryTree.h"
#include "platform/simulated/SimulatedPlatform.h"
#include "tool/check/rules/Rules.h"
#include "tool/machine/MachineDifference.h"

namespace tool::check {
namespace {

using config::command::ConfigureNic;
using simulated::DirectoryDomain;
using simulated::Machine;

/// A file and the machine while they are compared.
struct Pairing {
  const DesiredState& desired;
  Machine& machine;
  Findings& findings;
};

/// The domain that the machine is a member of as the engine sees it; null for a workgroup's.
const simulated::DomainMembership* MemberOf(const Machine& machine) {
  const auto* domain = std::get_if<simulated::DomainMembership>(&machine.membership);
  return domain != nullptr && (domain->hasSid || !domain->dnsName.empty()) ? domain : nullptr;
}

// ---- Adapters -----------------------------------------------------------------------------------

std::unique_ptr<ConfigureNic> CommandFor(const DesiredAdapter& adapter, logging::ILogSink& log) {
  auto nic = std::make_unique<ConfigureNic>(log);
  nic->Location() = adapter.location;
  nic->SetMacAddress(adapter.mac);
  return nic;
}

bool IsThere(const DesiredAdapter& adapter, const sys::NicList& nics) {
  return (adapter.hasLocation && nics.FindByPciLocation(adapter.location) != nullptr) ||
         (!adapter.mac.empty() && nics.FindByMac(adapter.mac) != nullptr);
}

/// An adapter that its section names twice, by location and MAC address, and not as the same.
void CheckBothNames(const Pairing& pairing, const DesiredAdapter& adapter,
                    const sys::NicList& nics) {
  const auto* const located =
      adapter.hasLocation ? nics.FindByPciLocation(adapter.location) : nullptr;
  const auto* const named = adapter.mac.empty() ? nullptr : nics.FindByMac(adapter.mac);
  if (located == nullptr || named == nullptr || located == named) return;
  pairing.findings.AtValue(Code::kTwoAdapters, *adapter.section->Find(Key::kMacAddress),
                           "this is adapter " + std::to_string(named->Index()) +
                               ", but the location is that of adapter " +
                               std::to_string(located->Index()) + ", which is configured");
}

/// The machine may have the adapter all the same: only some are looked for.
std::string WhyNotFound(const DesiredAdapter& adapter, const Machine& machine,
                        const std::string& name) {
  const auto& all = machine.adapters;
  const auto found =
      std::find_if(all.begin(), all.end(), [&adapter](const simulated::Adapter& one) {
        return !adapter.mac.empty() &&
               sys::NormalizedMac(one.macAddress.value_or("")) == adapter.mac;
      });
  if (found == all.end()) return "the machine does not have the adapter of " + name;
  return name + " means adapter " + std::to_string(found->index) + ", which is not " +
         (found->ipEnabled ? "on the PCI bus" : "IP-enabled") + " and cannot be configured";
}

/// Binds the sections as the engine does and looks at what comes of it.
void CheckBinding(const Pairing& pairing) {
  const auto& adapters = pairing.desired.adapters;
  logging::NullLogSink log;
  config::command::CommandList commands;
  for (const DesiredAdapter& adapter : adapters) commands.push_back(CommandFor(adapter, log));
  config::analyzer::BindAdapters(commands);
  const sys::NicList nics;
  std::map<std::uint32_t, const DesiredAdapter*> takenBy;
  for (std::size_t i = 0; i < adapters.size(); ++i) {
    const DesiredAdapter& adapter = adapters[i];
    const std::uint32_t index = static_cast<const ConfigureNic&>(*commands[i]).Index();
    const std::string name = adapter.Name();
    if (index == ConfigureNic::kUnset) {
      pairing.findings.AtHeader(Code::kNoAdapterLeft, *adapter.section,
                                "no PCI adapter of the machine is left for " + name);
      continue;
    }
    CheckBothNames(pairing, adapter, nics);
    const bool isNamed = adapter.hasLocation || !adapter.mac.empty();
    if (isNamed && !IsThere(adapter, nics)) {
      pairing.findings.AtHeader(Code::kAdapterNotFound, *adapter.section,
                                WhyNotFound(adapter, pairing.machine, name) + "; adapter " +
                                    std::to_string(index) + " is taken");
    }
    const auto [earlier, isNew] = takenBy.emplace(index, &adapter);
    if (isNew) continue;
    pairing.findings.AtHeader(
        Code::kSameAdapterOnMachine, *adapter.section,
        name + " takes adapter " + std::to_string(index) + ", as does " + earlier->second->Name());
  }
}

void CheckBindingIfAny(const Pairing& pairing) {
  if (pairing.desired.adapters.empty()) return;
  try {
    CheckBinding(pairing);
  } catch (const err::CGeneralError& error) {
    const Section& first = *pairing.desired.adapters[0].section;
    if (const auto unknown = FindUnknownHost(pairing.machine)) {
      pairing.findings.AtHeader(Code::kMachineIpv6, first,
                                unknown->text + " of the machine's adapter " +
                                    std::to_string(unknown->adapter) +
                                    " is taken for the name of a host, which fails the run");
    } else {
      pairing.findings.AtHeader(
          Code::kSilentMachine, first,
          "reading the machine's adapters fails: " + std::string(error.message));
    }
  }
}

// ---- Host names ---------------------------------------------------------------------------------

void CheckHost(const Pairing& pairing, const Address& address) {
  const std::string_view text = address.item.text;
  const bool isName =
      !text.empty() && !address.bits && (text[0] < '0' || text[0] > '9') && !IsIpv6(text);
  std::uint32_t bits = 0;
  if (!isName || pairing.machine.hostsUnknown) return;
  ipc::WinSockManager::Instance().EnsureStarted();
  if (platform::Current().Resolver().LookUpHost(std::string(text), &bits)) return;
  pairing.findings.At(Code::kHostNotFound, address.item.span,
                      "the machine cannot resolve " + Quoted(text));
}

void CheckHosts(const Pairing& pairing) {
  for (const DesiredAdapter& adapter : pairing.desired.adapters) {
    if (adapter.IsStatic()) {
      for (const auto* list : {&adapter.addresses, &adapter.gateways}) {
        for (const Address& address : *list) CheckHost(pairing, address);
      }
    }
    for (const PlacedEntry* const server : adapter.servers) {
      if (!adapter.setsDns) break;
      for (const Item& item : pairing.desired.document.Items(*server)) {
        CheckHost(pairing, ReadAddress(item));
      }
    }
    for (const Route& route : adapter.routes) CheckHost(pairing, route.gateway);
  }
}

// ---- Routes -------------------------------------------------------------------------------------

std::uint32_t BitsOf(std::string_view text) { return ReadAddress({text, {}}).Bits(); }

/// The persistent routes that a run looks at.
struct ExistingRoutes {
  std::set<ComparedRoute> others;
  /// The first default route, which is never deleted for itself.
  std::optional<ComparedRoute> kept;
};

ExistingRoutes RoutesOf(const Machine& machine) {
  ExistingRoutes routes;
  for (const simulated::PersistentRoute& route : machine.persistentRoutes) {
    const ComparedRoute compared{BitsOf(route.destination), BitsOf(route.mask),
                                 BitsOf(route.nextHop), static_cast<std::uint32_t>(route.metric)};
    if (!routes.kept && compared[0] == 0 && compared[1] == 0) {
      routes.kept = compared;
    } else {
      routes.others.insert(compared);
    }
  }
  return routes;
}

/// The destination of the first route that no section asks for; empty when there is none.
std::string ForeignRoute(const DesiredState& desired, const Machine& machine) {
  for (const ComparedRoute& existing : RoutesOf(machine).others) {
    const auto asksForIt = [&](const DesiredAdapter& adapter) {
      return std::any_of(adapter.routes.begin(), adapter.routes.end(),
                         [&](const Route& route) { return route.Compared() == existing; });
    };
    if (std::none_of(desired.adapters.begin(), desired.adapters.end(), asksForIt)) {
      return Dotted(existing[0]);
    }
  }
  return {};
}

void CheckRoutesOf(const Pairing& pairing, const DesiredAdapter& adapter) {
  const auto [existing, kept] = RoutesOf(pairing.machine);
  std::map<ComparedRoute, const Route*> wanted;
  for (const Route& route : adapter.routes) {
    if (!route.destination.bits || !route.mask.bits || !route.gateway.bits) return;
    wanted.emplace(route.Compared(), &route);
  }
  // Deleting names the destination only.
  std::map<std::uint32_t, int> deletions;
  for (const ComparedRoute& route : existing) {
    if (!wanted.contains(route)) ++deletions[route[0]];
  }
  for (const auto& [compared, route] : wanted) {
    const auto deletion = deletions.find(compared[0]);
    if (deletion == deletions.end() || !existing.contains(compared)) continue;
    pairing.findings.AtValue(Code::kRouteLost, *route->entry,
                             "the machine has this route and another one to " +
                                 std::string(route->destination.item.text) +
                                 ", and deleting that one deletes both");
  }
  if (kept && deletions.contains(0) && !wanted.contains(*kept)) {
    pairing.findings.AtValue(
        Code::kRouteLost, *adapter.routes[0].entry,
        "the machine has two default routes: deleting the second deletes both");
  }
  for (const auto& [destination, count] : deletions) {
    if (count < 2) continue;
    pairing.findings.AtValue(Code::kDeletedTwice, *adapter.routes[0].entry,
                             "the machine has " + std::to_string(count) + " unwanted routes to " +
                                 Dotted(destination) + ": deleting the first deletes them all");
  }
}

// ---- Domain -------------------------------------------------------------------------------------

/// The plain text; nothing when the machine cannot decipher it.
std::optional<std::string> Deciphered(const Pairing& pairing, const PlacedEntry& entry) {
  const auto& known = pairing.machine.decrypt;
  if (!known) return std::nullopt;
  const auto found = known->find(std::string(entry.FirstLine()));
  return found != known->end() ? std::optional(found->second) : std::nullopt;
}

void CheckAccount(const Pairing& pairing, const DirectoryDomain* domain) {
  const PlacedEntry* const user = pairing.desired.identity.Find(Key::kDomainUsername);
  const PlacedEntry* const password = pairing.desired.identity.Find(Key::kDomainPassword);
  if (user == nullptr || password == nullptr || !pairing.machine.KnowsDecrypt()) return;
  if (!pairing.machine.decrypt) {
    pairing.findings.AtValue(Code::kNoDecryption, *user, "the machine does not have LibCrypto.dll");
    return;
  }
  const auto plainUser = Deciphered(pairing, *user);
  const auto plainPassword = Deciphered(pairing, *password);
  if (!plainUser || !plainPassword) {
    pairing.findings.AtValue(
        Code::kNoDecryption, plainUser ? *password : *user,
        "the machine cannot decipher " +
            std::string(NameOf(plainUser ? Key::kDomainPassword : Key::kDomainUsername)));
  } else if (domain != nullptr && !simulated::IsAccount(*domain, *plainUser, *plainPassword)) {
    pairing.findings.AtValue(
        Code::kBadAccount, *user,
        "the domain " + domain->dnsName + " has no such user with that password");
  }
}

/// The flag that taking an image set is on, and asks for leaving the domain.
bool LeavesAfterImage(const Pairing& pairing) {
  Machine scratch;
  scratch.registry = pairing.machine.registry;
  simulated::SimulatedPlatform platform(scratch);
  const platform::ScopedPlatform scope(platform);
  const Section& global = pairing.desired.document.SectionOf(SectionKind::kGlobal);
  return !base::SameText(global.Value(Key::kConfig), base::kRestoreAfterCreate) &&
         TakeNetworkDisabledFlag();
}

void CheckDomain(const Pairing& pairing) {
  const Identity& identity = pairing.desired.identity;
  const bool isLost = MemberOf(pairing.machine) != nullptr && !identity.IsWorkgroup() &&
                      !identity.joinsDomain && LeavesAfterImage(pairing);
  if (isLost) {
    pairing.findings.OfFile(Code::kLeavesDomain,
                            "the machine was imaged: the run makes it leave its domain, and "
                            "nothing joins it again");
  }
  DirectoryDomain* domain = pairing.machine.FindOwnDomain();
  if (identity.IsDomain()) {
    const PlacedEntry& name = *identity.membershipName;
    domain = simulated::FindDomain(pairing.machine, std::string(name.FirstLine()));
    if (domain == nullptr && pairing.machine.KnowsDirectory()) {
      pairing.findings.AtValue(Code::kNoSuchDomain, name,
                               "the directory has no domain " + Quoted(name.FirstLine()));
    }
  }
  CheckAccount(pairing, domain);
  const PlacedEntry* const ou = identity.Find(Key::kOrganizationalUnit);
  if (ou == nullptr || identity.IsWorkgroup()) return;
  if (identity.membership == Identity::Membership::kUnchanged &&
      MemberOf(pairing.machine) == nullptr) {
    pairing.findings.AtValue(Code::kOuWithoutDomain, *ou,
                             "the machine is in a workgroup: the unit is ignored");
  }
  if (domain == nullptr) return;
  const std::string dn = sys::BuildDn(domain->dnsName, ou->FirstLine());
  if (!simulated::FindContainer(*domain, dn)) {
    pairing.findings.AtValue(Code::kNoSuchOu, *ou, "the domain has no unit " + Quoted(dn));
  } else if (!identity.joinsDomain && pairing.machine.FindOwnAccount() == nullptr) {
    pairing.findings.AtValue(Code::kNoComputerAccount, *ou,
                             "the domain " + domain->dnsName + " has no account of " +
                                 Quoted(pairing.machine.computerName));
  }
}

}  // namespace

void CompareIdentity(DesiredState& desired, Machine& machine) {
  desired.isOfMachine = true;
  desired.foreignRoute = ForeignRoute(desired, machine);
  Identity& identity = desired.identity;
  const std::string_view name = identity.section.Value(Key::kComputerName);
  identity.renames = !name.empty() && !base::SameText(name, machine.computerName);
  const simulated::DomainMembership* const current = MemberOf(machine);
  if (current == nullptr) {
    identity.movesAccount = false;
    return;
  }
  identity.leavesDomain = identity.IsWorkgroup();
  if (identity.joinsDomain) {
    const std::string_view domain = identity.membershipName->FirstLine();
    identity.joinsDomain =
        !base::SameText(domain, current->dnsName) && !base::SameText(domain, current->flatName);
  }
  const std::string_view ou = identity.section.Value(Key::kOrganizationalUnit);
  identity.movesAccount = !ou.empty() && !identity.IsWorkgroup() && !identity.joinsDomain;
  const simulated::Computer* const account = machine.FindOwnAccount();
  if (!identity.movesAccount || account == nullptr) return;
  // As the command compares them.
  identity.isMoveKnown = identity.movesAccount =
      !base::SameText(sys::BuildDn(current->dnsName, sys::DnToOuPath(account->dn)),
                      sys::BuildDn(current->dnsName, ou));
}

void CheckOnMachine(const DesiredState& desired, Machine& machine, Findings& findings) {
  simulated::SimulatedPlatform platform(machine);
  const platform::ScopedPlatform scope(platform);
  const Pairing pairing{desired, machine, findings};
  CheckBindingIfAny(pairing);
  CheckHosts(pairing);
  for (const DesiredAdapter& adapter : desired.adapters) {
    if (!adapter.routes.empty()) CheckRoutesOf(pairing, adapter);
  }
  CheckDomain(pairing);
}

}  // namespace tool::check
