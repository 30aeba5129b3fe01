// One machine on the way through an image of itself: settings captured, lost, and restored.
#pragma once

#include <optional>

#include "platform/simulated/Machine.h"
#include "tool/agent/Conversation.h"
#include "tool/agent/Delivery.h"

namespace tool {

/// Each state is kept as it was; faults of the machine count through from the first message to the
/// last.
struct ImageRestore {
  simulated::Machine before;
  Delivery capture;
  /// The restore file that the image takes along; none when it was neither written nor there.
  std::optional<simulated::File> captured;
  /// The machine as the image starts on it: settings of its adapters cleared.
  simulated::Machine cleared;
  Conversation restore;
  simulated::Machine after;

  /// Every message succeeded and none still asks for a restart.
  bool Succeeded() const;
};

/// Prepares `machine` for an image and lays that image down on it again. What a fresh system would
/// not know is cleared: all adapters are back on DHCP, without addresses, DNS settings and
/// persistent routes, and disabled services stand still. The agent's file then asks for a restore,
/// so that the library hands the captured file over and configures from it, restarts included.
ImageRestore RestoreFromImage(simulated::Machine machine);

/// Turns the texts of the machines and of the captured file into UTF-8, as those of the deliveries
/// are.
void PutIntoUtf8(ImageRestore& image);

}  // namespace tool
