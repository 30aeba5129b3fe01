#include <algorithm>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/LetterCase.h"
#include "base/Nearest.h"
#include "base/Numbers.h"
#include "base/Pieces.h"
#include "tool/check/rules/Rules.h"

namespace tool::check {
namespace {

using Kind = ConfigFile::Line::Kind;

/// The name without the number at its end.
std::string_view WithoutNumber(std::string_view name) {
  return name.substr(0, name.find_last_not_of("0123456789") + 1);
}

/// One name and no other is so near that it is certainly meant.
bool IsCertain(std::string_view name, std::vector<std::string_view> names) {
  const std::size_t limit = std::min<std::size_t>(2, name.size() / 3);
  const auto nearest = base::Nearest(name, names, limit);
  if (nearest) std::erase(names, *nearest);
  return nearest && !base::Nearest(name, names, limit);
}

std::vector<std::string_view> SectionNames() {
  std::vector<std::string_view> names{base::kAdapterMark};
  for (const base::KnownSection& known : base::kKnownSections) names.push_back(known.name);
  return names;
}

std::vector<std::string_view> KeysOf(SectionKind section) {
  std::vector<std::string_view> names;
  for (const base::KnownKey& row : base::kKnownKeys) {
    if (row.section == section) names.push_back(row.name);
  }
  return names;
}

/// The section name that may be meant.
std::optional<std::string> NearestSection(std::string_view name) {
  std::string meant(name);
  const std::size_t mark = base::Find(name, base::kAdapterMark);
  if (mark != std::string_view::npos) {
    return meant.replace(mark, base::kAdapterMark.size(), base::kAdapterMark);
  }
  const std::string_view stem = WithoutNumber(name);
  const auto nearest = base::Nearest(stem, SectionNames());
  if (!nearest) return std::nullopt;
  // A further adapter.
  const bool isAdapter = *nearest == NameOf(SectionKind::kAdapter) && stem.size() != name.size();
  if (*nearest != base::kAdapterMark && !isAdapter) return std::string(*nearest);
  return meant.replace(0, stem.size(), base::kAdapterMark);
}

/// What keys are called elsewhere.
constexpr std::pair<std::string_view, Key> kAliases[] = {{"MAC", Key::kMacAddress},
                                                         {"OU", Key::kOrganizationalUnit},
                                                         {"Hostname", Key::kComputerName},
                                                         {"User", Key::kDomainUsername},
                                                         {"Username", Key::kDomainUsername},
                                                         {"Password", Key::kDomainPassword},
                                                         {"IP", Key::kAddress},
                                                         {"IPAddress", Key::kAddress},
                                                         {"Mask", Key::kNetmask},
                                                         {"SubnetMask", Key::kNetmask},
                                                         {"DefaultGateway", Key::kGateway}};

const base::KnownKey* MeantBy(std::string_view key) {
  for (const auto& [alias, meant] : kAliases) {
    if (base::SameText(alias, key)) return &RowOf(meant);
  }
  return nullptr;
}

}  // namespace

std::optional<std::string> NearestKey(SectionKind section, std::string_view key) {
  if (const auto* const meant = MeantBy(key); meant != nullptr && meant->section == section) {
    return std::string(meant->name);
  }
  const std::string_view name = WithoutNumber(key);
  const auto nearest = base::Nearest(name, KeysOf(section));
  if (!nearest) return std::nullopt;
  const bool isNumbered = std::any_of(
      std::begin(base::kKnownKeys), std::end(base::kKnownKeys),
      [&](const base::KnownKey& row) { return row.name == *nearest && row.isNumbered; });
  if (!isNumbered) return std::string(*nearest);
  return std::string(*nearest) + std::to_string(base::ParseUnsigned(key.substr(name.size())));
}

namespace {

/// The kind of section in which the key is known, or the one that is meant by it.
std::optional<SectionKind> HomeOf(std::string_view key) {
  for (const base::KnownSection& known : base::kKnownSections) {
    if (MatchKey(known.kind, key)) return known.kind;
  }
  const auto* const meant = MeantBy(key);
  return meant != nullptr ? std::optional(meant->section) : std::nullopt;
}

bool HoldsAdapterKeys(const Section& section) {
  return std::any_of(section.entries.begin(), section.entries.end(), [](const PlacedEntry& entry) {
    return MatchKey(SectionKind::kAdapter, entry.key).has_value();
  });
}

void CheckUnknownSection(const Document& document, const Section& section, Findings& findings) {
  if (section.headers.empty() || document.TextAfterHeader(section.headers[0])) return;
  const std::string name = Quoted(section.name);
  if (const auto nearest = NearestSection(section.name)) {
    findings.AtHeader(Code::kMisspelledSection, section, "section " + name + " is not read",
                      "did you mean [" + *nearest + "]?");
    const Item header = document.ItemOf(section.headers[0]);
    const bool isCase = base::SameText(section.name, *nearest);
    if ((isCase || IsCertain(WithoutNumber(section.name), SectionNames())) &&
        section.headers.size() == 1 && header.text == "[" + std::string(section.name) + "]") {
      findings.FixBy({header.span.offset + 1, section.name.size()}, *nearest);
    }
  } else if (HoldsAdapterKeys(section)) {
    findings.AtHeader(Code::kUnreadAdapter, section,
                      "section " + name + " holds an adapter's settings, but is not read");
  } else {
    findings.AtHeader(Code::kUnknownSection, section, "section " + name + " is not read");
  }
}

void CheckUnknownKey(const Document& document, const Section& section, const PlacedEntry& entry,
                     Findings& findings) {
  const std::string name = Quoted(document.ShownKey(entry));
  if (const auto home = HomeOf(entry.key); home && *home != section.kind) {
    const auto* const meant = MeantBy(entry.key);
    const std::string own(NameOf(*home));
    findings.AtKey(
        Code::kKeyOfAnotherSection, entry, name + " is not read in section " + Quoted(section.name),
        "move it to [" + own + "]" + (meant != nullptr ? " as " + std::string(meant->name) : ""));
  } else if (const auto nearest = NearestKey(section.kind, entry.key)) {
    findings.AtKey(Code::kMisspelledKey, entry, name + " is not read",
                   "did you mean " + *nearest + "?");
    const std::string_view stem = WithoutNumber(entry.key);
    const bool isNumbered = stem.size() < entry.key.size();
    if (isNumbered == (WithoutNumber(*nearest).size() < nearest->size()) &&
        IsCertain(stem, KeysOf(section.kind))) {
      findings.FixBy(document.KeySpan(entry), *nearest);
    }
  } else {
    findings.AtKey(Code::kUnknownKey, entry, name + " is not read");
  }
}

}  // namespace

void CheckNames(const DesiredState& desired, Findings& findings) {
  const Document& document = desired.document;
  for (const Section& section : document.Sections()) {
    if (section.kind == SectionKind::kUnknown) {
      CheckUnknownSection(document, section, findings);
      continue;
    }
    if (section.kind == SectionKind::kAgentSettings) continue;
    for (const PlacedEntry& entry : section.entries) {
      const bool isMade = document.Lines()[entry.line].kind == Kind::kEntry;
      if (isMade && !entry.known && !entry.key.empty()) {
        CheckUnknownKey(document, section, entry, findings);
      }
    }
  }
}

}  // namespace tool::check
