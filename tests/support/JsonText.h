// The journal as JSON, in a source of its own so that no test waits for the JSON library.
#pragma once

#include <string>
#include <vector>

#include "platform/simulated/Change.h"

namespace support {

std::string JsonText(const simulated::Change& change);
std::string JsonText(const simulated::Value& value);
std::vector<std::string> JsonTexts(const std::vector<simulated::Change>& changes);

}  // namespace support
