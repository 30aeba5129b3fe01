#include "common/config/BuilderRule.h"

#include <memory>
#include <typeinfo>
#include <utility>

#include "base/LetterCase.h"
#include "base/Numbers.h"
#include "common/config/ConfigBuilder.h"
#include "common/config/ConfigError.h"
#include "common/config/command/ChangeCompName.h"
#include "common/config/command/EnableNetworking.h"
#include "common/config/command/JoinDomain.h"
#include "common/config/command/JoinWorkgroup.h"
#include "common/config/command/MoveOu.h"
#include "common/config/command/SetDhcp.h"
#include "common/config/command/SetDns.h"
#include "common/config/command/SetDnsSuffix.h"
#include "common/config/command/SetGateway.h"
#include "common/sys/Domain.h"

namespace config {
namespace {

using command::CommandList;
using command::ConfigureNic;
using command::IConfigureCommand;
using command::SetDns;
using command::SetStatic;
using command::SetStaticRoute;

constexpr char kSource[] = R"(common\config\BuilderRule)";
constexpr err::Site kRefusedByDefault{kSource,
                                      "Invalid config event being handled by Default scope", 209};
constexpr err::Site kCorrupted{kSource, "Configure commands are corrupted", 222};
constexpr err::Site kGatewayOnDhcp{
    kSource, "Attempting to configure a DHCP nic with static information", 228};
constexpr err::Site kRefusedByNic{kSource, "Invalid config event being handled by NIC scope", 324};
constexpr err::Site kNotStatic{
    kSource, "IpInterface being called without a previous event to set the NIC as static", 359};
constexpr err::Site kRefusedByIpInterface{
    kSource, "Invalid config event being handled by IpInterface scope", 373};
// Deliberate: the text of the IP interface; only the line tells the two apart.
constexpr err::Site kRefusedByStaticRoute{
    kSource, "Invalid config event being handled by IpInterface scope", 456};

constexpr std::int32_t kNotAccepted = 1;
constexpr std::int32_t kPrerequisiteMissing = 0;

[[noreturn]] void Throw(const err::Site& site, std::int32_t value) {
  throw ConfigError{site, value, /*systemError=*/0};
}

/// The last command of a list if it is exactly a `Command`, else null.
template <typename Command>
Command* LastIf(const CommandList& commands) {
  if (commands.empty()) return nullptr;
  IConfigureCommand& last = *commands.back();
  return typeid(last) == typeid(Command) ? static_cast<Command*>(&last) : nullptr;
}

/// Adds `value` to the last command of a list if it is exactly a `Command`, else to a new one made
/// from `arguments`. So the values of an unbroken run end up in one command, which is returned.
template <typename Command, typename... Arguments>
IConfigureCommand* AddToLastOrNew(CommandList& commands, const std::string& value,
                                  Arguments... arguments) {
  if (auto* last = LastIf<Command>(commands)) {
    last->Add(value);
    return last;
  }
  auto made = std::make_unique<Command>(arguments...);
  made->Add(value);
  return commands.emplace_back(std::move(made)).get();
}

ConfigureNic& LastNic(ConfigBuilder& builder) {
  auto* nic = LastIf<ConfigureNic>(builder.Commands());
  if (nic == nullptr) Throw(kCorrupted, kPrerequisiteMissing);
  return *nic;
}

SetStatic* LastStatic(ConfigBuilder& builder) {
  auto* nic = LastIf<ConfigureNic>(builder.Commands());
  return nic == nullptr ? nullptr : LastIf<SetStatic>(nic->Commands());
}

SetStaticRoute& LastOrNewRoutes(ConfigBuilder& builder) {
  if (auto* last = LastIf<SetStaticRoute>(builder.Commands())) return *last;
  auto made = std::make_unique<SetStaticRoute>();
  SetStaticRoute& routes = *made;
  builder.AddCommand(std::move(made));
  return routes;
}

}  // namespace

// ---- DefaultRule --------------------------------------------------------------------------------

IConfigureCommand* DefaultRule::HandleEvent(EventKind kind, const std::string& value) {
  switch (kind) {
    case EventKind::COMPUTER_NAME:
      return builder_.AddCommand(std::make_unique<command::ChangeCompName>(value));
    case EventKind::WORKGROUP:
      return builder_.AddCommand(std::make_unique<command::JoinWorkgroup>(value));
    case EventKind::DOMAIN:
      return AddJoinDomain(value);
    // Credentials belong to the identity command just before them; others are dropped without a
    // word.
    case EventKind::DOMAIN_USER: {
      auto* last = LastIdentity();
      if (last != nullptr) last->SetUser(value);
      return last;
    }
    case EventKind::DOMAIN_PASSWORD: {
      auto* last = LastIdentity();
      if (last != nullptr) last->SetPassword(value);
      return last;
    }
    case EventKind::DOMAIN_OU:
      return SetOu(value);
    case EventKind::NOOP:
      return nullptr;
    case EventKind::ENABLE_NETWORKING:
      return builder_.AddCommand(std::make_unique<command::EnableNetworking>(
          /*leaveDomain=*/base::SameText(value, "True")));
    default:
      Throw(kRefusedByDefault, kNotAccepted);
  }
}

command::DomainCommand* DefaultRule::LastIdentity() const {
  return dynamic_cast<command::DomainCommand*>(builder_.LastCommand());
}

IConfigureCommand* DefaultRule::AddJoinDomain(const std::string& domain) {
  sys::Domain& current = sys::Domain::Instance();
  if (current.IsDomainMember() && (base::SameText(domain, current.GetDnsDomainName()) ||
                                   base::SameText(domain, current.GetDomainName()))) {
    return nullptr;
  }
  return builder_.AddCommand(std::make_unique<command::JoinDomain>(domain));
}

IConfigureCommand* DefaultRule::SetOu(const std::string& ou) {
  if (auto* join = LastIf<command::JoinDomain>(builder_.Commands())) {
    join->SetOu(ou);
    return join;
  }
  return builder_.AddCommand(std::make_unique<command::MoveOu>(ou));
}

// ---- NicRule ------------------------------------------------------------------------------------

NicRule::NicRule(ConfigBuilder& builder) : nic_(LastNic(builder)) {}

IConfigureCommand* NicRule::HandleEvent(EventKind kind, const std::string& value) {
  switch (kind) {
    case EventKind::NIC_MAC_ADDRESS:
      nic_.SetMacAddress(value);
      return &nic_;
    case EventKind::NIC_PCI_BUS:
      nic_.SetPciBus(base::ParseUnsigned(value));
      return &nic_;
    case EventKind::NIC_PCI_DEVICE:
      nic_.SetPciDevice(base::ParseUnsigned(value));
      return &nic_;
    case EventKind::NIC_PCI_FUNCTION:
      nic_.SetPciFunction(base::ParseUnsigned(value));
      return &nic_;
    case EventKind::DHCP:
      Add(std::make_unique<command::SetDhcp>());
      mode_ = Mode::kDhcp;
      return nic_.Commands().back().get();
    case EventKind::STATIC:
      Add(std::make_unique<SetStatic>());
      mode_ = Mode::kStatic;
      return nic_.Commands().back().get();
    case EventKind::GATEWAY:
      if (mode_ != Mode::kStatic) Throw(kGatewayOnDhcp, kNotAccepted);
      return AddToLastOrNew<command::SetGateway>(nic_.Commands(), value);
    case EventKind::DNS_SERVER:
      if (value == "0.0.0.0") return nullptr;
      return AddToLastOrNew<SetDns>(nic_.Commands(), value, SetDns::Mode::kServers);
    case EventKind::DNS_SUFFIX:
      return AddToLastOrNew<command::SetDnsSuffix>(nic_.Commands(), value);
    case EventKind::DNS_DHCP:
      return Add(std::make_unique<SetDns>(SetDns::Mode::kDhcp));
    default:
      Throw(kRefusedByNic, kNotAccepted);
  }
}

IConfigureCommand* NicRule::Add(std::unique_ptr<IConfigureCommand> command) {
  return nic_.Commands().emplace_back(std::move(command)).get();
}

// ---- IpInterfaceRule ----------------------------------------------------------------------------

IpInterfaceRule::IpInterfaceRule(ConfigBuilder& builder) : static_(LastStatic(builder)) {}

IConfigureCommand* IpInterfaceRule::HandleEvent(EventKind kind, const std::string& value) {
  if (static_ == nullptr) Throw(kNotStatic, kPrerequisiteMissing);
  switch (kind) {
    case EventKind::IP_ADDRESS:
      static_->AddAddress(value);
      return static_;
    case EventKind::SUBNET_MASK:
      static_->AddMask(value);
      return static_;
    default:
      Throw(kRefusedByIpInterface, kNotAccepted);
  }
}

// ---- StaticRouteRule ----------------------------------------------------------------------------

StaticRouteRule::StaticRouteRule(ConfigBuilder& builder) : routes_(LastOrNewRoutes(builder)) {}

IConfigureCommand* StaticRouteRule::HandleEvent(EventKind kind, const std::string& value) {
  hasData_ = true;  // also for an event that is refused
  switch (kind) {
    case EventKind::IP_ADDRESS:
      destination_ = value;
      return &routes_;
    case EventKind::SUBNET_MASK:
      mask_ = value;
      return &routes_;
    case EventKind::ROUTE_GATEWAY:
    case EventKind::GATEWAY:
      gateway_ = value;
      return &routes_;
    case EventKind::ROUTE_FOURTH_FIELD:
      return &routes_;  // accepted and never used
    case EventKind::ROUTE_METRIC:
      metric_ = base::ParseUnsigned(value);
      return &routes_;
    default:
      Throw(kRefusedByStaticRoute, kNotAccepted);
  }
}

void StaticRouteRule::Close() {
  if (!hasData_) return;
  routes_.Add({ipc::IPv4Address(destination_), ipc::IPv4Address(mask_), ipc::IPv4Address(gateway_),
               metric_});
}

}  // namespace config
