// The journal as JSON.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "platform/simulated/MachineFile.h"

namespace support {

inline std::string JsonText(const simulated::Change& change) {
  return simulated::Json(change).dump();
}

inline std::vector<std::string> JsonTexts(const std::vector<simulated::Change>& changes) {
  std::vector<std::string> texts;
  for (const simulated::Change& change : changes) texts.push_back(JsonText(change));
  return texts;
}

}  // namespace support
