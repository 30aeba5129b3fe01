// A message to the library and the messages that follow from it, delivered in turn.
#pragma once

#include <cstdint>
#include <vector>

#include "platform/simulated/Machine.h"
#include "tool/agent/Delivery.h"

namespace tool {

/// What follows a delivered message.
struct FollowUp {
  /// The messages that the library posts are delivered afterwards, as the agent would.
  bool deliverPosted = false;
  /// After a "Reboot" the machine is restarted and the message sent again, at most this often.
  std::uint32_t restarts = 0;
};

struct Conversation {
  /// In order; at least one.
  std::vector<Delivery> deliveries;
  /// Membership at the last restart of the machine, else before the first message.
  simulated::Membership confirmedMembership;

  /// Every message succeeded.
  bool Succeeded() const;
};

/// Delivers a message to a library on the machine.
using Deliverer = Delivery(Request, simulated::Machine&);

/// Delivers `first` and all messages that follow it.
Conversation Converse(Request first, const FollowUp& followUp, simulated::Machine& machine,
                      Deliverer* deliver = Deliver);

}  // namespace tool
