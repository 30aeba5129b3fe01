#include "tools/orvanta-config/plan/RestartChain.h"

#include <algorithm>
#include <iterator>
#include <unordered_map>
#include <utility>

#include "common/util/Text.h"
#include "platform/simulated/MachineFile.h"
#include "tools/orvanta-config/Conversation.h"
#include "tools/orvanta-config/plan/PlanJson.h"
#include "tools/orvanta-config/plan/PlanText.h"

namespace tool {
namespace {

using simulated::Machine;

/// Everything that decides what a start does.
std::string StateOf(const Machine& machine, const QueuePlan& plan) {
  std::string state = simulated::PrintMachine(machine) + ToJson(plan, /*verbose=*/false).dump();
  // A fault that strikes once makes two starts differ.
  for (const simulated::Fault& fault : machine.faults) {
    if (fault.nth) state += " " + std::to_string(std::min(fault.matched, *fault.nth));
  }
  return state;
}

/// Runs the message; when it hands a restore file over, the one that the library posts as well.
Delivery RunOnce(std::string* path, Machine& machine) {
  Conversation conversation = Converse({"Internal", "Configure", {{"Filename", *path}}},
                                       {.deliverPosted = true, .restarts = 0}, machine);
  Delivery& last = conversation.deliveries.back();
  *path = last.request.values.front().second;
  for (auto earlier = std::next(conversation.deliveries.rbegin());
       earlier != conversation.deliveries.rend(); ++earlier) {
    last.changes.insert(last.changes.begin(), earlier->changes.begin(), earlier->changes.end());
  }
  return std::move(last);
}

std::string ReplyValue(const Delivery& delivery, const char* key) {
  const auto value = std::find_if(delivery.reply.begin(), delivery.reply.end(),
                                  [=](const MessageValue& other) { return other.key == key; });
  return value != delivery.reply.end() ? ShownText(*value) : "";
}

std::string FailureText(const Delivery& delivery) {
  if (ReplyValue(delivery, "Status-Module") == "Tarvo") {
    return "a restart is due, which RebootAfterConfig=False forbids";
  }
  const std::string code = ReplyValue(delivery, "Status-Code");
  return delivery.Failure() + (code.empty() || code == "0" ? "" : ", system error " + code);
}

std::string Addresses(const simulated::Adapter& adapter) {
  std::string text;
  for (std::size_t i = 0; i < adapter.ipAddresses.size(); ++i) {
    text += (i > 0 ? "," : "") + adapter.ipAddresses[i];
    if (i < adapter.subnetMasks.size()) text += "/" + adapter.subnetMasks[i];
  }
  return text;
}

/// Collects what a last plan still finds to be done.
class Reckoning {
 public:
  explicit Reckoning(RestartChain& chain) : chain_(chain), whyNeeded_(WhyNeeded(chain)) {}

  void Take(const QueuePlan& plan) {
    for (std::size_t i = 0; i < plan.commands.size(); ++i) {
      const PlannedCommand& command = plan.commands[i];
      if (command.LacksAdapter()) {
        std::string reason = "no adapter is left: " + BindingText(plan, i);
        for (const std::string& other : PassedOver(plan, i)) reason += ", " + other;
        Add(plan, command, reason);
        continue;
      }
      Check(plan, command, /*adapter=*/nullptr);
      if (!command.binding) continue;
      const simulated::Adapter* adapter = chain_.after.FindAdapter(*command.binding->index);
      for (const PlannedCommand& inner : command.commands) Check(plan, inner, adapter);
    }
    for (const PlannedCommand& command : plan.dropped) Check(plan, command, /*adapter=*/nullptr);
    for (const PlannedEvent& event : plan.events) {
      // The domain that the computer is in already is what the file asks for.
      if (event.cameToNothing.empty() || event.kind == "DOMAIN") continue;
      chain_.notTrue.push_back({event.section, "line " + std::to_string(event.line), event.kind,
                                ShownValue(event), std::nullopt, std::nullopt,
                                event.cameToNothing});
    }
  }

 private:
  static std::string WhyNeeded(const RestartChain& chain) {
    switch (chain.ending) {
      case ChainEnding::kSettled:
        return "the run did it, and something behind it or the machine undid it";
      case ChainEnding::kLimit:
        return "a restart is due";
      case ChainEnding::kLoops:
        return "every start does it again, to no effect";
      case ChainEnding::kFailed:
        break;
    }
    return "the run failed: " + FailureText(chain.steps.back().delivery);
  }

  void Check(const QueuePlan& plan, const PlannedCommand& command,
             const simulated::Adapter* adapter) {
    if (!command.current || !command.wanted) return;
    if (command.needed) {
      const bool isPending = command.Is("ChangeCompName") &&
                             chain_.after.pendingComputerName.value_or("") == *command.wanted;
      Add(plan, command, isPending ? "it waits for a restart" : whyNeeded_);
    } else if (!util::EqualsIgnoringCase(*command.current, *command.wanted)) {
      const bool isStatic = adapter != nullptr && command.Is("SetStatic");
      if (isStatic && Addresses(*adapter) == *command.wanted) return;
      Add(plan, command,
          isStatic ? "the first address is right already, and no other is compared"
                   : "the computer belongs to no domain");
    }
  }

  void Add(const QueuePlan& plan, const PlannedCommand& command, const std::string& reason) {
    const std::size_t event = command.events.front();
    chain_.notTrue.push_back({plan.events[event].section, LinesOf(plan, command),
                              command.ShortName(), command.description, command.current,
                              command.wanted, reason});
  }

  RestartChain& chain_;
  std::string whyNeeded_;
};

}  // namespace

RestartChain FollowRestarts(const Machine& machine, const std::string& path,
                            const std::string& shownPath, std::uint32_t most) {
  RestartChain chain;
  chain.after = machine;
  std::string file = path;
  std::unordered_map<std::string, std::size_t> seen;
  for (;;) {
    QueuePlan plan = MakePlan(chain.after, file, shownPath, Comparing::kInTurn);
    const auto [state, isNew] = seen.emplace(StateOf(chain.after, plan), chain.steps.size());
    if (!isNew) {
      chain.ending = ChainEnding::kLoops;
      chain.loopsTo = state->second;
      break;
    }
    ChainStep& step = chain.steps.emplace_back();
    step.plan = std::move(plan);
    step.delivery = RunOnce(&file, chain.after);
    step.delivery.restarts = chain.restarts;
    if (step.delivery.Result() != "Reboot") {
      chain.ending =
          step.delivery.Result() == "Success" ? ChainEnding::kSettled : ChainEnding::kFailed;
      break;
    }
    if (chain.restarts == most) {
      chain.ending = ChainEnding::kLimit;
      break;
    }
    chain.after.Restart();
    ++chain.restarts;
  }

  // The run may have moved the file away.
  Machine end = chain.after;
  end.PutFile(file, chain.steps.back().plan.text);
  const QueuePlan last = MakePlan(std::move(end), file, shownPath, Comparing::kAsItIs);
  if (!last.error) Reckoning(chain).Take(last);
  return chain;
}

std::string EndingText(const RestartChain& chain) {
  const std::string restarts = Counted(chain.restarts, "restart");
  switch (chain.ending) {
    case ChainEnding::kSettled:
      return "settled after " + restarts +
             (chain.notTrue.empty() ? "" : ", but not all of the file is true");
    case ChainEnding::kLimit:
      return "a restart is due after " + restarts + "; a larger --follow-restarts tells more";
    case ChainEnding::kLoops:
      return "would loop: after " + restarts + " machine and queue are as they were at start " +
             std::to_string(chain.loopsTo + 1);
    case ChainEnding::kFailed:
      break;
  }
  return "failed after " + restarts + ": " + FailureText(chain.steps.back().delivery);
}

}  // namespace tool
