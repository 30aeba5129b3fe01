// One message through the library's table on a simulated machine, and everything that came of it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/simulated/Machine.h"
#include "tools/orvanta-config/AgentHost.h"
#include "tools/orvanta-config/AgentMessage.h"

namespace tool {

/// A message as the agent sends it.
struct Request {
  std::string type;
  std::string name;
  AgentMessage::GivenValues values;
};

/// What one message did. Passwords in values of messages are kept; `ShownText` and `ToJson` hide
/// them.
struct Delivery {
  Request request;
  /// What the library's message entry returned.
  std::int32_t status = 0;
  std::vector<MessageValue> reply;
  std::vector<LogLine> log;
  /// This message's part of the journal, passwords hidden.
  std::vector<simulated::Json> changes;
  std::vector<SentMessage> sent;
  std::vector<SentMessage> posted;
  /// Text of an exception that the library let pass to the agent; empty for none.
  std::string exception;
  /// Restarts of the machine before this message.
  std::uint32_t restarts = 0;

  /// The reply's "Result"; empty when there is none.
  std::string Result() const;
  /// The reply is "Success" or "Reboot", or the library handled the message without a result.
  bool Succeeded() const;
};

/// Delivers one message to the library, with `machine` in the place of this computer.
Delivery Deliver(Request request, simulated::Machine& machine);

/// The delivery's fields in their fixed order.
simulated::Json ToJson(const Delivery& delivery);

/// A number or a text as it may be shown: the value of a key that names a password is "***".
std::string ShownText(const MessageValue& value);

}  // namespace tool
