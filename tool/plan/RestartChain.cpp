#include "tool/plan/RestartChain.h"

#include <algorithm>
#include <map>
#include <utility>

#include "base/FindIn.h"
#include "base/Numbers.h"
#include "base/Pieces.h"
#include "tool/agent/Conversation.h"
#include "tool/io/CodePage.h"
#include "tool/io/Text.h"
#include "tool/machine/MachineDifference.h"
#include "tool/plan/PlanOutput.h"
#include "tool/plan/PlanText.h"
#include "tool/plan/Rehearsal.h"
#include "tool/plan/Settings.h"

namespace tool {
namespace {

using simulated::Machine;

/// What decides what a start does: the machine without what only tells of earlier ones.
Machine StateOf(Machine machine) {
  machine.journal.clear();
  machine.assumed.clear();
  for (simulated::Fault& fault : machine.faults) {
    fault.struck.clear();
    // A fault that strikes once makes two starts differ.
    fault.matched = fault.nth ? std::min(fault.matched, *fault.nth) : 0;
  }
  return machine;
}

/// Adds what a run did; the file that it moves away is no setting.
void Count(const Delivery& delivery, RestartChain& chain) {
  for (const simulated::Change& change : delivery.changes) {
    if (change.call == "sleep") {
      chain.pauseMs += static_cast<std::uint64_t>(std::get<std::int64_t>(change["milliseconds"]));
    } else if (!change.call.starts_with("file.") && !IsRefused(change)) {
      ++chain.changes;
    }
  }
}

/// Runs the message; when it hands a restore file over, the one that the library posts as well.
Delivery RunOnce(std::string* path, Machine& machine) {
  Conversation conversation = Converse({"Internal", "Configure", {{"Filename", *path}}},
                                       {.deliverPosted = true, .restarts = 0}, machine);
  std::vector<simulated::Change> changes;
  for (const Delivery& delivery : conversation.deliveries) {
    changes.insert(changes.end(), delivery.changes.begin(), delivery.changes.end());
  }
  Delivery last = std::move(conversation.deliveries.back());
  *path = last.request.values.front().second;
  last.changes = std::move(changes);
  return last;
}

std::string ReplyValue(const Delivery& delivery, const char* key) {
  const auto* value =
      base::FindIn(delivery.reply, [=](const MessageValue& other) { return other.key == key; });
  return value != nullptr ? ShownText(*value) : "";
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
    for (const auto& [plan, delivery] : chain.steps) {
      const std::size_t runsNow = plan.RunsNow();
      for (std::size_t i = 0; i < runsNow; ++i) Learn(plan, plan.commands[i]);
      for (const PlannedCommand& command : plan.dropped) Learn(plan, command);
      for (const PlannedEvent& event : plan.events) {
        if (event.kind != "DOMAIN" || event.cameToNothing.empty()) continue;
        whyNot_.emplace(OriginOf("config::command::JoinDomain", event), event.cameToNothing);
      }
    }
  }

  void Take(const QueuePlan& plan) {
    for (const Setting& setting : CompareSettings(plan, chain_.after)) {
      if (!setting.Differs()) continue;
      const PlannedCommand& command = *setting.command;
      NotTrue& added =
          chain_.notTrue.emplace_back(NotTrue{plan.events[command.events.front()].section,
                                              LinesText(LinesOf(plan, command)),
                                              command.ShortName(),
                                              command.description,
                                              {},
                                              command.wanted,
                                              WhyNotTrue(plan, command)});
      if (command.wanted) added.current = setting.found;
    }
    for (const PlannedEvent& event : plan.events) {
      // The domain that the computer is in already is what the file asks for.
      if (event.cameToNothing.empty() || event.kind == "DOMAIN") continue;
      chain_.notTrue.push_back({event.section,
                                "line " + std::to_string(event.line),
                                event.kind,
                                ShownValue(event),
                                {},
                                {},
                                event.cameToNothing});
    }
    for (const auto& [section, keys, lines] : plan.unused) {
      chain_.notTrue.push_back({section,
                                LinesText(lines),
                                keys,
                                "",
                                {},
                                {},
                                "not used by the library; see orvanta-config check"});
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

  /// Whether a run did the command and those in it, and why not.
  void Learn(const QueuePlan& plan, const PlannedCommand& command) {
    std::string& whyNot =
        whyNot_.emplace(OriginOf(plan, command), ComparisonText(command)).first->second;
    if (command.needed) whyNot.clear();
    for (const PlannedCommand& inner : command.commands) Learn(plan, inner);
  }

  std::string WhyNotTrue(const QueuePlan& plan, const PlannedCommand& command) const {
    if (command.LacksAdapter()) return base::Join(BindingTexts(plan, command), "; ");
    if (!command.needed) {
      return command.Is("SetStatic")
                 ? "the first address is right already, and no other is compared"
                 : "the computer belongs to no domain";
    }
    if (command.Is("ChangeCompName") &&
        ToUtf8(chain_.after.pendingComputerName.value_or("")) == *command.wanted) {
      return "it waits for a restart";
    }
    if (chain_.ending == ChainEnding::kLimit) return "a restart is due";
    if (chain_.ending == ChainEnding::kFailed) {
      return "the run failed: " + FailureText(chain_.steps.back().delivery);
    }
    const auto found = whyNot_.find(OriginOf(plan, command));
    if (found == whyNot_.end() || !found->second.empty()) {
      return "no run did it" + (found == whyNot_.end() ? "" : " (" + found->second + ")") +
             ", and something else changed it";
    }
    return chain_.ending == ChainEnding::kLoops
               ? "every start does it again, to no effect"
               : "the run did it, and something after it or the machine undid it";
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
  std::vector<std::pair<std::string, Machine>> starts;
  for (;;) {
    std::pair<std::string, Machine> start(file, StateOf(chain.after));
    const auto same = std::find(starts.begin(), starts.end(), start);
    if (same != starts.end()) {
      chain.ending = ChainEnding::kLoops;
      chain.loopsTo = static_cast<std::size_t>(same - starts.begin());
      break;
    }
    starts.push_back(std::move(start));
    ChainStep& step = chain.steps.emplace_back();
    step.plan = MakePlan(chain.after, file, shownPath, Comparing::kInTurn);
    step.delivery = RunOnce(&file, chain.after);
    step.delivery.restarts = chain.restarts;
    Count(step.delivery, chain);
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
      return "a restart is due after " + restarts + "; a larger --follow-restarts shows more";
    case ChainEnding::kLoops:
      return "would loop: after " + restarts + " machine and queue are as they were at start " +
             std::to_string(chain.loopsTo + 1);
    case ChainEnding::kFailed:
      break;
  }
  return "failed after " + restarts + ": " + FailureText(chain.steps.back().delivery);
}

}  // namespace tool
