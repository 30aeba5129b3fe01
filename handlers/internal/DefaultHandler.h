// Answers messages that this library has nothing to do for.
#pragma once

#include "handlers/MessageHandler.h"

class DefaultHandler final : public CMessageHandler {
 public:
  /// Touches nothing and returns 2.
  std::int32_t HandleMessage(IAgentMessage* /*message*/, IAgentHost* /*host*/) override {
    return 2;
  }
};
