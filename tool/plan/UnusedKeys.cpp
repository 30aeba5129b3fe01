#include "tool/plan/UnusedKeys.h"

#include "base/Pieces.h"
#include "tool/io/CodePage.h"
#include "tool/io/Text.h"

namespace tool {
namespace {

using base::Key;
using base::SectionKind;
using base::ValueKind;
using check::Document;
using check::PlacedEntry;
using check::Section;

constexpr std::size_t kMostKeys = 8;

/// The key asks for something by itself when its section is translated.
bool AsksByItself(const PlacedEntry& entry, SectionKind section) {
  if (!entry.known) return true;
  if (section != SectionKind::kNetworking && section != SectionKind::kAdapter) return false;
  switch (RowOf(*entry.known).value) {
    case ValueKind::kText:
    case ValueKind::kFlag:
    case ValueKind::kCipherText:
    case ValueKind::kCount:
    case ValueKind::kRecorded:
      return false;
    default:
      return true;
  }
}

/// The section gives the domain's other name.
bool IsRuledByDnsDomain(const Section& section, const PlacedEntry& entry) {
  return entry.known == Key::kDomain && section.Find(Key::kDnsDomain) != nullptr;
}

}  // namespace

std::vector<UnusedKeys> FindUnusedKeys(const Document& document,
                                       const std::vector<PlannedEvent>& events) {
  std::vector<UnusedKeys> found;
  std::set<std::size_t> heard;
  for (const PlannedEvent& event : events) heard.insert(event.line);
  const auto isHeard = [&](const PlacedEntry& entry, std::size_t line) {
    const auto next = heard.lower_bound(line);
    return next != heard.end() &&
           *next <= document.PlaceOf(document.ItemOf(entry.lastLine).span).line;
  };
  for (const Section& section : document.Sections()) {
    if (section.kind == SectionKind::kAgentSettings) continue;
    std::vector<std::string> keys;
    std::size_t more = 0;
    std::set<std::size_t> lines;
    for (const PlacedEntry& entry : section.entries) {
      if (entry.isComment || entry.key.empty() || base::Trimmed(entry.value).empty()) continue;
      if (entry.isFound && !AsksByItself(entry, section.kind)) continue;
      const std::size_t line = document.PlaceOf(document.KeySpan(entry)).line;
      if (isHeard(entry, line) || IsRuledByDnsDomain(section, entry)) continue;
      if (keys.size() < kMostKeys) {
        keys.push_back(ToUtf8(document.ShownKey(entry)));
      } else {
        ++more;
      }
      lines.insert(line);
    }
    if (!keys.empty())
      found.push_back({ToUtf8(section.name), Printable(FirstFew(keys, more)), lines});
  }
  return found;
}

}  // namespace tool
