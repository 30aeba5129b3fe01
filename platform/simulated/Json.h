// JSON by name only: the few that read or print it include <nlohmann/json.hpp>, which takes
// seconds.
#pragma once

#include <nlohmann/json_fwd.hpp>

namespace simulated {

/// JSON whose objects keep the order in which their fields were added.
using Json = nlohmann::ordered_json;

}  // namespace simulated
