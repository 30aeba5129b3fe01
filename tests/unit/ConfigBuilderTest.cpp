#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "common/config/ConfigBuilder.h"
#include "common/config/ConfigError.h"
#include "common/config/command/ConfigureNic.h"
#include "common/logging/NullLogSink.h"
#include "common/util/ClassName.h"
#include "tests/support/MachineTest.h"
#include "tests/support/QueueRules.h"

namespace config {
namespace {

using enum EventKind;

struct Sent {
  EventKind kind;
  Event phase;
  std::string value;
};
using Events = std::vector<Sent>;

Sent Begin(EventKind kind) { return {kind, Event::BEGIN, ""}; }
Sent Value(EventKind kind, std::string value = "") {
  return {kind, Event::VALUE, std::move(value)};
}
Sent End() { return {NOOP, Event::END, ""}; }

/// "SetDhcp()", "ConfigureNic[SetStatic(...),SetGateway(...)]", one text a command.
std::string Print(command::IConfigureCommand& command) {
  const std::string name = util::ClassName(typeid(command)).substr(sizeof "class config::command:");
  if (auto* nic = dynamic_cast<command::ConfigureNic*>(&command)) {
    std::string text = name + "[";
    for (const auto& inner : nic->Commands()) text += Print(*inner);
    return text + "]";
  }
  return name + "(" + command.Describe() + ")";
}

class BuilderTest : public support::MachineTest {
 protected:
  /// Sends events until one is refused.
  std::optional<ConfigError> Send(ConfigBuilder& builder, const Events& events) {
    for (const Sent& event : events) {
      try {
        builder.ConfigEvent(event.kind, event.phase, event.value);
      } catch (const ConfigError& error) {
        return error;
      }
    }
    return std::nullopt;
  }

  static std::string Queue(const ConfigBuilder& builder) {
    std::string text;
    for (const auto& command : builder.Commands()) text += Print(*command) + ";";
    return text;
  }

  logging::NullLogSink log_;
};

TEST_F(BuilderTest, EventsBecomeCommands) {
  const struct {
    const char* name;
    Events events;
    const char* queue;
  } kCases[] = {
      {"credentials without a command are dropped",
       {Value(DOMAIN_USER, "jo"), Value(ENABLE_NETWORKING, "TRUE"), Value(DOMAIN_USER, "jo")},
       "EnableNetworking();"},
      {"a beginning of no scope is a value",
       {Begin(NOOP), {COMPUTER_NAME, Event::BEGIN, "PC1"}},
       "ChangeCompName(Name=PC1 {User=});"},
      {"DNS over DHCP is never merged, but servers join it",
       {Begin(NIC), Value(DHCP), Value(DNS_DHCP), Value(DNS_DHCP), Value(DNS_SUFFIX, "a.example"),
        Value(DNS_SUFFIX, "b.example")},
       "ConfigureNic[SetDhcp()SetDns(DNS via DHCP)SetDns(DNS via DHCP)"
       "SetDnsSuffix(DNS Suffixes=a.example,b.example)];"},
      {"an adapter inside another scope",
       {Begin(NIC), Value(DHCP), Begin(NIC), Value(STATIC), End(), Value(DNS_DHCP), End()},
       "ConfigureNic[SetDhcp()SetDns(DNS via DHCP)];"
       "ConfigureNic[SetStatic(IP and Subnet Masks: )];"},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.name);
    ConfigBuilder builder(log_);
    const auto refused = Send(builder, c.events);
    EXPECT_FALSE(refused) << refused->message;
    EXPECT_EQ(Queue(builder), c.queue);
  }
}

struct Refusal {
  const char* file;
  const char* message;
  int line;
  int value;
};
constexpr char kBuilder[] = R"(common\config\ConfigBuilder)";
constexpr char kRule[] = R"(common\config\BuilderRule)";
constexpr Refusal kDefault{kRule, "Invalid config event being handled by Default scope", 209, 1};
constexpr Refusal kGateway{kRule, "Attempting to configure a DHCP nic with static information", 228,
                           1};
constexpr Refusal kNic{kRule, "Invalid config event being handled by NIC scope", 324, 1};
constexpr Refusal kNotStatic{
    kRule, "IpInterface being called without a previous event to set the NIC as static", 359, 0};
constexpr Refusal kInterface{kRule, "Invalid config event being handled by IpInterface scope", 373,
                             1};
constexpr Refusal kRoute{kRule, "Invalid config event being handled by IpInterface scope", 456, 1};
constexpr Refusal kNoBegin{kBuilder, "Event::END scope called with no matching Event::BEGIN", 89,
                           1};
constexpr Refusal kNoScope{kBuilder, "Config event called with no open scope", 97, 1};

TEST_F(BuilderTest, RefusedEventsChangeNothing) {
  const struct {
    Events events;
    Refusal refusal;
  } kCases[] = {
      {{Value(DHCP)}, kDefault},
      {{Value(NIC)}, kDefault},
      {{Value(EventKind{26})}, kDefault},
      {{Begin(NIC), Value(DHCP), Value(GATEWAY, "1.1.1.1")}, kGateway},
      {{Begin(NIC), Value(GATEWAY, "1.1.1.1")}, kGateway},
      {{Begin(NIC), Value(COMPUTER_NAME, "PC1")}, kNic},
      {{Begin(IP_INTERFACE), Value(IP_ADDRESS, "1.1.1.1")}, kNotStatic},
      {{Begin(NIC), Value(DHCP), Begin(IP_INTERFACE), Value(NOOP)}, kNotStatic},
      {{Begin(NIC), Value(STATIC), Begin(IP_INTERFACE), Value(GATEWAY)}, kInterface},
      {{Begin(STATIC_ROUTE), Value(COMPUTER_NAME)}, kRoute},
      {{End(), End()}, kNoBegin},
      {{End(), Value(NOOP)}, kNoScope},
  };
  for (const auto& [events, refusal] : kCases) {
    SCOPED_TRACE(refusal.message);
    ConfigBuilder builder(log_);
    ASSERT_FALSE(Send(builder, Events(events.begin(), events.end() - 1)));
    const std::string before = Queue(builder);
    const auto refused = Send(builder, {events.back()});
    ASSERT_TRUE(refused);
    EXPECT_STREQ(refused->file, refusal.file);
    EXPECT_STREQ(refused->message, refusal.message);
    EXPECT_EQ(refused->line, refusal.line);
    EXPECT_EQ(refused->Value, refusal.value);
    EXPECT_EQ(refused->SystemError, 0U);
    EXPECT_EQ(Queue(builder), before);
  }
}

TEST_F(BuilderTest, ARouteThatCannotBeReadIsNotAdded) {
  machine_.hosts = {{"gate.example", "10.0.0.1"}};
  ConfigBuilder builder(log_);
  const Events route{Begin(STATIC_ROUTE),
                     Value(IP_ADDRESS, "10.1.0.0"),
                     Value(SUBNET_MASK, "255.255.0.0"),
                     Value(ROUTE_GATEWAY, "gate.example"),
                     Value(ROUTE_FOURTH_FIELD, "x"),
                     Value(ROUTE_METRIC, "7 hops")};
  Send(builder, route);
  machine_.hosts.clear();
  EXPECT_THROW(Send(builder, {End()}), ipc::CIPAddressError);
  EXPECT_FALSE(builder.LastCommand()->IsNeeded());
}

TEST_F(BuilderTest, EveryOrderOfTheIdentityCommandsKeepsTheRules) {
  std::vector<std::size_t> order{0, 1, 2, 3, 4};
  const Events kinds{Value(COMPUTER_NAME, "PC1"), Value(DOMAIN, "corp.example"),
                     Value(WORKGROUP, "W"), Value(ENABLE_NETWORKING, "true"),
                     Value(DOMAIN_OU, "Sales")};
  do {
    for (const char* const joinFirst : {"TRUE", "no"}) {
      ConfigBuilder builder(log_);
      builder.SetOption(7, "true");
      builder.SetOption(ConfigBuilder::kJoinDomainBeforeNameChange, joinFirst);
      for (const std::size_t kind : order) Send(builder, {kinds[kind]});
      const support::QueueRules rules(builder);
      builder.Analyze();
      EXPECT_EQ(rules.Broken(builder, *joinFirst == 'T'), "") << Queue(builder);
      EXPECT_EQ(builder.Commands().size(), 4U + 2U) << "the OU's move is not needed";
    }
  } while (std::next_permutation(order.begin(), order.end()));
}

TEST_F(BuilderTest, AFailedQuestionLeavesWholeCommandsAndCanBeAskedAgain) {
  machine_.persistentRoutes = {{"0.0.0.0", "0.0.0.0", "10.0.0.1", 1}};
  ConfigBuilder builder(log_);
  Send(builder, {Value(COMPUTER_NAME, "template"), Value(ENABLE_NETWORKING, "false"),
                 Begin(STATIC_ROUTE), End()});
  simulated::Fault fault;
  fault.call = "wmi.next";
  fault.nth = 3;  // the computer's name, the default route, the end of the routes
  fault.hresult = -1;
  machine_.faults = {fault};
  EXPECT_THROW(builder.Analyze(), sys::CWmiError);
  machine_.faults.clear();
  EXPECT_EQ(Queue(builder), "EnableNetworking();SetStaticRoute();");
  EXPECT_FALSE(builder.LastCommand()->IsNeeded()) << "the default route stays";
}

}  // namespace
}  // namespace config
