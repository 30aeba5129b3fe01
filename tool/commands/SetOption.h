// The option that gives a message more values.
#pragma once

#include <string>
#include <vector>

#include "tool/agent/AgentMessage.h"
#include "tool/cli/Command.h"

namespace tool {

/// The option, which stores its texts in `texts`.
Option SetOption(std::vector<std::string>& texts);

/// Adds the values of "KEY=VALUE" texts. Of two values with the same key the later one counts, so
/// that a value which is there already can be replaced. Throws ToolError for a text without a key.
void AddSetValues(const std::vector<std::string>& texts, AgentMessage::GivenValues& values);

}  // namespace tool
