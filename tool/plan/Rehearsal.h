// The rehearsal of a queue: its commands are executed on a copy of the machine, in order.
#pragma once

#include <cstddef>
#include <functional>

#include "common/config/command/ConfigureNic.h"
#include "common/err/GeneralError.h"
#include "handlers/internal/ConfigurePlan.h"
#include "platform/simulated/Machine.h"
#include "tool/plan/QueuePlan.h"

namespace tool {

/// The machine did not do what it was asked.
bool IsRefused(const simulated::Change& change);

/// Each step returns the course of its command and adds to the plan's changes, restarts and pauses.
/// When commands are compared as the machine is, it executes and counts nothing.
class Rehearsal {
 public:
  /// Borrows the machine and the plan.
  Rehearsal(simulated::Machine& machine, Comparing comparing, QueuePlan& plan)
      : machine_(machine),
        plan_(plan),
        executes_(comparing == Comparing::kInTurn),
        goesOn_(executes_) {}
  Rehearsal(const Rehearsal&) = delete;
  Rehearsal& operator=(const Rehearsal&) = delete;
  /// Forgets the account of the commands, as after a run.
  ~Rehearsal();

  /// Executes the command if it is reached.
  Course Execute(config::command::IConfigureCommand& command);
  /// Compares a command of a bound adapter, and executes it if it is needed. Also executes a
  /// command that is not reached, so that the following comparisons are those of a complete run.
  /// When nothing is executed, throws what the comparison throws.
  Course Execute(const config::command::ConfigureNic& nic,
                 config::command::IConfigureCommand& command,
                 config::command::Comparison* comparison);
  /// A section reaches its adapter, or fails without one.
  Course Bind(const config::command::ConfigureNic& nic);
  Course Restart();
  /// Ends the run: puts the file away, and stores the outcome.
  void Conclude(ConfigurePlan& run);

 private:
  /// `step` returns whether it may have changed something.
  Course Do(const config::command::IConfigureCommand& command, const std::function<bool()>& step);
  Course Fail(const char* answer, const char* meaning);
  /// `start` is the end of the journal before the step.
  Failure FailureOf(const err::CGeneralError& error, std::size_t start, bool isOfAdapter) const;

  simulated::Machine& machine_;
  QueuePlan& plan_;
  bool executes_;
  bool goesOn_;
};

/// Stores the finding of `check` that explains the plan's failure, if there is one. The machine is
/// in its state before the run.
void NameCause(const simulated::Machine& given, QueuePlan& plan);

}  // namespace tool
