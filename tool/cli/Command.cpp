#include "tool/cli/Command.h"

#include <algorithm>

#include "base/Pieces.h"

namespace tool {

std::vector<std::string> Option::Names() const { return base::Split(name, ","); }

bool Option::TakesValue() const {
  return !std::holds_alternative<std::monostate>(target) && !std::holds_alternative<bool*>(target);
}

std::vector<std::string> Option::Choices() const {
  if (value.find('|') == std::string::npos) return {};
  return base::Split(value, "|");
}

bool Option::TakesFile() const { return value.find('.') != std::string::npos || name == "FILE"; }

const Option* Command::Find(std::string_view wanted) const {
  for (const Option& option : options) {
    const std::vector<std::string> names = option.Names();
    if (std::find(names.begin(), names.end(), wanted) != names.end()) return &option;
  }
  return nullptr;
}

}  // namespace tool
