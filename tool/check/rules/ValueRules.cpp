#include <algorithm>
#include <iterator>
#include <string>
#include <utility>

#include "base/LetterCase.h"
#include "base/Numbers.h"
#include "base/Pieces.h"
#include "base/Utf8.h"
#include "common/sys/Domain.h"
#include "tool/check/rules/Rules.h"
#include "tool/io/CodePage.h"

namespace tool::check {
namespace {

constexpr std::size_t kLongestNetBiosName = 15;
constexpr std::size_t kLongestLabel = 63;
constexpr std::size_t kLongestDomainName = 255;
constexpr std::string_view kRefusedInWorkgroups = "\"/\\[]:;|=,+*?<>";

bool IsDigit(char c) { return c >= '0' && c <= '9'; }
bool IsLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool IsLetterOrDigit(char c) { return IsDigit(c) || IsLetter(c); }
bool IsHexDigit(char c) { return IsDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F'); }

/// A value with its place, as a rule gets it.
struct Value {
  const Identity& identity;
  const Document& document;
  const Section& section;
  const PlacedEntry& entry;
  std::string_view text;
  Findings& findings;

  /// Tells what the value is.
  void Add(Code code, const std::string& what, const std::string& hint = {}) const {
    findings.AtValue(code, entry, Quoted(text) + " " + what, hint);
  }
  /// Fixes the finding that was added last by another value.
  void FixBy(std::string other) const {
    const Span span = document.ValueSpan(entry);
    if (span.length == text.size()) findings.FixBy(span, std::move(other));
  }
};

// ---- Flags and numbers --------------------------------------------------------------------------

void CheckFlag(const Value& value) {
  if (IsTrue(value.text) || IsFalse(value.text)) return;
  // Whatever is not the one word counts as the other.
  const Key key = *value.entry.known;
  const bool isTrueUnlessFalse = key == Key::kRebootAfterConfig || key == Key::kDhcp;
  constexpr std::string_view kFlags = " yes no on off 1 0 ";
  const bool isName = key == Key::kWorkgroup &&
                      base::Find(kFlags, " " + std::string(value.text) + " ") == std::string::npos;
  value.Add(Code::kNoFlag,
            std::string("is neither True nor False and is read as ") +
                (isTrueUnlessFalse ? "True" : "False"),
            isName ? "write Workgroup=True and Domain=" + std::string(value.text) : "");
  // Certain where the word means what it is read as.
  const char* const words = isTrueUnlessFalse ? " yes on 1 " : " no off 0 ";
  if (base::Find(words, " " + std::string(value.text) + " ") != std::string::npos) {
    value.FixBy(isTrueUnlessFalse ? "True" : "False");
  }
}

void CheckMode(const Value& value) {
  if (base::SameText(value.text, "Restore") || base::SameText(value.text, "RestoreAfterCreate")) {
    return;
  }
  value.Add(Code::kUnknownMode, "asks for nothing");
}

/// Adds a finding unless the text is a decimal number up to `largest`.
void CheckNumber(const Value& value, std::uint32_t largest) {
  const auto number = base::ParseDecimal(value.text);
  if (number && *number <= largest) return;
  value.Add(Code::kNoNumber, number ? "is larger than " + std::to_string(largest)
                                    : "is not a decimal number and is read as " +
                                          std::to_string(base::ParseUnsigned(value.text)));
}

void CheckPciNumber(const Value& value) {
  if (base::ParseUnsigned(value.text) == sys::PciLocation::kUnknown) return;
  constexpr std::uint32_t kLargest[] = {/*bus*/ 255, /*device*/ 31, /*function*/ 7};
  CheckNumber(value, kLargest[static_cast<std::size_t>(*value.entry.known) -
                              static_cast<std::size_t>(Key::kPciBus)]);
}

void CheckCount(const Value& value) { CheckNumber(value, 0xFFFFFFFF); }

void CheckMacAddress(const Value& value) {
  const std::string digits = sys::NormalizedMac(value.text);
  constexpr std::size_t kDigits = 12;
  if (digits.size() != kDigits || !std::all_of(digits.begin(), digits.end(), IsHexDigit)) {
    value.Add(Code::kNoMacAddress, "is not a MAC address");
  } else if (digits == "000000000000" ||
             std::string_view("13579BDF").find(digits[1]) != std::string_view::npos) {
    value.Add(Code::kNoMacAddress, "is not the address of a single adapter");
  }
}

// ---- Names --------------------------------------------------------------------------------------

void CheckComputerName(const Value& value) {
  const std::string_view name = value.text;
  if (name.size() > kLongestNetBiosName) {
    value.Add(Code::kLongComputerName, "has " + std::to_string(name.size()) + " characters");
  }
  const auto refused = std::find_if(name.begin(), name.end(),
                                    [](char c) { return !IsLetterOrDigit(c) && c != '-'; });
  if (refused != name.end()) {
    const bool isLetter = (static_cast<unsigned char>(*refused) & 0x80) == 0;
    value.Add(Code::kComputerNameLetters,
              "contains " + (isLetter ? Quoted(std::string_view(&*refused, 1))
                                      : "a letter other than A to Z"));
  } else if (std::all_of(name.begin(), name.end(), IsDigit)) {
    value.Add(Code::kComputerNameLetters, "consists of digits only");
  } else if (name.front() == '-' || name.back() == '-') {
    value.Add(Code::kComputerNameLetters,
              name.front() == '-' ? "starts with a hyphen" : "ends with a hyphen");
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
  std::size_t dot = 0;
  for (; dot != std::string_view::npos; name.remove_prefix(std::min(dot + 1, name.size()))) {
    dot = name.find('.');
    if (!IsLabel(name.substr(0, dot))) return false;
  }
  return true;
}

/// The text is in UTF-8 and would be read right only as that.
bool IsUtf8Only(std::string_view text) { return base::IsUtf8(text) && ToUtf8(text) != text; }

void AddBadName(const Value& value, const Item& name) {
  // What is read as other letters is not repeated.
  const std::string shown = IsUtf8Only(name.text) ? "this name in UTF-8" : Quoted(name.text);
  value.findings.At(Code::kBadDomainName, name.span, shown + " is not a domain name");
}

void CheckDomainName(const Value& value) {
  // "Domain" names a workgroup when "Workgroup" is true.
  const bool isWorkgroup =
      *value.entry.known == Key::kDomain && IsTrue(value.section.Value(Key::kWorkgroup));
  if (!isWorkgroup) {
    const Span span = value.document.ValueSpan(value.entry);
    if (!IsDomainName(value.text)) AddBadName(value, {value.text, span});
    return;
  }
  if (value.text.size() > kLongestNetBiosName) {
    value.Add(Code::kBadWorkgroupName, "has " + std::to_string(value.text.size()) + " characters");
    return;
  }
  const std::size_t refused = value.text.find_first_of(kRefusedInWorkgroups);
  if (refused == std::string_view::npos) return;
  value.Add(Code::kBadWorkgroupName, "holds " + Quoted(value.text.substr(refused, 1)));
}

void CheckSuffixes(const Value& value) {
  const std::vector<Item> items = value.document.Items(value.entry);
  for (const Item& item : items) {
    if (item.text.find('%') != std::string_view::npos) {
      value.findings.OfItem(Code::kPercentSign, item, "contains \"%\"");
    } else if (!IsDomainName(item.text)) {
      AddBadName(value, item);
    }
  }
  if (items.size() < 2 || items.back().text.find('.') != std::string_view::npos) return;
  const Item& before = items[items.size() - 2];
  const std::string gap(before.text.data(), items.back().span.offset - before.span.offset);
  if (gap.find(" ;") == std::string::npos || gap.find('\n') != std::string::npos) return;
  value.findings.OfItem(Code::kWordAfterSuffixes, items.back(), "is read as a suffix");
}

/// The path begins with a domain, as a directory shows it: "corp.example/Sales".
bool IsCanonical(const Value& value) {
  const std::string_view first = value.text.substr(0, value.text.find('/'));
  const std::string_view ending = first.substr(first.rfind('.') + 1);
  return base::SameText(first, value.section.Value(Key::kDnsDomain)) ||
         (first.size() < value.text.size() && ending.size() > 1 && ending.size() < first.size() &&
          std::all_of(ending.begin(), ending.end(), IsLetter) && IsDomainName(first));
}

/// Each part has a type, a word or numbers with dots, and a name.
bool IsDistinguishedName(std::string_view text) {
  for (std::size_t at = 0, begin = 0; at <= text.size(); ++at) {
    const char c = at < text.size() ? text[at] : ',';
    if (c == '\\') ++at;
    if (c != ',' && c != '+') continue;
    const std::string_view part = text.substr(begin, at - begin);
    const std::size_t equals = part.find('=');
    if (equals == std::string_view::npos || !IsDomainName(base::Trimmed(part.substr(0, equals)))) {
      return false;
    }
    const std::string_view name = base::Trimmed(part.substr(equals + 1));
    if (name.empty() || name[0] == '#') return false;
    begin = at + 1;
  }
  return true;
}

void CheckDistinguishedName(const Value& value) {
  if (value.text.find('"') == std::string_view::npos && !IsDistinguishedName(value.text)) {
    value.Add(Code::kBadOrganizationalUnit, "is not a distinguished name");
    return;
  }
  if (!value.identity.IsDomain()) return;
  const std::string domain(value.identity.membershipName->FirstLine());
  std::string root = sys::BuildDn(domain, value.text);
  root.erase(0, base::Find(root, "DC="));
  std::erase(root, ' ');
  // A short name of the domain tells nothing.
  const std::string own = sys::BuildDn(domain, "");
  if (domain.find('.') == std::string::npos || base::SameText(root, own)) return;
  value.Add(Code::kBadOrganizationalUnit, "is not in the domain " + domain,
            "leave out its domain, or write " + own);
}

void CheckOrganizationalUnit(const Value& value) {
  constexpr Code kCode = Code::kBadOrganizationalUnit;
  const std::string_view ou = value.text;
  std::size_t special = ou.find_first_of(",+\"<>;");
  if (special == std::string_view::npos) special = ("/" + std::string(ou)).find("/#");
  if (ou.find('%') != std::string_view::npos) value.Add(Code::kPercentSign, "contains \"%\"");
  if (base::StartsWith(ou, "LDAP:")) {
    value.Add(kCode, "begins with LDAP:, which the library puts before it",
              "leave out LDAP:// and the name of a server");
  } else if (ou.find("OU=") != std::string_view::npos) {
    CheckDistinguishedName(value);
  } else if (ou.find('\\') != std::string_view::npos) {
    value.Add(kCode, R"(contains "\", which does not separate units)", "separate them with \"/\"");
    std::string path(ou);
    std::replace(path.begin(), path.end(), '\\', '/');
    value.FixBy(std::move(path));
  } else if (ou.find('=') != std::string_view::npos) {
    value.Add(kCode, R"(contains "=", but no "OU=" in capitals: it is read as a path)");
  } else if (special != std::string_view::npos) {
    value.Add(
        kCode,
        "contains " + Quoted(ou.substr(special, 1)) + ", which is special in a distinguished name",
        R"(write a distinguished name with "\" before it, such as OU=Sales\, Europe)");
  } else if (IsCanonical(value)) {
    value.Add(kCode, "begins with a domain, which is read as a unit",
              "begin with the first unit below the domain");
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
  if (first == 0) return "is not an address in any network";
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
void CheckAddress(const Value& value, const Item& item, bool mayBeLoopback) {
  const Address address = ReadAddress(item);
  const char* const why = address.bits ? WhyUnusable(*address.bits) : nullptr;
  if (IsIpv6(item.text)) {
    value.findings.OfItem(Code::kIpv6Address, item, "is an IPv6 address");
  } else if (HasLeadingZero(item.text)) {
    value.findings.OfItem(Code::kLeadingZero, item, "is read as another address");
  } else if (!address.bits && !item.text.empty() && IsLetter(item.text[0])) {
    value.findings.OfItem(Code::kHostName, item, "is a host name and is resolved during the run");
  } else if (!address.bits) {
    value.findings.OfItem(Code::kNoAddress, item, "is not an IPv4 address", HintForPrefix(item));
  } else if (why != nullptr) {
    value.findings.OfItem(Code::kUnusableAddress, item, why);
  } else if (*address.bits >> 24 == 127 && !mayBeLoopback) {
    value.findings.OfItem(Code::kUnusableAddress, item, "is a loopback address");
  }
}

void CheckMask(const Value& value, const Item& item, bool mayBeZero) {
  const Address mask = ReadAddress(item);
  const auto prefix = PrefixIn(item.text);
  if (IsIpv6(item.text)) {
    value.findings.OfItem(Code::kIpv6Address, item, "is an IPv6 mask");
  } else if (HasLeadingZero(item.text)) {
    value.findings.OfItem(Code::kLeadingZero, item, "is read as another mask");
  } else if (!mask.bits) {
    value.findings.OfItem(Code::kNoAddress, item, "is not an IPv4 netmask",
                          prefix ? "/" + std::to_string(*prefix) + " is " + MaskOf(*prefix) : "");
    if (prefix) value.findings.FixBy(item.span, MaskOf(*prefix));
  } else if (!IsContiguous(*mask.bits)) {
    value.findings.OfItem(Code::kBadMask, item,
                          "is not a valid netmask: the 1 bits must be contiguous");
  } else if (*mask.bits == 0 && !mayBeZero) {
    value.findings.OfItem(Code::kBadMask, item, "is not a valid netmask: it has no 1 bits",
                          "write a mask such as 255.255.255.0");
  }
}

void CheckAddresses(const Value& value) {
  const bool isServer = *value.entry.known == Key::kDnsServer;
  for (const Item& item : value.document.Items(value.entry)) {
    CheckAddress(value, item, /*mayBeLoopback=*/isServer);
  }
}

void CheckMasks(const Value& value) {
  for (const Item& item : value.document.Items(value.entry)) {
    CheckMask(value, item, /*mayBeZero=*/false);
  }
}

void CheckMetric(const Value& value, const Item& item) {
  constexpr std::uint32_t kLargest = 9999;
  const auto metric = base::ParseDecimal(item.text);
  if (!metric) {
    value.findings.OfItem(Code::kNoNumber, item, "is not a decimal number for a metric");
  } else if (*metric > kLargest) {
    value.findings.OfItem(Code::kNoNumber, item,
                          "is larger than " + std::to_string(kLargest) + ", the largest metric");
  } else if (*metric == 0) {
    value.findings.At(Code::kNoMetric, item.span, "the metric is 0");
  }
}

void CheckRoute(const Value& value) {
  const std::vector<Item> fields = value.document.Items(value.entry);
  for (std::size_t i = 0; i < fields.size(); ++i) {
    const Item& field = fields[i];
    if (i == 0 && IsIpv6(field.text)) {
      value.findings.OfItem(Code::kIpv6Address, field, "is an IPv6 address");
    } else if (i == 0 && HasLeadingZero(field.text)) {
      value.findings.OfItem(Code::kLeadingZero, field, "is read as another address");
    } else if (i == 0 && !ReadAddress(field).bits) {
      const std::string hint = HintForPrefix(field);
      value.findings.OfItem(Code::kNoAddress, field, "is not an IPv4 address", hint);
      if (!hint.empty()) return;  // all behind it stands a place too early
    } else if (i == 1) {
      CheckMask(value, field, /*mayBeZero=*/true);
    } else if (i == 2) {
      CheckAddress(value, field, /*mayBeLoopback=*/false);
    } else if (i == 4) {
      CheckMetric(value, field);
    }
  }
  constexpr std::size_t kFewest = 3;
  constexpr std::size_t kMost = 5;
  if (fields.size() < kFewest) {
    value.findings.AtValue(
        Code::kShortRoute, value.entry,
        "the route has " + std::to_string(fields.size()) + " of the three fields it needs");
  } else if (fields.size() < kMost) {
    value.findings.AtValue(
        Code::kNoMetric, value.entry,
        "the route has " + std::to_string(fields.size()) + " fields: its metric is 0");
  } else if (fields.size() > kMost) {
    value.findings.OfItem(Code::kLongRoute, fields[kMost], "is the sixth field of the route");
  }
}

// ---- All of them --------------------------------------------------------------------------------

void CheckNothing(const Value& /*value*/) {}

/// The other recorded keys belong to the hardware, or are what a restored image has anyway.
void CheckRecorded(const Value& value) {
  if (value.entry.known != Key::kOwnDnsDomain) return;
  value.findings.AtValue(Code::kRecordedOnly, value.entry,
                         "the adapter's own DNS domain is not set from this file");
}

using Rule = void (*)(const Value& value);

/// In the order of `ValueKind`.
constexpr Rule kRules[] = {CheckNothing,
                           CheckFlag,
                           CheckMode,
                           CheckNothing,
                           CheckComputerName,
                           CheckDomainName,
                           CheckOrganizationalUnit,
                           CheckPciNumber,
                           CheckMacAddress,
                           CheckCount,
                           CheckRecorded,
                           CheckAddresses,
                           CheckMasks,
                           CheckSuffixes,
                           CheckRoute};
static_assert(std::size(kRules) == static_cast<std::size_t>(ValueKind::kRoute) + 1);

void CheckEncoding(const Value& value) {
  // The name of a computer must be ASCII anyway, and nobody reads a description.
  const ValueKind kind = RowOf(*value.entry.known).value;
  const bool matters = kind == ValueKind::kText || kind == ValueKind::kOrganizationalUnit ||
                       kind == ValueKind::kDomainName || kind == ValueKind::kSuffixes;
  if (!matters || value.entry.known == Key::kDescription || !IsUtf8Only(value.text)) return;
  value.findings.AtValue(Code::kUtf8Text, value.entry,
                         "its letters outside ASCII are in UTF-8 and are read as others");
}

/// Without quotes around it and separators behind it.
std::string_view Bare(std::string_view text) {
  text = base::Trimmed(text.substr(0, text.find_last_not_of(";, \t") + 1));
  const bool isQuoted = text.size() > 2 && text.front() == text.back() &&
                        (text.front() == '"' || text.front() == '\'');
  return isQuoted ? base::Trimmed(text.substr(1, text.size() - 2)) : text;
}

/// What an adapter got by DHCP before its image was taken stands in its section, too.
bool IsRecordedOnly(const Value& value) {
  const Key key = *value.entry.known;
  if (key != Key::kAddress && key != Key::kNetmask && key != Key::kGateway) return false;
  const std::string_view dhcp = value.section.Value(Key::kDhcp);
  return !dhcp.empty() && !IsFalse(dhcp);
}

}  // namespace

void CheckValues(const DesiredState& desired, Findings& findings) {
  for (const Section& section : desired.document.Sections()) {
    for (const PlacedEntry& entry : section.entries) {
      if (!entry.known || !entry.isFound) continue;
      for (const Item& comment : desired.document.CommentsIn(entry)) {
        findings.At(Code::kCommentAfterValue, comment.span,
                    "this is no comment, but part of the value of " + std::string(entry.key));
        findings.FixByMoving(comment, entry.line);
      }
      if (entry.FirstLine().empty()) continue;
      const Value value{desired.identity,  desired.document, section, entry,
                        entry.FirstLine(), findings};
      if (IsRecordedOnly(value)) continue;
      const std::size_t size = findings.Size();
      kRules[static_cast<std::size_t>(RowOf(*entry.known).value)](value);
      const std::string_view bare = Bare(value.text);
      if (findings.Size() > size && bare != value.text) value.FixBy(std::string(bare));
      CheckEncoding(value);
    }
  }
}

}  // namespace tool::check
