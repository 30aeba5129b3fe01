#include "tool/cli/Command.h"

#include <algorithm>
#include <iterator>

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

std::vector<Option> Command::Positionals() const {
  std::vector<Option> found;
  std::copy_if(options.begin(), options.end(), std::back_inserter(found),
               [](const Option& option) { return option.IsPositional(); });
  return found;
}

std::vector<Option> Command::NamedOptions() const {
  std::vector<Option> found;
  std::copy_if(options.begin(), options.end(), std::back_inserter(found),
               [](const Option& option) { return !option.IsPositional(); });
  return found;
}

}  // namespace tool
