#include "handlers/internal/SectionTranslator.h"

#include <algorithm>

#include "base/LetterCase.h"
#include "base/Pieces.h"
#include "common/sys/DllProxy.h"
#include "handlers/MessageHandler.h"
#include "handlers/internal/NumberedKeys.h"

namespace {

using base::Key;
using base::SectionKind;
using config::Event;
using config::EventKind;

constexpr char kPath[] = "internal/Configure";
constexpr int kDnsUseDhcpLine = 401;
constexpr int kDnsDhcpEventLine = 406;
constexpr int kSetDnsInfoLine = 412;
constexpr int kDnsServerCountLine = 419;
constexpr int kDnsServerLine = 430;

bool IsTrue(std::string_view value) { return base::SameText(value, "true"); }

}  // namespace

void SectionTranslator::TranslateAll() {
  for (auto result = file_.GetFirstSection(&section_); result == ConfigFile::kSuccess;
       result = file_.GetNextSection(&section_)) {
    const SectionKind kind = base::KindOfSection(section_);
    if (kind == SectionKind::kAgentSettings) SendAgentSettings();
    if (kind == SectionKind::kNetworking) TranslateNetworking();
    if (kind == SectionKind::kAdapter) TranslateAdapter();
  }
}

void SectionTranslator::SendAgentSettings() {
  const OwnedMessage message = NewMessage(host_);
  message->SetTypeAndName("Settings", "Included");
  std::string key;
  std::string value;
  // Every entry is copied, comments with their empty key as well.
  for (auto result = file_.GetFirstEntry(section_, &key, &value); result == ConfigFile::kSuccess;
       result = file_.GetNextEntry(&key, &value)) {
    message->AddValue(key.c_str(), value.c_str());
  }
  host_.SendTo("SetAgentSettings", message.get());
}

// ---- Identity -----------------------------------------------------------------------------------

void SectionTranslator::TranslateNetworking() {
  const Credentials credentials = ReadCredentials();
  const bool workgroupDecided = SendMembership();
  if (!workgroupDecided) {
    SendWithCredentials(EventKind::DOMAIN_OU, Key::kOrganizationalUnit, credentials);
  }
  SendWithCredentials(EventKind::COMPUTER_NAME, Key::kComputerName, credentials);
  const std::string joinFirst = Value(Key::kJoinDomainBeforeNameChange);
  if (IsTrue(joinFirst)) {
    builder_.SetOption(config::ConfigBuilder::kJoinDomainBeforeNameChange, joinFirst);
  }
}

SectionTranslator::Credentials SectionTranslator::ReadCredentials() {
  Credentials credentials;
  sys::CryptoDll crypto;
  if (!crypto.TryLoad()) return credentials;
  const std::string user = Value(Key::kDomainUsername);
  credentials.given = !user.empty();
  if (credentials.given) credentials.user = crypto.PlainText(user);
  const std::string password = Value(Key::kDomainPassword);
  if (!password.empty()) credentials.password = crypto.PlainText(password);
  return credentials;
}

/// True when the machine is to be in a workgroup.
bool SectionTranslator::SendMembership() {
  const std::string workgroup = Value(Key::kWorkgroup);
  if (workgroup.empty()) return false;
  const bool joinsWorkgroup = IsTrue(workgroup);
  const Key key = joinsWorkgroup || Value(Key::kDnsDomain).empty() ? Key::kDomain : Key::kDnsDomain;
  const std::string domain = Value(key);
  if (!domain.empty()) {
    Send(joinsWorkgroup ? EventKind::WORKGROUP : EventKind::DOMAIN, key, domain);
    return joinsWorkgroup;
  }
  if (!joinsWorkgroup) Send(EventKind::WORKGROUP, Key::kWorkgroup, "WORKGROUP");
  return !joinsWorkgroup;
}

void SectionTranslator::SendWithCredentials(EventKind kind, KeyName key,
                                            const Credentials& credentials) {
  const std::string value = Value(key);
  if (value.empty()) return;
  Send(kind, key, value);
  if (!credentials.given) return;
  Send(EventKind::DOMAIN_USER, Key::kDomainUsername, credentials.user);
  Send(EventKind::DOMAIN_PASSWORD, Key::kDomainPassword, credentials.password);
}

// ---- Adapters -----------------------------------------------------------------------------------

void SectionTranslator::TranslateAdapter() {
  Send(EventKind::NIC, Key::kDescription, Value(Key::kDescription), Event::BEGIN);
  SendIfPresent(EventKind::NIC_PCI_BUS, Key::kPciBus);
  SendIfPresent(EventKind::NIC_PCI_DEVICE, Key::kPciDevice);
  SendIfPresent(EventKind::NIC_PCI_FUNCTION, Key::kPciFunction);
  SendIfPresent(EventKind::NIC_MAC_ADDRESS, Key::kMacAddress);
  SendAddressing();
  SendDns();
  SendRoutes();
  Send(EventKind::NIC, Key::kDescription, "", Event::END);
}

void SectionTranslator::SendAddressing() {
  const std::string dhcp = Value(Key::kDhcp);
  if (dhcp.empty()) return;
  if (!base::SameText(dhcp, "False")) {
    Send(EventKind::DHCP, Key::kDhcp, "");
    return;
  }
  Send(EventKind::STATIC, Key::kDhcp, "");
  Send(EventKind::IP_INTERFACE, Key::kAddress, Value(Key::kAddress), Event::BEGIN);
  SendEach(EventKind::IP_ADDRESS, Key::kAddress);
  SendEach(EventKind::SUBNET_MASK, Key::kNetmask);
  Send(EventKind::IP_INTERFACE, Key::kAddress, "", Event::END);
  SendEach(EventKind::GATEWAY, Key::kGateway);
}

void SectionTranslator::SendDns() {
  const std::string useDhcp = Value(Key::kDnsUseDhcp);
  log_.Log(logging::kDetail, "%s:%d - %s, DNS-Use-DHCP = %s", kPath, kDnsUseDhcpLine,
           section_.c_str(), useDhcp.c_str());
  if (IsTrue(useDhcp)) {
    log_.Log(logging::kDetail, "%s:%d - setting a config event for DNS_DHCP", kPath,
             kDnsDhcpEventLine);
    Send(EventKind::DNS_DHCP, Key::kDnsUseDhcp, "");
    return;
  }
  log_.Log(logging::kDetail, "%s:%d - checking SetDNSInfo value", kPath, kSetDnsInfoLine);
  if (!IsTrue(Value(Key::kSetDnsInfo))) return;
  log_.Log(logging::kDetail, "%s:%d - DNS-Server-Count = %s", kPath, kDnsServerCountLine,
           Value(Key::kDnsServerCount).c_str());
  for (const std::size_t index :
       NumberedKeys(file_, section_, Key::kDnsServer, Key::kDnsServerCount)) {
    const std::string key = NameOf(Key::kDnsServer, index);
    log_.Log(logging::kDetail, "%s:%d - DNS-Server%d= %s", kPath, kDnsServerLine,
             static_cast<int>(index), Value(key).c_str());
    SendEach(EventKind::DNS_SERVER, key);
  }
  SendEach(EventKind::DNS_SUFFIX, Key::kDnsSuffixes);
}

void SectionTranslator::SendRoutes() {
  // A route's fields by their position in the list.
  constexpr EventKind kFields[] = {EventKind::IP_ADDRESS, EventKind::SUBNET_MASK,
                                   EventKind::ROUTE_GATEWAY, EventKind::ROUTE_FOURTH_FIELD,
                                   EventKind::ROUTE_METRIC};
  for (const std::size_t index :
       NumberedKeys(file_, section_, Key::kRoute, Key::kStaticRouteCount)) {
    const std::string key = NameOf(Key::kRoute, index);
    const std::vector<std::string> fields = List(key);
    if (fields.empty()) continue;
    Send(EventKind::STATIC_ROUTE, key, Value(key), Event::BEGIN);
    for (std::size_t i = 0; i < std::min(fields.size(), std::size(kFields)); ++i) {
      Send(kFields[i], key, fields[i]);
    }
    Send(EventKind::STATIC_ROUTE, key, "", Event::END);
  }
}

// ---- Reading the file ---------------------------------------------------------------------------

std::string SectionTranslator::Value(KeyName key) {
  return std::string(file_.FindValue(section_, key.text).value_or(std::string_view()));
}

std::vector<std::string> SectionTranslator::List(KeyName key) {
  return base::Split(Value(key), base::kListSeparators);
}

// ---- Events -------------------------------------------------------------------------------------

void SectionTranslator::Send(EventKind kind, KeyName key, const std::string& value, Event phase) {
  listener_.Sending({kind, phase, value, section_, key.text});
  listener_.Taken(builder_.ConfigEvent(kind, phase, value));
}

void SectionTranslator::SendEach(EventKind kind, KeyName key) {
  for (const std::string& value : List(key)) Send(kind, key, value);
}

void SectionTranslator::SendIfPresent(EventKind kind, KeyName key) {
  const std::string value = Value(key);
  if (!value.empty()) Send(kind, key, value);
}
