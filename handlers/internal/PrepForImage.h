// Prepares the machine for an image: records its settings and locks its networking down.
#pragma once

#include "handlers/MessageHandler.h"

class PrepForImage final : public CMessageHandler {
 public:
  /// Writes the network settings into the restore file, posts a message to configure from them,
  /// sets the flag that networking is disabled, and disables the networking services. Touches
  /// nothing in the message. 1 when every step finished, 0 when an error was caught and logged.
  std::int32_t HandleMessage(IAgentMessage* message, IAgentHost* host) override;

 private:
  void Prepare(IAgentHost& host);
  void DisableServices();
};
