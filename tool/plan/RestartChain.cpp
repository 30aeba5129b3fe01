#include "tool/plan/RestartChain.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <unordered_map>
#include <utility>

#include "base/LetterCase.h"
#include "base/Numbers.h"
#include "base/Pieces.h"
#include "tool/agent/Conversation.h"
#include "tool/io/CodePage.h"
#include "tool/io/Text.h"
#include "tool/machine/MachineDifference.h"
#include "tool/machine/MachineDocument.h"
#include "tool/plan/PlanOutput.h"
#include "tool/plan/PlanText.h"

namespace tool {
namespace {

using simulated::Machine;

/// Everything that decides what a start does.
std::string StateOf(const Machine& machine, const QueuePlan& plan) {
  std::string state = PrintedMachine(machine) + PrintedJson(plan, /*verbose=*/false);
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
  // cppcheck-suppress returnStdMoveLocal; the conversation holds it
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

/// Collects what a last plan still finds to be done.
class UnmetSettings {
 public:
  explicit UnmetSettings(RestartChain& chain) : chain_(chain) {
    for (const ChainStep& step : chain.steps) Learn(step.plan);
  }

  void Take(const QueuePlan& plan) {
    for (const PlannedCommand& command : plan.commands) {
      if (command.LacksAdapter()) {
        Add(plan, command, base::Join(BindingTexts(plan, command), "; "));
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
    for (const UnusedKeys& unused : plan.unused) {
      chain_.notTrue.push_back({unused.section, LinesText(unused.lines), unused.keys, "",
                                std::nullopt, std::nullopt,
                                "nothing came of it; orvanta-config check tells why"});
    }
  }

 private:
  /// Where the file asks for a command of this class: what is the same of it in every start.
  static std::string OriginOf(const std::string& className, const PlannedEvent& event) {
    return className + " " + event.section + " " + event.key;
  }
  static std::string OriginOf(const QueuePlan& plan, const PlannedCommand& command) {
    if (command.events.empty()) return command.className;
    return OriginOf(command.className, plan.events[command.events.front()]);
  }

  /// Which commands a run did, and why not the others.
  void Learn(const QueuePlan& plan) {
    const auto learn = [&](const PlannedCommand& command) {
      if (command.needed) whyNot_[OriginOf(plan, command)].clear();
      whyNot_.emplace(OriginOf(plan, command), ComparisonText(command));
    };
    for (std::size_t i = 0; i < plan.RunsNow(); ++i) {
      learn(plan.commands[i]);
      for (const PlannedCommand& inner : plan.commands[i].commands) learn(inner);
    }
    for (const PlannedCommand& command : plan.dropped) learn(command);
    for (const PlannedEvent& event : plan.events) {
      if (event.kind != "DOMAIN" || event.cameToNothing.empty()) continue;
      whyNot_.emplace(OriginOf("config::command::JoinDomain", event), event.cameToNothing);
    }
  }

  std::string WhyNeeded(const QueuePlan& plan, const PlannedCommand& command) const {
    if (chain_.ending == ChainEnding::kLimit) return "a restart is due";
    if (chain_.ending == ChainEnding::kFailed) {
      return "the run failed: " + FailureText(chain_.steps.back().delivery);
    }
    const auto found = whyNot_.find(OriginOf(plan, command));
    if (found == whyNot_.end()) return "no run did it, and something else changed it";
    if (!found->second.empty()) {
      return "no run did it (" + found->second + "), and something else changed it";
    }
    return chain_.ending == ChainEnding::kLoops
               ? "every start does it again, to no effect"
               : "the run did it, and something behind it or the machine undid it";
  }

  void Check(const QueuePlan& plan, const PlannedCommand& command,
             const simulated::Adapter* adapter) {
    if (!command.current || !command.wanted) return;
    if (command.needed) {
      const bool isPending =
          command.Is("ChangeCompName") &&
          ToUtf8(chain_.after.pendingComputerName.value_or("")) == *command.wanted;
      Add(plan, command, isPending ? "it waits for a restart" : WhyNeeded(plan, command));
    } else if (adapter != nullptr && command.Is("SetStatic")) {
      const std::string addresses = ToUtf8(base::Join(Addresses(*adapter), ","));
      if (addresses == *command.wanted) return;
      Add(plan, command, "the first address is right already, and no other is compared");
      chain_.notTrue.back().current = addresses;
    } else if (!base::SameText(*command.current, *command.wanted)) {
      Add(plan, command, "the computer belongs to no domain");
    }
  }

  void Add(const QueuePlan& plan, const PlannedCommand& command, const std::string& reason) {
    const std::size_t event = command.events.front();
    chain_.notTrue.push_back({plan.events[event].section, LinesText(LinesOf(plan, command)),
                              command.ShortName(), command.description, command.current,
                              command.wanted, reason});
  }

  RestartChain& chain_;
  /// Empty for what was done.
  std::map<std::string, std::string> whyNot_;
};

}  // namespace

RestartChain FollowRestarts(const Machine& machine, const std::string& path,
                            const std::string& shownPath, std::uint32_t most) {
  RestartChain chain;
  chain.after = machine;
  chain.after.assumesUnknown = true;
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
  end.PutFile(BytesOf(file, file), chain.steps.back().plan.text);
  const QueuePlan last = MakePlan(end, file, shownPath, Comparing::kAsItIs);
  if (!last.error) UnmetSettings(chain).Take(last);
  return chain;
}

std::string EndingText(const RestartChain& chain) {
  const std::string restarts = base::Counted(chain.restarts, "restart");
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
