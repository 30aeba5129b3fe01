#include "handlers/internal/ConfigFile.h"

#include <algorithm>
#include <new>
#include <utility>

#include "common/util/FileUtils.h"
#include "handlers/internal/FoldedText.h"

namespace {

bool IsBlank(char c) { return c == ' ' || c == '\t'; }

std::string_view Trim(std::string_view text) {
  while (!text.empty() && IsBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && IsBlank(text.back())) text.remove_suffix(1);
  return text;
}

}  // namespace

/// One run over the text of a load.
class ConfigFile::Parser {
 public:
  Parser(ConfigFile* file, bool merge, std::vector<Line>* lines)
      : file_(*file), merge_(merge), lines_(lines) {}

  Result Run(std::size_t start) {
    const std::string_view text = file_.text_;
    while (start < text.size()) {
      const std::size_t end = std::min(text.find('\n', start), text.size());
      std::string_view line = text.substr(start, end - start);
      const std::size_t carriageReturn = line.find('\r');
      file_.lastLineHadReturn_ = carriageReturn != std::string_view::npos;
      if (file_.lastLineHadReturn_) line = Without(line, carriageReturn);
      if (!ParseLine(Trim(line))) return kUnreadable;
      start = end + 1;
    }
    return result_;
  }

 private:
  /// False when the line ends the load.
  bool ParseLine(std::string_view line) {
    if (line.empty()) return true;
    if (line[0] == '[') return OpenSection(line);
    const bool isComment = line[0] == ';' || line[0] == '#';
    if (!isComment && line.find('=') == std::string_view::npos) {
      ContinuePrevious(line);
    } else {
      Add(isComment, file_.RangeOf(line));
    }
    return true;
  }

  bool OpenSection(std::string_view line) {
    const Range whole = file_.RangeOf(line);
    const std::size_t bracket = line.find(']');
    const bool isOpen = bracket == std::string_view::npos;
    if (isOpen) {
      result_ = kUnreadable;
      if (lines_ == nullptr) return false;
    } else {
      // Deliberate: only the brackets go, what follows them stays part of the name.
      line = Without(line, bracket);
    }
    section_ = file_.OpenSection(file_.RangeOf(Trim(line.substr(1))));
    target_ = 0;
    Report(isOpen ? Line::Kind::kOpenHeader : Line::Kind::kHeader, whole, /*entry=*/0);
    return true;
  }

  void Add(bool isComment, Range line) {
    previousLine_ = line;
    target_ = merge_ && !isComment ? Merge(file_.Split(line)) : 0;
    const std::uint32_t entry = target_ != 0 ? target_ : file_.AddEntry(section_, line);
    Report(isComment ? Line::Kind::kComment : Line::Kind::kEntry, line, entry);
  }

  /// The entry that has the key already, and now the value too; 0 when there is none.
  std::uint32_t Merge(const Pair& pair) {
    const Found stored = file_.FindEntry(section_, file_.View(pair.key));
    if (stored.entry != 0 && !SameText(file_.View(stored.pair.value), file_.View(pair.value),
                                       /*caseSensitive=*/false)) {
      SetValue(stored.entry, pair.value);
      result_ = kReplaced;
    }
    return stored.entry;
  }

  void SetValue(std::uint32_t entry, Range value) {
    Range& line = file_.entries_[entry].line;
    if (line.length != kChanged) line = file_.Changed(file_.Split(line));
    file_.changed_[line.offset].value = value;
  }

  /// The value grows at the end of `extra_`, where only the previous entry's value ever grows. So
  /// an entry that took an earlier state of it keeps that state: both begin at the same place.
  void ContinuePrevious(std::string_view line) {
    if (previousLine_.length != 0) previous_ = file_.Split(std::exchange(previousLine_, {}));
    std::string& extra = file_.extra_;
    Range& value = previous_.value;
    // Every byte of the text enters `extra_` at most once.
    if (extra.empty()) extra.reserve(file_.text_.size());
    if (value.offset < file_.text_.size()) {
      const std::string_view start = file_.View(value);
      value.offset = static_cast<std::uint32_t>(file_.text_.size() + extra.size());
      extra.append(start);
    }
    extra.append(1, '\n').append(line);
    value.length += static_cast<std::uint32_t>(1 + line.size());

    // Deliberate: the value goes to the first entry with that key in the current section, which
    // after a duplicate key, a second comment or a header is not the entry just above.
    if (target_ == 0) target_ = file_.FindEntry(section_, file_.View(previous_.key)).entry;
    if (target_ == 0) {
      target_ = file_.AddEntry(section_, file_.Changed(previous_));
    } else {
      SetValue(target_, value);
    }
    Report(Line::Kind::kContinuation, file_.RangeOf(line), target_);
  }

  void Report(Line::Kind kind, Range line, std::uint32_t entry) {
    if (lines_ != nullptr) lines_->push_back({line.offset, line.length, section_, entry, kind});
  }

  /// The line without the character at `at`; what follows it moves up in the text.
  std::string_view Without(std::string_view line, std::size_t at) {
    char* const begin = file_.text_.data() + file_.RangeOf(line).offset;
    std::copy(begin + at + 1, begin + line.size(), begin + at);
    return line.substr(0, line.size() - 1);
  }

  ConfigFile& file_;
  const bool merge_;
  std::vector<Line>* const lines_;
  Result result_ = kSuccess;
  std::uint32_t section_ = 0;
  Range previousLine_;        // the line of the previous entry, until it is continued
  Pair previous_;             // then the entry, with its value as continued so far
  std::uint32_t target_ = 0;  // the entry that a continuation goes to, once known
};

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

ConfigFile::Result ConfigFile::Parse(std::string text, bool merge, std::vector<Line>* lines) {
  EndWalks();
  // Twice the size, as `extra_` may come to hold as much as the text.
  const std::size_t kept = merge ? text_.size() + extra_.size() : 0;
  if (text.empty() || kept + 2 * text.size() >= kChanged) return kUnreadable;
  if (merge) {
    text_.append(extra_);  // keeps every offset
    text_.append(text);
  } else {
    text_ = std::move(text);
    sections_.assign(1, {});
    unnamedOpened_ = false;
    entries_.assign(1, {});
    changed_.clear();
    sectionTable_ = {};
    tables_ = {};
    entries_.reserve(text_.size() / 16);  // as a rule enough
  }
  extra_.clear();
  return Parser(this, merge, lines).Run(/*start=*/kept);
}

ConfigFile::Result ConfigFile::ReadValue(std::string_view section, std::string_view key,
                                         std::string* value) {
  const auto found = FindValue(section, key);
  if (!found) return FindSection(section) ? kNoEntry : kNoSection;
  value->assign(*found);
  return kSuccess;
}

std::optional<std::string_view> ConfigFile::FindValue(std::string_view section,
                                                      std::string_view key) {
  const auto id = FindSection(section);
  const Found found = id ? FindEntry(*id, key) : Found{};
  return found.entry != 0 ? std::optional(View(found.pair.value)) : std::nullopt;
}

std::size_t ConfigFile::EntryCount(std::string_view section) {
  const auto id = FindSection(section);
  return id ? sections_[*id].count : 0;
}

ConfigFile::Result ConfigFile::GetFirstEntry(std::string_view section, std::string* key,
                                             std::string* value) {
  const auto id = FindSection(section);
  nextEntry_ = id ? sections_[*id].first : 0;
  return id ? GetNextEntry(key, value) : kNoSection;
}

ConfigFile::Result ConfigFile::GetNextEntry(std::string* key, std::string* value) {
  if (!nextEntry_) return kNoWalk;
  if (*nextEntry_ == 0) return kNoEntry;
  const Pair pair = PairOf(*nextEntry_);
  key->assign(View(pair.key));
  value->assign(View(pair.value));
  nextEntry_ = entries_[*nextEntry_].next;
  return kSuccess;
}

ConfigFile::Result ConfigFile::GetFirstSection(std::string* name) {
  nextSection_ = HasUnnamed() ? 0 : 1;
  return GetNextSection(name);
}

ConfigFile::Result ConfigFile::GetNextSection(std::string* name) {
  if (!nextSection_ || *nextSection_ == sections_.size()) return kNoSection;
  name->assign(View(sections_[*nextSection_].name));
  ++*nextSection_;
  return kSuccess;
}

ConfigFile::Result ConfigFile::InsertSection(std::string_view section) {
  if (FindSection(section)) return kSectionPresent;
  const std::size_t offset = text_.size() + extra_.size();
  if (offset + section.size() >= kChanged) return kNoMemory;
  extra_.append(section);
  OpenSection({static_cast<std::uint32_t>(offset), static_cast<std::uint32_t>(section.size())});
  EndWalks();
  return kSuccess;
}

ConfigFile::Entry ConfigFile::EntryOf(const Line& line) {
  const Pair pair = PairOf(line.entry);
  return {View(pair.key), View(pair.value), FindEntry(line.section, View(pair.key)).entry};
}

std::string_view ConfigFile::View(Range range) const {
  return range.offset < text_.size()
             ? std::string_view(text_.data() + range.offset, range.length)
             : std::string_view(extra_.data() + (range.offset - text_.size()), range.length);
}

ConfigFile::Range ConfigFile::RangeOf(std::string_view part) const {
  return {static_cast<std::uint32_t>(part.data() - text_.data()),
          static_cast<std::uint32_t>(part.size())};
}

std::optional<std::uint32_t> ConfigFile::FindSection(std::string_view name) {
  const std::uint32_t id = name.empty() ? 0 : LookUpSection(name, /*ifAbsent=*/0);
  return id != 0 || (name.empty() && HasUnnamed()) ? std::optional(id) : std::nullopt;
}

/// The section of that name, which is added when there is none.
std::uint32_t ConfigFile::OpenSection(Range name) {
  if (name.length == 0) {
    unnamedOpened_ = true;
    return 0;
  }
  const auto next = static_cast<std::uint32_t>(sections_.size());
  if (tables_.MakeRoom(next, &sectionTable_)) {
    for (std::uint32_t id = 1; id < next; ++id) LookUpSection(View(sections_[id].name), id);
  }
  sections_.emplace_back().name = name;
  const std::uint32_t id = LookUpSection(View(name), next);
  if (id != next) sections_.pop_back();
  return id;
}

std::uint32_t ConfigFile::LookUpSection(std::string_view name, std::uint32_t ifAbsent) {
  const std::uint32_t hash = HashText(name, seed_, caseSensitive_);
  return tables_.Find(sectionTable_, hash, ifAbsent, [&](std::uint32_t id) {
    return SameText(View(sections_[id].name), name, caseSensitive_);
  });
}

std::uint32_t ConfigFile::AddEntry(std::uint32_t section, Range line) {
  const auto id = static_cast<std::uint32_t>(entries_.size());
  entries_.push_back({line});
  Section& owner = sections_[section];
  (owner.last != 0 ? entries_[owner.last].next : owner.first) = id;
  owner.last = id;
  ++owner.count;
  return id;
}

ConfigFile::Pair ConfigFile::PairOf(std::uint32_t entry) const {
  const Range line = entries_[entry].line;
  return line.length == kChanged ? changed_[line.offset] : Split(line);
}

ConfigFile::Pair ConfigFile::Split(Range line) const {
  const std::string_view text = View(line);
  if (text[0] == ';' || text[0] == '#') return {{line.offset, 0}, line};
  const std::size_t equals = text.find('=');
  return {RangeOf(Trim(text.substr(0, equals))), RangeOf(Trim(text.substr(equals + 1)))};
}

/// What an entry has in place of its line.
ConfigFile::Range ConfigFile::Changed(const Pair& pair) {
  changed_.push_back(pair);
  return {static_cast<std::uint32_t>(changed_.size() - 1), kChanged};
}

/// The first entry of the key, 0 for none. The section's table is made at the first look-up, as
/// many sections are only walked, and is brought up to the section's last entry at each.
ConfigFile::Found ConfigFile::FindEntry(std::uint32_t section, std::string_view key) {
  Section& owner = sections_[section];
  if (owner.indexed != owner.last) {
    if (tables_.MakeRoom(owner.count, &owner.keys)) owner.indexed = 0;
    std::uint32_t id = owner.indexed != 0 ? entries_[owner.indexed].next : owner.first;
    for (; id != 0; id = entries_[id].next) LookUpKey(owner.keys, View(PairOf(id).key), id);
    owner.indexed = owner.last;
  }
  return LookUpKey(owner.keys, key, /*ifAbsent=*/0);
}

ConfigFile::Found ConfigFile::LookUpKey(const HashTables::Table& keys, std::string_view key,
                                        std::uint32_t ifAbsent) {
  Found found;
  const std::uint32_t hash = HashText(key, seed_, caseSensitive_);
  found.entry = tables_.Find(keys, hash, ifAbsent, [&](std::uint32_t id) {
    found.pair = PairOf(id);
    return SameText(View(found.pair.key), key, caseSensitive_);
  });
  return found;
}
