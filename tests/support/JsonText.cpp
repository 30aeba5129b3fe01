#include "tests/support/JsonText.h"

#include <algorithm>
#include <iterator>
#include <nlohmann/json.hpp>

#include "platform/simulated/MachineFile.h"

namespace support {

std::string JsonText(const simulated::Change& change) { return simulated::Json(change).dump(); }

std::string JsonText(const simulated::Value& value) {
  return simulated::Json(simulated::Change{{}, {{"value", value}}})["value"].dump();
}

std::vector<std::string> JsonTexts(const std::vector<simulated::Change>& changes) {
  std::vector<std::string> texts;
  for (const simulated::Change& change : changes) texts.push_back(JsonText(change));
  return texts;
}

}  // namespace support
