// The documentation of the findings is true: every code is there under its title, and its example
// yields it.
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "tests/support/ToolTest.h"
#include "tool/check/FindingTable.h"

namespace {

using Codes = std::set<std::string>;

/// The tests run in the project's folder.
constexpr char kDoc[] = "docs/findings.md";

/// Cannot be shown by a short text.
const Codes kWithoutExample{"C001", "C003", "C016"};

struct Example {
  /// "### " and what follows.
  std::string heading;
  std::vector<std::string> files;
  std::string machine;
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

std::map<std::string, Example> ReadDoc() {
  std::ifstream doc(kDoc);
  std::map<std::string, Example> examples;
  Example* example = nullptr;
  std::string fence;
  std::string block;
  for (std::string line; std::getline(doc, line);) {
    if (!fence.empty() && line != "```") {
      block += line + "\n";
    } else if (!fence.empty()) {
      if (fence == "json") example->machine = block;
      if (fence == "ini") example->files.push_back(block);
      if (fence == "bytes") example->files.push_back(Unescaped(block.substr(0, block.size() - 1)));
      fence.clear();
    } else if (line.starts_with("### ")) {
      example = &examples[line.substr(4, 4)];
      example->heading = line;
    } else if (line.starts_with("```")) {
      fence = line.substr(3);
      block.clear();
    }
  }
  return examples;
}

class FindingsDocTest : public support::ToolTest {
 protected:
  Codes CodesFor(const Example& example) {
    std::vector<std::string> arguments{"check", "--json"};
    for (const std::string& file : example.files) {
      arguments.push_back(Write(std::to_string(arguments.size()) + ".cfg", file));
    }
    if (!example.machine.empty()) {
      arguments.insert(arguments.end(), {"--machine", Write("m.json", example.machine)});
    }
    Run(arguments);
    EXPECT_EQ(err_, "");
    Codes codes;
    const auto report = support::Json::parse(out_);
    for (const auto& finding : report["findings"]) {
      codes.insert(finding["code"].get<std::string>());
    }
    return codes;
  }
};

TEST_F(FindingsDocTest, EveryExampleYieldsItsOwnFinding) {
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
      EXPECT_TRUE(example.files.empty());
    } else {
      EXPECT_EQ(CodesFor(example), expected);
    }
  }
}

}  // namespace
