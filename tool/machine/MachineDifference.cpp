#include "tool/machine/MachineDifference.h"

#include <algorithm>
#include <cstddef>
#include <unordered_map>
#include <utility>

#include "base/LetterCase.h"
#include "base/Numbers.h"
#include "base/Services.h"
#include "common/sys/NicText.h"
#include "platform/simulated/MachineFile.h"
#include "platform/simulated/Secrets.h"
#include "tool/io/CodePage.h"
#include "tool/io/Text.h"

namespace tool {
namespace {

using simulated::Machine;

struct Fact {
  std::string subject;
  std::string setting;
  std::string value;
  /// Compared with the value but not shown.
  std::string content;
};

std::string DataText(const simulated::RegistryValue& value) {
  const auto* number = std::get_if<std::uint32_t>(&value.data);
  return number != nullptr ? std::to_string(*number) : std::get<std::string>(value.data);
}

/// The machine as a flat list, in the order in which it is shown.
std::vector<Fact> Facts(const Machine& machine) {
  std::vector<Fact> facts;
  const auto add = [&](const std::string& subject, const std::string& setting,
                       const std::string& value, const std::string& content = {}) {
    facts.push_back({ToUtf8(subject), ToUtf8(setting), ToUtf8(value), content});
  };
  add("computer", "name", machine.computerName);
  add("computer", "name after the restart", machine.pendingComputerName.value_or("-"));
  add("computer", "member of", MembershipText(machine.membership));
  for (const simulated::Adapter& adapter : machine.adapters) {
    const std::string name = AdapterName(adapter);
    for (const simulated::AdapterField& field : simulated::kAdapterFields) {
      if (field.word != nullptr) add(name, field.word, ListText(FieldTexts(adapter, field)));
    }
  }
  for (const simulated::PersistentRoute& route : machine.persistentRoutes) {
    add("persistent routes", RouteText(route), "metric " + std::to_string(route.metric));
  }
  for (const simulated::Service& service : machine.services) {
    add("services", service.name, ServiceText(service));
  }
  for (const simulated::RegistryValue& value : machine.registry) {
    add("registry", value.key + "\\" + value.name,
        simulated::NamesPassword(value.name) ? "***" : DataText(value));
  }
  for (const simulated::File& file : machine.files) {
    add("files", file.path, std::to_string(file.text.size()) + " bytes", file.text);
  }
  for (const simulated::DirectoryDomain& domain : machine.domains) {
    for (const simulated::Computer& computer : domain.computers) {
      add("directory " + domain.dnsName, computer.name, computer.dn);
    }
  }
  return facts;
}

/// Each text with "/" and its mate.
std::vector<std::string> Paired(std::vector<std::string> texts,
                                const std::vector<std::string>& mates) {
  for (std::size_t i = 0; i < std::min(texts.size(), mates.size()); ++i) texts[i] += "/" + mates[i];
  return texts;
}

/// Facts by subject and setting; of two alike the later one counts.
using Index = std::unordered_map<std::string, const Fact*>;

std::string Key(const Fact& fact) { return fact.subject + '\0' + fact.setting; }

Index IndexOf(const std::vector<Fact>& facts) {
  Index index;
  for (const Fact& fact : facts) index[Key(fact)] = &fact;
  return index;
}

}  // namespace

std::string MembershipText(const simulated::Membership& membership) {
  if (const auto* workgroup = std::get_if<simulated::WorkgroupMembership>(&membership)) {
    return "workgroup " + workgroup->name;
  }
  const auto& domain = std::get<simulated::DomainMembership>(membership);
  return "domain " + (domain.dnsName.empty() ? domain.flatName : domain.dnsName);
}

std::string MachineText(const std::string& name, const Machine& machine) {
  return Printable(name + ": " +
                   ToUtf8(machine.computerName + ", " + MembershipText(machine.membership))) +
         ", " + base::Counted(machine.adapters.size(), "adapter");
}

std::string AdapterName(const simulated::Adapter& adapter) {
  std::string name = "adapter " + std::to_string(adapter.index);
  if (!adapter.caption) return name;
  // The caption repeats the index: "[00000007] Intel(R) PRO/1000 MT Desktop Adapter".
  const std::size_t end = adapter.caption->starts_with('[') ? adapter.caption->find("] ") : 0;
  const std::size_t start = end == 0 || end == std::string::npos ? 0 : end + 2;
  return name + ", " + adapter.caption->substr(start);
}

std::vector<std::string> FieldTexts(const simulated::Adapter& adapter,
                                    const simulated::AdapterField& field) {
  using Texts = std::vector<std::string>;
  struct Wording {
    const simulated::AdapterField& field;
    Texts operator()(std::uint32_t number) const { return {std::to_string(number)}; }
    Texts operator()(bool flag) const { return {flag ? field.set : field.unset}; }
    Texts operator()(const std::string& text) const { return {text}; }
    Texts operator()(const simulated::NullableText& text) const {
      return text.value_or("").empty() ? Texts() : Texts{*text};
    }
    Texts operator()(const Texts& list) const { return list; }
  };
  Texts texts =
      std::visit([&](auto member) { return Wording{field}(adapter.*member); }, field.member);
  return field.mate != nullptr ? Paired(std::move(texts), adapter.*field.mate) : texts;
}

std::vector<std::string> Addresses(const simulated::Adapter& adapter) {
  return Paired(adapter.ipAddresses, adapter.subnetMasks);
}

std::optional<UnknownHost> FindUnknownHost(const simulated::Machine& machine) {
  const auto isUnknown = [&machine](const std::string& text) {
    const std::string first = base::Folded(text.substr(0, 1));
    return first >= "a" && first <= "z" &&
           std::none_of(machine.hosts.begin(), machine.hosts.end(),
                        [&](const auto& host) { return base::SameText(host.name, text); });
  };
  for (const simulated::Adapter& adapter : machine.adapters) {
    if (!adapter.ipEnabled || !sys::ParsePnpDeviceId(adapter.pnpDeviceId).isPci) continue;
    std::vector<std::string> texts = adapter.ipAddresses;
    texts.resize(std::min<std::size_t>(texts.size(), 1));  // further ones are not read
    texts.insert(texts.end(), adapter.gateways.begin(), adapter.gateways.end());
    texts.insert(texts.end(), adapter.dnsServers.begin(), adapter.dnsServers.end());
    const auto unknown = std::find_if(texts.begin(), texts.end(), isUnknown);
    if (unknown != texts.end()) return UnknownHost{*unknown, adapter.index};
  }
  return std::nullopt;
}

std::string RouteText(const simulated::PersistentRoute& route) {
  return route.destination + "/" + route.mask + " via " + route.nextHop;
}

std::string ServiceText(const simulated::Service& service) {
  return std::string(base::TypeOf(service.start).name) +
         (service.running ? ", running" : ", stopped");
}

std::vector<Difference> Differences(const Machine& before, const Machine& after) {
  const std::vector<Fact> old = Facts(before);
  const std::vector<Fact> now = Facts(after);
  const Index oldIndex = IndexOf(old);
  const Index nowIndex = IndexOf(now);

  std::vector<Difference> differences;
  const auto add = [&](const Fact& fact, const std::string& was, const std::string& is) {
    differences.push_back(
        {Printable(fact.subject), Printable(fact.setting), Printable(was), Printable(is)});
  };
  for (const Fact& fact : old) {
    const auto same = nowIndex.find(Key(fact));
    if (same == nowIndex.end()) {
      add(fact, fact.value, "-");
    } else if (fact.value != same->second->value) {
      add(fact, fact.value, same->second->value);
    } else if (fact.content != same->second->content) {
      add(fact, fact.value, fact.value + ", changed");
    }
  }
  for (const Fact& fact : now) {
    if (!oldIndex.contains(Key(fact))) add(fact, "-", fact.value);
  }

  // New settings of a subject belong beside its other ones, in the order of the machine.
  std::unordered_map<std::string, std::size_t> ranks;
  for (const auto* facts : {&now, &old}) {
    for (const Fact& fact : *facts) ranks.try_emplace(Printable(fact.subject), ranks.size());
  }
  std::stable_sort(differences.begin(), differences.end(), [&](const auto& a, const auto& b) {
    return ranks.at(a.subject) < ranks.at(b.subject);
  });
  return differences;
}

}  // namespace tool
