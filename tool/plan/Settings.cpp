#include "tool/plan/Settings.h"

#include <algorithm>
#include <string_view>

#include "base/Pieces.h"
#include "tool/io/CodePage.h"
#include "tool/machine/MachineDifference.h"

namespace tool {
namespace {

using simulated::Adapter;

constexpr char kDhcp[] = "dhcp";

std::string Sorted(std::string_view list) {
  std::vector<std::string> pieces = base::Split(list, ",");
  std::sort(pieces.begin(), pieces.end());
  return base::Join(pieces, ",");
}

/// What the adapter has where the library itself looks at less: at the first address only, and at
/// no DNS server that is to come from DHCP. Nothing for any other command.
std::optional<std::string> FoundOn(const Adapter& adapter, const PlannedCommand& command) {
  if (command.Is("SetDns") && command.wanted == kDhcp) {
    return adapter.staticDns ? base::Join(adapter.dnsServers, ",") : kDhcp;
  }
  if (!command.Is("SetStatic")) return std::nullopt;
  if (adapter.dhcpEnabled) return kDhcp;
  std::vector<std::string> addresses = Addresses(adapter);
  std::erase_if(addresses, [](const std::string& text) {  // no file speaks of IPv6
    return text.find(':') != std::string::npos;
  });
  return base::Join(addresses, ",");
}

}  // namespace

std::vector<Setting> CompareSettings(const QueuePlan& plan, simulated::Machine& machine) {
  const bool isMember = std::holds_alternative<simulated::DomainMembership>(machine.membership);
  std::vector<Setting> settings;
  const auto add = [&](const PlannedCommand& command, const Adapter* adapter) {
    if (!command.wanted || command.events.empty()) return;
    Setting& setting =
        settings.emplace_back(Setting{&command, adapter, command.current, !command.needed});
    if (const auto all = adapter != nullptr ? FoundOn(*adapter, command) : std::nullopt) {
      setting.found = ToUtf8(*all);
      setting.holds = Sorted(*setting.found) == Sorted(*command.wanted);
    } else if (command.Is("JoinWorkgroup") && isMember) {
      setting.found = ToUtf8(MembershipText(machine.membership));
    } else if (command.Is("MoveOu")) {
      if (isMember && !machine.KnowsDirectory()) setting.found.reset();
      setting.holds = setting.holds && isMember;
    }
    if (command.course.unknown == "hosts") setting.found.reset();
  };
  for (const auto* commands : {&plan.commands, &plan.dropped}) {
    for (const PlannedCommand& command : *commands) {
      if (!command.binding) {
        add(command, nullptr);
      } else if (command.LacksAdapter()) {
        settings.push_back({&command, nullptr, "none", /*holds=*/false});
      } else {
        const Adapter* const adapter = machine.FindAdapter(*command.binding->index);
        for (const PlannedCommand& inner : command.commands) add(inner, adapter);
      }
    }
  }
  return settings;
}

}  // namespace tool
