// What a plan promises and what a run did, in the same words.
#pragma once

#include <algorithm>
#include <cstddef>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "platform/simulated/Json.h"

namespace support {

constexpr char kFails[] = "the run fails";

/// The commands that a plan runs before the first restart, as the log of a run tells them, and
/// whether the run fails.
inline std::vector<std::string> PlannedRun(const simulated::Json& plan) {
  std::vector<std::string> lines;
  bool fails = !plan["error"].is_null();
  const auto add = [&](const char* runner, const simulated::Json& command) {
    if (!command["reached"]) return;
    fails |= !command["will_fail"].is_null();
    if (command["class"] == "config::command::Reboot") return;
    lines.push_back(std::string(runner) + "(): about to execute class " +
                    command["class"].get<std::string>() + " (" +
                    command["description"].get<std::string>() + ")");
  };
  const std::size_t runsNow = plan["runs_now"];
  for (std::size_t i = 0; i < std::min(runsNow + 1, plan["commands"].size()); ++i) {
    const simulated::Json& command = plan["commands"][i];
    add("ConfigBuilder::RunConfig", command);
    for (const simulated::Json& inner : command.value("commands", simulated::Json::array())) {
      if (inner["needed"]) add("ConfigureNic::Execute", inner);
    }
  }
  if (fails) lines.emplace_back(kFails);
  return lines;
}

/// What was run, in the same way, as a simulation tells it.
inline std::vector<std::string> ActualRun(const simulated::Json& simulation) {
  std::vector<std::string> lines;
  for (const simulated::Json& line : simulation["log"]) {
    const std::string text = line["text"];
    if (text.find("about to execute") != std::string::npos) lines.push_back(text);
  }
  if (simulation["reply"].value("Result", "") == "Failure") lines.emplace_back(kFails);
  return lines;
}

}  // namespace support
