#include <gtest/gtest.h>

#include <cstdint>
#include <iterator>
#include <map>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "handlers/internal/ConfigFile.h"
#include "tests/support/ConfigModel.h"
#include "tests/support/MachineTest.h"

namespace {

using support::Entries;
using support::Sections;

std::string Value(ConfigFile* file, std::string_view section, std::string_view key) {
  std::string value = "unset";
  const auto result = file->ReadValue(section, key, &value);
  const auto view = file->FindValue(section, key);
  EXPECT_EQ(view.has_value(), result == ConfigFile::kSuccess);
  EXPECT_EQ(view.value_or(value), value);
  return result == ConfigFile::kSuccess ? value : value + std::to_string(result);
}

TEST(ConfigFileTest, LookUpsFindTheFirstMatch) {
  const struct {
    const char *section, *key, *loose, *exact;
  } cases[] = {
      {"nEt", "dhcp", "1", "unset5"},       {"Net", "dhcp", "1", "2"},
      {"Net", "Dhcp", "1", "unset4"},       {"Net", "LONG-KEY-NAME", "4", "unset4"},
      {"Net", "\xE4", "unset4", "unset4"},  {"NET", "OTHER", "5", "unset4"},
      {"NET", "other", "5", "5"},           {"Net", "other", "5", "unset4"},
      {"Nets", "DHCP", "unset5", "unset5"},
  };
  for (const bool caseSensitive : {false, true}) {
    ConfigFile file{caseSensitive};
    file.Parse("[Net]\nDHCP=1\ndhcp=2\n\xC4=3\nlong-key-name=4\n[NET]\nother=5\n", /*merge=*/false);
    for (const auto& c : cases) {
      EXPECT_EQ(Value(&file, c.section, c.key), caseSensitive ? c.exact : c.loose) << c.section;
    }
    EXPECT_EQ(file.EntryCount("net"), caseSensitive ? 0U : 5U);
  }
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
  EXPECT_EQ(support::SectionsOf(file), (Sections{{"", {{"x", "1"}}},
                                                 {"s", {{"a", "1"}, {"b", "2"}}},
                                                 {"t", {}},
                                                 {"u", {}},
                                                 {"v", {{"y", "2"}}}}));
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
  using namespace std::string_view_literals;
  constexpr std::string_view kSigns = "\n\n\n\n==  \t[];#\rx\xE4\0"sv;
  constexpr const char* kPieces[] = {
      "\r\n", "\nmore",   "[s]\n", "[T]\n", "[]\n", "k=v\n",         "K=V\n",
      "key1", "EightKey", "kay1",  "KEY1",  "@[{`", "LongKeyName-1", "[long section name]\n"};
  std::mt19937 random(20);
  const auto randomText = [&] {
    std::string text;
    for (auto count = random() % 80 + 1; count != 0; --count) {
      const auto piece = random() % (kSigns.size() + std::size(kPieces));
      if (piece < kSigns.size()) text += kSigns[piece];
      if (piece >= kSigns.size()) text += kPieces[piece - kSigns.size()];
    }
    return text;
  };
  for (int round = 0; round < 1500; ++round) {
    support::ConfigModel model;
    ConfigFile file{/*caseSensitive=*/false};
    for (int load = 0; load < 3; ++load) {
      const std::string text = randomText();
      const bool merge = load != 0;
      ASSERT_EQ(file.Parse(text, merge), model.Parse(text, merge)) << text;
      ASSERT_EQ(support::Disagreement(file, model), "") << text;
      if (!merge) ExpectLinesTellAll(text, model.sections);
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
