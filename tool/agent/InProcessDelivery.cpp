// The road through the library that is linked into the program.
#include <utility>

#include "tool/agent/Delivery.h"

namespace tool {

Delivery Deliver(Request request, simulated::Machine& machine) {
  return DeliverInProcess(std::move(request), machine);
}

}  // namespace tool
