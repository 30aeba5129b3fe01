#include "tool/cli/CommandLine.h"

#include <algorithm>
#include <cstddef>
#include <set>
#include <string_view>

#include "common/util/Text.h"
#include "platform/simulated/Text.h"

namespace tool {
namespace {

using Names = std::vector<std::string_view>;

const OptionRow* FindOption(const CommandRow& command, std::string_view name) {
  const auto found =
      std::find_if(command.options.begin(), command.options.end(), [=](const OptionRow& option) {
        return std::find(option.names.begin(), option.names.end(), name) != option.names.end();
      });
  return found != command.options.end() ? &*found : nullptr;
}

/// The end of a line: "use --machine, or see orvanta-config plan --help".
std::string Mend(std::string_view instead, const CommandRow& command) {
  std::string mend = "; ";
  if (!instead.empty()) mend += "use " + std::string(instead) + ", or ";
  mend += "see orvanta-config ";
  return mend + (command.name == "orvanta-config" ? "" : command.name + " ") + "--help";
}

/// The option that was likely meant; a letter stands for the first one that begins with it.
std::string_view NearestOption(const CommandRow& command, std::string_view name) {
  Names names;
  for (const OptionRow& option : command.options) {
    for (const std::string_view known : option.names) {
      if (!known.starts_with("--")) continue;
      if (name.size() == 2 && known[2] == name[1]) return known;
      names.push_back(known);
    }
  }
  return name.size() == 2 ? "" : simulated::Nearest(name, names).value_or("");
}

std::string Alternatives(std::vector<std::string> words) {
  const std::string last = words.back();
  words.pop_back();
  return util::Join(words, ", ") + " or " + last;
}

/// Walks over the arguments of one command.
class Walk {
 public:
  Walk(const CommandRow& command, const std::vector<std::string>& arguments, std::size_t first)
      : command_(command), arguments_(arguments), at_(first) {}

  std::string FindFault() {
    bool optionsEnded = false;
    for (; at_ < arguments_.size(); ++at_) {
      const std::string& argument = arguments_[at_];
      std::string fault;
      if (optionsEnded || argument.size() < 2 || argument[0] != '-') {
        fault = TakePositional(argument);
      } else if (argument == "--") {
        optionsEnded = true;
      } else if (argument == "--help" || argument == "-h") {
        return {};
      } else {
        fault = TakeOption(argument);
      }
      if (!fault.empty()) return fault;
    }
    return FindMissing();
  }

 private:
  std::string TakePositional(const std::string& argument) {
    ++positionals_;
    const auto& known = command_.positionals;
    if (positionals_ <= known.size() || (!known.empty() && known.back().isList)) return {};
    return argument + ": is one argument too many for " + command_.name + Mend("", command_);
  }

  std::string TakeOption(const std::string& argument) {
    const std::string name = argument.substr(0, argument.find('='));
    const OptionRow* const option = FindOption(command_, name);
    if (option == nullptr) {
      return name + ": is no option of " + command_.name +
             Mend(NearestOption(command_, name), command_);
    }
    if (option->value.empty()) return {};
    if (!seen_.insert(option).second && !option->isList) {
      return name + ": is given twice; name one " + option->value;
    }
    std::string value;
    if (name.size() < argument.size()) {
      value = argument.substr(name.size() + 1);
    } else if (at_ + 1 < arguments_.size() && IsValue(arguments_[at_ + 1])) {
      value = arguments_[++at_];
    } else {
      return name + ": lacks its value " + option->value + Mend("", command_);
    }
    const std::vector<std::string> choices = option->Choices();
    if (choices.empty() || std::find(choices.begin(), choices.end(), value) != choices.end()) {
      return {};
    }
    return name + " " + value + ": is no value that is known; name " + Alternatives(choices);
  }

  static bool IsValue(const std::string& argument) {
    return argument.size() < 2 || argument[0] != '-';
  }

  std::string FindMissing() const {
    for (std::size_t i = positionals_; i < command_.positionals.size(); ++i) {
      const OptionRow& missing = command_.positionals[i];
      if (!missing.isRequired) continue;
      const std::vector<std::string> choices = missing.Choices();
      return command_.name + ": " + missing.names[0] + " is missing; name " +
             (choices.empty() ? missing.description : Alternatives(choices));
    }
    return {};
  }

  const CommandRow& command_;
  const std::vector<std::string>& arguments_;
  std::size_t at_;
  std::size_t positionals_ = 0;
  std::set<const OptionRow*> seen_;
};

}  // namespace

std::string FindCommandLineFault(const std::vector<CommandRow>& commands,
                                 const std::vector<std::string>& arguments) {
  const CommandRow& program = commands.front();
  if (arguments.empty()) return "the command is missing" + Mend("", program);
  const std::string& first = arguments.front();
  if (first.starts_with('-')) {
    if (FindOption(program, first) != nullptr) return {};
    return first + ": is no option before a command" + Mend(NearestOption(program, first), program);
  }
  Names names;
  for (std::size_t i = 1; i < commands.size(); ++i) {
    if (commands[i].name == first) return Walk(commands[i], arguments, 1).FindFault();
    names.push_back(commands[i].name);
  }
  return first + ": is no command" + Mend(simulated::Nearest(first, names).value_or(""), program);
}

}  // namespace tool
