#include "tool/cli/CommandLine.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <string_view>
#include <utility>

#include "base/Nearest.h"
#include "base/Numbers.h"
#include "base/Pieces.h"
#include "tool/io/ToolError.h"

namespace tool {
namespace {

// ---- Binding ------------------------------------------------------------------------------------

std::string Alternatives(std::vector<std::string> words) {
  const std::string last = words.back();
  words.pop_back();
  return base::Join(words, ", ") + " or " + last;
}

std::string NumberFault(const std::string& text, std::uint32_t most) {
  const bool isNumber =
      !text.empty() && text.size() < 10 &&
      std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
  if (isNumber && base::ParseUnsigned(text) <= most) return {};
  return "\"" + text + "\" is not a number from 0 to " + std::to_string(most);
}

/// What is wrong with an option's value; empty when nothing is.
std::string ValueFault(const Command& command, const Option& option, const std::string& text) {
  if (command.Find(text) != nullptr && text.starts_with('-')) {
    return "needs a value, " + option.value;
  }
  if (option.most > 0) return NumberFault(text, option.most);
  const std::vector<std::string> choices = option.Choices();
  if (choices.empty() || std::find(choices.begin(), choices.end(), text) != choices.end()) {
    return {};
  }
  return "\"" + text + "\" is not one of " + Alternatives(choices);
}

/// Binds an option by its target.
struct Binding {
  CLI::App& app;
  const Option& option;

  CLI::Option* operator()(std::monostate) const {
    return app.set_help_flag(option.name, option.description);
  }
  CLI::Option* operator()(bool* flag) const {
    return app.add_flag(option.name, *flag, option.description);
  }
  CLI::Option* operator()(std::vector<std::string>* values) const {
    CLI::Option* list = app.add_option(option.name, *values, option.description);
    // Otherwise a name such as "[a,b]" would be taken for a list of names; so each argument is one
    // value, and a positional one accepts any number of them.
    list->allow_extra_args(false);
    if (option.IsPositional()) {
      list->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
      list->expected(CLI::detail::expected_max_vector_size, CLI::detail::expected_max_vector_size);
    }
    return list;
  }
  template <typename Value>
  CLI::Option* operator()(Value* value) const {
    return app.add_option(option.name, *value, option.description);
  }
};

void BindOptions(CLI::App& app, const Command& command, const std::string& version) {
  app.footer(command.footer);
  for (const Option& option : command.options) {
    if (option.name == kVersionOption) {
      app.set_version_flag(option.name, version, option.description);
      continue;
    }
    CLI::Option* bound = std::visit(Binding{app, option}, option.target);
    if (option.TakesValue()) {
      bound->type_name(option.value);
      // The empty description keeps the check out of the help, which shows the placeholder.
      bound->check(CLI::Validator(
          [&](const std::string& text) { return ValueFault(command, option, text); }, ""));
    }
    bound->required(option.isRequired);
    if (!option.excludes.empty()) bound->excludes(app.get_option(option.excludes));
  }
}

// ---- Faults, in words that name the mend --------------------------------------------------------

/// The end of a line: "use --machine, or see orvanta-config plan --help".
std::string Mend(std::string_view instead, const Command& command, const Command& program) {
  std::string mend = "; ";
  if (!instead.empty()) mend += "use " + std::string(instead) + ", or ";
  mend += "see orvanta-config ";
  return mend + (&command == &program ? "" : command.name + " ") + "--help";
}

/// The option that was likely meant; for a letter, the first one that begins with it.
std::string NearestOption(const Command& command, const std::string& name) {
  std::vector<std::string> names;
  for (const Option& option : command.options) {
    for (const std::string& known : option.Names()) {
      if (!known.starts_with("--")) continue;
      if (name.size() == 2 && known[2] == name[1]) return known;
      names.push_back(known);
    }
  }
  if (name.size() == 2) return {};
  const std::vector<std::string_view> known(names.begin(), names.end());
  return std::string(base::Nearest(name, known).value_or(""));
}

/// A line about an argument that the parser did not expect.
std::string ExtraFault(const std::string& argument, const Command& command,
                       const std::vector<Command>& commands) {
  const Command& program = commands.front();
  const bool isProgram = &command == &program;
  const std::string name = argument.substr(0, argument.find('='));
  if (argument.size() > 1 && argument.starts_with('-')) {
    return name + ": unknown option" + (isProgram ? "" : " of " + command.name) +
           Mend(NearestOption(command, name), command, program);
  }
  if (!isProgram) return argument + ": unexpected argument" + Mend("", command, program);
  std::vector<std::string_view> names;
  for (std::size_t i = 1; i < commands.size(); ++i) names.push_back(commands[i].name);
  return argument + ": unknown command" +
         Mend(base::Nearest(argument, names).value_or(""), program, program);
}

/// A line about the first required option that is missing.
std::string MissingFault(const CLI::App& app, const Command& command) {
  const Option& missing =
      *std::find_if(command.options.begin(), command.options.end(), [&](const Option& option) {
        return option.isRequired && app.get_option(option.name)->count() == 0;
      });
  const std::vector<std::string> choices = missing.Choices();
  return command.name + ": " + missing.name + " is missing; name " +
         (choices.empty() ? missing.description : Alternatives(choices));
}

/// The command that the parser came to; the program itself before it came to one.
const Command& Chosen(const CLI::App& app, const std::vector<Command>& commands) {
  const std::vector<CLI::App*> chosen = app.get_subcommands();
  if (chosen.empty()) return commands.front();
  return *std::find_if(commands.begin(), commands.end(), [&](const Command& each) {
    return each.name == chosen.front()->get_name();
  });
}

/// One line for the user about what the parser refused.
std::string Explain(const CLI::ParseError& error, const CLI::App& app,
                    const std::vector<Command>& commands) {
  const Command& program = commands.front();
  if (!app.remaining().empty()) return ExtraFault(app.remaining().front(), program, commands);
  const Command& command = Chosen(app, commands);
  if (&command == &program) return "a command is missing" + Mend("", program, program);
  const CLI::App& parsed = *app.get_subcommands().front();
  if (!parsed.remaining().empty()) return ExtraFault(parsed.remaining().front(), command, commands);
  if (dynamic_cast<const CLI::RequiredError*>(&error) != nullptr) {
    return MissingFault(parsed, command);
  }
  const std::string text = error.what();
  const std::string name = text.substr(0, text.find(':'));
  const Option* option = command.Find(name);
  if (option != nullptr && dynamic_cast<const CLI::ArgumentMismatch*>(&error) != nullptr) {
    const bool isRepeated = parsed.get_option(name)->count() > 1;
    return name + ": " +
           (isRepeated ? "can be given only once" : "needs a value, " + option->value) +
           Mend("", command, program);
  }
  return text + Mend("", command, program);
}

}  // namespace

const Command* ParseCommandLine(const std::vector<Command>& commands, const std::string& version,
                                std::vector<std::string> arguments, std::ostream& out) {
  const Command& program = commands.front();
  CLI::App app(program.description, program.name);
  // Otherwise a path that begins with "/" would be taken for an option on Windows.
  app.allow_windows_style_options(false);
  app.require_subcommand(1);
  BindOptions(app, program, version);
  for (std::size_t i = 1; i < commands.size(); ++i) {
    CLI::App* command = app.add_subcommand(commands[i].name, commands[i].description);
    BindOptions(*command, commands[i], version);
  }
  std::reverse(arguments.begin(), arguments.end());
  try {
    app.parse(std::move(arguments));
  } catch (const CLI::Success& answered) {
    app.exit(answered, out, out);
    return nullptr;
  } catch (const CLI::ParseError& error) {
    throw ToolError(Explain(error, app, commands));
  }
  return &Chosen(app, commands);
}

}  // namespace tool
