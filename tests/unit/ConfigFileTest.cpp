#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <map>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "handlers/internal/ConfigFile.h"
#include "tests/support/MachineTest.h"

namespace {

using Entries = std::vector<std::pair<std::string, std::string>>;
using Sections = std::vector<std::pair<std::string, Entries>>;

Entries EntriesOf(ConfigFile* file, const std::string& section) {
  Entries entries;
  std::string key, value;
  for (auto result = file->GetFirstEntry(section, &key, &value); result == ConfigFile::kSuccess;
       result = file->GetNextEntry(&key, &value)) {
    entries.emplace_back(key, value);
  }
  return entries;
}

Sections SectionsOf(ConfigFile* file) {
  Sections sections;
  std::string name;
  for (auto result = file->GetFirstSection(&name); result == ConfigFile::kSuccess;
       result = file->GetNextSection(&name)) {
    sections.emplace_back(name, EntriesOf(file, name));
  }
  return sections;
}

/// The sections as one line: "[name] key:value, key:value [name]", with "|" for a line feed.
std::string Show(ConfigFile* file) {
  std::string shown;
  for (const auto& [name, entries] : SectionsOf(file)) {
    shown += (shown.empty() ? "[" : " [") + name + "]";
    const char* separator = " ";
    for (const auto& [key, value] : entries) {
      shown += std::exchange(separator, ", ") + key + ":" + value;
    }
  }
  std::replace(shown.begin(), shown.end(), '\n', '|');
  return shown;
}

std::string Value(ConfigFile* file, std::string_view section, std::string_view key) {
  std::string value = "unset";
  const auto result = file->ReadValue(section, key, &value);
  const auto view = file->FindValue(section, key);
  EXPECT_EQ(view.has_value(), result == ConfigFile::kSuccess);
  EXPECT_EQ(view.value_or(value), value);
  return result == ConfigFile::kSuccess ? value : value + std::to_string(result);
}

TEST(ConfigFileTest, KeepsSectionsAndEntriesInFileOrder) {
  const struct {
    const char *name, *text, *shown;
  } cases[] = {
      {"blanks round all parts are dropped", " [ Net ] \n  Key = a=b  \n\t x\t=\ty z\t",
       "[Net] Key:a=b, x:y z"},
      {"text behind the bracket stays", "[Net] x\n[a]b]\n[]c\n", "[Net x] [ab]] [c]"},
      {"a header may hold a sign of its own", "[a=b;]\n[;#]\nk=v", "[a=b;] [;#] k:v"},
      {"entries before a header are unnamed", "a=1\n[s]\nb=2\n", "[] a:1 [s] b:2"},
      {"the unnamed section comes first", "[s]\na=1\n[ ]\nb=2\n[t]\n", "[] b:2 [s] a:1 [t]"},
      {"a header names its section again", "[s]\na=1\n[t]\n[S]\nb=2\n[T]\nc=3\n[s]\nd=4\n",
       "[s] a:1, b:2, d:4 [t] c:3"},
      {"duplicates stay", "[s]\nDHCP=1\ndhcp=2\nDHCP=1\n", "[s] DHCP:1, dhcp:2, DHCP:1"},
      {"comments stay whole", "[s]\n ; a = b \n#c\n;\nk=v;w\n", "[s] :; a = b, :#c, :;, k:v;w"},
      {"keys and values may be empty", "=v\nk=\n=\n", "[] :v, k:, :"},
      {"empty lines are skipped", "\n\r\n  \n\t\r\n[s]\n\nk=v\n\n", "[s] k:v"},
      {"the first return of a line goes", "[s]\r\na\rb=c\r\nd=e\rf\r\ng=\r\r\n",
       "[s] ab:c\r, d:ef\r, g:\r"},
      {"a line feed need not end the text", "[s]\na=b\r", "[s] a:b"},
      {"a line without a sign continues the value", "[s]\nRoute1=10.0.0.0\n\n  Second \n[x\n",
       "unreadable"},
      {"continuations pile up", "[s]\nk=a\n b\n\n\tc \r\nl=\nd\n", "[s] k:a|b|c, l:|d"},
      {"a continuation without an entry", "a\nb\n[s]\nk=v\n", "[] :|a|b [s] k:v"},
      {"a comment is continued too", ";c\nd\n", "[] :;c|d"},
      {"a second comment's goes to the first", ";c\n;d\ne\n", "[] :;d|e, :;d"},
      {"a duplicate's goes to the first", "k=1\nK=2\n3\n4\n", "[] k:2|3|4, K:2"},
      {"across a header it makes an entry", "k=1\n[s]\n2\n[t]\nk=5\n[s]\n3\n",
       "[] k:1 [s] k:5|3 [t] k:5"},
      {"each section keeps its state of it", "k=1\n[s]\n2\n[t]\n3\n4\n[s]\n5\n",
       "[] k:1 [s] k:1|2|3|4|5 [t] k:1|2|3|4"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    ConfigFile file{/*caseSensitive=*/false};
    const auto result = file.Parse(c.text, /*merge=*/false);
    EXPECT_EQ(result == ConfigFile::kSuccess ? Show(&file) : "unreadable", c.shown);
  }
}

TEST(ConfigFileTest, MergingReplacesOnlyValuesThatDiffer) {
  const struct {
    const char *name, *first, *second, *shown;
    ConfigFile::Result result;
  } cases[] = {
      {"another value replaces", "[s]\nk=1\nK=2\n", "[S]\nK=3\n", "[s] k:3, K:2",
       ConfigFile::kReplaced},
      {"letter case is no difference", "[s]\nk=aZ[\n", "[s]\nk=Az[\n", "[s] k:aZ[",
       ConfigFile::kSuccess},
      {"neighbours of letters are one", "[s]\nk=@[\n", "[s]\nk=`{\n", "[s] k:`{",
       ConfigFile::kReplaced},
      {"new keys and sections are added", "[s]\nk=1\n[t]\na=b", "[s]\nl=2\n[u]\nk=3\n",
       "[s] k:1, l:2 [t] a:b [u] k:3", ConfigFile::kSuccess},
      {"within the merged text as well", "[s]\nk=1\n", "[s]\nn=1\nn=2\n", "[s] k:1, n:2",
       ConfigFile::kReplaced},
      {"comments are added", ";a\n", ";a\n", "[] :;a, :;a", ConfigFile::kSuccess},
      {"an empty key meets a comment", ";a\n", "=b\n", "[] :b", ConfigFile::kReplaced},
      {"a continuation alone replaces nothing", "[s]\nk=V\n", "[s]\nk=v\nw\n", "[s] k:v|w",
       ConfigFile::kSuccess},
      {"continued values survive", "[s]\nk=1\n2\n", "[s]\nl=3\n4\n", "[s] k:1|2, l:3|4",
       ConfigFile::kSuccess},
      {"an earlier text is not continued", "k=1\n", "2\n", "[] k:1, :|2", ConfigFile::kSuccess},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    ConfigFile file{/*caseSensitive=*/false};
    file.Parse(c.first, /*merge=*/false);
    EXPECT_EQ(file.Parse(c.second, /*merge=*/true), c.result);
    EXPECT_EQ(Show(&file), c.shown);
  }
}

TEST(ConfigFileTest, LookUpsFindTheFirstMatch) {
  const std::string text = "[Net]\nDHCP=1\ndhcp=2\n\xC4=3\nlong-key-name=4\n[NET]\nother=5\n";
  ConfigFile loose{/*caseSensitive=*/false};
  loose.Parse(text, /*merge=*/false);
  EXPECT_EQ(Value(&loose, "nEt", "dhcp"), "1");
  EXPECT_EQ(Value(&loose, "Net", "LONG-KEY-NAME"), "4");
  EXPECT_EQ(Value(&loose, "Net", "\xE4"), "unset4");
  EXPECT_EQ(Value(&loose, "NET", "OTHER"), "5");
  EXPECT_EQ(Value(&loose, "Nets", "DHCP"), "unset5");
  EXPECT_EQ(loose.EntryCount("net"), 5U);

  ConfigFile exact{/*caseSensitive=*/true};
  exact.Parse(text, /*merge=*/false);
  EXPECT_EQ(Value(&exact, "Net", "dhcp"), "2");
  EXPECT_EQ(Value(&exact, "Net", "Dhcp"), "unset4");
  EXPECT_EQ(Value(&exact, "Net", "other"), "unset4");
  EXPECT_EQ(Value(&exact, "NET", "other"), "5");
  EXPECT_EQ(Value(&exact, "net", "other"), "unset5");
}

TEST(ConfigFileTest, ANulIsAnOrdinaryCharacter) {
  const std::string nul(1, '\0');
  ConfigFile file{/*caseSensitive=*/false};
  file.Parse("[s" + nul + "t]\nk" + nul + "=" + nul + "v\nk=w\n", /*merge=*/false);
  EXPECT_EQ(Value(&file, "s" + nul + "T", "K" + nul), nul + "v");
}

TEST(ConfigFileTest, WalksEndWithEveryLoadAndInsertion) {
  ConfigFile file{/*caseSensitive=*/false};
  std::string key, value, name;
  EXPECT_EQ(file.GetNextEntry(&key, &value), ConfigFile::kNoWalk);
  EXPECT_EQ(file.GetFirstSection(&name), ConfigFile::kNoSection);
  EXPECT_EQ(file.GetFirstEntry("s", &key, &value), ConfigFile::kNoSection);
  EXPECT_EQ(file.GetNextEntry(&key, &value), ConfigFile::kNoEntry) << "the walk is active";

  const auto startWalks = [&] {
    EXPECT_EQ(file.GetFirstSection(&name), ConfigFile::kSuccess);
    EXPECT_EQ(file.GetFirstEntry("s", &key, &value), ConfigFile::kSuccess);
  };
  const auto expectEnded = [&] {
    EXPECT_EQ(file.GetNextEntry(&key, &value), ConfigFile::kNoWalk);
    EXPECT_EQ(file.GetNextSection(&name), ConfigFile::kNoSection);
  };
  file.Parse("[s]\na=1\nb=2\n[t]\n", /*merge=*/false);
  expectEnded();
  startWalks();
  EXPECT_EQ(file.GetNextEntry(&key, &value), ConfigFile::kSuccess);
  EXPECT_EQ(file.GetNextEntry(&key, &value), ConfigFile::kNoEntry);
  EXPECT_EQ(file.GetNextSection(&name), ConfigFile::kSuccess);
  EXPECT_EQ(name + key + value, "tb2") << "outputs stay when nothing follows";
  EXPECT_EQ(file.GetFirstEntry("t", &key, &value), ConfigFile::kNoEntry);
  startWalks();
  file.Parse("[u]\n", /*merge=*/true);
  expectEnded();
  startWalks();
  EXPECT_EQ(file.InsertSection("S"), ConfigFile::kSectionPresent);
  EXPECT_EQ(file.InsertSection("v"), ConfigFile::kSuccess);
  expectEnded();
  EXPECT_EQ(file.InsertSection(""), ConfigFile::kSuccess);
  file.Parse("x=1\n[V]\ny=2\n", /*merge=*/true);
  EXPECT_EQ(Show(&file), "[] x:1 [s] a:1, b:2 [t] [u] [v] y:2");
}

TEST(ConfigFileTest, RecordsTheLastLineEnding) {
  const struct {
    const char *text, *ending;
  } cases[] = {{"a=1\r\nb=2\r\n", "\r\n"},
               {"a=1\r\nb=2", "\n"},
               {"a=1\nb=2\r", "\r\n"},
               {"a=1\r\n\n", "\n"}};
  for (const auto& c : cases) {
    ConfigFile file{/*caseSensitive=*/false};
    file.Parse(c.text, /*merge=*/false);
    EXPECT_EQ(file.LineEnding(), c.ending) << c.text;
  }
}

TEST(ConfigFileTest, AHeaderWithoutBracketEndsTheParse) {
  ConfigFile file{/*caseSensitive=*/false};
  file.Parse("[old]\n", /*merge=*/false);
  EXPECT_EQ(file.Parse("", /*merge=*/false), ConfigFile::kUnreadable);
  EXPECT_EQ(Show(&file), "[old]") << "an empty text changes nothing";
  EXPECT_EQ(file.Parse("[s]\r\nk=1\r\n  [t\r\nl]=2\r\n", /*merge=*/false), ConfigFile::kUnreadable);
  EXPECT_EQ(Show(&file), "[s] k:1");
}

/// What became of the lines: "header s, entry k:1, ..." with "!" where a look-up finds an earlier
/// entry.
std::string ShowLines(const std::string& text, ConfigFile::Result expected) {
  constexpr const char* kKinds[] = {"header", "open", "comment", "entry", "more"};
  ConfigFile file{/*caseSensitive=*/false};
  std::vector<ConfigFile::Line> lines;
  EXPECT_EQ(file.Parse(text, /*merge=*/false, &lines), expected);
  std::string shown;
  for (const ConfigFile::Line& line : lines) {
    shown += shown.empty() ? "" : ", ";
    shown += kKinds[static_cast<std::size_t>(line.kind)];
    shown += "@" + std::to_string(line.offset) + "+" + std::to_string(line.length) + " ";
    shown += file.SectionOf(line);
    if (line.entry == 0) continue;
    const ConfigFile::Entry entry = file.EntryOf(line);
    shown.append("/").append(entry.key).append(":").append(entry.value);
    if (entry.first != line.entry) shown += "!";
  }
  std::replace(shown.begin(), shown.end(), '\n', '|');
  return shown;
}

TEST(ConfigFileTest, TellsWhatBecameOfEachLine) {
  const struct {
    const char *name, *text, *shown;
    ConfigFile::Result result;
  } cases[] = {
      {"blanks and returns are left out", " [s] \r\n\r\n\tk = 1 \r\n;c",
       "header@1+3 s, entry@10+5 s/k:1, comment@18+2 s/:;c", ConfigFile::kSuccess},
      {"the values are the final ones", "a=1\nb\na=2\nc\n",
       "entry@0+3 /a:2|c, more@4+1 /a:2|c, entry@6+3 /a:2!, more@10+1 /a:2|c",
       ConfigFile::kSuccess},
      {"a continuation may make an entry", "a=1\n[s]\nb\n",
       "entry@0+3 /a:1, header@4+3 s, more@8+1 s/a:1|b", ConfigFile::kSuccess},
      {"an open header is taken as closed", "[s\nk=1\n[t\nl=2\n",
       "open@0+2 s, entry@3+3 s/k:1, open@7+2 t, entry@10+3 t/l:2", ConfigFile::kUnreadable},
      {"text behind the bracket is named", "[s] t\n", "header@0+5 s t", ConfigFile::kSuccess},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(ShowLines(c.text, c.result), c.shown);
  }
}

using ConfigFileLoadTest = support::MachineTest;

TEST_F(ConfigFileLoadTest, OnlyASuccessfulLoadIsRemembered) {
  machine_.files = {{"C:\\good.cfg", "[s]\nk=1\n"},
                    {"C:\\other.cfg", "[s]\nk=2\n"},
                    {"C:\\bad.cfg", "[s]\nk=3\n[t\n"},
                    {"C:\\empty.cfg", ""}};
  const struct {
    const char* path;
    bool merge;
    ConfigFile::Result result;
    const char *fileName, *value;
  } loads[] = {
      {"C:\\missing.cfg", false, ConfigFile::kUnreadable, "", "unset5"},
      {"C:\\good.cfg", false, ConfigFile::kSuccess, "C:\\good.cfg", "1"},
      {"C:\\empty.cfg", false, ConfigFile::kUnreadable, "C:\\good.cfg", "1"},
      {"C:\\other.cfg", true, ConfigFile::kReplaced, "C:\\good.cfg", "2"},
      {"C:\\bad.cfg", false, ConfigFile::kUnreadable, "C:\\good.cfg", "3"},
      {"C:\\other.cfg", false, ConfigFile::kSuccess, "C:\\other.cfg", "2"},
  };
  ConfigFile file{/*caseSensitive=*/false};
  for (const auto& load : loads) {
    SCOPED_TRACE(load.path);
    std::string name;
    file.GetFirstSection(&name);
    EXPECT_EQ(file.Load(load.path, load.merge), load.result);
    EXPECT_EQ(file.FileName(), load.fileName);
    EXPECT_EQ(file.GetNextSection(&name), ConfigFile::kNoSection) << "the walk has ended";
    EXPECT_EQ(Value(&file, "s", "k"), load.value);
  }
}

/// The rules once more, in the plainest form.
class Model {
 public:
  ConfigFile::Result Parse(std::string text, bool merge) {
    if (!merge) sections.clear();
    std::string current;
    std::pair<std::string, std::string> previous;
    auto result = ConfigFile::kSuccess;
    while (!text.empty()) {
      std::string line = text.substr(0, text.find('\n'));
      text.erase(0, line.size() + 1);
      if (const auto at = line.find('\r'); at != line.npos) line.erase(at, 1);
      line = Trim(line);
      if (line.empty()) continue;
      const auto equals = line.find('=');
      if (line[0] == '[') {
        if (line.find(']') == line.npos) return ConfigFile::kUnreadable;
        line.erase(line.find(']'), 1);
        Open(current = Trim(line.substr(1)));
      } else if (line[0] == ';' || line[0] == '#') {
        Open(current).push_back(previous = {"", line});
      } else if (equals != line.npos) {
        previous = {Trim(line.substr(0, equals)), Trim(line.substr(equals + 1))};
        std::string* const stored = merge ? Find(current, previous.first) : nullptr;
        if (stored == nullptr) {
          Open(current).push_back(previous);
        } else if (Lower(*stored) != Lower(previous.second)) {
          *stored = previous.second;
          result = ConfigFile::kReplaced;
        }
      } else {
        previous.second += "\n" + line;
        if (std::string* const stored = Find(current, previous.first)) {
          *stored = previous.second;
        } else {
          Open(current).push_back(previous);
        }
      }
    }
    return result;
  }

  std::string* Find(const std::string& section, const std::string& key) {
    for (auto& [name, entries] : sections) {
      if (Lower(name) != Lower(section)) continue;
      for (auto& [entryKey, value] : entries) {
        if (Lower(entryKey) == Lower(key)) return &value;
      }
    }
    return nullptr;
  }

  Sections sections;

 private:
  static std::string Trim(const std::string& text) {
    const auto begin = text.find_first_not_of(" \t");
    return begin == text.npos ? "" : text.substr(begin, text.find_last_not_of(" \t") + 1 - begin);
  }

  static std::string Lower(std::string text) {
    for (char& c : text) c = c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
    return text;
  }

  Entries& Open(const std::string& name) {
    for (auto& section : sections) {
      if (Lower(section.first) == Lower(name)) return section.second;
    }
    const auto where = name.empty() ? sections.begin() : sections.end();
    return sections.insert(where, {name, {}})->second;
  }
};

/// What the lines of a text became are the same entries, unless the text was refused.
void ExpectLinesTellAll(const std::string& text, const Sections& expected) {
  ConfigFile file{/*caseSensitive=*/false};
  std::vector<ConfigFile::Line> lines;
  if (file.Parse(text, /*merge=*/false, &lines) != ConfigFile::kSuccess) return;
  std::map<std::string, std::map<std::uint32_t, std::pair<std::string, std::string>>> told;
  for (const ConfigFile::Line& line : lines) {
    auto& section = told[std::string(file.SectionOf(line))];
    if (line.entry == 0) continue;
    const ConfigFile::Entry entry = file.EntryOf(line);
    section[line.entry] = {std::string(entry.key), std::string(entry.value)};
  }
  ASSERT_EQ(told.size(), expected.size()) << text;
  for (const auto& [name, entries] : expected) {
    Entries ofLines;
    for (const auto& [number, entry] : told[name]) ofLines.push_back(entry);
    EXPECT_EQ(ofLines, entries) << text;
  }
}

TEST(ConfigFileTest, AgreesWithThePlainRulesOnRandomTexts) {
  const std::string_view pieces[] = {"\n",
                                     "\n",
                                     "\n",
                                     "\r\n",
                                     "=",
                                     "=",
                                     " ",
                                     "\t",
                                     "[",
                                     "]",
                                     ";",
                                     "#",
                                     "\r",
                                     "[s]\n",
                                     "[T]\n",
                                     "[]\n",
                                     "[long section name]\n",
                                     "k=v\n",
                                     "K=V\n",
                                     "key1",
                                     "KEY1",
                                     "LongKeyName-1",
                                     "x",
                                     "\nmore",
                                     "\xE4"};
  std::mt19937 random(20);
  const auto randomText = [&] {
    std::string text;
    for (auto count = random() % 80 + 1; count != 0; --count)
      text += pieces[random() % std::size(pieces)];
    return text;
  };
  for (int round = 0; round < 4000; ++round) {
    Model model;
    ConfigFile file{/*caseSensitive=*/false};
    for (int load = 0; load < 3; ++load) {
      const std::string text = randomText();
      const bool merge = load != 0;
      ASSERT_EQ(file.Parse(text, merge), model.Parse(text, merge)) << text;
      ASSERT_EQ(SectionsOf(&file), model.sections) << text;
      if (!merge) ExpectLinesTellAll(text, model.sections);
      for (const auto& [name, entries] : model.sections) {
        for (const auto& [key, value] : entries) {
          ASSERT_EQ(Value(&file, name, key), *model.Find(name, key)) << text;
        }
      }
    }
  }
}

TEST(ConfigFileTest, LargeTablesFindEverySectionAndKey) {
  std::string text;
  for (int i = 0; i < 5000; ++i) {
    const std::string number = std::to_string(i);
    text += "[all]\nkey" + number + "=" + number + "\n  more\n[section" + number +
            "]\nk=" + number + "\n";
  }
  ConfigFile file{/*caseSensitive=*/false};
  ASSERT_EQ(file.Parse(text, /*merge=*/false), ConfigFile::kSuccess);
  EXPECT_EQ(file.EntryCount("all"), 5000U);
  for (int i = 0; i < 5000; ++i) {
    const std::string number = std::to_string(i);
    ASSERT_EQ(Value(&file, "ALL", "KEY" + number), number + "\nmore");
    ASSERT_EQ(Value(&file, "Section" + number, "K"), number);
  }
}

}  // namespace
