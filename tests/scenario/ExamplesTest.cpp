// What the documentation shows of each example is what the tool says.
#include <gtest/gtest.h>

#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>

#include "tools/orvanta-config/Tool.h"

namespace {

using Json = nlohmann::ordered_json;

/// The tests run in the project's folder.
const std::string kExamples = "examples/";

TEST(Examples, DoWhatIsExpectedOfThem) {
  for (const std::string name : {"office-pc", "laptop", "server"}) {
    SCOPED_TRACE(name);
    std::ifstream expected(kExamples + name + ".expected.json");
    std::istringstream in;
    std::ostringstream out;
    std::ostringstream err;
    EXPECT_EQ(
        tool::RunTool({"simulate", kExamples + name + ".cfg", "--machine",
                       kExamples + name + ".machine.json", "--follow-restarts", "3", "--json"},
                      {in, out, err}),
        0)
        << err.str();
    EXPECT_EQ(Json::parse(out.str()).dump(2), Json::parse(expected).dump(2));
  }
}

}  // namespace
