#include "handlers/internal/SectionTranslator.h"

#include <algorithm>

#include "common/sys/DllProxy.h"
#include "common/util/Text.h"
#include "handlers/MessageHandler.h"

namespace {

using config::Event;
using config::EventKind;

constexpr char kPath[] = "internal/Configure";
constexpr int kDnsUseDhcpLine = 401;
constexpr int kDnsDhcpEventLine = 406;
constexpr int kSetDnsInfoLine = 412;
constexpr int kDnsServerCountLine = 419;
constexpr int kDnsServerLine = 430;

/// What separates the items of a list; continuation lines end in line feeds.
constexpr std::string_view kListSeparators = ",; \t\r\n";

bool IsTrue(std::string_view value) { return util::EqualsIgnoringCase(value, "true"); }

}  // namespace

void SectionTranslator::TranslateAll() {
  std::string section;
  for (auto result = file_.GetFirstSection(&section); result == ConfigFile::kSuccess;
       result = file_.GetNextSection(&section)) {
    Translate(section);
  }
}

void SectionTranslator::Translate(const std::string& section) {
  if (util::EqualsIgnoringCase(section, "ConfigSettings")) {
    SendAgentSettings(section);
  } else if (util::EqualsIgnoringCase(section, "Networking")) {
    TranslateNetworking(section);
  } else if (util::EqualsIgnoringCase(section, "TCP/IP") ||
             util::ContainsIgnoringCase(section, "NicEntry")) {
    TranslateAdapter(section);
  }
}

void SectionTranslator::SendAgentSettings(const std::string& section) {
  const OwnedMessage message = NewMessage(host_);
  message->SetTypeAndName("Settings", "Included");
  std::string key;
  std::string value;
  // Every entry is copied, comments with their empty key as well.
  for (auto result = file_.GetFirstEntry(section, &key, &value); result == ConfigFile::kSuccess;
       result = file_.GetNextEntry(&key, &value)) {
    message->AddValue(key.c_str(), value.c_str());
  }
  host_.SendTo("SetAgentSettings", message.get());
}

// ---- Identity -----------------------------------------------------------------------------------

void SectionTranslator::TranslateNetworking(const std::string& section) {
  const Credentials credentials = ReadCredentials(section);
  const bool workgroupDecided = SendMembership(section);
  const std::string ou = Value(section, "DSOrganizationalUnit");
  if (!workgroupDecided) SendWithCredentials(EventKind::DOMAIN_OU, ou, credentials);
  SendWithCredentials(EventKind::COMPUTER_NAME, Value(section, "ComputerName"), credentials);
  const std::string joinFirst = Value(section, "JoinDomainBeforeNameChange");
  if (IsTrue(joinFirst)) {
    builder_.SetOption(config::ConfigBuilder::kJoinDomainBeforeNameChange, joinFirst);
  }
}

SectionTranslator::Credentials SectionTranslator::ReadCredentials(const std::string& section) {
  Credentials credentials;
  sys::CryptoDll crypto;
  if (!crypto.TryLoad()) return credentials;
  const std::string user = Value(section, "DomainUsername");
  if (!user.empty()) {
    credentials.given = true;
    credentials.user = crypto.PlainText(user);
  }
  const std::string password = Value(section, "DomainPassword");
  if (!password.empty()) credentials.password = crypto.PlainText(password);
  return credentials;
}

/// True when the machine is to be in a workgroup.
bool SectionTranslator::SendMembership(const std::string& section) {
  const std::string workgroup = Value(section, "Workgroup");
  if (workgroup.empty()) return false;
  const std::string domain = Value(section, "Domain");
  if (IsTrue(workgroup)) {
    if (domain.empty()) return false;
    Send(EventKind::WORKGROUP, domain);
    return true;
  }
  const std::string dnsDomain = Value(section, "DNSDomain");
  if (dnsDomain.empty() && domain.empty()) {
    Send(EventKind::WORKGROUP, "WORKGROUP");
    return true;
  }
  Send(EventKind::DOMAIN, dnsDomain.empty() ? domain : dnsDomain);
  return false;
}

void SectionTranslator::SendWithCredentials(EventKind kind, const std::string& value,
                                            const Credentials& credentials) {
  if (value.empty()) return;
  Send(kind, value);
  if (!credentials.given) return;
  Send(EventKind::DOMAIN_USER, credentials.user);
  Send(EventKind::DOMAIN_PASSWORD, credentials.password);
}

// ---- Adapters -----------------------------------------------------------------------------------

void SectionTranslator::TranslateAdapter(const std::string& section) {
  Begin(EventKind::NIC, Value(section, "Description"));
  SendIfPresent(EventKind::NIC_PCI_BUS, section, "PCIBus");
  SendIfPresent(EventKind::NIC_PCI_DEVICE, section, "PCIDevice");
  SendIfPresent(EventKind::NIC_PCI_FUNCTION, section, "PCIFunction");
  SendIfPresent(EventKind::NIC_MAC_ADDRESS, section, "MACAddress");
  SendAddressing(section);
  SendDns(section);
  SendRoutes(section);
  End(EventKind::NIC);
}

void SectionTranslator::SendAddressing(const std::string& section) {
  const std::string dhcp = Value(section, "DHCP");
  if (dhcp.empty()) return;
  if (!util::EqualsIgnoringCase(dhcp, "False")) {
    Send(EventKind::DHCP, "");
    return;
  }
  Send(EventKind::STATIC, "");
  Begin(EventKind::IP_INTERFACE, "");
  SendEach(EventKind::IP_ADDRESS, List(section, "Address"));
  SendEach(EventKind::SUBNET_MASK, List(section, "Netmask"));
  End(EventKind::IP_INTERFACE);
  SendEach(EventKind::GATEWAY, List(section, "Gateway"));
}

void SectionTranslator::SendDns(const std::string& section) {
  const std::string useDhcp = Value(section, "DNS-Use-DHCP");
  log_.Log(logging::kDetail, "%s:%d - %s, DNS-Use-DHCP = %s", kPath, kDnsUseDhcpLine,
           section.c_str(), useDhcp.c_str());
  if (IsTrue(useDhcp)) {
    log_.Log(logging::kDetail, "%s:%d - setting a config event for DNS_DHCP", kPath,
             kDnsDhcpEventLine);
    Send(EventKind::DNS_DHCP, "");
    return;
  }
  log_.Log(logging::kDetail, "%s:%d - checking SetDNSInfo value", kPath, kSetDnsInfoLine);
  if (!IsTrue(Value(section, "SetDNSInfo"))) return;
  log_.Log(logging::kDetail, "%s:%d - DNS-Server-Count = %s", kPath, kDnsServerCountLine,
           Value(section, "DNS-Server-Count").c_str());
  for (const std::size_t index : Indexes(section, "DNS-Server", "DNS-Server-Count")) {
    const std::string key = "DNS-Server" + std::to_string(index);
    log_.Log(logging::kDetail, "%s:%d - DNS-Server%d= %s", kPath, kDnsServerLine,
             static_cast<int>(index), Value(section, key).c_str());
    SendEach(EventKind::DNS_SERVER, List(section, key));
  }
  SendEach(EventKind::DNS_SUFFIX, List(section, "DNS-SuffixSearchOrder"));
}

void SectionTranslator::SendRoutes(const std::string& section) {
  // A route's fields by their position in the list.
  constexpr EventKind kFields[] = {EventKind::IP_ADDRESS, EventKind::SUBNET_MASK,
                                   EventKind::ROUTE_GATEWAY, EventKind::ROUTE_FOURTH_FIELD,
                                   EventKind::ROUTE_METRIC};
  for (const std::size_t index : Indexes(section, "Route", "Static-Route-Count")) {
    const std::vector<std::string> fields = List(section, "Route" + std::to_string(index));
    if (fields.empty()) continue;
    Begin(EventKind::STATIC_ROUTE, "");
    for (std::size_t i = 0; i < std::min(fields.size(), std::size(kFields)); ++i) {
      Send(kFields[i], fields[i]);
    }
    End(EventKind::STATIC_ROUTE);
  }
}

// ---- Reading the file ---------------------------------------------------------------------------

std::string SectionTranslator::Value(const std::string& section, std::string_view key) {
  return std::string(file_.FindValue(section, key).value_or(std::string_view()));
}

std::vector<std::string> SectionTranslator::List(const std::string& section, std::string_view key) {
  return util::Split(file_.FindValue(section, key).value_or(std::string_view()), kListSeparators);
}

std::vector<std::size_t> SectionTranslator::Indexes(const std::string& section,
                                                    std::string_view prefix,
                                                    std::string_view countKey) {
  const std::size_t wanted = util::ParseUnsigned(Value(section, countKey));
  // Numbering may start at 0 or at 1. A section cannot hold more indexes than it has entries, so a
  // huge count costs nothing.
  const std::size_t entries = file_.EntryCount(section);
  std::vector<std::size_t> indexes;
  for (std::size_t index = 0; index < entries && indexes.size() < wanted; ++index) {
    const std::string key = std::string(prefix) + std::to_string(index);
    if (file_.FindValue(section, key)) indexes.push_back(index);
  }
  return indexes;
}

// ---- Events -------------------------------------------------------------------------------------

void SectionTranslator::Send(EventKind kind, const std::string& value) {
  builder_.ConfigEvent(kind, Event::VALUE, value);
}

void SectionTranslator::SendEach(EventKind kind, const std::vector<std::string>& values) {
  for (const std::string& value : values) Send(kind, value);
}

void SectionTranslator::SendIfPresent(EventKind kind, const std::string& section,
                                      std::string_view key) {
  const std::string value = Value(section, key);
  if (!value.empty()) Send(kind, value);
}

void SectionTranslator::Begin(EventKind kind, const std::string& value) {
  builder_.ConfigEvent(kind, Event::BEGIN, value);
}

void SectionTranslator::End(EventKind kind) { builder_.ConfigEvent(kind, Event::END, ""); }
