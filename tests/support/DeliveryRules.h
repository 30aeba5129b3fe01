// What holds for every message, whatever the machine and the agent's files hold.
#pragma once

#include <string>

#include "platform/simulated/Machine.h"
#include "tool/agent/Delivery.h"

namespace support {

/// The first rule that the delivery of a message broke on `machine`, which is as the
/// message left it; empty when it kept them all: no exception passes to the agent, the reply has
/// one of its forms, every failure is told in the log, and what was taken is given back.
std::string BrokenRule(const tool::Delivery& delivery, const simulated::Machine& machine);

}  // namespace support
