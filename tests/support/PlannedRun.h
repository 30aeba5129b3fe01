// What a plan promises and what a run did, in the same words.
#pragma once

#include <cstddef>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "platform/simulated/Json.h"

namespace support {

/// The commands that a plan runs before the first restart, as the log of a run tells them.
inline std::vector<std::string> PlannedRun(const simulated::Json& plan) {
  std::vector<std::string> lines;
  const auto add = [&](const char* runner, const simulated::Json& command) {
    lines.push_back(std::string(runner) + "(): about to execute class " +
                    command["class"].get<std::string>() + " (" +
                    command["description"].get<std::string>() + ")");
  };
  for (std::size_t i = 0; i < plan["runs_now"]; ++i) {
    const simulated::Json& command = plan["commands"][i];
    add("ConfigBuilder::RunConfig", command);
    for (const simulated::Json& inner : command.value("commands", simulated::Json::array())) {
      if (inner["needed"]) add("ConfigureNic::Execute", inner);
    }
  }
  return lines;
}

/// The commands that were run, as the log of a simulation tells them.
inline std::vector<std::string> ActualRun(const simulated::Json& simulation) {
  std::vector<std::string> lines;
  for (const simulated::Json& line : simulation["log"]) {
    const std::string text = line["text"];
    if (text.find("about to execute") != std::string::npos) lines.push_back(text);
  }
  return lines;
}

}  // namespace support
