#include "common/config/BuilderRule.h"

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
// Deliberate: the text of the IP interface; only the line differs.
constexpr err::Site kRefusedByStaticRoute{
    kSource, "Invalid config event being handled by IpInterface scope", 456};

constexpr std::int32_t kNotAccepted = 1;
constexpr std::int32_t kPrerequisiteMissing = 0;

[[noreturn]] void Throw(const err::Site& site, std::int32_t value) {
  throw ConfigError{site, value, /*systemError=*/0};
}

/// The last command of a list if it is exactly a `Command`, otherwise null.
template <typename Command>
Command* LastIf(const CommandList& commands) {
  if (commands.empty()) return nullptr;
  IConfigureCommand& last = *commands.back();
  return typeid(last) == typeid(Command) ? static_cast<Command*>(&last) : nullptr;
}

/// Adds `value` to the last command of a list if it is exactly a `Command`, otherwise to a new one.
/// So the values of an unbroken run end up in one command, which is returned.
template <typename Command>
IConfigureCommand* AddToLastOrNew(CommandList& commands, const std::string& value) {
  if (auto* last = LastIf<Command>(commands)) {
    last->Add(value);
    return last;
  }
  auto made = std::make_unique<Command>();
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
  return static_cast<SetStaticRoute&>(*builder.AddCommand(std::make_unique<SetStaticRoute>()));
}

bool IsCurrentDomain(const std::string& name) {
  sys::Domain& current = sys::Domain::Instance();
  return current.IsDomainMember() && (base::SameText(name, current.GetDnsDomainName()) ||
                                      base::SameText(name, current.GetDomainName()));
}

}  // namespace

// ---- DefaultRule --------------------------------------------------------------------------------

IConfigureCommand* DefaultRule::HandleEvent(EventKind kind, const std::string& value) {
  auto* const identity = dynamic_cast<command::DomainCommand*>(builder_.LastCommand());
  switch (kind) {
    case EventKind::COMPUTER_NAME:
      return builder_.AddCommand(std::make_unique<command::ChangeCompName>(value));
    case EventKind::WORKGROUP:
      return builder_.AddCommand(std::make_unique<command::JoinWorkgroup>(value));
    case EventKind::DOMAIN:
      if (IsCurrentDomain(value)) return nullptr;
      return builder_.AddCommand(std::make_unique<command::JoinDomain>(value));
    // Credentials belong to the identity command just before them; others are dropped silently.
    case EventKind::DOMAIN_USER:
      if (identity != nullptr) identity->SetUser(value);
      return identity;
    case EventKind::DOMAIN_PASSWORD:
      if (identity != nullptr) identity->SetPassword(value);
      return identity;
    case EventKind::DOMAIN_OU:
      if (auto* join = LastIf<command::JoinDomain>(builder_.Commands())) {
        join->SetOu(value);
        return join;
      }
      return builder_.AddCommand(std::make_unique<command::MoveOu>(value));
    case EventKind::NOOP:
      return nullptr;
    case EventKind::ENABLE_NETWORKING:
      return builder_.AddCommand(std::make_unique<command::EnableNetworking>(
          /*leaveDomain=*/base::SameText(value, "True")));
    default:
      Throw(kRefusedByDefault, kNotAccepted);
  }
}

// ---- NicRule ------------------------------------------------------------------------------------

NicRule::NicRule(ConfigBuilder& builder) : nic_(LastNic(builder)) {}

IConfigureCommand* NicRule::HandleEvent(EventKind kind, const std::string& value) {
  switch (kind) {
    case EventKind::NIC_MAC_ADDRESS:
      nic_.SetMacAddress(value);
      return &nic_;
    case EventKind::NIC_PCI_BUS:
      nic_.Location().bus = base::ParseUnsigned(value);
      return &nic_;
    case EventKind::NIC_PCI_DEVICE:
      nic_.Location().device = base::ParseUnsigned(value);
      return &nic_;
    case EventKind::NIC_PCI_FUNCTION:
      nic_.Location().function = base::ParseUnsigned(value);
      return &nic_;
    case EventKind::DHCP:
      Add(std::make_unique<command::SetDhcp>());
      isStatic_ = false;
      return nic_.Commands().back().get();
    case EventKind::STATIC:
      Add(std::make_unique<SetStatic>());
      isStatic_ = true;
      return nic_.Commands().back().get();
    case EventKind::GATEWAY:
      if (!isStatic_) Throw(kGatewayOnDhcp, kNotAccepted);
      return AddToLastOrNew<command::SetGateway>(nic_.Commands(), value);
    case EventKind::DNS_SERVER:
      if (value == "0.0.0.0") return nullptr;
      return AddToLastOrNew<SetDns>(nic_.Commands(), value);
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
    case EventKind::SUBNET_MASK:
    case EventKind::ROUTE_GATEWAY:
    case EventKind::ROUTE_FOURTH_FIELD:  // accepted and never used
    case EventKind::ROUTE_METRIC:
      values_[kind] = value;
      return &routes_;
    case EventKind::GATEWAY:
      values_[EventKind::ROUTE_GATEWAY] = value;
      return &routes_;
    default:
      Throw(kRefusedByStaticRoute, kNotAccepted);
  }
}

void StaticRouteRule::Close() {
  if (!hasData_) return;
  routes_.Add({ipc::IPv4Address(values_[EventKind::IP_ADDRESS]),
               ipc::IPv4Address(values_[EventKind::SUBNET_MASK]),
               ipc::IPv4Address(values_[EventKind::ROUTE_GATEWAY]),
               base::ParseUnsigned(values_[EventKind::ROUTE_METRIC])});
}

}  // namespace config
