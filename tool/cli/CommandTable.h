// The command line as plain data: what the help, the completion and the manual page are made of.
#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace tool {

struct OptionRow {
  /// "--machine", and "-h" where there is a short one.
  std::vector<std::string> names;
  /// What stands for the value: "M.json", or "a|b" for one of a few words. Empty for a flag.
  std::string value;
  std::string description;
  /// May be given several times.
  bool isList = false;
  /// The command does nothing without it.
  bool isRequired = false;

  /// The words that the value may be; empty when any text may.
  std::vector<std::string> Choices() const;
  /// The value is a file of the user's.
  bool TakesFile() const;
};

struct CommandRow {
  std::string name;
  std::string description;
  /// Notes, exit codes and examples as the help shows them.
  std::string footer;
  std::vector<OptionRow> options;
  /// What stands without a name, for example FILE; `names` holds that word.
  std::vector<OptionRow> positionals;
};

/// The program itself comes first, then its commands in their order.
std::vector<CommandRow> ReadCommands(const CLI::App& app);

}  // namespace tool
