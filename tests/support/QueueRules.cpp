#include "tests/support/QueueRules.h"

#include <algorithm>

#include "common/config/command/ChangeCompName.h"
#include "common/config/command/ConfigureNic.h"
#include "common/config/command/JoinDomain.h"
#include "common/config/command/JoinWorkgroup.h"
#include "common/config/command/Reboot.h"
#include "common/config/command/SetStatic.h"
#include "common/config/command/Sleep.h"
#include "common/sys/Domain.h"

namespace support {
namespace {

using namespace config::command;
using Queue = std::vector<const IConfigureCommand*>;

template <class Command>
bool Is(const IConfigureCommand* command) {
  return dynamic_cast<const Command*>(command) != nullptr;
}

Queue Borrow(const CommandList& commands) {
  Queue queue;
  for (const auto& command : commands) queue.push_back(command.get());
  return queue;
}

/// Takes the command at `at` out when it is an added `Command`.
template <class Command>
bool TakeAdded(Queue& queue, std::size_t at, const Queue& before) {
  if (at >= queue.size() || !Is<Command>(queue[at])) return false;
  if (std::find(before.begin(), before.end(), queue[at]) != before.end()) return false;
  queue.erase(queue.begin() + static_cast<std::ptrdiff_t>(at));
  return true;
}

template <class Command>
std::size_t FirstOf(const Queue& queue) {
  return static_cast<std::size_t>(std::find_if(queue.begin(), queue.end(), Is<Command>) -
                                  queue.begin());
}

}  // namespace

QueueRules::QueueRules(const config::ConfigBuilder& builder) {
  const bool isMember = sys::Domain::Instance().IsDomainMember();
  for (const auto& command : builder.Commands()) {
    if (!command->IsNeeded()) continue;
    const IConfigureCommand* const needed = command.get();
    needed_.push_back(needed);
    if (auto* nic = dynamic_cast<ConfigureNic*>(command.get())) {
      adapters_[needed] = Borrow(nic->Commands());
    }
    restarts_ = restarts_ || Is<ChangeCompName>(needed) || Is<JoinDomain>(needed) ||
                (Is<JoinWorkgroup>(needed) && isMember);
  }
}

std::string QueueRules::Broken(const config::ConfigBuilder& builder, bool joinFirst) const {
  Queue queue = Borrow(builder.Commands());
  if (restarts_ && !TakeAdded<Reboot>(queue, queue.size() - 1, needed_)) return "no restart at end";

  Queue expected = needed_;
  const std::size_t join = FirstOf<JoinDomain>(expected);
  const std::size_t rename = FirstOf<ChangeCompName>(expected);
  if (std::max(join, rename) < expected.size()) {
    if (joinFirst != (join < rename)) std::swap(expected[join], expected[rename]);
    const std::size_t behindFirst = std::min(join, rename) + 1;
    const bool parted = joinFirst ? TakeAdded<Sleep>(queue, behindFirst, needed_)
                                  : TakeAdded<Reboot>(queue, behindFirst, needed_);
    if (!parted) return "join and rename are not parted";
  }
  if (queue != expected) return "commands were lost, added or moved";

  for (const auto& command : builder.Commands()) {
    auto* nic = dynamic_cast<ConfigureNic*>(command.get());
    if (nic == nullptr) continue;
    const Queue& before = adapters_.at(nic);
    Queue now = Borrow(nic->Commands());
    const std::size_t first = FirstOf<SetStatic>(before);
    if (first < before.size() && !TakeAdded<Sleep>(now, first + 1, before)) return "no pause";
    if (now != before) return "an adapter's commands were lost, added or moved";
  }
  return {};
}

}  // namespace support
