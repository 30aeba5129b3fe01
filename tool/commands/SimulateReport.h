// The text that `simulate` shows a technician.
#pragma once

#include <string>

#include "platform/simulated/Machine.h"
#include "tool/agent/Conversation.h"
#include "tool/io/Text.h"

namespace tool {

/// Everything that one run of `simulate` reports.
struct SimulatedRun {
  /// "first-boot.cfg, placed as C:\tarvo.cfg"; empty without a file.
  std::string file;
  /// What `check` finds wrong with it; empty for nothing.
  std::string checkRemark;
  /// As `MachineName` tells it.
  std::string machineName;
  /// The machine with the file on it, before the first message.
  simulated::Machine before;
  simulated::Machine after;
  Conversation conversation;
};

/// What one message did but for the changes: messages, log and reply. Log lines of level 0 are
/// shown for a message that failed, all of them with `verbose`.
std::string DeliveryReport(const Delivery& delivery, const Style& style, bool verbose);

/// The report: header, per message what changed and the reply, then the machine before and after.
std::string SimulateReport(const SimulatedRun& run, const Style& style, bool verbose);

}  // namespace tool
