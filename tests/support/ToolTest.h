// The tool as a user runs it, in a folder of its own.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "tool/Tool.h"

namespace support {

using Json = nlohmann::ordered_json;
using Texts = std::vector<std::string>;

inline std::string ReadText(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

class ToolTest : public testing::Test {
 protected:
  void SetUp() override {
    const auto* test = testing::UnitTest::GetInstance()->current_test_info();
    folder_ = std::filesystem::path(testing::TempDir()) /
              (std::string(test->test_suite_name()) + "-" + test->name());
    std::filesystem::create_directories(folder_);
  }

  void TearDown() override { std::filesystem::remove_all(folder_); }

  std::string Path(const std::string& name) const { return (folder_ / name).string(); }

  std::string Write(const std::string& name, const std::string& text) {
    std::ofstream(Path(name), std::ios::binary) << text;
    return Path(name);
  }

  int Run(Texts arguments, const std::string& input = {}) {
    std::istringstream in(input);
    std::ostringstream out;
    std::ostringstream err;
    const int exitCode = tool::RunTool(std::move(arguments), {in, out, err});
    out_ = out.str();
    err_ = err.str();
    return exitCode;
  }

  std::filesystem::path folder_;
  std::string out_;
  std::string err_;
};

}  // namespace support
