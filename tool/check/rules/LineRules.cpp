#include <algorithm>
#include <string>

#include "common/util/Text.h"
#include "platform/simulated/Text.h"
#include "tool/check/rules/Rules.h"

namespace tool::check {
namespace {

using Kind = ConfigFile::Line::Kind;

std::string LineNumber(const Document& document, std::uint32_t line) {
  return std::to_string(document.PlaceOf(document.ItemOf(line).span).line);
}

/// What stands between the brackets of a header, and what follows them.
struct Header {
  std::string_view name;
  Item rest;
};

Header Split(const Item& line) {
  const std::size_t close = line.text.find(']');
  const std::string_view rest = simulated::Trimmed(line.text.substr(close + 1));
  return {simulated::Trimmed(line.text.substr(1, close - 1)),
          {rest, {line.span.offset + line.text.size() - rest.size(), rest.size()}}};
}

void CheckHeader(const Document& document, std::uint32_t line, Findings& findings) {
  const Item item = document.ItemOf(line);
  if (document.Lines()[line].kind == Kind::kOpenHeader) {
    findings.Add(Code::kOpenHeader, document, item.span,
                 "the header has no \"]\", so the whole file is refused");
    return;
  }
  const Header header = Split(item);
  if (header.rest.text.empty() || KindOfSection(header.name) == SectionKind::kUnknown) return;
  const Section& section = document.Sections()[document.Lines()[line].section];
  if (section.kind == KindOfSection(header.name)) return;  // still an adapter
  findings.Add(Code::kTextAfterHeader, document, header.rest.span,
               "this is section " + Quoted(section.name) + ", not " + Quoted(header.name));
}

void CheckRepeatedHeaders(const Document& document, const Section& section, Findings& findings) {
  for (std::size_t i = 1; i < section.headers.size(); ++i) {
    findings.Add(Code::kSectionAgain, document, document.ItemOf(section.headers[i]).span,
                 "section " + Quoted(section.name) + " began in line " +
                     LineNumber(document, section.headers[0]) + " and goes on here");
  }
}

void CheckContinuation(const Document& document, std::uint32_t line, Findings& findings) {
  const Item item = document.ItemOf(line);
  if (const auto key = document.BrokenKey(line)) {
    findings.Add(Code::kBrokenKey, document, item.span,
                 std::string(NameOf(*key)) + " has no \"=\": the line adds to the value above it",
                 "write " + std::string(NameOf(*key)) + "=...");
  } else if (document.LooksLikePassword(line)) {
    findings.Add(
        Code::kBrokenKey, document, item.span,
        "the line looks like a password's, but has no \"=\": it adds to the value above it");
  }
  if (const std::string_view name = document.BrokenHeader(line); !name.empty()) {
    findings.Add(
        Code::kBrokenHeader, document, item.span,
        "the header of " + Quoted(name) + " has no \"[\": the line adds to the value above it");
  }
}

/// What the lines read so far make of one without "=".
struct Reading {
  /// The last entry before the comments is a list of this section.
  bool isInList = false;
  bool isInComment = false;
};

/// Whether the line begins a list in its section.
bool IsListLine(const Document& document, std::uint32_t line) {
  const std::string_view text = document.ItemOf(line).text;
  const SectionKind kind = document.Sections()[document.Lines()[line].section].kind;
  const auto match = MatchKey(kind, simulated::Trimmed(text.substr(0, text.find('='))));
  return match && IsList(RowOf(match->key).value);
}

void CheckCommented(const Document& document, std::uint32_t line, Reading& reading,
                    Findings& findings) {
  switch (document.Lines()[line].kind) {
    case Kind::kHeader:
    case Kind::kOpenHeader:
      reading = {};
      return;
    case Kind::kEntry:
      reading = {IsListLine(document, line), /*isInComment=*/false};
      return;
    case Kind::kComment:
      reading.isInComment = true;
      return;
    case Kind::kContinuation:
      break;
  }
  if (!reading.isInComment) return;
  reading.isInComment = false;  // once for each comment
  const Section& section = document.Sections()[document.Lines()[line].section];
  const bool isRead =
      section.kind != SectionKind::kUnknown && section.kind != SectionKind::kAgentSettings;
  if (!isRead || document.LooksLikeOther(line)) return;
  const Span span = document.ItemOf(line).span;
  if (reading.isInList) {
    findings.Add(Code::kLostListLine, document, span,
                 "the line adds to the comment above it, not to the list before that");
  } else {
    findings.Add(Code::kCommentGoesOn, document, span, "the line adds to the comment above it");
  }
}

void CheckStrayLines(const Document& document, const Section& section, const Entry& entry,
                     Findings& findings) {
  if (document.Lines()[entry.line].kind == Kind::kContinuation) {
    if (document.LooksLikeOther(entry.line)) return;
    findings.Add(Code::kStrayLine, document, document.ItemOf(entry.line).span,
                 "the line has no \"=\", and there is no value above it in this section");
    return;
  }
  if (!entry.known || IsList(RowOf(*entry.known).value) || entry.strayLine == 0) return;
  findings.Add(Code::kStrayLine, document, document.ItemOf(entry.strayLine).span,
               "the line has no \"=\" and adds to the value of " + document.ShownKey(entry) +
                   " in section " + Quoted(section.name));
}

void CheckDuplicate(const Document& document, const Section& section, const Entry& entry,
                    Findings& findings) {
  if (entry.isFound || entry.isComment || entry.key.empty()) return;
  const Entry& first = section.entries[entry.found];
  const bool isSame = first.value == entry.value;
  findings.Add(isSame ? Code::kRepeatedKey : Code::kDuplicateKey, document, document.KeySpan(entry),
               document.ShownKey(entry) + " stands in line " + LineNumber(document, first.line) +
                   (isSame ? " with the same value" : " already, and only that one counts"));
}

void CheckUnnamed(const Document& document, const Section& section, Findings& findings) {
  for (const Entry& entry : section.entries) {
    if (entry.isComment || document.Lines()[entry.line].kind != Kind::kEntry) continue;
    findings.Add(Code::kBeforeFirstHeader, document, document.KeySpan(entry),
                 document.ShownKey(entry) + " belongs to no section and is not read");
  }
}

}  // namespace

void CheckLines(const Document& document, Findings& findings) {
  Reading reading;
  for (std::uint32_t line = 0; line < document.Lines().size(); ++line) {
    CheckCommented(document, line, reading, findings);
    const Kind kind = document.Lines()[line].kind;
    if (kind == Kind::kHeader || kind == Kind::kOpenHeader) CheckHeader(document, line, findings);
    if (kind == Kind::kContinuation) CheckContinuation(document, line, findings);
  }
  const auto isComment = [](const Entry& entry) { return entry.isComment; };
  const auto& unnamed = document.Sections()[0].entries;
  if (document.Sections().size() == 1 && std::all_of(unnamed.begin(), unnamed.end(), isComment)) {
    findings.Add(Code::kAsksNothing, "the file holds neither a section nor an entry");
  }
  CheckUnnamed(document, document.Sections()[0], findings);
  for (const Section& section : document.Sections()) {
    CheckRepeatedHeaders(document, section, findings);
    const bool isRead = section.kind != SectionKind::kUnknown;
    for (const Entry& entry : section.entries) {
      CheckStrayLines(document, section, entry, findings);
      if (!isRead || section.kind == SectionKind::kAgentSettings) continue;
      CheckDuplicate(document, section, entry, findings);
      if (entry.key.empty() && document.Lines()[entry.line].kind == Kind::kEntry) {
        findings.Add(Code::kNoKey, document, document.KeySpan(entry),
                     "there is no key before \"=\"");
      }
    }
  }
}

}  // namespace tool::check
