// A configuration file as the library reads it, with the place of every name and value in its text.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/ConfigKeys.h"
#include "handlers/internal/ConfigFile.h"

namespace tool::check {

using base::Key;
using base::SectionKind;
using base::ValueKind;

/// A stretch of a text.
struct Span {
  std::size_t offset = 0;
  std::size_t length = 0;
};

/// Lines and columns count from 1, columns in characters; `endColumn` is the one behind the last.
struct Place {
  std::size_t line = 1;
  std::size_t column = 1;
  std::size_t endColumn = 1;
};

/// A line to show, with what a finding is about.
struct Excerpt {
  std::string text;
  /// Both in characters of `text`.
  std::size_t caret = 0;
  std::size_t caretLength = 0;
};

struct PlacedEntry {
  /// What counts of a value that is no list; further lines are a finding of their own.
  std::string_view FirstLine() const { return value.substr(0, value.find('\n')); }

  /// Empty for a comment.
  std::string_view key;
  /// Without what is meant as a comment behind it.
  std::string_view value;
  /// The line that made the entry, and the last one that was added to it (the same when none was).
  std::uint32_t line = 0;
  std::uint32_t lastLine = 0;
  /// The first line that was added and looks like nothing else; 0 when there is none.
  std::uint32_t strayLine = 0;
  /// What the key is in its section, and the number of a numbered one.
  std::optional<Key> known;
  std::uint32_t number = 0;
  bool isComment = false;
  /// A look-up of the key finds this entry; `found` is the place of the one that it does find.
  bool isFound = true;
  std::uint32_t found = 0;
};

struct Section {
  std::string_view name;
  SectionKind kind = SectionKind::kUnknown;
  /// Its headers; none for what stands before the first one.
  std::vector<std::uint32_t> headers;
  std::vector<PlacedEntry> entries;

  /// As settings; what the agent gets as it is, is not.
  bool IsRead() const {
    return kind != SectionKind::kUnknown && kind != SectionKind::kAgentSettings;
  }
  /// What a look-up of the key finds, null when it is absent or empty. Not for numbered keys.
  const PlacedEntry* Find(Key key) const;
  /// The first line of its value; empty when it is absent.
  std::string_view Value(Key key) const;
};

/// A piece of the file.
struct Item {
  std::string_view text;
  Span span;
};

inline bool IsHeader(ConfigFile::Line::Kind kind) {
  return kind == ConfigFile::Line::Kind::kHeader || kind == ConfigFile::Line::Kind::kOpenHeader;
}

/// Lines are named by their place in `Lines()`, which leaves out the empty ones.
class Document {
 public:
  using Line = ConfigFile::Line;

  explicit Document(std::string text);
  Document(const Document&) = delete;
  Document& operator=(const Document&) = delete;

  ConfigFile& File() { return file_; }
  const std::vector<Line>& Lines() const { return lines_; }
  /// The one without a name comes first, whether the file has it or not.
  const std::vector<Section>& Sections() const { return sections_; }
  /// The section of that kind, an empty one when there is none. Not for adapters.
  const Section& SectionOf(SectionKind kind) const;

  /// A line as it stands in the file, without the blanks at its ends.
  Item ItemOf(std::uint32_t line) const;
  Span KeySpan(const PlacedEntry& entry) const;
  /// The value on the line of its key; the key when there is none.
  Span ValueSpan(const PlacedEntry& entry) const;
  /// What is meant as comments behind the value, although it is part of it.
  std::vector<Item> CommentsIn(const PlacedEntry& entry) const;
  /// The items of a list, without such comments. A continuation line that looks like something else
  /// has none.
  std::vector<Item> Items(const PlacedEntry& entry) const;

  /// What follows the "]" of a header whose brackets name a known section; nothing for others.
  struct HeaderText {
    std::string_view name;
    Item rest;
  };
  std::optional<HeaderText> TextAfterHeader(std::uint32_t line) const;

  // What a line without "=" looks like.

  /// The known key that it begins with.
  std::optional<Key> BrokenKey(std::uint32_t line) const;
  /// The name of a known section before a "]" at its end; empty when there is none.
  std::string_view BrokenHeader(std::uint32_t line) const;
  /// It begins with the name of a secret, and more follows.
  bool LooksLikePassword(std::uint32_t line) const;
  /// It is one of these.
  bool LooksLikeOther(std::uint32_t line) const;

  // What may be shown: of a secret no more than "***".

  Place PlaceOf(Span span) const;
  Excerpt ExcerptOf(Span span) const;
  std::string ShownKey(const PlacedEntry& entry) const;
  /// The part of a stretch within a line that must not be shown.
  std::string_view Hidden(Span span) const;
  /// The lines that hold the stretch, with their ends; nothing when they hold what must not be
  /// shown, or a carriage return elsewhere, which the reader takes out.
  std::optional<Item> LinesOf(Span span) const;
  /// How the line there ends, or the last line that ends.
  const char* LineEnding(std::size_t offset) const;

 private:
  /// Where the entry is that the reader gave a number.
  struct Home {
    std::uint32_t section = 0;
    std::uint32_t place = 0;  // in its section, plus 1
  };

  void AddLine(std::uint32_t number);
  void AddEntry(std::uint32_t number, Section& section);
  std::vector<std::uint32_t> Chain(const PlacedEntry& entry) const;
  Item WholeValue(std::uint32_t line) const;
  Item ValueOn(std::uint32_t line, const PlacedEntry& entry) const;
  Item Part(std::size_t begin, std::size_t end) const;
  std::size_t LineOf(std::size_t offset) const;
  /// Where a line's secret begins; npos without one. The lines are known already.
  std::size_t HiddenFrom(std::size_t line) const;
  Item WholeLine(std::size_t line) const;

  std::string text_;
  ConfigFile file_{/*caseSensitive=*/false};
  std::vector<Line> lines_;
  std::vector<Section> sections_;
  std::vector<Home> homes_;
  // Made when the first place is asked for: where each line of the text begins, and the part of it
  // that must not be shown (npos when there is none).
  mutable std::vector<std::size_t> lineStarts_;
  mutable std::vector<std::size_t> hiddenFrom_;
};

/// What a key is in a section of that kind, and its number.
struct Match {
  Key key;
  std::uint32_t number;
};
std::optional<Match> MatchKey(SectionKind section, std::string_view name);

}  // namespace tool::check
