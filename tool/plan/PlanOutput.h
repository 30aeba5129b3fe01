// A plan as a text, a page and a document.
#pragma once

#include <string>

#include "platform/simulated/Json.h"
#include "platform/simulated/Machine.h"
#include "tool/io/Text.h"
#include "tool/plan/QueuePlan.h"
#include "tool/plan/RestartChain.h"

namespace tool {

/// The queue as a tree: what runs now, what waits for the restart, what was dropped, how long it
/// pauses. With `verbose` also every adapter and every event.
std::string PlanReport(const QueuePlan& plan, const Style& style, bool verbose);

/// The plan of every start with the reply of its run, how the chain ends, and the settings of the
/// file that the machine does not have then.
std::string ChainReport(const RestartChain& chain, const Style& style, bool verbose);

struct PlanPageInput {
  std::string fileName;
  /// What `check` finds wrong with it; empty for nothing.
  std::string checkRemark;
  std::string machineName;
  /// Before the first run, with the file on it.
  const simulated::Machine& before;
  const RestartChain& chain;
};

/// One HTML document that needs neither network nor script: the queue of every start and what its
/// run did, the machine before and after, adapters, events, and the file with its passwords hidden.
std::string PlanPage(const PlanPageInput& input);

/// The plan's fields in their fixed order. With `verbose` they are followed by the events, the
/// adapters and the pauses, and commands name their events.
simulated::Json ToJson(const QueuePlan& plan, bool verbose);

/// That document; of a chain the fields of the first plan, followed by its own.
std::string PrintedJson(const QueuePlan& plan, bool verbose);
std::string PrintedJson(const RestartChain& chain, bool verbose);

}  // namespace tool
