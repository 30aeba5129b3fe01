// What a configuration file says and the library makes nothing of.
#pragma once

#include <vector>

#include "tool/check/Document.h"
#include "tool/plan/QueuePlan.h"

namespace tool {

/// The keys that none of the events came of, in the order of the file: of sections that nobody
/// reads, misspelt or repeated ones, and those that another key of the section rules out. Keys that
/// only steer others are not among them.
std::vector<UnusedKeys> FindUnusedKeys(const check::Document& document,
                                       const std::vector<PlannedEvent>& events);

}  // namespace tool
