#include "tool/cli/CommandTable.h"

#include <CLI/CLI.hpp>

#include "common/util/Text.h"

namespace tool {
namespace {

CommandRow ReadCommand(const CLI::App& app) {
  CommandRow row{app.get_name(), app.get_description(), app.get_footer(), {}, {}};
  for (const CLI::Option* option : app.get_options()) {
    OptionRow read;
    read.description = option->get_description();
    if (option->get_items_expected_max() > 0) read.value = option->get_type_name();
    read.isList = option->get_expected_max() > 1;
    read.isRequired = option->get_required();
    if (option->get_positional()) {
      read.names = {option->get_name(/*positional=*/true)};
      row.positionals.push_back(std::move(read));
      continue;
    }
    for (const std::string& name : option->get_snames()) read.names.push_back("-" + name);
    for (const std::string& name : option->get_lnames()) read.names.push_back("--" + name);
    row.options.push_back(std::move(read));
  }
  return row;
}

}  // namespace

std::vector<std::string> OptionRow::Choices() const {
  if (value.find('|') == std::string::npos) return {};
  return util::Split(value, "|");
}

bool OptionRow::TakesFile() const {
  return value.find('.') != std::string::npos || (!names.empty() && names[0] == "FILE");
}

std::vector<CommandRow> ReadCommands(const CLI::App& app) {
  std::vector<CommandRow> rows{ReadCommand(app)};
  for (const CLI::App* command : app.get_subcommands([](const CLI::App*) { return true; })) {
    rows.push_back(ReadCommand(*command));
  }
  return rows;
}

}  // namespace tool
