// The documentation of the findings is true: every code is there under its title, its example
// yields it, and the mended example yields nothing.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "base/LetterCase.h"
#include "tests/support/ToolTest.h"
#include "tool/check/FindingTable.h"

namespace {

using Codes = std::set<std::string>;

/// The tests run in the project's folder.
constexpr char kDoc[] = "docs/findings.md";

/// Cannot be shown by a short text.
const Codes kWithoutExample{"C001", "C003", "C016"};

/// In a difference the lines of the faulty text begin with "-", those of the mended one with "+".
struct Block {
  std::string kind;
  std::string text;
};

struct Example {
  /// "### " and what follows.
  std::string heading;
  std::vector<Block> blocks;
};

/// The bytes that "\xFF" and "\n" stand for.
std::string Unescaped(const std::string& text) {
  std::string bytes;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '\\') {
      bytes += text[i];
    } else if (text[++i] == 'n') {
      bytes += '\n';
    } else {
      bytes += static_cast<char>(std::stoi(text.substr(i + 1, 2), nullptr, 16));
      i += 2;
    }
  }
  return bytes;
}

/// The faulty or the mended text, by the sign of its own lines.
std::string SideOf(const Block& block, char sign) {
  if (!block.kind.starts_with("diff")) return block.text;
  std::string side;
  std::istringstream lines(block.text);
  for (std::string line; std::getline(lines, line);) {
    if (!line.empty() && line[0] != ' ' && line[0] != sign) continue;
    const std::string text = line.empty() ? "" : line.substr(1);
    side += block.kind == "diff bytes" ? Unescaped(text) : text + "\n";
  }
  return side;
}

std::map<std::string, Example> ReadDoc() {
  std::ifstream doc(kDoc);
  std::map<std::string, Example> examples;
  Example* example = nullptr;
  bool isInBlock = false;
  for (std::string line; std::getline(doc, line);) {
    if (line.starts_with("### ")) {
      example = &examples[line.substr(4, 4)];
      example->heading = line;
    } else if (line.starts_with("```")) {
      isInBlock = !isInBlock;
      if (isInBlock) example->blocks.push_back({line.substr(3), ""});
    } else if (isInBlock) {
      example->blocks.back().text += line + "\n";
    }
  }
  return examples;
}

class FindingsDocTest : public support::ToolTest {
 protected:
  /// Checks the faulty or the mended texts of an example.
  void Check(const Example& example, char sign, const char* option) {
    std::vector<std::string> arguments{"check", option};
    for (const Block& block : example.blocks) {
      const std::string text = SideOf(block, sign);
      const bool isMachine = text.starts_with('{');
      if (isMachine) arguments.emplace_back("--machine");
      const std::string number = std::to_string(arguments.size());
      arguments.push_back(Write(number + (isMachine ? ".json" : ".cfg"), text));
    }
    Run(arguments);
  }

  Codes CodesFor(const Example& example, char sign) {
    Check(example, sign, "--json");
    EXPECT_EQ(err_, "");
    Codes codes;
    const auto report = support::Json::parse(out_);
    for (const auto& finding : report["findings"]) {
      codes.insert(finding["code"].get<std::string>());
    }
    return codes;
  }
};

TEST_F(FindingsDocTest, EveryExampleYieldsItsOwnFindingUntilItIsMended) {
  const std::map<std::string, Example> examples = ReadDoc();
  ASSERT_EQ(examples.size(), std::size(tool::check::kFindingKinds));
  for (const tool::check::FindingKind& kind : tool::check::kFindingKinds) {
    SCOPED_TRACE(kind.id);
    const auto found = examples.find(kind.id);
    ASSERT_NE(found, examples.end());
    const Example& example = found->second;
    EXPECT_EQ(example.heading, "### " + std::string(kind.id) + " " + kind.title + " (" +
                                   TextOf(kind.severity) + ")");
    Codes expected{kind.id};
    if (expected == Codes{"C509"}) expected.insert("C202");  // tells of any host name
    if (kWithoutExample.contains(kind.id)) {
      EXPECT_TRUE(example.blocks.empty());
    } else {
      EXPECT_EQ(CodesFor(example, '-'), expected);
      EXPECT_EQ(CodesFor(example, '+'), Codes{}) << "mended";
    }
  }
}

TEST_F(FindingsDocTest, TheExamplesThatAreFixedAreNamed) {
  Codes fixed;
  for (const auto& [code, example] : ReadDoc()) {
    Check(example, '-', "--fix");
    if (!out_.empty()) fixed.insert(code);
  }
  std::string doc = support::ReadText(kDoc);
  const std::size_t begin = doc.find("`--fix` fixes the examples of ");
  ASSERT_NE(begin, std::string::npos);
  doc = doc.substr(begin, doc.find('.', begin) - begin);
  Codes named;
  for (std::size_t at = doc.find(" C"); at != std::string::npos; at = doc.find(" C", at + 1)) {
    named.insert(doc.substr(at + 1, 4));
  }
  EXPECT_EQ(fixed, named);
}

TEST_F(FindingsDocTest, EveryRuleLeadsToItsHeading) {
  // What a renderer of the document makes of a heading.
  Codes anchors;
  for (const auto& [code, example] : ReadDoc()) {
    std::string anchor = std::regex_replace(example.heading.substr(4), std::regex("[^\\w -]"), "");
    std::replace(anchor.begin(), anchor.end(), ' ', '-');
    anchors.insert("docs/findings.md#" + base::Folded(anchor));
  }
  Run({"check", "--sarif", Write("a.cfg", "[Global]\nScheduleId=7\n")});
  Codes led;
  const auto report = support::Json::parse(out_);
  for (const auto& rule : report["runs"][0]["tool"]["driver"]["rules"]) {
    led.insert(rule["helpUri"].get<std::string>());
  }
  EXPECT_EQ(led, anchors);
}

}  // namespace
