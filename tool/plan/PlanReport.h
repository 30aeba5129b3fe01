// The text that `plan` shows a technician.
#pragma once

#include <string>

#include "tool/io/Text.h"
#include "tool/plan/QueuePlan.h"
#include "tool/plan/RestartChain.h"

namespace tool {

/// The queue as a tree: what runs now, what waits for the restart, what was dropped, how long it
/// pauses. With `verbose` also every adapter and every event.
std::string PlanReport(const QueuePlan& plan, const Style& style, bool verbose);

/// The plan of every start with the reply of its run, how it ends, and what of the file is not true
/// then.
std::string ChainReport(const RestartChain& chain, const Style& style, bool verbose);

}  // namespace tool
