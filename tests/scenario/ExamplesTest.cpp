// What the documentation shows of each example is what the tool says.
#include <gtest/gtest.h>

#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "tools/orvanta-config/Tool.h"

namespace {

using Json = nlohmann::ordered_json;

/// The tests run in the project's folder.
const std::string kExamples = "examples/";

TEST(Examples, DoWhatIsExpectedOfThem) {
  const struct {
    std::string name;
    std::vector<std::string> arguments;
  } kExampleRuns[] = {
      {"office-pc", {kExamples + "office-pc.cfg", "--follow-restarts", "3"}},
      {"laptop", {kExamples + "laptop.cfg", "--follow-restarts", "3"}},
      {"server", {kExamples + "server.cfg", "--follow-restarts", "3"}},
      {"imaging", {"--message", "prep-for-image", "--deliver-posted"}},
  };
  for (const auto& run : kExampleRuns) {
    SCOPED_TRACE(run.name);
    std::vector<std::string> arguments{"simulate", "--json", "--machine",
                                       kExamples + run.name + ".machine.json"};
    arguments.insert(arguments.end(), run.arguments.begin(), run.arguments.end());
    std::ifstream expected(kExamples + run.name + ".expected.json");
    std::istringstream in;
    std::ostringstream out;
    std::ostringstream err;
    EXPECT_EQ(tool::RunTool(arguments, {in, out, err}), 0) << err.str();
    EXPECT_EQ(Json::parse(out.str()).dump(2), Json::parse(expected).dump(2));
  }
}

}  // namespace
