// Edits the command queue between the events and the run.
#pragma once

#include "common/config/analyzer/Analysis.h"
#include "common/config/command/IConfigureCommand.h"

namespace config::analyzer {

class Analyzer {
 public:
  virtual ~Analyzer() = default;

  /// Drops the commands that are not needed, binds every ConfigureNic to an adapter (or to none),
  /// lets `Reorder` edit the queue, and appends one Reboot when a command needs a restart. Throws
  /// what the questions to the machine throw, the queue then being partly edited.
  Analysis Analyze(command::CommandList& commands);

  /// This analyzer's own editing of the queue.
  virtual void Reorder(command::CommandList& commands) = 0;
};

}  // namespace config::analyzer
