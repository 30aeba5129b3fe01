// The settings that a file asks for, each beside the machine's.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/simulated/Machine.h"
#include "tool/plan/QueuePlan.h"

namespace tool {

struct Setting {
  /// The plan's command for it; a ConfigureNic where a section has no adapter.
  const PlannedCommand* command = nullptr;
  /// Null for a setting of the computer, and without an adapter.
  const simulated::Adapter* adapter = nullptr;
  /// In UTF-8, lists in full; nothing when the machine file leaves it unknown.
  std::optional<std::string> found;
  bool holds = false;

  /// What is unknown does not differ.
  bool Differs() const { return found && !holds; }
};

/// Every setting that the plan's commands compare, in the order of the queue, dropped ones last.
/// The plan was made of this machine as it is; the result points into both.
std::vector<Setting> CompareSettings(const QueuePlan& plan, simulated::Machine& machine);

}  // namespace tool
