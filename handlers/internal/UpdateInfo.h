// Tells the agent's automatic update which file this library is and what replaces it.
#pragma once

#include "handlers/MessageHandler.h"

class UpdateInfo final : public CMessageHandler {
 public:
  /// Appends an entry to those of the message, and returns 2.
  std::int32_t HandleMessage(IAgentMessage* message, IAgentHost* host) override;
};
