// The page that `plan --html` writes.
#pragma once

#include <string>

#include "platform/simulated/Machine.h"
#include "tool/plan/RestartChain.h"

namespace tool {

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

}  // namespace tool
