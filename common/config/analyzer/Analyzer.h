// Edits the command queue between the events and the run.
#pragma once

#include <algorithm>

#include "common/config/analyzer/Analysis.h"

namespace config::analyzer {

/// The first command of a class; the end when there is none.
template <typename Command>
command::CommandList::iterator FindFirst(command::CommandList& commands) {
  return std::find_if(commands.begin(), commands.end(), [](const auto& command) {
    return dynamic_cast<Command*>(command.get()) != nullptr;
  });
}

class Analyzer {
 public:
  // The interface, in the order of its slots.

  /// This analyzer's own editing of the queue.
  virtual void Reorder(command::CommandList& commands) = 0;
  /// Hooks before and after everything else, which no analyzer uses.
  virtual void Prepare(command::CommandList& /*commands*/) {}
  virtual void Finish(command::CommandList& /*commands*/) {}
  /// True when this analyzer decides whether the command needs a restart; `*needed` is then its
  /// decision. No analyzer does.
  virtual bool NeedsReboot(const command::IConfigureCommand& /*command*/, bool* /*needed*/) {
    return false;
  }
  virtual ~Analyzer() = default;

  /// Drops the commands that are not needed, binds every ConfigureNic to an adapter (or to none),
  /// lets `Reorder` edit the queue, and appends one Reboot when a command needs a restart. Keeps
  /// what it found in `analysis` unless that is null. Throws what the questions to the machine
  /// throw, the queue then being partly edited.
  void Analyze(command::CommandList& commands, Analysis* analysis = nullptr);

 private:
  bool NeedsRestart(const command::IConfigureCommand& command);
};

}  // namespace config::analyzer
