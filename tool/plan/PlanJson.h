// The JSON of `plan`.
#pragma once

#include "platform/simulated/Json.h"
#include "tool/plan/QueuePlan.h"
#include "tool/plan/RestartChain.h"

namespace tool {

/// The plan's fields in their fixed order. With `verbose` they are followed by the events, the
/// adapters and the pauses, and commands name their events.
simulated::Json ToJson(const QueuePlan& plan, bool verbose);

/// The fields of the first plan, followed by those of the chain.
simulated::Json ToJson(const RestartChain& chain, bool verbose);

}  // namespace tool
