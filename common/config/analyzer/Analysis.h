// What an analysis found on its way, for whoever explains the queue it left; the agent does not ask
// for it.
#pragma once

#include <memory>
#include <unordered_map>

#include "common/config/command/IConfigureCommand.h"
#include "common/sys/NicList.h"

namespace config::analyzer {

struct Analysis {
  /// The commands that would change nothing, in the order of the queue.
  command::CommandList dropped;
  /// What each command of the queue compared, dropped ones included.
  std::unordered_map<const command::IConfigureCommand*, command::Comparison> comparisons;
  /// The adapters as the binding read them; null when nothing was to be bound.
  std::unique_ptr<sys::NicList> adapters;
};

}  // namespace config::analyzer
