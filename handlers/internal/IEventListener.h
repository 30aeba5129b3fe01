// Observes where the events of a configuration come from, and what becomes of each.
#pragma once

#include <string>
#include <string_view>

#include "common/config/Event.h"
#include "common/config/command/IConfigureCommand.h"

/// An event and its place in the configuration file. The texts hold during the call only.
struct SourcedEvent {
  config::EventKind kind;
  config::Event phase;
  const std::string& value;
  /// Empty when the event comes from no section of the file.
  std::string_view section = {};
  /// The key that asks for it; it may be absent where the section as a whole does.
  std::string_view key = {};
};

class IEventListener {
 public:
  virtual ~IEventListener() = default;
  /// The builder gets the event next.
  virtual void Sending(const SourcedEvent& event) = 0;
  /// The builder accepted it; `taker` is the command that it made or changed, null for none.
  virtual void Taken(const config::command::IConfigureCommand* taker) = 0;
};

/// The listener where nobody wants to know.
class NullEventListener final : public IEventListener {
 public:
  void Sending(const SourcedEvent& /*event*/) override {}
  void Taken(const config::command::IConfigureCommand* /*taker*/) override {}
};
