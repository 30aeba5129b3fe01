// One message through the library's table on a simulated machine, and everything that came of it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/simulated/Json.h"
#include "platform/simulated/Machine.h"
#include "platform/simulated/Simulation.h"
#include "tool/agent/AgentHost.h"
#include "tool/agent/AgentMessage.h"
#include "toolbox/ToolboxApi.h"

namespace tool {

/// A message as the agent sends it. All texts of a request and its delivery are UTF-8; the library
/// gets and gives bytes of the code page.
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
  std::vector<simulated::Change> changes;
  std::vector<SentMessage> sent;
  std::vector<SentMessage> posted;
  /// Text of an exception that the library let pass to the agent; empty for none.
  std::string exception;
  /// What the library took from the machine and did not give back.
  simulated::Usage stillInUse;
  /// Messages that the library made and did not release.
  std::size_t unreleasedMessages = 0;
  /// Restarts of the machine before this message.
  std::uint32_t restarts = 0;

  /// The reply's "Result"; empty when there is none.
  std::string Result() const;
  /// The reply is "Success" or "Reboot", or the library handled the message without a result.
  bool Succeeded() const;
  /// What ended a message that did not succeed, in the library's words; empty when it did.
  std::string Failure() const;
};

/// Hands one message to a library that works on a machine of its own choice; of the delivery
/// `changes`, `stillInUse` and `restarts` are left empty. Throws ToolError for a value that the
/// code page cannot hold.
Delivery Deliver(const ToolboxApi& library, Request request);

/// The machine's journal from the `from`-th change on, passwords hidden.
std::vector<simulated::Change> ShownChanges(const simulated::Machine& machine, std::size_t from);

/// Delivers one message to the library that is linked into this program, with `machine` in the
/// place of this computer.
Delivery Deliver(Request request, simulated::Machine& machine);

/// The delivery's fields in their fixed order.
simulated::Json ToJson(const Delivery& delivery);

/// The same as it is printed, without changes and restarts, which a real machine does not record.
std::string PrintedLiveJson(const Delivery& delivery);

/// A number or a text as it may be shown: the value of a key that names a password is "***".
std::string ShownText(const MessageValue& value);

}  // namespace tool
