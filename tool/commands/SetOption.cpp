#include "tool/commands/SetOption.h"

#include "tool/io/ToolError.h"

namespace tool {

Option SetOption(std::vector<std::string>& texts) {
  return {"--set", &texts, "KEY=VALUE", "an additional value of the message; may be repeated"};
}

void AddSetValues(const std::vector<std::string>& texts, AgentMessage::GivenValues& values) {
  for (const std::string& text : texts) {
    const std::size_t sign = text.find('=');
    if (sign == std::string::npos || sign == 0) {
      throw ToolError("--set " + text, "has no KEY=", "write --set KEY=VALUE");
    }
    const std::string key = text.substr(0, sign);
    std::erase_if(values, [&](const auto& value) { return value.first == key; });
    values.emplace_back(key, text.substr(sign + 1));
  }
}

}  // namespace tool
