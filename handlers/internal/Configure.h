// Configures the machine from the agent's configuration file.
#pragma once

#include "handlers/MessageHandler.h"
#include "handlers/internal/ConfigurePlan.h"

class Configure final : public CMessageHandler {
 public:
  /// Reads "Filename" from the message, configures the machine and answers in the message with
  /// "Result" ("Success", "Failure" or "Reboot"), "Status-Module" and "Status-Code". 1 when it
  /// answered; 0 when there is no such file. When a restore file waits for its turn, it is put in
  /// the place of the agent's file and a message naming it is posted instead: 1 when the host took
  /// it. Throws what reading the operating system and handing over throws, before anything has been
  /// configured.
  std::int32_t HandleMessage(IAgentMessage* message, IAgentHost* host) override;

 private:
  void Run(ConfigurePlan& plan, IAgentMessage& message);
};
