// The agent's configuration file in memory: sections of key=value entries, in file order and with
// comments. Texts are not copied; names, keys and values are ranges of the loaded text:
//
//   text_    sections_    first  last    entries_  line  next
//   [A]      0 (unnamed)    0     0      0 (none)          0
//   x=1      1 A            1     3      1         x=1     3
//   [B]      2 B            2     2      2         y=2     0
//   y=2                                  3         z=3     0
//   [A]
//   z=3
//
// An entry is its line, which is split when it is asked for, and a link to the next entry of its
// section: a section that is opened again continues where it ended. When its value is no longer
// that of its line, after a continuation or a merge, the entry is a pair in `changed_`. A continued
// value is in no file as one piece; it is put together in `extra_`.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "handlers/internal/HashTables.h"

/// Reads the sectioned key=value format. Names and keys are found by hash, so a look-up does not
/// slow down with the file; loading takes time in proportion to the text, with any content.
///
/// Duplicate keys stay separate entries; a look-up finds the first. A comment is an entry with an
/// empty key and the whole line as value. Outputs keep their values unless kSuccess is returned.
/// Any operation may throw std::bad_alloc. Not for use by several threads at once.
class ConfigFile {
 public:
  /// What the operations return; the numbers reach the agent.
  enum Result : std::int32_t {
    kSuccess = 0,
    kUnreadable = 3,      ///< not readable in full, empty, too large, or a header without "]"
    kNoEntry = 4,         ///< no such key, or no further entry
    kNoSection = 5,       ///< no such section, or no further section
    kSectionPresent = 6,  ///< an insertion was refused
    kNoWalk = 7,          ///< the next entry was asked for without a first one
    kReplaced = 9,        ///< a merging load succeeded and replaced at least one value
    kNoMemory = 10,       ///< no memory for the file's content
  };

  /// What a line of a text became.
  struct Line {
    enum class Kind : std::uint8_t { kHeader, kOpenHeader, kComment, kEntry, kContinuation };
    /// Where the line is in the text, without the blanks at its ends.
    std::uint32_t offset = 0;
    std::uint32_t length = 0;
    /// Number of the section that the line opened or that was open; 0 is the unnamed one.
    std::uint32_t section = 0;
    /// Number of the entry that the line made or, as a continuation, was added to; 0 for headers.
    std::uint32_t entry = 0;
    Kind kind = Kind::kEntry;
  };

  /// An empty file. Unless `caseSensitive`, the letter case of ASCII letters in section names and
  /// keys does not count.
  explicit ConfigFile(bool caseSensitive) : caseSensitive_(caseSensitive) {}

  /// Reads and parses the file `path`. Only kSuccess makes it the remembered file name; returns
  /// kNoMemory when its content does not fit into memory, otherwise what `Parse` returns.
  Result Load(const std::string& path, bool merge);

  /// Parses `text`, after dropping what was loaded before unless `merge` is set. A merging load
  /// replaces the value of a key that is present already when it differs by more than letter case.
  /// Ends both walks. When a section header has no "]", parsing stops there with kUnreadable and
  /// the sections hold what preceded it; an empty text or one of 2 GiB and more changes nothing.
  ///
  /// Stores in `lines`, unless that is null, what became of every line but the empty ones. A header
  /// without "]" is then a `kOpenHeader`: it fails the load as ever, but parsing continues after it
  /// as if the "]" were at its end.
  Result Parse(std::string text, bool merge, std::vector<Line>* lines = nullptr);

  /// An entry by what a line became; the views hold until the next load or insertion.
  struct Entry {
    std::string_view key;
    std::string_view value;
    /// Number of the entry that a look-up of the key finds.
    std::uint32_t first = 0;
  };
  Entry EntryOf(const Line& line);
  std::string_view SectionOf(const Line& line) const { return View(sections_[line.section].name); }

  /// Copies the value of the first entry with that key.
  Result ReadValue(std::string_view section, std::string_view key, std::string* value);

  /// The same without copying: the view holds until the next load or insertion.
  std::optional<std::string_view> FindValue(std::string_view section, std::string_view key);

  /// Number of entries of a section, comments included; 0 when there is no such section.
  std::size_t EntryCount(std::string_view section);

  /// Starts a walk over a section's entries; it counts as started even when nothing is found.
  Result GetFirstEntry(std::string_view section, std::string* key, std::string* value);
  Result GetNextEntry(std::string* key, std::string* value);

  /// Starts a walk over the section names. The section without a name, if any, comes first. The
  /// two kinds of walk do not disturb each other.
  Result GetFirstSection(std::string* name);
  Result GetNextSection(std::string* name);

  /// Adds an empty section at the end, or at the front when its name is empty. Ends both walks.
  Result InsertSection(std::string_view section);

  /// Path of the last file that was loaded with kSuccess; empty before.
  const std::string& FileName() const { return fileName_; }

  /// "\r\n" or "\n": the style of the last line that was parsed.
  std::string_view LineEnding() const { return lastLineHadReturn_ ? "\r\n" : "\n"; }

 private:
  /// A part of `text_`, or of `extra_` when the offset is after its end.
  struct Range {
    std::uint32_t offset = 0;
    std::uint32_t length = 0;
  };
  struct Pair {
    Range key;
    Range value;
  };
  struct Record {
    Range line;              // of length kChanged: the offset is a place in `changed_`
    std::uint32_t next = 0;  // entry of the section
  };
  static constexpr std::uint32_t kChanged = 0xFFFFFFFF;
  struct Found {
    std::uint32_t entry = 0;  // 0 for none
    Pair pair;
  };
  struct Section {
    Range name;
    std::uint32_t first = 0;  // entry
    std::uint32_t last = 0;
    std::uint32_t count = 0;
    std::uint32_t indexed = 0;  // the last entry that `keys` knows
    HashTables::Table keys;     // finds the first entry of each key
  };
  class Parser;

  std::string_view View(Range range) const;
  Range RangeOf(std::string_view part) const;

  bool HasUnnamed() const { return unnamedOpened_ || sections_[0].count != 0; }
  std::optional<std::uint32_t> FindSection(std::string_view name);
  std::uint32_t OpenSection(Range name);
  std::uint32_t LookUpSection(std::string_view name, std::uint32_t ifAbsent);

  std::uint32_t AddEntry(std::uint32_t section, Range line);
  Pair PairOf(std::uint32_t entry) const;
  Pair Split(Range line) const;
  Range Changed(const Pair& pair);
  Found FindEntry(std::uint32_t section, std::string_view key);
  Found LookUpKey(const HashTables::Table& keys, std::string_view key, std::uint32_t ifAbsent);

  void EndWalks() { nextEntry_ = nextSection_ = std::nullopt; }

  bool caseSensitive_;
  // An address, which differs from run to run: no file can aim its keys at one slot of a table.
  std::uint64_t seed_ = reinterpret_cast<std::uintptr_t>(this);
  std::string fileName_;
  bool lastLineHadReturn_ = false;

  std::string text_;                          // what was loaded
  std::string extra_;                         // its offsets continue those of `text_`
  std::vector<Section> sections_{Section()};  // sections_[0] is the unnamed one, opened or not
  bool unnamedOpened_ = false;
  std::vector<Record> entries_{Record()};
  std::vector<Pair> changed_;
  HashTables tables_;
  HashTables::Table sectionTable_;

  // What a walk returns next.
  std::optional<std::uint32_t> nextEntry_;
  std::optional<std::uint32_t> nextSection_;
};
