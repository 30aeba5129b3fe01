// The base of everything that handles a message of the agent.
#pragma once

#include <cstdint>
#include <memory>

#include "common/err/GeneralError.h"
#include "common/logging/ILogSink.h"
#include "handlers/IAgentHost.h"
#include "handlers/IAgentMessage.h"

/// Ends a message that the host made for this library.
struct MessageRelease {
  void operator()(IAgentMessage* message) const { message->Release(); }
};
using OwnedMessage = std::unique_ptr<IAgentMessage, MessageRelease>;

/// An empty message. Throws std::bad_alloc when the host has none to give.
OwnedMessage NewMessage(IAgentHost& host);

/// Lives for one message.
class CMessageHandler : public logging::ILogSink {
 public:
  /// The host is borrowed for the one message; without it nothing is logged.
  void SetHost(IAgentHost* host) { host_ = host; }

  /// Formats one line and hands it to the host.
  void Log(std::uint32_t level, const char* format, ...) final;

  /// Handles one message; the status goes back to the agent.
  virtual std::int32_t HandleMessage(IAgentMessage* message, IAgentHost* host) = 0;

 protected:
  /// Writes an error record as a failure line: `format` takes the handler's path and `line`, then
  /// the record's file, line, message, Value and SystemError.
  void LogRecord(const char* format, const char* path, int line, const err::CGeneralError& error);

 private:
  IAgentHost* host_ = nullptr;
};
