// Turns a stream of configuration events into an ordered queue of commands, and runs it.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "common/config/BuilderRule.h"
#include "common/config/analyzer/Analysis.h"
#include "common/logging/ILogSink.h"

namespace config {

/// Lives for one configuration of the machine: options and events first, then `Analyze`, then
/// `RunConfig`. Used by one thread.
class ConfigBuilder {
 public:
  /// The order of join and rename, by its number in the contract with the handler.
  static constexpr std::uint32_t kJoinDomainBeforeNameChange = 0;

  /// `log` is borrowed.
  explicit ConfigBuilder(logging::ILogSink& log);

  /// Option 0 takes "true" in any letter case for true and everything else for false; other options
  /// are ignored.
  void SetOption(std::uint32_t option, const std::string& value);

  /// Accepts one event. Throws ConfigError for an event that the innermost scope does not accept;
  /// queue and scopes stay as they were. The end of a route's scope throws what its values throw;
  /// the scope is closed all the same and the route is not added. Returns the command that the
  /// event made or changed; null when there is none. It is the builder's.
  command::IConfigureCommand* ConfigEvent(EventKind kind, Event phase, const std::string& value);

  /// Returns the command, which is the builder's from now on.
  command::IConfigureCommand* AddCommand(std::unique_ptr<command::IConfigureCommand> command);
  /// Null when the queue is empty.
  command::IConfigureCommand* LastCommand() const;
  /// The queue, in the order in which it runs.
  const command::CommandList& Commands() const { return commands_; }

  /// Drops what is not needed, binds adapters, orders the queue and adds the restart it needs.
  /// Keeps what it found in `analysis` unless that is null. Throws what the questions to the
  /// machine throw, the queue then being partly edited.
  void Analyze(analyzer::Analysis* analysis = nullptr);

  /// Runs the queue. True when every command ran, `*reboot` being false then; false when the run
  /// stopped at a restart, `*reboot` being true. Throws what a command throws: commands before it
  /// stay done, those after it are not run.
  bool RunConfig(bool* reboot);

 private:
  command::IConfigureCommand* OpenScope(EventKind kind);
  void CloseScope();

  // The rules refer to commands, so they are declared after them and destroyed first.
  command::CommandList commands_;
  std::vector<std::unique_ptr<BuilderRule>> scopes_;
  bool joinDomainBeforeNameChange_ = false;
  logging::ILogSink& log_;
};

}  // namespace config
