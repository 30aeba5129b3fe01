#include <algorithm>
#include <optional>
#include <string>
#include <utility>

#include "base/LetterCase.h"
#include "base/Pieces.h"
#include "tool/check/rules/Rules.h"

namespace tool::check {
namespace {

using Kind = ConfigFile::Line::Kind;

std::string LineNumber(const Document& document, std::uint32_t line) {
  return std::to_string(document.PlaceOf(document.ItemOf(line).span).line);
}

bool IsA(const Document& document, std::size_t line, Kind kind) {
  return line < document.Lines().size() && document.Lines()[line].kind == kind;
}

/// It names a known section, and nothing else.
bool IsPlainName(std::string_view name) {
  return base::KindOfSection(name) != SectionKind::kUnknown &&
         name.find_first_of(" \t;#") == std::string_view::npos;
}

void CheckHeader(const Document& document, std::uint32_t line, Findings& findings) {
  const Item item = document.ItemOf(line);
  if (document.Lines()[line].kind == Kind::kOpenHeader) {
    findings.AtLine(Code::kOpenHeader, line,
                    "the header has no \"]\", so the whole file is refused");
    if (IsPlainName(base::Trimmed(item.text.substr(1)))) {
      findings.FixBy({item.span.offset + item.span.length, 0}, "]");
    }
    return;
  }
  const auto header = document.TextAfterHeader(line);
  const Section& section = document.Sections()[document.Lines()[line].section];
  // It may still be an adapter.
  if (!header || section.kind == base::KindOfSection(header->name)) return;
  findings.At(Code::kTextAfterHeader, header->rest.span,
              "this is section " + Quoted(section.name) + ", not " + Quoted(header->name));
  // A line without "=" would add to the comment, and the agent gets those of its own section.
  const auto above = line > 0 ? document.Lines()[line - 1].section : 0;
  if (!IsA(document, line + 1, Kind::kContinuation) &&
      document.Sections()[above].kind != SectionKind::kAgentSettings) {
    findings.FixByMoving(header->rest, line);
  }
}

void CheckRepeatedHeaders(const Document& document, const Section& section, Findings& findings) {
  for (std::size_t i = 1; i < section.headers.size(); ++i) {
    findings.AtLine(Code::kSectionAgain, section.headers[i],
                    "section " + Quoted(section.name) + " began on line " +
                        LineNumber(document, section.headers[0]) + " and continues here");
  }
}

void CheckContinuation(const Document& document, std::uint32_t line, Findings& findings) {
  const Item item = document.ItemOf(line);
  if (const auto key = document.BrokenKey(line)) {
    findings.AtLine(
        Code::kBrokenKey, line,
        std::string(NameOf(*key)) + " has no \"=\": the line adds to the value above it",
        "write " + std::string(NameOf(*key)) + "=...");
    // Behind an entry, and with a value of a form that is checked, it is no text.
    const auto& [name, number, section, kind, isNumbered] = RowOf(*key);
    const std::size_t end = std::min(item.text.find_first_of(" \t:"), item.text.size());
    const std::size_t value = item.text.find_first_not_of(" \t:", end);
    if (IsA(document, line - 1, Kind::kEntry) && value != std::string_view::npos &&
        section == document.Sections()[document.Lines()[line].section].kind &&
        kind != base::ValueKind::kText && kind != base::ValueKind::kOrganizationalUnit) {
      findings.FixBy({item.span.offset + end, value - end}, "=");
    }
  } else if (document.LooksLikePassword(line)) {
    findings.AtLine(
        Code::kBrokenKey, line,
        "the line looks like a password, but has no \"=\": it adds to the value above it");
  }
  if (const std::string_view name = document.BrokenHeader(line); !name.empty()) {
    findings.AtLine(
        Code::kBrokenHeader, line,
        "the header of " + Quoted(name) + " has no \"[\": the line adds to the value above it");
    if (IsPlainName(name)) findings.FixBy({item.span.offset, 0}, "[");
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
  const auto match = MatchKey(kind, base::Trimmed(text.substr(0, text.find('='))));
  return match && IsList(RowOf(match->key).value);
}

/// The codes in a comment such as "; orvanta: allow C202 because ..."; nothing for any other.
std::optional<std::vector<std::string>> AllowedIn(std::string_view comment) {
  constexpr std::string_view kMark = "orvanta:";
  const std::string_view text = base::Trimmed(comment.substr(1));
  if (!base::StartsWith(text, kMark)) return std::nullopt;
  std::vector<std::string> words = base::Split(text.substr(kMark.size()), ", \t");
  const bool isAllow = !words.empty() && base::SameText(words[0], "allow");
  const auto isOther = [](const std::string& word) { return CodeOf(word) == nullptr; };
  if (isAllow) words.erase(words.begin());
  words.erase(isAllow ? std::find_if(words.begin(), words.end(), isOther) : words.begin(),
              words.end());
  return words;
}

void CheckCommented(const Document& document, std::uint32_t line, Reading& reading,
                    Findings& findings) {
  const Kind kind = document.Lines()[line].kind;
  if (IsHeader(kind)) reading = {};
  if (kind == Kind::kEntry) reading = {IsListLine(document, line), /*isInComment=*/false};
  const bool wasInComment = std::exchange(reading.isInComment, kind == Kind::kComment);
  if (!wasInComment || kind != Kind::kContinuation) return;  // once for each comment
  const Section& section = document.Sections()[document.Lines()[line].section];
  if (!section.IsRead() || document.LooksLikeOther(line)) return;
  if (AllowedIn(document.ItemOf(line - 1).text)) return;  // a finding of its own
  findings.AtLine(reading.isInList ? Code::kLostListLine : Code::kCommentGoesOn, line,
                  std::string("the line adds to the comment above it") +
                      (reading.isInList ? ", not to the list before that" : ""));
}

void CheckStrayLines(const Document& document, const Section& section, const PlacedEntry& entry,
                     Findings& findings) {
  if (document.Lines()[entry.line].kind == Kind::kContinuation) {
    if (document.LooksLikeOther(entry.line)) return;
    findings.AtLine(Code::kStrayLine, entry.line,
                    "the line has no \"=\", and there is no value above it in this section");
    return;
  }
  if (!entry.known || IsList(RowOf(*entry.known).value) || entry.strayLine == 0) return;
  findings.AtLine(Code::kStrayLine, entry.strayLine,
                  "the line has no \"=\" and adds to the value of " + document.ShownKey(entry) +
                      " in section " + Quoted(section.name));
}

void CheckDuplicate(const Document& document, const Section& section, const PlacedEntry& entry,
                    Findings& findings) {
  if (entry.isFound || entry.isComment || entry.key.empty()) return;
  const PlacedEntry& first = section.entries[entry.found];
  const bool isSame = first.value == entry.value;
  findings.AtKey(isSame ? Code::kRepeatedKey : Code::kDuplicateKey, entry,
                 document.ShownKey(entry) + " is on line " + LineNumber(document, first.line) +
                     (isSame ? " with the same value" : " already, and only that one counts"));
  // What is above or below the line may belong to it, and a comment in it would be lost.
  const Item item = document.ItemOf(entry.line);
  const auto lines = document.LinesOf(item.span);
  if (isSame && lines && IsA(document, entry.line, Kind::kEntry) &&
      item.text.ends_with(entry.value) && !IsA(document, entry.line - 1, Kind::kComment) &&
      !IsA(document, entry.line + 1, Kind::kContinuation)) {
    findings.FixBy(lines->span, "");
  }
}

void CheckUnnamed(const Document& document, const Section& section, Findings& findings) {
  for (const PlacedEntry& entry : section.entries) {
    if (entry.isComment || document.Lines()[entry.line].kind != Kind::kEntry) continue;
    findings.AtKey(Code::kBeforeFirstHeader, entry,
                   document.ShownKey(entry) + " belongs to no section and is not read");
  }
}

}  // namespace

void CheckLines(const DesiredState& desired, Findings& findings) {
  const Document& document = desired.document;
  Reading reading;
  for (std::uint32_t line = 0; line < document.Lines().size(); ++line) {
    CheckCommented(document, line, reading, findings);
    const Kind kind = document.Lines()[line].kind;
    if (IsHeader(kind)) CheckHeader(document, line, findings);
    if (kind == Kind::kContinuation) CheckContinuation(document, line, findings);
  }
  const auto isComment = [](const PlacedEntry& entry) { return entry.isComment; };
  const auto& unnamed = document.Sections()[0].entries;
  if (document.Sections().size() == 1 && std::all_of(unnamed.begin(), unnamed.end(), isComment)) {
    findings.OfFile(Code::kAsksNothing, "the file holds neither a section nor an entry");
  }
  CheckUnnamed(document, document.Sections()[0], findings);
  for (const Section& section : document.Sections()) {
    CheckRepeatedHeaders(document, section, findings);
    for (const PlacedEntry& entry : section.entries) {
      CheckStrayLines(document, section, entry, findings);
      if (!section.IsRead()) continue;
      CheckDuplicate(document, section, entry, findings);
      if (entry.key.empty() && document.Lines()[entry.line].kind == Kind::kEntry) {
        findings.AtKey(Code::kNoKey, entry, "there is no key before \"=\"");
      }
    }
  }
}

std::vector<Allowance> AllowancesOf(const Document& document, Findings& findings) {
  std::vector<Allowance> allowances;
  const auto& lines = document.Lines();
  const auto isA = [&](std::size_t line, Kind kind) { return IsA(document, line, kind); };
  const auto lineOf = [&document](std::uint32_t line) {
    return document.PlaceOf(document.ItemOf(line).span).line;
  };
  for (std::uint32_t line = 0; line < lines.size(); ++line) {
    const Item comment = document.ItemOf(line);
    auto codes = isA(line, Kind::kComment) ? AllowedIn(comment.text) : std::nullopt;
    if (!codes) continue;
    const Section& section = document.Sections()[lines[line].section];
    if (section.kind == SectionKind::kAgentSettings || isA(line + 1, Kind::kContinuation)) {
      findings.AtLine(Code::kMeddlingAllowance, line, "the machine gets this comment");
      continue;
    }
    Allowance& added = allowances.emplace_back();
    added.codes = std::move(*codes);
    added.idle = FindingAt(document, Code::kIdleAllowance, comment.span,
                           "this comment allows nothing that is found");
    if (section.headers.empty()) continue;
    std::uint32_t first = line + 1;
    while (first < lines.size() && !isA(first, Kind::kEntry)) ++first;
    std::uint32_t last = first;
    while (isA(last + 1, Kind::kContinuation)) ++last;
    added.first = first < lines.size() ? lineOf(first) : added.last;
    added.last = first < lines.size() ? lineOf(last) : 0;
  }
  return allowances;
}

}  // namespace tool::check
