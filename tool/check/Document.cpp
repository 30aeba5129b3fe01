#include "tool/check/Document.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "base/LetterCase.h"
#include "base/Numbers.h"
#include "base/Pieces.h"
#include "base/Utf8.h"
#include "platform/simulated/Secrets.h"
#include "tool/io/CodePage.h"
#include "tool/io/Text.h"

namespace tool::check {
namespace {

using Kind = ConfigFile::Line::Kind;

constexpr std::size_t kNowhere = std::string_view::npos;
/// Characters of a line that are shown, and how many of them before the caret.
constexpr std::size_t kLongestExcerpt = 100;
constexpr std::size_t kBeforeCaret = 40;
/// So many lines are looked at to find where a value began: no real list is longer.
constexpr std::uint32_t kLongestChain = 100;

bool LooksLikeItem(std::string_view text) {
  return (text[0] >= '0' && text[0] <= '9') || text.find_first_of(".:") != kNowhere;
}

/// Where a comment seems to begin in a value: at a ";", "#" or "//" behind a blank; npos when at
/// none.
std::size_t CommentAt(std::string_view value, Key key) {
  const ValueKind kind = RowOf(key).value;
  if (key == Key::kDescription || kind == ValueKind::kRecorded) return kNowhere;
  // A unit may be called "Floor #2", and so may a task sequence.
  const bool isFree = kind == ValueKind::kOrganizationalUnit || kind == ValueKind::kText;
  const auto mark = [&](std::size_t from) {
    return isFree ? value.find(';', from)
                  : std::min(value.find_first_of(";#", from), value.find("//", from));
  };
  for (std::size_t at = mark(0), next = 0; at != kNowhere; at = next) {
    next = mark(at + 1);
    if (at > 0 && value[at - 1] != ' ' && value[at - 1] != '\t') continue;
    if (!base::IsList(kind) || value[at] != ';') return at;
    // In a list ";" also separates items, in one of suffixes also single words.
    const auto words = base::Split(value.substr(at + 1, next - at - 1), base::kListSeparators);
    const bool isItem = kind == ValueKind::kSuffixes && words.size() == 1;
    if (!isItem && !std::all_of(words.begin(), words.end(), LooksLikeItem)) return at;
  }
  return kNowhere;
}

/// What a line without "=" begins with, up to a blank or ":".
std::string_view LeadOf(std::string_view line) {
  return line.substr(0, line.find_first_of(" \t:"));
}

}  // namespace

std::optional<Match> MatchKey(SectionKind section, std::string_view name) {
  constexpr std::uint32_t kLargest = 0xFFFFFFFF;
  for (const base::KnownKey& row : base::kKnownKeys) {
    if (row.section != section || name.size() < row.name.size()) continue;
    if (!row.isNumbered && name.size() != row.name.size()) continue;
    if (!base::SameText(name.substr(0, row.name.size()), row.name)) continue;
    const std::string_view digits = name.substr(row.name.size());
    const std::uint64_t number = base::ParseDecimal(digits).value_or(0);
    // As the library writes it.
    if (row.isNumbered && (std::to_string(number) != digits || number > kLargest)) continue;
    return Match{row.key, static_cast<std::uint32_t>(number)};
  }
  return std::nullopt;
}

const PlacedEntry* Section::Find(Key key) const {
  const auto found = std::find_if(entries.begin(), entries.end(), [key](const PlacedEntry& entry) {
    return entry.known == key && entry.isFound;
  });
  return found != entries.end() && !found->value.empty() ? &*found : nullptr;
}

std::string_view Section::Value(Key key) const {
  const PlacedEntry* const entry = Find(key);
  return entry != nullptr ? entry->FirstLine() : std::string_view();
}

// ---- Reading ------------------------------------------------------------------------------------

Document::Document(std::string text) : text_(std::move(text)), sections_(1) {
  file_.Parse(text_, /*merge=*/false, &lines_);
  for (std::uint32_t line = 0; line < lines_.size(); ++line) AddLine(line);
}

void Document::AddLine(std::uint32_t number) {
  const Line& line = lines_[number];
  if (line.section >= sections_.size()) {
    Section& section = sections_.emplace_back();
    section.name = file_.SectionOf(line);
    section.kind = base::KindOfSection(section.name);
  }
  Section& section = sections_[line.section];
  if (IsHeader(line.kind)) {
    section.headers.push_back(number);
    return;
  }
  if (line.entry >= homes_.size()) homes_.resize(std::size_t{line.entry} + 1);
  const Home home = homes_[line.entry];
  if (home.place == 0) {
    AddEntry(number, section);
    return;
  }
  PlacedEntry& entry = section.entries[home.place - 1];
  entry.lastLine = number;
  if (entry.strayLine == 0 && !LooksLikeOther(number)) entry.strayLine = number;
}

void Document::AddEntry(std::uint32_t number, Section& section) {
  const Line& line = lines_[number];
  const ConfigFile::Entry read = file_.EntryOf(line);
  PlacedEntry entry;
  entry.key = read.key;
  entry.value = read.value;
  entry.line = entry.lastLine = number;
  entry.isComment = line.kind == Kind::kComment;
  entry.isFound = read.first == line.entry;
  const auto place = static_cast<std::uint32_t>(section.entries.size() + 1);
  entry.found = (entry.isFound ? place : homes_[read.first].place) - 1;
  if (const auto match = MatchKey(section.kind, entry.key)) {
    entry.known = match->key;
    entry.number = match->number;
    if (const std::size_t comment = CommentAt(entry.FirstLine(), match->key); comment != kNowhere) {
      entry.value = base::Trimmed(entry.value.substr(0, comment));
    }
  }
  homes_[line.entry] = {line.section, place};
  section.entries.push_back(entry);
}

const Section& Document::SectionOf(SectionKind kind) const {
  static const Section kNone;
  const auto found = std::find_if(sections_.begin(), sections_.end(),
                                  [kind](const Section& section) { return section.kind == kind; });
  return found != sections_.end() ? *found : kNone;
}

// ---- Places of names and values -----------------------------------------------------------------

Item Document::Part(std::size_t begin, std::size_t end) const {
  const std::string_view whole = std::string_view(text_).substr(begin, end - begin);
  const std::string_view part = base::Trimmed(whole);
  const std::size_t offset =
      part.empty() ? begin : static_cast<std::size_t>(part.data() - text_.data());
  return {part, {offset, part.size()}};
}

Item Document::ItemOf(std::uint32_t line) const {
  const std::size_t begin = lines_[line].offset;
  return Part(begin, std::min(text_.find('\n', begin), text_.size()));
}

Span Document::KeySpan(const PlacedEntry& entry) const {
  const Item line = ItemOf(entry.line);
  if (lines_[entry.line].kind != Kind::kEntry || entry.key.empty()) return line.span;
  return {line.span.offset, entry.key.size()};
}

Item Document::WholeValue(std::uint32_t line) const {
  const Item whole = ItemOf(line);
  if (lines_[line].kind != Kind::kEntry) return whole;
  const std::size_t equals = whole.text.find('=');
  return Part(whole.span.offset + equals + 1, whole.span.offset + whole.span.length);
}

Item Document::ValueOn(std::uint32_t line, const PlacedEntry& entry) const {
  const Item value = WholeValue(line);
  const std::size_t comment = entry.known ? CommentAt(value.text, *entry.known) : kNowhere;
  return Part(value.span.offset, value.span.offset + std::min(comment, value.span.length));
}

Span Document::ValueSpan(const PlacedEntry& entry) const {
  const Span span = ValueOn(entry.line, entry).span;
  return span.length != 0 ? span : KeySpan(entry);
}

std::vector<Item> Document::CommentsIn(const PlacedEntry& entry) const {
  std::vector<Item> comments;
  for (const std::uint32_t line : Chain(entry)) {
    const bool counts = line == entry.line || IsList(RowOf(*entry.known).value);
    const Span whole = WholeValue(line).span;
    const std::size_t length = ValueOn(line, entry).span.length;
    const Item rest = Part(whole.offset + length, whole.offset + whole.length);
    if (counts && !rest.text.empty()) comments.push_back(rest);
  }
  return comments;
}

// The lines that a value was put together from, the last ones of a very long one: a continuation
// adds to what the last line with a "=" began, be it in another section.
std::vector<std::uint32_t> Document::Chain(const PlacedEntry& entry) const {
  std::vector<std::uint32_t> chain;
  for (std::uint32_t line = entry.lastLine;; --line) {
    const Kind kind = lines_[line].kind;
    if (!IsHeader(kind)) chain.push_back(line);
    const bool isRoot = kind == Kind::kEntry || kind == Kind::kComment;
    if (line == 0 || isRoot || entry.lastLine - line >= kLongestChain) break;
  }
  std::reverse(chain.begin(), chain.end());
  return chain;
}

std::vector<Item> Document::Items(const PlacedEntry& entry) const {
  std::vector<Item> items;
  for (const std::uint32_t line : Chain(entry)) {
    if (LooksLikeOther(line)) continue;
    const Item value = ValueOn(line, entry);
    for (std::size_t start = value.text.find_first_not_of(base::kListSeparators);
         start != kNowhere;) {
      const std::size_t end =
          std::min(value.text.find_first_of(base::kListSeparators, start), value.text.size());
      items.push_back(
          {value.text.substr(start, end - start), {value.span.offset + start, end - start}});
      start = value.text.find_first_not_of(base::kListSeparators, end);
    }
  }
  return items;
}

std::optional<Document::HeaderText> Document::TextAfterHeader(std::uint32_t line) const {
  const Item item = ItemOf(line);
  const std::size_t close = item.text.find(']');
  if (!IsHeader(lines_[line].kind) || close == kNowhere || close + 1 == item.text.size()) return {};
  const std::string_view name = base::Trimmed(item.text.substr(1, close - 1));
  if (base::KindOfSection(name) == SectionKind::kUnknown) return {};
  return HeaderText{name, Part(item.span.offset + close + 1, item.span.offset + item.text.size())};
}

std::optional<Key> Document::BrokenKey(std::uint32_t line) const {
  if (lines_[line].kind != Kind::kContinuation) return std::nullopt;
  const std::string_view lead = LeadOf(ItemOf(line).text);
  for (const SectionKind section :
       {SectionKind::kGlobal, SectionKind::kNetworking, SectionKind::kAdapter}) {
    if (const auto match = MatchKey(section, lead)) return match->key;
  }
  return std::nullopt;
}

std::string_view Document::BrokenHeader(std::uint32_t line) const {
  if (lines_[line].kind != Kind::kContinuation) return {};
  const std::string_view text = ItemOf(line).text;
  if (!text.ends_with(']')) return {};
  const std::string_view name = base::Trimmed(text.substr(0, text.size() - 1));
  return base::KindOfSection(name) != SectionKind::kUnknown ? name : std::string_view();
}

bool Document::LooksLikePassword(std::uint32_t line) const {
  if (lines_[line].kind != Kind::kContinuation) return false;
  const std::string_view text = ItemOf(line).text;
  const std::string_view lead = LeadOf(text);
  return lead.size() < text.size() && simulated::NamesSecret(lead);
}

bool Document::LooksLikeOther(std::uint32_t line) const {
  return BrokenKey(line) || !BrokenHeader(line).empty() || LooksLikePassword(line);
}

// ---- Showing ------------------------------------------------------------------------------------

std::size_t Document::LineOf(std::size_t offset) const {
  if (lineStarts_.empty()) {
    for (std::size_t start = 0; start <= text_.size();) {
      lineStarts_.push_back(start);
      start = std::min(text_.find('\n', start), text_.size()) + 1;
    }
  }
  const auto behind = std::upper_bound(lineStarts_.begin(), lineStarts_.end(), offset);
  return static_cast<std::size_t>(behind - lineStarts_.begin());
}

std::size_t Document::HiddenFrom(std::size_t line) const {
  if (hiddenFrom_.empty()) {
    simulated::SecretLines secrets;
    for (std::size_t i = 0; i < lineStarts_.size(); ++i) {
      const std::size_t from = secrets.HiddenFrom(WholeLine(i + 1).text);
      hiddenFrom_.push_back(from != kNowhere ? lineStarts_[i] + from : kNowhere);
    }
  }
  return hiddenFrom_[line - 1];
}

std::string_view Document::Hidden(Span span) const {
  const std::size_t end = span.offset + span.length;
  const std::size_t from = std::max(span.offset, HiddenFrom(LineOf(span.offset)));
  return from < end ? std::string_view(text_).substr(from, end - from) : std::string_view();
}

std::optional<Item> Document::LinesOf(Span span) const {
  const std::size_t first = LineOf(span.offset);
  const std::size_t last = LineOf(span.offset + span.length - (span.length > 0 ? 1 : 0));
  const std::size_t begin = lineStarts_[first - 1];
  const std::size_t end = last < lineStarts_.size() ? lineStarts_[last] : text_.size();
  const std::string_view text = std::string_view(text_).substr(begin, end - begin);
  for (std::size_t line = first; line <= last; ++line) {
    if (HiddenFrom(line) != kNowhere) return std::nullopt;
  }
  for (std::size_t at = text.find('\r'); at != kNowhere; at = text.find('\r', at + 1)) {
    if (text.substr(at, 2) != "\r\n") return std::nullopt;
  }
  return Item{text, {begin, end - begin}};
}

const char* Document::LineEnding(std::size_t offset) const {
  const std::size_t feed = std::min(text_.find('\n', offset), text_.rfind('\n'));
  return feed != kNowhere && feed > 0 && text_[feed - 1] == '\r' ? "\r\n" : "\n";
}

Item Document::WholeLine(std::size_t line) const {
  const std::size_t begin = lineStarts_[line - 1];
  std::size_t end = line < lineStarts_.size() ? lineStarts_[line] - 1 : text_.size();
  if (end > begin && text_[end - 1] == '\r') --end;
  return {std::string_view(text_).substr(begin, end - begin), {begin, end - begin}};
}

Place Document::PlaceOf(Span span) const {
  const std::size_t line = LineOf(span.offset);
  const Item whole = WholeLine(line);
  const std::size_t at = std::min(span.offset - whole.span.offset, whole.span.length);
  const std::size_t column = 1 + base::Width(ToUtf8(whole.text.substr(0, at)));
  return {line, column, column + base::Width(ToUtf8(whole.text.substr(at, span.length)))};
}

Excerpt Document::ExcerptOf(Span span) const {
  const std::size_t number = LineOf(span.offset);
  const Item whole = WholeLine(number);
  const std::size_t begin = whole.span.offset;
  std::string line(whole.text);
  std::size_t from = std::min(span.offset - begin, line.size());
  std::size_t to = std::min(from + span.length, line.size());
  const std::size_t secret = HiddenFrom(number);
  if (secret != kNowhere) {
    line.replace(secret - begin, std::string::npos, simulated::kHidden);
    from = std::min(from, secret - begin);
    if (to > secret - begin) to = line.size();
  }
  const std::string_view bytes = line;
  const std::size_t length = ToUtf8(bytes.substr(from, to - from)).size();
  from = ToUtf8(bytes.substr(0, from)).size();
  to = from + length;
  line = ToUtf8(line);

  std::size_t first =
      from > kBeforeCaret && line.size() > kLongestExcerpt ? from - kBeforeCaret : 0;
  while (first > 0 && base::IsMiddleOfCharacter(line[first])) --first;
  std::size_t last = std::min(line.size(), first + kLongestExcerpt);
  while (last < line.size() && base::IsMiddleOfCharacter(line[last])) ++last;
  to = std::min(to, last);
  const auto shown = [&line](std::size_t start, std::size_t end) {
    std::string part = line.substr(start, end - start);
    std::replace(part.begin(), part.end(), '\t', ' ');
    return Printable(part);
  };
  const std::string before = (first > 0 ? "..." : "") + shown(first, from);
  const std::string marked = shown(from, to);
  const std::string after = shown(to, last) + (last < line.size() ? "..." : "");
  return {before + marked + after, base::Width(before),
          std::max<std::size_t>(1, base::Width(marked))};
}

std::string Document::ShownKey(const PlacedEntry& entry) const {
  const std::string_view hidden = Hidden(KeySpan(entry));
  return std::string(
             entry.key.substr(0, entry.key.size() - std::min(hidden.size(), entry.key.size()))) +
         (hidden.empty() ? "" : simulated::kHidden);
}

}  // namespace tool::check
