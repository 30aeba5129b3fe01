// Keys of a configuration file that the library does not use.
#pragma once

#include <vector>

#include "tool/check/Document.h"
#include "tool/plan/QueuePlan.h"

namespace tool {

/// The keys that led to none of the events, in the order of the file: keys of unknown sections,
/// misspelled or repeated ones, and those that another key overrides. Keys that only control others
/// are not listed.
std::vector<UnusedKeys> FindUnusedKeys(const check::Document& document,
                                       const std::vector<PlannedEvent>& events);

}  // namespace tool
