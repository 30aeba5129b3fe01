// A queue done on the copy of a machine, one command after the other.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

#include "common/config/command/IConfigureCommand.h"
#include "common/err/GeneralError.h"
#include "platform/simulated/Machine.h"
#include "tool/plan/QueuePlan.h"

namespace tool {

class Rehearsal {
 public:
  /// Borrows the machine.
  Rehearsal(simulated::Machine& machine, bool restartForbidden)
      : machine_(machine), restartForbidden_(restartForbidden) {}
  Rehearsal(const Rehearsal&) = delete;
  Rehearsal& operator=(const Rehearsal&) = delete;
  /// The account of the commands is forgotten, as after a run.
  ~Rehearsal();

  /// Lets `step` do the command or a part of it, and tells what comes of that; it returns whether
  /// it may have changed something. Also what is not reached may be done, for the sake of the
  /// comparisons behind it; it is not counted then.
  Course Do(const config::command::IConfigureCommand& command, const std::function<bool()>& step);
  Course Restart();

  /// Nothing has failed so far.
  bool GoesOn() const { return goesOn_; }
  /// Tells the plan how it all ended.
  void Conclude(QueuePlan& plan) const;

 private:
  void Judge(const config::command::IConfigureCommand& command, const err::CGeneralError& error,
             std::size_t start, Course& course);

  simulated::Machine& machine_;
  bool restartForbidden_;
  bool goesOn_ = true;
  std::uint32_t restarts_ = 0;
  std::size_t changes_ = 0;
  std::uint64_t pauseMs_ = 0;
};

/// Names the finding of `check` that is the cause of what fails in the plan, where it knows that.
/// The machine is as it was before the run.
void NameCause(simulated::Machine machine, QueuePlan& plan);

}  // namespace tool
