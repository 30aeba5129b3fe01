#include "tool/agent/Conversation.h"

#include <algorithm>
#include <deque>
#include <string>
#include <utility>

namespace tool {
namespace {

Request AsRequest(const SentMessage& posted) {
  Request request{posted.type, posted.name, {}};
  for (const MessageValue& value : posted.values) {
    request.values.emplace_back(value.key, value.text);
  }
  return request;
}

}  // namespace

bool Conversation::Succeeded() const {
  return std::all_of(deliveries.begin(), deliveries.end(),
                     [](const Delivery& delivery) { return delivery.Succeeded(); });
}

Conversation Converse(Request first, const FollowUp& followUp, simulated::Machine& machine,
                      Deliverer* deliver) {
  Conversation conversation{{}, machine.membership};
  std::deque<Request> waiting;
  waiting.push_back(std::move(first));
  std::uint32_t restarts = 0;
  while (!waiting.empty()) {
    Delivery delivery = deliver(std::move(waiting.front()), machine);
    waiting.pop_front();
    delivery.restarts = restarts;
    if (delivery.Result() == "Reboot" && restarts < followUp.restarts) {
      machine.Restart();
      ++restarts;
      conversation.confirmedMembership = machine.membership;
      waiting.push_front(delivery.request);
    }
    if (followUp.deliverPosted) {
      for (const SentMessage& posted : delivery.posted) waiting.push_back(AsRequest(posted));
    }
    conversation.deliveries.push_back(std::move(delivery));
  }
  return conversation;
}

}  // namespace tool
