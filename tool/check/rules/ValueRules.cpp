#include <algorithm>
#include <charconv>
#include <string>

#include "common/util/Text.h"
#include "platform/simulated/Text.h"
#include "tool/check/rules/Rules.h"

namespace tool::check {
namespace {

constexpr std::size_t kLongestNetBiosName = 15;
constexpr std::size_t kLongestLabel = 63;
constexpr std::size_t kLongestDomainName = 255;
constexpr std::string_view kRefusedInWorkgroups = "\"/\\[]:;|=,+*?<>";

bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsLetterOrDigit(char c) {
  return IsDigit(c) || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}
bool IsHexDigit(char c) { return IsDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F'); }

/// A value with its place, as a rule gets it.
struct Value {
  const Document& document;
  const Section& section;
  const Entry& entry;
  std::string_view text;

  void Add(Findings& findings, Code code, const std::string& message,
           const std::string& hint = {}) const {
    findings.Add(code, document, document.ValueSpan(entry), message, hint);
  }
};

// ---- Flags and numbers --------------------------------------------------------------------------

void CheckFlag(const Value& value, Findings& findings) {
  if (util::EqualsIgnoringCase(value.text, "true") ||
      util::EqualsIgnoringCase(value.text, "false")) {
    return;
  }
  // Whatever is not the one word counts as the other.
  const Key key = *value.entry.known;
  const bool isTrueUnlessFalse = key == Key::kRebootAfterConfig || key == Key::kDhcp;
  value.Add(findings, Code::kNoFlag,
            Quoted(value.text) + " is neither True nor False and counts as " +
                (isTrueUnlessFalse ? "True" : "False"));
}

void CheckMode(const Value& value, Findings& findings) {
  if (util::EqualsIgnoringCase(value.text, "Restore") ||
      util::EqualsIgnoringCase(value.text, "RestoreAfterCreate")) {
    return;
  }
  value.Add(findings, Code::kUnknownMode, Quoted(value.text) + " asks for nothing");
}

/// Adds a finding unless the text is a decimal number up to `largest`.
void CheckNumber(const Value& value, std::uint32_t largest, Findings& findings) {
  std::uint32_t number = 0;
  const char* const end = value.text.data() + value.text.size();
  const auto [read, error] = std::from_chars(value.text.data(), end, number);
  if (error == std::errc{} && read == end && number <= largest) return;
  const bool isNumber = std::all_of(value.text.begin(), value.text.end(), IsDigit);
  value.Add(findings, Code::kNoNumber,
            Quoted(value.text) + (isNumber ? " is larger than " + std::to_string(largest)
                                           : " is no decimal number and counts as " +
                                                 std::to_string(util::ParseUnsigned(value.text))));
}

void CheckPciNumber(const Value& value, Findings& findings) {
  if (util::ParseUnsigned(value.text) == sys::PciLocation::kUnknown) return;
  const Key key = *value.entry.known;
  constexpr std::uint32_t kLastBus = 255;
  constexpr std::uint32_t kLastDevice = 31;
  constexpr std::uint32_t kLastFunction = 7;
  CheckNumber(value,
              key == Key::kPciBus      ? kLastBus
              : key == Key::kPciDevice ? kLastDevice
                                       : kLastFunction,
              findings);
}

void CheckCount(const Value& value, Findings& findings) {
  constexpr std::uint32_t kAny = 0xFFFFFFFF;
  CheckNumber(value, kAny, findings);
}

void CheckMacAddress(const Value& value, Findings& findings) {
  const std::string digits = sys::NormalizedMac(value.text);
  constexpr std::size_t kDigits = 12;
  if (digits.size() != kDigits || !std::all_of(digits.begin(), digits.end(), IsHexDigit)) {
    value.Add(findings, Code::kNoMacAddress, Quoted(value.text) + " is no MAC address");
  } else if (digits == "000000000000" ||
             std::string_view("13579BDF").find(digits[1]) != std::string_view::npos) {
    value.Add(findings, Code::kNoMacAddress,
              Quoted(value.text) + " is no address of a single adapter");
  }
}

// ---- Names --------------------------------------------------------------------------------------

void CheckComputerName(const Value& value, Findings& findings) {
  const std::string_view name = value.text;
  if (name.size() > kLongestNetBiosName) {
    value.Add(findings, Code::kLongComputerName,
              Quoted(name) + " has " + std::to_string(name.size()) + " characters");
  }
  const auto refused = std::find_if(name.begin(), name.end(),
                                    [](char c) { return !IsLetterOrDigit(c) && c != '-'; });
  if (refused != name.end()) {
    const bool isLetter = (static_cast<unsigned char>(*refused) & 0x80) == 0;
    value.Add(findings, Code::kComputerNameLetters,
              Quoted(name) + " holds " +
                  (isLetter ? Quoted(std::string_view(&*refused, 1)) : "a letter beyond A to Z"));
  } else if (std::all_of(name.begin(), name.end(), IsDigit)) {
    value.Add(findings, Code::kComputerNameLetters, Quoted(name) + " is made of digits alone");
  } else if (name.front() == '-' || name.back() == '-') {
    value.Add(findings, Code::kComputerNameLetters,
              Quoted(name) + " has a hyphen at " + (name.front() == '-' ? "its start" : "its end"));
  }
}

bool IsLabel(std::string_view label) {
  return !label.empty() && label.size() <= kLongestLabel && label.front() != '-' &&
         label.back() != '-' && std::all_of(label.begin(), label.end(), [](char c) {
           return IsLetterOrDigit(c) || c == '-' || c == '_';
         });
}

bool IsDomainName(std::string_view name) {
  if (name.size() > kLongestDomainName) return false;
  for (std::size_t start = 0;;) {
    const std::size_t dot = name.find('.', start);
    if (!IsLabel(name.substr(start, dot - start))) return false;
    if (dot == std::string_view::npos) return true;
    start = dot + 1;
  }
}

void CheckDomainName(const Value& value, Findings& findings) {
  // "Domain" names a workgroup when "Workgroup" is true.
  const bool isWorkgroup = *value.entry.known == Key::kDomain &&
                           util::EqualsIgnoringCase(value.section.Value(Key::kWorkgroup), "true");
  if (!isWorkgroup) {
    if (!IsDomainName(value.text)) {
      value.Add(findings, Code::kBadDomainName, Quoted(value.text) + " is no domain name");
    }
    return;
  }
  if (value.text.size() > kLongestNetBiosName) {
    value.Add(findings, Code::kBadWorkgroupName,
              Quoted(value.text) + " has " + std::to_string(value.text.size()) + " characters");
    return;
  }
  const std::size_t refused = value.text.find_first_of(kRefusedInWorkgroups);
  if (refused == std::string_view::npos) return;
  value.Add(findings, Code::kBadWorkgroupName,
            Quoted(value.text) + " holds " + Quoted(value.text.substr(refused, 1)));
}

void CheckOrganizationalUnit(const Value& value, Findings& findings) {
  const std::string_view ou = value.text;
  if (ou.find('\\') != std::string_view::npos) {
    value.Add(findings, Code::kBadOrganizationalUnit,
              Quoted(ou) + R"( holds "\", which does not part units)", "part them with \"/\"");
  } else if (ou.find('=') != std::string_view::npos && ou.find("OU=") == std::string_view::npos) {
    value.Add(findings, Code::kBadOrganizationalUnit,
              Quoted(ou) + R"( holds "=", but no "OU=" in capitals: it is taken for a path)");
  }
}

// ---- Addresses ----------------------------------------------------------------------------------

bool HasLeadingZero(std::string_view text) {
  if (text.empty() || !IsDigit(text[0])) return false;  // a host name
  for (std::size_t i = 0; i + 1 < text.size(); ++i) {
    if (text[i] == '0' && IsDigit(text[i + 1]) && (i == 0 || text[i - 1] == '.')) return true;
  }
  return false;
}

/// Why no computer can have the address; null when one can.
const char* WhyUnusable(std::uint32_t address) {
  if (address == 0xFFFFFFFF) return "is the broadcast address";
  const std::uint32_t first = address >> 24;
  if (first == 0) return "is an address of no network";
  if (first >= 240) return "is a reserved address";
  if (first >= 224) return "is a multicast address";
  return nullptr;
}

/// For "10.0.0.5/24" what to write instead; empty for other texts.
std::string HintForPrefix(const Item& item) {
  const auto prefix = PrefixIn(item.text);
  if (!prefix || item.text.find('/') == std::string_view::npos) return {};
  return "write the address and the mask on their own: /" + std::to_string(*prefix) + " is " +
         MaskOf(*prefix);
}

/// Adds a finding unless the item is an address that a computer can have. `mayBeLoopback` and the
/// like depend on what it is for.
void CheckAddress(const Document& document, const Item& item, bool mayBeLoopback,
                  Findings& findings) {
  const Address address = ReadAddress(item);
  const auto add = [&](Code code, const std::string& what, const std::string& hint = {}) {
    findings.Add(code, document, item.span, Quoted(item.text) + " " + what, hint);
  };
  if (HasLeadingZero(item.text)) {
    add(Code::kLeadingZero, "is read as another address");
  } else if (!address.bits) {
    if (!item.text.empty() && IsLetterOrDigit(item.text[0]) && !IsDigit(item.text[0])) {
      add(Code::kHostName, "is taken for a host name and resolved during the run");
    } else {
      add(Code::kNoAddress, "is no IPv4 address", HintForPrefix(item));
    }
  } else if (const char* why = WhyUnusable(*address.bits)) {
    add(Code::kUnusableAddress, why);
  } else if (*address.bits >> 24 == 127 && !mayBeLoopback) {
    add(Code::kUnusableAddress, "is a loopback address");
  }
}

void CheckMask(const Document& document, const Item& item, bool mayBeZero, Findings& findings) {
  const Address mask = ReadAddress(item);
  const auto prefix = PrefixIn(item.text);
  if (HasLeadingZero(item.text)) {
    findings.Add(Code::kLeadingZero, document, item.span,
                 Quoted(item.text) + " is read as another mask");
  } else if (!mask.bits) {
    findings.Add(Code::kNoAddress, document, item.span, Quoted(item.text) + " is no IPv4 mask",
                 prefix ? std::to_string(*prefix) + " ones are " + MaskOf(*prefix) : "");
  } else if (!IsContiguous(*mask.bits)) {
    findings.Add(Code::kBadMask, document, item.span,
                 Quoted(item.text) + " is no mask: its ones do not all come first");
  } else if (*mask.bits == 0 && !mayBeZero) {
    findings.Add(Code::kBadMask, document, item.span,
                 Quoted(item.text) + " is no mask: it is empty",
                 "write a mask such as 255.255.255.0");
  }
}

void CheckAddresses(const Value& value, Findings& findings) {
  const bool isServer = *value.entry.known == Key::kDnsServer;
  for (const Item& item : value.document.Items(value.entry)) {
    CheckAddress(value.document, item, /*mayBeLoopback=*/isServer, findings);
  }
}

void CheckMasks(const Value& value, Findings& findings) {
  for (const Item& item : value.document.Items(value.entry)) {
    CheckMask(value.document, item, /*mayBeZero=*/false, findings);
  }
}

void CheckMetric(const Document& document, const Item& item, Findings& findings) {
  constexpr std::uint32_t kLargest = 9999;
  std::uint32_t metric = 0;
  const char* const end = item.text.data() + item.text.size();
  const auto [read, error] = std::from_chars(item.text.data(), end, metric);
  if (read != end) {
    findings.Add(Code::kNoNumber, document, item.span,
                 Quoted(item.text) + " is no decimal number for a metric");
  } else if (error != std::errc{} || metric > kLargest) {
    findings.Add(
        Code::kNoNumber, document, item.span,
        Quoted(item.text) + " is larger than " + std::to_string(kLargest) + ", the largest metric");
  } else if (metric == 0) {
    findings.Add(Code::kNoMetric, document, item.span, "the metric is 0");
  }
}

void CheckRoute(const Value& value, Findings& findings) {
  const std::vector<Item> fields = value.document.Items(value.entry);
  for (std::size_t i = 0; i < fields.size(); ++i) {
    const Item& field = fields[i];
    if (i == 0 && HasLeadingZero(field.text)) {
      findings.Add(Code::kLeadingZero, value.document, field.span,
                   Quoted(field.text) + " is read as another address");
    } else if (i == 0 && !ReadAddress(field).bits) {
      const std::string hint = HintForPrefix(field);
      findings.Add(Code::kNoAddress, value.document, field.span,
                   Quoted(field.text) + " is no IPv4 address", hint);
      if (!hint.empty()) return;  // all behind it stands a place too early
    } else if (i == 1) {
      CheckMask(value.document, field, /*mayBeZero=*/true, findings);
    } else if (i == 2) {
      CheckAddress(value.document, field, /*mayBeLoopback=*/false, findings);
    } else if (i == 4) {
      CheckMetric(value.document, field, findings);
    }
  }
  constexpr std::size_t kFewest = 3;
  constexpr std::size_t kMost = 5;
  if (fields.size() < kFewest) {
    value.Add(findings, Code::kShortRoute,
              "the route has " + std::to_string(fields.size()) + " of the three fields it needs");
  } else if (fields.size() < kMost) {
    value.Add(findings, Code::kNoMetric,
              "the route has " + std::to_string(fields.size()) + " fields: its metric is 0");
  } else if (fields.size() > kMost) {
    findings.Add(Code::kLongRoute, value.document, fields[kMost].span,
                 Quoted(fields[kMost].text) + " is the sixth field of the route");
  }
}

// ---- All of them --------------------------------------------------------------------------------

void CheckNothing(const Value& /*value*/, Findings& /*findings*/) {}

/// The other recorded keys belong to the hardware, or are what a restored image has anyway.
void CheckRecorded(const Value& value, Findings& findings) {
  if (value.entry.known != Key::kOwnDnsDomain) return;
  value.Add(findings, Code::kRecordedOnly,
            "the adapter's own DNS domain is not set from this file");
}

constexpr struct {
  ValueKind kind;
  void (*check)(const Value& value, Findings& findings);
} kRules[] = {
    {ValueKind::kText, CheckNothing},
    {ValueKind::kFlag, CheckFlag},
    {ValueKind::kMode, CheckMode},
    {ValueKind::kCipherText, CheckNothing},
    {ValueKind::kComputerName, CheckComputerName},
    {ValueKind::kDomainName, CheckDomainName},
    {ValueKind::kOrganizationalUnit, CheckOrganizationalUnit},
    {ValueKind::kPciNumber, CheckPciNumber},
    {ValueKind::kMacAddress, CheckMacAddress},
    {ValueKind::kCount, CheckCount},
    {ValueKind::kRecorded, CheckRecorded},
    {ValueKind::kAddresses, CheckAddresses},
    {ValueKind::kMasks, CheckMasks},
    {ValueKind::kSuffixes, CheckNothing},
    {ValueKind::kRoute, CheckRoute},
};

/// Some letter is beyond ASCII, and all of them are well-formed UTF-8.
bool IsUtf8BeyondAscii(std::string_view text) {
  bool isBeyond = false;
  for (std::size_t i = 0; i < text.size();) {
    const auto lead = static_cast<unsigned char>(text[i++]);
    if (lead < 0x80) continue;
    isBeyond = true;
    int more = 3;
    if (lead < 0xC2 || lead > 0xF4) return false;
    if (lead < 0xF0) more = lead < 0xE0 ? 1 : 2;
    for (; more > 0; --more, ++i) {
      if (i == text.size() || (static_cast<unsigned char>(text[i]) & 0xC0) != 0x80) return false;
    }
  }
  return isBeyond;
}

void CheckEncoding(const Value& value, Findings& findings) {
  // Names of computers and domains must be ASCII anyway, and nobody reads a description.
  const ValueKind kind = RowOf(*value.entry.known).value;
  const bool matters = kind == ValueKind::kText || kind == ValueKind::kOrganizationalUnit;
  if (!matters || value.entry.known == Key::kDescription) return;
  if (!IsUtf8BeyondAscii(value.text)) return;
  value.Add(findings, Code::kUtf8Text,
            "the letters beyond ASCII are in UTF-8 and are read as others");
}

/// What an adapter got by DHCP before its image was taken stands in its section, too.
bool IsRecordedOnly(const Value& value) {
  const Key key = *value.entry.known;
  if (key != Key::kAddress && key != Key::kNetmask && key != Key::kGateway) return false;
  const std::string_view dhcp = value.section.Value(Key::kDhcp);
  return !dhcp.empty() && !util::EqualsIgnoringCase(dhcp, "false");
}

}  // namespace

void CheckValues(const Document& document, Findings& findings) {
  for (const Section& section : document.Sections()) {
    for (const Entry& entry : section.entries) {
      if (!entry.known || !entry.isFound || entry.FirstLine().empty()) continue;
      const Value value{document, section, entry, entry.FirstLine()};
      if (IsRecordedOnly(value)) continue;
      const ValueKind kind = RowOf(*entry.known).value;
      std::find_if(std::begin(kRules), std::end(kRules), [kind](const auto& rule) {
        return rule.kind == kind;
      })->check(value, findings);
      CheckEncoding(value, findings);
    }
  }
}

}  // namespace tool::check
