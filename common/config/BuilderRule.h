// What configuration events mean in each scope. Rules execute nothing: they make commands, fill
// them in, and refuse events that make no sense in their scope.
#pragma once

#include <map>
#include <memory>
#include <string>

#include "common/config/Event.h"
#include "common/config/command/ConfigureNic.h"
#include "common/config/command/SetStatic.h"
#include "common/config/command/SetStaticRoute.h"

namespace config {

class ConfigBuilder;

/// The meaning of one open scope.
class BuilderRule {
 public:
  virtual ~BuilderRule() = default;

  /// Takes one setting. Returns the command that it made or changed; null when there is none.
  /// Throws ConfigError when the scope does not accept it; the commands made so far stay as they
  /// are.
  virtual command::IConfigureCommand* HandleEvent(EventKind kind, const std::string& value) = 0;

  /// Finishes the scope's work at its end; not called for a scope that is still open when the
  /// builder goes. May throw.
  virtual void Close() {}
};

/// The outermost scope: identity and switches of the machine.
class DefaultRule final : public BuilderRule {
 public:
  /// `builder` is borrowed, here and below.
  explicit DefaultRule(ConfigBuilder& builder) : builder_(builder) {}
  command::IConfigureCommand* HandleEvent(EventKind kind, const std::string& value) override;

 private:
  ConfigBuilder& builder_;
};

/// One network adapter.
class NicRule final : public BuilderRule {
 public:
  /// Binds to the builder's last command; throws ConfigError when that is not a ConfigureNic.
  explicit NicRule(ConfigBuilder& builder);
  command::IConfigureCommand* HandleEvent(EventKind kind, const std::string& value) override;

 private:
  command::IConfigureCommand* Add(std::unique_ptr<command::IConfigureCommand> command);

  command::ConfigureNic& nic_;
  bool isStatic_ = false;  // by the last event that decided it
};

/// Addresses and masks of a static adapter.
class IpInterfaceRule final : public BuilderRule {
 public:
  /// Binds to the SetStatic that the events before it made, or stays unbound.
  explicit IpInterfaceRule(ConfigBuilder& builder);
  command::IConfigureCommand* HandleEvent(EventKind kind, const std::string& value) override;

 private:
  command::SetStatic* static_;
};

/// One static route; it is committed when its scope is closed.
class StaticRouteRule final : public BuilderRule {
 public:
  /// Binds to the builder's last command when that is a SetStaticRoute, otherwise to a new one.
  explicit StaticRouteRule(ConfigBuilder& builder);
  command::IConfigureCommand* HandleEvent(EventKind kind, const std::string& value) override;
  /// Throws ipc::CIPAddressError for a host name that does not resolve; no route is added then.
  void Close() override;

 private:
  command::SetStaticRoute& routes_;
  bool hasData_ = false;
  std::map<EventKind, std::string> values_;
};

}  // namespace config
