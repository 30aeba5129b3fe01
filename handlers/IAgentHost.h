// The agent's own object as this library calls it. A layout, not a design; see IAgentMessage.h.
#pragma once

#include <cstdint>

class IAgentMessage;

class IAgentHost {
 public:
  virtual void Reserved0() = 0;
  /// Hands a message to a named component of the agent. The message stays the caller's.
  virtual void SendTo(const char* target, IAgentMessage* message) = 0;
  /// Queues a message for the agent; only the low byte of the result counts (0: refused).
  virtual std::int32_t Post(IAgentMessage* message) = 0;
  /// Writes one line to the agent's log: a printf-style format and its arguments.
  virtual void Log(std::uint32_t level, const char* format, ...) = 0;
  /// Makes an empty message; the caller ends it with `Release`.
  virtual IAgentMessage* CreateMessage() = 0;

 protected:
  ~IAgentHost() = default;
};
