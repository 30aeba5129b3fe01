// What the documentation shows of each example is what the tool says.
#include <gtest/gtest.h>

#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "tool/Tool.h"

namespace {

using Json = nlohmann::ordered_json;

/// The tests run in the project's folder.
const std::string kExamples = "examples/";

TEST(Examples, DoWhatIsExpectedOfThem) {
  const struct {
    std::string command;
    std::string machine;
    std::vector<std::string> arguments;
    std::string expected;
  } kExampleRuns[] = {
      {"simulate",
       "office-pc",
       {kExamples + "office-pc.cfg", "--follow-restarts", "3"},
       "office-pc.expected.json"},
      {"simulate",
       "laptop",
       {kExamples + "laptop.cfg", "--follow-restarts", "3"},
       "laptop.expected.json"},
      {"simulate",
       "server",
       {kExamples + "server.cfg", "--follow-restarts", "3"},
       "server.expected.json"},
      {"simulate",
       "imaging",
       {"--message", "prep-for-image", "--deliver-posted"},
       "imaging.expected.json"},
      {"plan", "office-pc", {kExamples + "office-pc.cfg"}, "office-pc.plan.expected.json"},
  };
  for (const auto& run : kExampleRuns) {
    SCOPED_TRACE(run.expected);
    std::vector<std::string> arguments{run.command, "--json", "--machine",
                                       kExamples + run.machine + ".machine.json"};
    arguments.insert(arguments.end(), run.arguments.begin(), run.arguments.end());
    std::ifstream expected(kExamples + run.expected);
    std::istringstream in;
    std::ostringstream out;
    std::ostringstream err;
    EXPECT_EQ(tool::RunTool(arguments, {in, out, err}), 0) << err.str();
    EXPECT_EQ(Json::parse(out.str()).dump(2), Json::parse(expected).dump(2));
  }
}

}  // namespace
