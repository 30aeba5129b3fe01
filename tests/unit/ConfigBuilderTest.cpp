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
      {"nothing", {}, ""},
      {"credentials follow their command",
       {Value(COMPUTER_NAME, "PC1"), Value(DOMAIN_USER, "jo"), Value(DOMAIN_PASSWORD, "secret")},
       "ChangeCompName(Name=PC1 {User=jo});"},
      {"credentials without a command are dropped",
       {Value(DOMAIN_USER, "jo"), Value(ENABLE_NETWORKING, "TRUE"), Value(DOMAIN_USER, "jo")},
       "EnableNetworking();"},
      {"an OU belongs to the join before it",
       {Value(DOMAIN, "corp.example"), Value(DOMAIN_OU, "Sales")},
       "JoinDomain(DNS Domain=corp.example, Windows Domain= {User=});"},
      {"an OU behind anything else is a move",
       {Value(WORKGROUP, "W"), Value(DOMAIN_OU, "Sales")},
       "JoinWorkgroup(Workgroup=W {User=});MoveOu(OU=Sales);"},
      {"a beginning of no scope is a value",
       {Begin(NOOP), {COMPUTER_NAME, Event::BEGIN, "PC1"}},
       "ChangeCompName(Name=PC1 {User=});"},
      {"an unbroken run is one command",
       {Begin(NIC), Value(STATIC), Value(GATEWAY, "10.0.0.1"), Value(GATEWAY, "10.0.0.2")},
       "ConfigureNic[SetStatic(IP and Subnet Masks: )SetGateway(Gateways=10.0.0.1,10.0.0.2)];"},
      {"a broken run is two",
       {Begin(NIC), Value(STATIC), Value(GATEWAY, "10.0.0.1"), Value(DNS_SERVER, "10.0.0.9"),
        Value(GATEWAY, "10.0.0.2")},
       "ConfigureNic[SetStatic(IP and Subnet Masks: )SetGateway(Gateways=10.0.0.1)"
       "SetDns(DNS Servers=10.0.0.9)SetGateway(Gateways=10.0.0.2)];"},
      {"DNS over DHCP is never merged, but servers join it",
       {Begin(NIC), Value(DHCP), Value(DNS_DHCP), Value(DNS_DHCP), Value(DNS_SUFFIX, "a.example"),
        Value(DNS_SUFFIX, "b.example")},
       "ConfigureNic[SetDhcp()SetDns(DNS via DHCP)SetDns(DNS via DHCP)"
       "SetDnsSuffix(DNS Suffixes=a.example,b.example)];"},
      {"the server 0.0.0.0 is none", {Begin(NIC), Value(DNS_SERVER, "0.0.0.0")}, "ConfigureNic[];"},
      {"addresses and masks pair by position",
       {Begin(NIC), Value(STATIC), Begin(IP_INTERFACE), Value(IP_ADDRESS, "10.0.0.5"),
        Value(IP_ADDRESS, "10.0.0.6"), Value(SUBNET_MASK, "255.0.0.0"), End(), End()},
       "ConfigureNic[SetStatic(IP and Subnet Masks: {ip=10.0.0.5,mask=255.0.0.0}{ip=10.0.0.6})];"},
      {"masks alone",
       {Begin(NIC), Value(STATIC), Begin(IP_INTERFACE), Value(SUBNET_MASK, "255.0.0.0")},
       "ConfigureNic[SetStatic(IP and Subnet Masks: {mask=255.0.0.0})];"},
      {"routes in a row share a command",
       {Begin(STATIC_ROUTE), End(), Begin(STATIC_ROUTE), Value(IP_ADDRESS, "10.1.0.0"), End(),
        Value(COMPUTER_NAME, "PC1"), Begin(STATIC_ROUTE), End()},
       "SetStaticRoute();ChangeCompName(Name=PC1 {User=});SetStaticRoute();"},
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

TEST_F(BuilderTest, RefusedEventsChangeNothing) {
  constexpr char kDefault[] = "Invalid config event being handled by Default scope";
  constexpr char kGateway[] = "Attempting to configure a DHCP nic with static information";
  constexpr char kNic[] = "Invalid config event being handled by NIC scope";
  constexpr char kNotStatic[] =
      "IpInterface being called without a previous event to set the NIC as static";
  constexpr char kIpInterface[] = "Invalid config event being handled by IpInterface scope";
  constexpr char kBuilder[] = R"(common\config\ConfigBuilder)";
  constexpr char kRule[] = R"(common\config\BuilderRule)";
  const struct {
    const char* name;
    Events events;
    const char* file;
    const char* message;
    int line;
    int value;
  } kCases[] = {
      {"adapter setting outside", {Value(DHCP)}, kRule, kDefault, 209, 1},
      {"scope kind as value", {Value(NIC)}, kRule, kDefault, 209, 1},
      {"unknown kind", {Value(EventKind{26})}, kRule, kDefault, 209, 1},
      {"gateway on DHCP",
       {Begin(NIC), Value(DHCP), Value(GATEWAY, "1.1.1.1")},
       kRule,
       kGateway,
       228,
       1},
      {"gateway too early", {Begin(NIC), Value(GATEWAY, "1.1.1.1")}, kRule, kGateway, 228, 1},
      {"name in an adapter", {Begin(NIC), Value(COMPUTER_NAME, "PC1")}, kRule, kNic, 324, 1},
      {"interface outside",
       {Begin(IP_INTERFACE), Value(IP_ADDRESS, "1.1.1.1")},
       kRule,
       kNotStatic,
       359,
       0},
      {"interface on DHCP",
       {Begin(NIC), Value(DHCP), Begin(IP_INTERFACE), Value(NOOP)},
       kRule,
       kNotStatic,
       359,
       0},
      {"gateway in an interface",
       {Begin(NIC), Value(STATIC), Begin(IP_INTERFACE), Value(GATEWAY)},
       kRule,
       kIpInterface,
       373,
       1},
      {"name in a route", {Begin(STATIC_ROUTE), Value(COMPUTER_NAME)}, kRule, kIpInterface, 456, 1},
      {"one end too many",
       {End(), End()},
       kBuilder,
       "Event::END scope called with no matching Event::BEGIN",
       89,
       1},
      {"no scope left",
       {End(), Value(NOOP)},
       kBuilder,
       "Config event called with no open scope",
       97,
       1},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.name);
    ConfigBuilder builder(log_);
    Events accepted = c.events;
    const Events last{accepted.back()};
    accepted.pop_back();
    ASSERT_FALSE(Send(builder, accepted));
    const std::string before = Queue(builder);
    const auto refused = Send(builder, last);
    ASSERT_TRUE(refused);
    EXPECT_STREQ(refused->file, c.file);
    EXPECT_STREQ(refused->message, c.message);
    EXPECT_EQ(refused->line, c.line);
    EXPECT_EQ(refused->Value, c.value);
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
  machine_.hosts = {{"gate.example", "10.0.0.1"}};
  ConfigBuilder second(log_);
  Send(second, route);
  Send(second, {End()});
  second.LastCommand()->Execute();
  ASSERT_EQ(machine_.journal.size(), 1U);
  EXPECT_EQ(machine_.journal[0]["command"],
            "route -p ADD 10.1.0.0 mask 255.255.0.0 10.0.0.1 METRIC 7");
}

TEST_F(BuilderTest, AMemberIsNotJoinedToItsOwnDomainAgain) {
  machine_.membership = simulated::DomainMembership{"corp.example", "CORP", true};
  const struct {
    const char* domain;
    const char* queue;
  } kCases[] = {
      {"CORP.Example", ""},
      {"corp", ""},
      {"other.example", "JoinDomain(DNS Domain=other.example, Windows Domain= {User=});"}};
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.domain);
    ConfigBuilder builder(log_);
    Send(builder, {Value(DOMAIN, c.domain)});
    EXPECT_EQ(Queue(builder), c.queue);
  }
}

TEST_F(BuilderTest, AnalysisOrdersJoinAndRenameAroundTheRestart) {
  const Sent rename = Value(COMPUTER_NAME, "PC1");
  const Sent join = Value(DOMAIN, "corp.example");
  const Events renameRouteJoin{rename, Begin(STATIC_ROUTE), Value(IP_ADDRESS, "10.1.0.0"), End(),
                               join};
  const struct {
    const char* name;
    Events events;
    const char* joinFirst;
    const char* queue;
  } kCases[] = {
      {"rename first", {rename, join}, "false", "Change Reboot Join Reboot "},
      {"rename first, other order", {join, rename}, "", "Change Reboot Join Reboot "},
      {"rename first, route between", renameRouteJoin, "no", "Change Reboot SetSta Join Reboot "},
      {"join first", {rename, join}, "TRUE", "Join Sleep Change Reboot "},
      {"join first, other order", {join, rename}, "true", "Join Sleep Change Reboot "},
      {"join first, route between", renameRouteJoin, "true", "Join Sleep SetSta Change Reboot "},
      {"rename alone", {rename}, "true", "Change Reboot "},
      {"join alone", {join}, "false", "Join Reboot "},
      {"the same name", {Value(COMPUTER_NAME, "template")}, "", ""},
      {"no name", {Value(COMPUTER_NAME, "")}, "", ""},
      {"workgroup on a workgroup machine", {Value(WORKGROUP, "OTHER")}, "", "JoinWo "},
      {"the same workgroup", {Value(WORKGROUP, "workgroup")}, "", ""},
      {"moving without a domain", {Value(DOMAIN_OU, "Sales")}, "", ""},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.name);
    ConfigBuilder builder(log_);
    builder.SetOption(7, "true");
    builder.SetOption(ConfigBuilder::kJoinDomainBeforeNameChange, c.joinFirst);
    Send(builder, c.events);
    builder.Analyze();
    std::string classes;
    for (const auto& command : builder.Commands()) {
      const std::string name = Print(*command);
      const std::size_t cut = name.starts_with("JoinD") ? 4 : 6;
      classes += name.substr(0, std::min(cut, name.find('('))) + " ";
    }
    EXPECT_EQ(classes, c.queue);
  }
}

TEST_F(BuilderTest, EveryOrderOfTheIdentityCommandsKeepsTheRules) {
  std::vector<int> order{0, 1, 2, 3, 4};
  const Events kinds{Value(COMPUTER_NAME, "PC1"), Value(DOMAIN, "corp.example"),
                     Value(WORKGROUP, "W"), Value(ENABLE_NETWORKING, "true"),
                     Value(DOMAIN_OU, "Sales")};
  do {
    for (const bool joinFirst : {false, true}) {
      ConfigBuilder builder(log_);
      builder.SetOption(ConfigBuilder::kJoinDomainBeforeNameChange, joinFirst ? "true" : "false");
      Events events;
      for (const int kind : order) events.push_back(kinds[static_cast<std::size_t>(kind)]);
      Send(builder, events);
      builder.Analyze();
      const std::string queue = Queue(builder);
      SCOPED_TRACE(queue);
      const std::size_t rename = queue.find("ChangeCompName");
      const std::size_t join = queue.find("JoinDomain(");
      ASSERT_TRUE(rename != std::string::npos && join != std::string::npos);
      EXPECT_EQ(join < rename, joinFirst);
      const char* const behind = joinFirst ? "};Sleep(Duration=8000 milliseconds);" : "};Reboot();";
      const std::size_t first = std::min(join, rename);
      EXPECT_EQ(queue.find("};", first), queue.find(behind, first));
      EXPECT_TRUE(queue.ends_with(";Reboot();"));
      EXPECT_EQ(builder.Commands().size(), 4U + 2U)
          << "nothing is lost, the OU's move is not needed";
    }
  } while (std::next_permutation(order.begin(), order.end()));
}

TEST_F(BuilderTest, AMembersWorkgroupNeedsARestart) {
  machine_.membership = simulated::DomainMembership{"corp.example", "CORP", true};
  ConfigBuilder builder(log_);
  Send(builder, {Value(WORKGROUP, "W")});
  builder.Analyze();
  EXPECT_EQ(Queue(builder), "JoinWorkgroup(Workgroup=W {User=});Reboot();");
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

TEST_F(BuilderTest, OneStaticAddressPausesTheAdapter) {
  ConfigBuilder builder(log_);
  Send(builder, {Begin(NIC), Value(STATIC), Value(GATEWAY, "10.0.0.1"), Value(STATIC), End(),
                 Begin(NIC), Value(DHCP), End()});
  builder.Analyze();
  EXPECT_EQ(Queue(builder),
            "ConfigureNic[SetStatic(IP and Subnet Masks: )Sleep(Duration=20000 milliseconds)"
            "SetGateway(Gateways=10.0.0.1)SetStatic(IP and Subnet Masks: )];"
            "ConfigureNic[SetDhcp()];");
}

TEST_F(BuilderTest, TheRunStopsAtTheFirstRestart) {
  ConfigBuilder builder(log_);
  bool reboot = true;
  EXPECT_TRUE(builder.RunConfig(&reboot));
  EXPECT_FALSE(reboot);
  Send(builder, {Value(COMPUTER_NAME, "PC1"), Value(DOMAIN, "corp.example")});
  builder.Analyze();
  EXPECT_FALSE(builder.RunConfig(&reboot));
  EXPECT_TRUE(reboot);
  ASSERT_EQ(machine_.journal.size(), 1U);
  EXPECT_EQ(machine_.journal[0]["method"], "Rename");
}

}  // namespace
}  // namespace config
