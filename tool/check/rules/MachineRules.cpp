#include "tool/check/rules/MachineRules.h"

#include <algorithm>
#include <compare>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <variant>

#include "common/config/analyzer/AdapterBinding.h"
#include "common/config/command/ConfigureNic.h"
#include "common/err/GeneralError.h"
#include "common/logging/NullLogSink.h"
#include "common/sys/Domain.h"
#include "common/sys/NicList.h"
#include "common/util/Text.h"
#include "platform/IResolver.h"
#include "platform/ScopedPlatform.h"
#include "platform/simulated/DirectoryTree.h"
#include "platform/simulated/SimulatedPlatform.h"
#include "platform/simulated/Text.h"

namespace tool::check {
namespace {

using config::command::ConfigureNic;
using simulated::DirectoryDomain;
using simulated::Machine;

/// A file and the machine while they are compared.
struct Subject {
  const Document& document;
  const Wishes& wishes;
  Machine& machine;
  Findings& findings;

  void AddAtHeader(Code code, const Adapter& adapter, const std::string& message) const {
    findings.Add(code, document, document.ItemOf(adapter.section->headers[0]).span, message);
  }
  void Add(Code code, const Entry& entry, const std::string& message) const {
    findings.Add(code, document, document.ValueSpan(entry), message);
  }
};

/// The domain that the machine is a member of as the engine sees it; null for a workgroup's.
const simulated::DomainMembership* MemberOf(const Machine& machine) {
  const auto* domain = std::get_if<simulated::DomainMembership>(&machine.membership);
  return domain != nullptr && (domain->hasSid || !domain->dnsName.empty()) ? domain : nullptr;
}

// ---- Adapters -----------------------------------------------------------------------------------

std::unique_ptr<ConfigureNic> CommandFor(const Adapter& adapter, logging::ILogSink& log) {
  auto nic = std::make_unique<ConfigureNic>(log);
  nic->SetPciBus(adapter.location.bus);
  nic->SetPciDevice(adapter.location.device);
  nic->SetPciFunction(adapter.location.function);
  nic->SetMacAddress(adapter.mac);
  return nic;
}

bool IsThere(const Adapter& adapter, const sys::NicList& nics) {
  return (adapter.hasLocation && nics.FindByPciLocation(adapter.location) != nullptr) ||
         (!adapter.mac.empty() && nics.FindByMac(adapter.mac) != nullptr);
}

/// The machine may have the adapter all the same: only some are looked for.
std::string WhyNotFound(const Adapter& adapter, const Machine& machine, const std::string& name) {
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
void CheckBinding(const Subject& subject) {
  const auto& adapters = subject.wishes.adapters;
  logging::NullLogSink log;
  config::command::CommandList commands;
  for (const Adapter& adapter : adapters) commands.push_back(CommandFor(adapter, log));
  config::analyzer::BindAdapters(commands);
  const sys::NicList nics;
  std::map<std::uint32_t, const Adapter*> takenBy;
  for (std::size_t i = 0; i < adapters.size(); ++i) {
    const Adapter& adapter = adapters[i];
    const std::uint32_t index = static_cast<const ConfigureNic&>(*commands[i]).Index();
    const std::string name = Quoted(adapter.section->name);
    if (index == ConfigureNic::kUnset) {
      subject.AddAtHeader(Code::kNoAdapterLeft, adapter,
                          "no PCI adapter of the machine is left for " + name);
      continue;
    }
    const bool isNamed = adapter.hasLocation || !adapter.mac.empty();
    if (isNamed && !IsThere(adapter, nics)) {
      subject.AddAtHeader(Code::kAdapterNotFound, adapter,
                          WhyNotFound(adapter, subject.machine, name) + "; adapter " +
                              std::to_string(index) + " is taken");
    }
    const auto [earlier, isNew] = takenBy.emplace(index, &adapter);
    if (isNew) continue;
    subject.AddAtHeader(Code::kSameAdapterOnMachine, adapter,
                        name + " takes adapter " + std::to_string(index) + ", as does " +
                            Quoted(earlier->second->section->name));
  }
}

void CheckBindingIfAny(const Subject& subject) {
  if (subject.wishes.adapters.empty()) return;
  try {
    CheckBinding(subject);
  } catch (const err::CGeneralError& error) {
    subject.AddAtHeader(Code::kSilentMachine, subject.wishes.adapters[0],
                        "reading the machine's adapters fails: " + std::string(error.message));
  }
}

// ---- Host names ---------------------------------------------------------------------------------

void CheckHost(const Subject& subject, const Address& address) {
  const std::string_view text = address.item.text;
  const bool isName = !text.empty() && !address.bits && (text[0] < '0' || text[0] > '9');
  std::uint32_t bits = 0;
  if (!isName || platform::Current().Resolver().LookUpHost(std::string(text), &bits)) {
    return;
  }
  subject.findings.Add(Code::kHostNotFound, subject.document, address.item.span,
                       "the machine cannot resolve " + Quoted(text));
}

void CheckHosts(const Subject& subject) {
  for (const Adapter& adapter : subject.wishes.adapters) {
    if (adapter.addressing == Adapter::Addressing::kStatic) {
      for (const auto* list : {&adapter.addresses, &adapter.gateways}) {
        for (const Address& address : *list) CheckHost(subject, address);
      }
    }
    for (const Entry* const server : adapter.servers) {
      if (!adapter.setsDns) break;
      for (const Item& item : subject.document.Items(*server)) {
        CheckHost(subject, ReadAddress(item));
      }
    }
    for (const Route& route : adapter.routes) CheckHost(subject, route.gateway);
  }
}

// ---- Routes -------------------------------------------------------------------------------------

/// A route as the engine compares it.
struct ComparedRoute {
  std::uint32_t destination = 0;
  std::uint32_t mask = 0;
  std::uint32_t gateway = 0;
  std::uint32_t metric = 0;

  auto operator<=>(const ComparedRoute&) const = default;
};

std::uint32_t BitsOf(std::string_view text) {
  return ReadAddress({text, {}}).bits.value_or(0xFFFFFFFF);
}

struct ExistingRoutes {
  std::set<ComparedRoute> compared;
  /// The first default route, which is never deleted for itself.
  std::optional<ComparedRoute> kept;
};

ExistingRoutes ReadRoutes(const Machine& machine) {
  ExistingRoutes routes;
  for (const simulated::PersistentRoute& route : machine.persistentRoutes) {
    const ComparedRoute compared{BitsOf(route.destination), BitsOf(route.mask),
                                 BitsOf(route.nextHop), static_cast<std::uint32_t>(route.metric)};
    if (!routes.kept && compared.destination == 0 && compared.mask == 0) {
      routes.kept = compared;
    } else {
      routes.compared.insert(compared);
    }
  }
  return routes;
}

void CheckRoutesOf(const Subject& subject, const Adapter& adapter) {
  const auto [existing, kept] = ReadRoutes(subject.machine);
  std::map<ComparedRoute, const Route*> wanted;
  for (const Route& route : adapter.routes) {
    if (!route.destination.bits || !route.mask.bits || !route.gateway.bits) return;
    wanted.emplace(
        ComparedRoute{*route.destination.bits, *route.mask.bits, *route.gateway.bits, route.metric},
        &route);
  }
  // Deleting names the destination only.
  std::map<std::uint32_t, int> deletions;
  for (const ComparedRoute& route : existing) {
    if (!wanted.contains(route)) ++deletions[route.destination];
  }
  for (const auto& [compared, route] : wanted) {
    const auto deletion = deletions.find(compared.destination);
    if (deletion == deletions.end() || !existing.contains(compared)) continue;
    subject.Add(Code::kRouteLost, *route->entry,
                "the machine has this route and another one to " +
                    std::string(route->destination.item.text) + ", whose deletion takes both");
  }
  if (kept && deletions.contains(0) && !wanted.contains(*kept)) {
    subject.Add(Code::kRouteLost, *adapter.routes[0].entry,
                "the machine has two default routes: deleting the second takes both");
  }
  for (const auto& [destination, count] : deletions) {
    if (count < 2) continue;
    subject.Add(Code::kDeletedTwice, *adapter.routes[0].entry,
                "the machine has " + std::to_string(count) + " unwanted routes to " +
                    Dotted(destination) + ": deleting the first takes them all");
  }
}

void CheckRoutes(const Subject& subject) {
  for (const Adapter& adapter : subject.wishes.adapters) {
    if (!adapter.routes.empty()) CheckRoutesOf(subject, adapter);
  }
}

// ---- Domain -------------------------------------------------------------------------------------

/// The plain text; nothing when the machine cannot decipher it.
std::optional<std::string> Deciphered(const Subject& subject, const Entry& entry) {
  const auto& known = subject.machine.decrypt;
  if (!known) return std::nullopt;
  const auto found = known->find(std::string(entry.FirstLine()));
  return found != known->end() ? std::optional(found->second) : std::nullopt;
}

void CheckAccount(const Subject& subject, const DirectoryDomain* domain) {
  const Section& section = *subject.wishes.identity.section;
  const Entry* const user = section.Find(Key::kDomainUsername);
  const Entry* const password = section.Find(Key::kDomainPassword);
  if (user == nullptr || password == nullptr || !subject.machine.KnowsDecrypt()) return;
  if (!subject.machine.decrypt) {
    subject.Add(Code::kNoDecryption, *user, "the machine does not have LibCrypto.dll");
    return;
  }
  const auto plainUser = Deciphered(subject, *user);
  const auto plainPassword = Deciphered(subject, *password);
  if (!plainUser || !plainPassword) {
    subject.Add(Code::kNoDecryption, plainUser ? *password : *user,
                "the machine cannot decipher " +
                    std::string(NameOf(plainUser ? Key::kDomainPassword : Key::kDomainUsername)));
  } else if (domain != nullptr && !simulated::IsAccount(*domain, *plainUser, *plainPassword)) {
    subject.Add(Code::kBadAccount, *user,
                "the domain " + domain->dnsName + " has no such user with that password");
  }
}

void CheckDomain(const Subject& subject) {
  const Identity& identity = subject.wishes.identity;
  if (identity.section == nullptr) return;
  DirectoryDomain* domain = subject.machine.FindOwnDomain();
  if (identity.membership == Identity::Membership::kDomain) {
    const Entry& name = *identity.membershipName;
    domain = simulated::FindDomain(subject.machine, std::string(name.FirstLine()));
    if (domain == nullptr && subject.machine.KnowsDirectory()) {
      subject.Add(Code::kNoSuchDomain, name,
                  "the directory has no domain " + Quoted(name.FirstLine()));
    }
  }
  CheckAccount(subject, domain);
  const Entry* const ou = identity.section->Find(Key::kOrganizationalUnit);
  if (ou == nullptr || identity.membership == Identity::Membership::kWorkgroup) return;
  if (identity.membership == Identity::Membership::kUnchanged &&
      MemberOf(subject.machine) == nullptr) {
    subject.Add(Code::kOuWithoutDomain, *ou,
                "the machine is in a workgroup: the unit does not count");
  }
  if (domain == nullptr) return;
  const std::string dn = sys::BuildDn(domain->dnsName, ou->FirstLine());
  if (!simulated::FindContainer(*domain, dn)) {
    subject.Add(Code::kNoSuchOu, *ou, "the domain has no unit " + Quoted(dn));
  } else if (!identity.joinsDomain && subject.machine.FindOwnAccount() == nullptr) {
    subject.Add(Code::kNoComputerAccount, *ou,
                "the domain " + domain->dnsName + " has no account of " +
                    Quoted(subject.machine.computerName));
  }
}

}  // namespace

void CompareIdentity(Wishes& wishes, const Machine& machine) {
  wishes.isOfMachine = true;
  Identity& identity = wishes.identity;
  if (identity.section == nullptr) return;
  const std::string_view name = identity.section->Value(Key::kComputerName);
  identity.renames = !name.empty() && !util::EqualsIgnoringCase(name, machine.computerName);
  const simulated::DomainMembership* const current = MemberOf(machine);
  if (current == nullptr) return;
  identity.leavesDomain = identity.membership == Identity::Membership::kWorkgroup;
  if (!identity.joinsDomain) return;
  const std::string_view domain = identity.membershipName->FirstLine();
  identity.joinsDomain = !util::EqualsIgnoringCase(domain, current->dnsName) &&
                         !util::EqualsIgnoringCase(domain, current->flatName);
}

void CheckOnMachine(const Document& document, const Wishes& wishes, Machine& machine,
                    Findings& findings) {
  simulated::SimulatedPlatform platform(machine);
  const platform::ScopedPlatform scope(platform);
  const Subject subject{document, wishes, machine, findings};
  CheckBindingIfAny(subject);
  CheckHosts(subject);
  CheckRoutes(subject);
  CheckDomain(subject);
}

}  // namespace tool::check
