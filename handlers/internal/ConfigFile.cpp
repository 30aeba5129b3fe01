#include "handlers/internal/ConfigFile.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>
#include <utility>

#include "common/util/FileUtils.h"
#include "handlers/internal/FoldedText.h"

namespace {

constexpr std::uint32_t kNone = std::numeric_limits<std::uint32_t>::max();
constexpr std::size_t kMaxOffset = std::numeric_limits<std::uint32_t>::max();

bool IsBlank(char c) { return c == ' ' || c == '\t'; }

std::string_view Trim(std::string_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return text;
}

}  // namespace

/// One run over the text of a load. Telling the lines must not slow down those who do not ask.
template <bool kTellsLines>
class ConfigFile::Parser {
 public:
  Parser(ConfigFile* file, bool merge, std::vector<Line>* lines)
      : file_(*file),
        merge_(merge),
        lines_(lines),
        text_(file->text_.data()),
        end_(text_ + file->text_.size()) {
    previous_.key.offset = previous_.value.offset = static_cast<std::uint32_t>(file->parseStart_);
  }

  Result Run() {
    char* line = text_ + file_.parseStart_;
    char* nextReturn = Find('\r', line, end_);
    while (line != end_) {
      file_.parsePosition_ = static_cast<std::size_t>(line - text_);
      char* const newline = Find('\n', line, end_);
      char* lineEnd = newline;
      if (nextReturn < line) nextReturn = Find('\r', line, end_);
      file_.lastLineHadReturn_ = nextReturn < lineEnd;
      if (file_.lastLineHadReturn_) Remove(nextReturn, &lineEnd);
      if (!ParseLine(line, lineEnd)) return kUnreadable;
      line = newline == end_ ? end_ : newline + 1;
    }
    if (file_.failure_) return kUnreadable;
    return replaced_ ? kReplaced : kSuccess;
  }

 private:
  /// False when the line ends the load.
  bool ParseLine(char* begin, char* end) {
    while (begin != end && IsBlank(*begin)) ++begin;
    while (begin != end && IsBlank(end[-1])) --end;
    if (begin == end) return true;
    if (*begin == '[') return OpenSection(begin, end);
    const Range line{static_cast<std::uint32_t>(begin - text_),
                     static_cast<std::uint32_t>(end - begin)};
    const bool isComment = *begin == ';' || *begin == '#';
    if (!isComment && Find('=', begin, end) == end) {
      ContinuePrevious(line);
      Tell(Line::Kind::kContinuation, line, target_);
    } else if (isComment || !merge_ || !MergeEntry(line)) {
      const std::uint32_t entry = TakeEntry(line);
      Tell(isComment ? Line::Kind::kComment : Line::Kind::kEntry, line, entry);
    }
    return true;
  }

  void Tell(Line::Kind kind, Range line, std::uint32_t entry) {
    if constexpr (kTellsLines) {
      lines_->push_back({line.offset, line.length, section_, entry, kind});
    }
  }

  bool OpenSection(char* begin, char* end) {
    const Range line{static_cast<std::uint32_t>(begin - text_),
                     static_cast<std::uint32_t>(end - begin)};
    char* const bracket = Find(']', begin, end);
    const bool isOpen = bracket == end;
    if (isOpen) {
      if (!file_.failure_) file_.failure_ = line.offset;
      if constexpr (!kTellsLines) return false;
    } else {
      // Deliberate: only the brackets go, what follows them stays part of the name.
      Remove(bracket, &end);
    }
    const std::string_view name = Trim({begin + 1, end});
    section_ = file_.OpenSection(
        {static_cast<std::uint32_t>(name.data() - text_), static_cast<std::uint32_t>(name.size())});
    target_ = 0;
    Tell(isOpen ? Line::Kind::kOpenHeader : Line::Kind::kHeader, line, /*entry=*/0);
    return true;
  }

  std::uint32_t TakeEntry(Range line) {
    previousLine_ = line;
    target_ = 0;
    return file_.AddEntry(section_, line);
  }

  /// False when the section does not have the key yet.
  bool MergeEntry(Range line) {
    const Pair pair = file_.Split(line);
    const FoundEntry stored = file_.FindEntry(section_, file_.View(pair.key));
    if (stored.id == 0) return false;
    const auto same = [this](Range a, Range b) {
      return SameText(file_.View(a), file_.View(b), /*caseSensitive=*/false);
    };
    if (!same(stored.pair.value, pair.value)) {
      file_.SetValue(stored.id, pair.value);
      replaced_ = true;
    }
    previousLine_ = line;
    target_ = stored.id;
    return true;
  }

  /// The value grows at the end of `extra_`, where only the previous entry's value ever grows. So
  /// an entry that took an earlier state of it keeps that state: both begin at the same place.
  void ContinuePrevious(Range line) {
    if (previousLine_.length != 0) previous_ = file_.Split(std::exchange(previousLine_, {}));
    std::string& extra = file_.extra_;
    Range& value = previous_.value;
    const std::size_t textSize = file_.text_.size();
    const bool inText = value.offset < textSize;
    MakeExtraRoom((inText ? value.length : 0) + 1 + line.length);
    if (inText) {
      const std::string_view start = file_.View(value);
      value.offset = static_cast<std::uint32_t>(textSize + extra.size());
      extra.append(start);
    }
    extra.append(1, '\n').append(file_.View(line));
    value.length += 1 + line.length;

    // Deliberate: the value goes to the first entry with that key in the current section, which
    // after a duplicate key, a second comment or a header is not the entry just above.
    if (target_ == 0) target_ = file_.FindEntry(section_, file_.View(previous_.key)).id;
    if (target_ == 0) {
      target_ = file_.AddEntry(section_, file_.Rewrite(previous_));
    } else {
      file_.SetValue(target_, value);
    }
  }

  /// Every byte of the text enters `extra_` at most once, so the text's size is all it can need.
  void MakeExtraRoom(std::size_t more) {
    const std::size_t needed = file_.extra_.size() + more;
    if (needed <= file_.extra_.capacity()) return;
    const std::size_t most = std::max(needed, file_.text_.size());
    file_.extra_.reserve(needed < most / 8 ? 2 * needed : most);
  }

  static char* Find(char wanted, char* begin, char* end) {
    void* const found = std::memchr(begin, wanted, static_cast<std::size_t>(end - begin));
    return found != nullptr ? static_cast<char*>(found) : end;
  }

  static void Remove(char* at, char** end) {
    std::copy(at + 1, *end, at);
    --*end;
  }

  ConfigFile& file_;
  const bool merge_;
  std::vector<Line>* const lines_;
  bool replaced_ = false;
  char* const text_;
  char* const end_;
  std::uint32_t section_ = 0;
  // The previous entry as the text has it: its line, until a continuation has it split.
  Range previousLine_;
  Pair previous_;
  std::uint32_t target_ = 0;  // the entry that a continuation goes to, once known
};

// Seeded with an address, which differs from run to run, so that no file can aim its keys at one
// slot of an index.
ConfigFile::ConfigFile(bool caseSensitive)
    : caseSensitive_(caseSensitive),
      seed_(reinterpret_cast<std::uintptr_t>(this)),
      sections_(1),
      entries_(1),
      growing_(kNone) {}

ConfigFile::Result ConfigFile::Load(const std::string& path, bool merge) {
  EndWalks();
  std::string text;
  try {
    if (!util::ReadWholeFile(path, &text)) return kUnreadable;
  } catch (const std::bad_alloc&) {
    return kNoMemory;
  }
  const Result result = Parse(std::move(text), merge);
  if (result == kSuccess) fileName_ = path;
  return result;
}

ConfigFile::Result ConfigFile::Parse(std::string text, bool merge) {
  if (!TakeText(std::move(text), merge)) return kUnreadable;
  return Parser</*kTellsLines=*/false>(this, merge, /*lines=*/nullptr).Run();
}

ConfigFile::Result ConfigFile::ParseLines(std::string text, std::vector<Line>* lines) {
  if (!TakeText(std::move(text), /*merge=*/false)) return kUnreadable;
  return Parser</*kTellsLines=*/true>(this, /*merge=*/false, lines).Run();
}

bool ConfigFile::TakeText(std::string text, bool merge) {
  EndWalks();
  failure_.reset();
  // Twice the size, as `extra_` may come to hold as much as the text.
  const std::size_t kept = merge ? text_.size() + extra_.size() : 0;
  if (text.empty() || kept + 2 * text.size() >= kMaxOffset) return false;
  if (merge) {
    text_.append(extra_);  // keeps every offset
    parseStart_ = text_.size();
    text_.append(text);
    text = std::string();  // frees it
  } else {
    parseStart_ = 0;
    text_ = std::move(text);
    sections_.assign(1, {});
    unnamedOpened_ = false;
    entries_.assign(1, {});
    rewritten_.clear();
    growing_ = kNone;
    sectionTable_ = {};
    tables_.Clear();
  }
  extra_.clear();
  countedOffset_ = parseStart_;
  countedLines_ = 0;
  return true;
}

ConfigFile::Result ConfigFile::ReadValue(std::string_view section, std::string_view key,
                                         std::string* value) {
  const auto id = FindSection(section);
  if (!id) return kNoSection;
  const FoundEntry entry = FindEntry(*id, key);
  if (entry.id == 0) return kNoEntry;
  value->assign(View(entry.pair.value));
  return kSuccess;
}

std::optional<std::string_view> ConfigFile::FindValue(std::string_view section,
                                                      std::string_view key) {
  const auto id = FindSection(section);
  const FoundEntry entry = id ? FindEntry(*id, key) : FoundEntry{};
  if (entry.id == 0) return std::nullopt;
  return View(entry.pair.value);
}

std::size_t ConfigFile::EntryCount(std::string_view section) const {
  const auto id = FindSection(section);
  return id ? sections_[*id].count : 0;
}

ConfigFile::Result ConfigFile::GetFirstEntry(std::string_view section, std::string* key,
                                             std::string* value) {
  const auto id = FindSection(section);
  entryWalk_ = {true, id ? sections_[*id].first : 0};
  return id ? ReportEntry(key, value) : kNoSection;
}

ConfigFile::Result ConfigFile::GetNextEntry(std::string* key, std::string* value) {
  if (!entryWalk_.active) return kNoWalk;
  if (entryWalk_.at != 0) entryWalk_.at = NextEntry(entryWalk_.at);
  return ReportEntry(key, value);
}

ConfigFile::Result ConfigFile::ReportEntry(std::string* key, std::string* value) const {
  if (entryWalk_.at == 0) return kNoEntry;
  const Pair pair = PairOf(entryWalk_.at);
  key->assign(View(pair.key));
  value->assign(View(pair.value));
  return kSuccess;
}

ConfigFile::Result ConfigFile::GetFirstSection(std::string* name) {
  sectionWalk_ = {true, HasUnnamed() ? 0U : 1U};
  return ReportSection(name);
}

ConfigFile::Result ConfigFile::GetNextSection(std::string* name) {
  if (sectionWalk_.at < sections_.size()) ++sectionWalk_.at;
  return ReportSection(name);
}

ConfigFile::Result ConfigFile::ReportSection(std::string* name) const {
  if (!sectionWalk_.active || sectionWalk_.at >= sections_.size()) return kNoSection;
  name->assign(View(sections_[sectionWalk_.at].name));
  return kSuccess;
}

void ConfigFile::EndWalks() { entryWalk_ = sectionWalk_ = {}; }

bool ConfigFile::SectionExists(std::string_view section) const {
  return FindSection(section).has_value();
}

ConfigFile::Result ConfigFile::InsertSection(std::string_view section) {
  if (FindSection(section)) return kSectionPresent;
  const std::size_t offset = text_.size() + extra_.size();
  if (offset + section.size() >= kMaxOffset) return kNoMemory;
  extra_.append(section);
  OpenSection({static_cast<std::uint32_t>(offset), static_cast<std::uint32_t>(section.size())});
  EndWalks();
  return kSuccess;
}

ConfigFile::Position ConfigFile::EntryPosition() {
  return entryWalk_.at == 0 ? Position{} : PositionOf(PairOf(entryWalk_.at).key.offset);
}

ConfigFile::Position ConfigFile::SectionPosition() {
  if (!sectionWalk_.active || sectionWalk_.at >= sections_.size()) return {};
  return PositionOf(sections_[sectionWalk_.at].name.offset);
}

ConfigFile::Position ConfigFile::FailurePosition() {
  return failure_ ? PositionOf(*failure_) : Position{};
}

ConfigFile::Position ConfigFile::FindPosition(std::string_view section) {
  const auto id = FindSection(section);
  return id ? PositionOf(sections_[*id].name.offset) : Position{};
}

ConfigFile::Position ConfigFile::FindPosition(std::string_view section, std::string_view key) {
  const auto id = FindSection(section);
  const FoundEntry entry = id ? FindEntry(*id, key) : FoundEntry{};
  return entry.id != 0 ? PositionOf(entry.pair.key.offset) : Position{};
}

// Counts on, or back, from the place asked for before, so that asking about neighbours is cheap.
ConfigFile::Position ConfigFile::PositionOf(std::size_t offset) {
  if (offset < parseStart_ || offset >= text_.size()) return {};
  const std::string_view text = text_;
  const auto [first, last] = std::minmax(offset, countedOffset_);
  const std::string_view between = text.substr(first, last - first);
  const auto lines = static_cast<std::size_t>(std::count(between.begin(), between.end(), '\n'));
  countedLines_ = offset < countedOffset_ ? countedLines_ - lines : countedLines_ + lines;
  countedOffset_ = offset;
  const std::string_view before = text.substr(parseStart_, offset - parseStart_);
  // Without a newline the sum wraps round to the whole size, as it should.
  return {countedLines_ + 1, before.size() - before.rfind('\n')};
}

ConfigFile::Entry ConfigFile::EntryOf(const Line& line) {
  const Pair pair = PairOf(line.entry);
  const std::string_view key = View(pair.key);
  return {key, View(pair.value), FindEntry(line.section, key).id};
}

std::string_view ConfigFile::View(Range range) const {
  return range.offset < text_.size()
             ? std::string_view(text_.data() + range.offset, range.length)
             : std::string_view(extra_.data() + (range.offset - text_.size()), range.length);
}

std::uint32_t ConfigFile::Hash(std::string_view text) const {
  return HashText(text, seed_, caseSensitive_);
}

// Room for two more. A full vector asks for what the whole text will need if it goes on like the
// part read so far; for an eighth of that as long as little is read and the estimate is rough.
template <typename T>
void ConfigFile::MakeRoom(std::vector<T>* items) const {
  const std::size_t used = items->size();
  if (used + 2 <= items->capacity()) return;
  const std::size_t expected = used * text_.size() / (parsePosition_ + 1);
  const std::size_t wanted = expected > 16 * used ? expected / 8 : expected + expected / 8;
  items->reserve(used < 64 ? 66 : std::max(wanted, used + used / 8));
}

std::optional<std::uint32_t> ConfigFile::FindSection(std::string_view name) const {
  if (name.empty()) return HasUnnamed() ? std::optional<std::uint32_t>(0) : std::nullopt;
  const std::uint32_t id = tables_.Find(sectionTable_, Hash(name), [&](std::uint32_t section) {
    return SameText(View(sections_[section].name), name, caseSensitive_);
  });
  return id != 0 ? std::optional<std::uint32_t>(id) : std::nullopt;
}

// The section of that name, which is added when there is none.
std::uint32_t ConfigFile::OpenSection(Range name) {
  if (name.length == 0) {
    unnamedOpened_ = true;
    return 0;
  }
  MakeRoom(&sections_);
  const auto next = static_cast<std::uint32_t>(sections_.size());
  if (!HashTables::HasRoomFor(next, sectionTable_)) {
    tables_.Enlarge(&sectionTable_, sections_.capacity());
    for (std::uint32_t id = 1; id < next; ++id) {
      tables_.FindOrInsert(sectionTable_, Hash(View(sections_[id].name)), id,
                           [](std::uint32_t) { return false; });
    }
  }
  const std::string_view text = View(name);
  const std::uint32_t id =
      tables_.FindOrInsert(sectionTable_, Hash(text), next, [&](std::uint32_t section) {
        return SameText(View(sections_[section].name), text, caseSensitive_);
      });
  if (id == next) sections_.emplace_back().name = name;
  return id;
}

std::uint32_t ConfigFile::AddEntry(std::uint32_t section, Range line) {
  MakeRoom(&entries_);
  Section& owner = sections_[section];
  if (section != growing_) {
    entries_.push_back({0, kLink});
    const auto next = static_cast<std::uint32_t>(entries_.size());
    (owner.last != 0 ? entries_[owner.last + 1].offset : owner.first) = next;
    growing_ = section;
  }
  owner.last = static_cast<std::uint32_t>(entries_.size());
  ++owner.count;
  entries_.push_back(line);
  return owner.last;
}

std::uint32_t ConfigFile::NextEntry(std::uint32_t entry) const {
  if (++entry == entries_.size()) return 0;
  return entries_[entry].length == kLink ? entries_[entry].offset : entry;
}

ConfigFile::Pair ConfigFile::Split(Range line) const {
  const std::string_view text = View(line);
  if (text[0] == ';' || text[0] == '#') return {{line.offset, 0}, line};
  const auto trimmedRange = [this](std::string_view part) {
    part = Trim(part);
    return Range{static_cast<std::uint32_t>(part.data() - text_.data()),
                 static_cast<std::uint32_t>(part.size())};
  };
  const std::size_t equals = text.find('=');
  return {trimmedRange(text.substr(0, equals)), trimmedRange(text.substr(equals + 1))};
}

ConfigFile::Pair ConfigFile::PairOf(std::uint32_t entry) const {
  const Range line = entries_[entry];
  return line.length == kRewritten ? rewritten_[line.offset] : Split(line);
}

// An entry to put in the place of a line.
ConfigFile::Range ConfigFile::Rewrite(const Pair& pair) {
  MakeRoom(&rewritten_);
  rewritten_.push_back(pair);
  return {static_cast<std::uint32_t>(rewritten_.size() - 1), kRewritten};
}

void ConfigFile::SetValue(std::uint32_t entry, Range value) {
  Range& line = entries_[entry];
  if (line.length != kRewritten) line = Rewrite(Split(line));
  rewritten_[line.offset].value = value;
}

ConfigFile::FoundEntry ConfigFile::FindEntry(std::uint32_t section, std::string_view key) {
  IndexKeys(&sections_[section]);
  FoundEntry found;
  found.id = tables_.Find(sections_[section].keys, Hash(key), [&](std::uint32_t entry) {
    found.pair = PairOf(entry);
    return SameText(View(found.pair.key), key, caseSensitive_);
  });
  return found;
}

// Brings a section's table up to its last entry. It is made at the first look-up, as many sections
// are only walked, and made anew when it is outgrown.
void ConfigFile::IndexKeys(Section* section) {
  if (section->indexed == section->last) return;
  if (!HashTables::HasRoomFor(section->count, section->keys)) {
    section->indexed = 0;
    tables_.Enlarge(&section->keys, section->count);
  }
  std::uint32_t entry = section->indexed != 0 ? NextEntry(section->indexed) : section->first;
  for (; entry != 0; entry = NextEntry(entry)) {
    const std::string_view key = View(PairOf(entry).key);
    tables_.FindOrInsert(section->keys, Hash(key), entry, [&](std::uint32_t earlier) {
      return SameText(View(PairOf(earlier).key), key, caseSensitive_);
    });
  }
  section->indexed = section->last;
}
