// A configuration file through its restarts: planned, run, restarted, and planned again.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/simulated/Machine.h"
#include "tool/agent/Delivery.h"
#include "tool/plan/QueuePlan.h"

namespace tool {

/// One start of the machine.
struct ChainStep {
  QueuePlan plan;
  /// The run that followed; of a restore the hand-over's changes come first.
  Delivery delivery;
};

enum class ChainEnding : std::uint8_t {
  kSettled,  ///< a run came to its end
  kFailed,   ///< a run failed or was not answered
  kLoops,    ///< a start found the same machine and queue as an earlier one
  kLimit,    ///< another restart is due, but no more were to be followed
};

/// A setting of the file that the machine does not have at the end.
struct NotTrue {
  std::string section;
  /// "line 8".
  std::string lines;
  /// "SetGateway", or "DNS_SERVER" for an event without a command.
  std::string what;
  std::string description;
  std::optional<std::string> current;
  std::optional<std::string> wanted;
  std::string reason;
};

struct RestartChain {
  /// At least one.
  std::vector<ChainStep> steps;
  ChainEnding ending = ChainEnding::kSettled;
  /// The step that the next start would repeat; only for a chain that loops.
  std::size_t loopsTo = 0;
  std::uint32_t restarts = 0;
  /// Of all starts: calls that changed the machine's settings, and the intended pauses.
  std::size_t changes = 0;
  std::uint64_t pauseMs = 0;
  simulated::Machine after;
  std::vector<NotTrue> notTrue;

  /// It settled, or only stopped at the limit.
  bool Succeeded() const {
    return ending == ChainEnding::kSettled || ending == ChainEnding::kLimit;
  }
};

/// Sends "Configure" messages that name `path` and restarts the machine after each "Reboot", at
/// most `most` times. Throws as MakePlan.
RestartChain FollowRestarts(const simulated::Machine& machine, const std::string& path,
                            const std::string& shownPath, std::uint32_t most);

/// The ending in words: "settled after 1 restart".
std::string EndingText(const RestartChain& chain);

}  // namespace tool
