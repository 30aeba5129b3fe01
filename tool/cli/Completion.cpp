#include "tool/cli/Completion.h"

#include <ostream>

#include "base/Pieces.h"
#include "tool/io/ToolError.h"

namespace tool {
namespace {

constexpr char kFooter[] =
    R"(To install a script permanently:
  orvanta-config completion bash > ~/.local/share/bash-completion/completions/orvanta-config
  orvanta-config completion zsh > a file _orvanta-config in a folder of $fpath
  orvanta-config completion fish > ~/.config/fish/completions/orvanta-config.fish

Exit codes:
  0  the script was written
  2  an argument cannot be used; one line on standard error says why

Examples:
  source <(orvanta-config completion bash)
  orvanta-config completion fish | source)";

using Commands = std::vector<Command>;

/// The commands without the program itself.
Commands Named(const Commands& commands) { return {commands.begin() + 1, commands.end()}; }

std::vector<std::string> NamesOf(const std::vector<Option>& options) {
  std::vector<std::string> names;
  for (const Option& option : options) {
    for (std::string& name : option.Names()) names.push_back(std::move(name));
  }
  return names;
}

std::vector<std::string> NamesOf(const Commands& commands) {
  std::vector<std::string> names;
  for (const Command& command : commands) names.push_back(command.name);
  return names;
}

std::string Words(const std::vector<std::string>& words) { return base::Join(words, " "); }

/// A text with a backslash before each of the letters.
std::string Escaped(const std::string& text, std::string_view letters) {
  std::string escaped;
  for (const char c : text) {
    if (letters.find(c) != std::string_view::npos) escaped += '\\';
    escaped += c;
  }
  return escaped;
}

/// A text in single quotes, for any of the shells.
std::string Quoted(const std::string& text) {
  std::string quoted = "'";
  for (const char c : text) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
  return quoted + "'";
}

// ---- bash ---------------------------------------------------------------------------------------

std::string BashWords(const std::vector<std::string>& words) {
  return "words=" + Quoted(Words(words));
}

/// What completes a value: words, files or nothing.
std::string BashValue(const Option& option) {
  if (!option.Choices().empty()) return BashWords(option.Choices());
  return option.TakesFile() ? "files=1" : "return";
}

std::string BashScript(const Commands& commands) {
  const Commands named = Named(commands);
  const std::string names = base::Join(NamesOf(named), "|");
  std::string values;
  std::string words;
  for (const Command& command : named) {
    for (const Option& option : command.NamedOptions()) {
      if (!option.TakesValue()) continue;
      for (const std::string& name : option.Names()) {
        values += "    " + command.name + ":" + name + ") " + BashValue(option) + " ;;\n";
      }
    }
    words += "    " + command.name + ":-*) " + BashWords(NamesOf(command.NamedOptions())) + " ;;\n";
    for (const Option& positional : command.Positionals()) {
      words += "    " + command.name + ":*) " + BashValue(positional) + " ;;\n";
    }
  }
  std::vector<std::string> first = NamesOf(named);
  for (const std::string& option : NamesOf(commands[0].options)) first.push_back(option);
  return R"(# Completion of orvanta-config for bash.
_orvanta_config() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
  local command='' words='' files='' i
  COMPREPLY=()
  for ((i = 1; i < COMP_CWORD; i++)); do
    case ${COMP_WORDS[i]} in )" +
         names + R"() command=${COMP_WORDS[i]}; break ;; esac
  done
  case $command:$previous in
)" + values +
         R"(  esac
  [[ -n $words$files ]] || case $command:$current in
    :*) )" +
         BashWords(first) + R"( ;;
)" + words +
         R"(  esac
  if [[ -n $files ]]; then
    mapfile -t COMPREPLY < <(compgen -f -- "$current")
  elif [[ -n $words ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
  fi
}
complete -o filenames -F _orvanta_config orvanta-config
)";
}

// ---- zsh ----------------------------------------------------------------------------------------

std::string ZshValue(const Option& option) {
  const std::string label = Escaped(option.value.empty() ? option.name : option.value, ":");
  if (!option.Choices().empty()) return ":" + label + ":(" + Words(option.Choices()) + ")";
  return ":" + label + ":" + (option.TakesFile() ? "_files" : "");
}

std::string ZshScript(const Commands& commands) {
  std::string names;
  std::string options;
  for (const Option& option : commands[0].options) {
    for (const std::string& name : option.Names()) {
      options += "    " + Quoted(Escaped(name, ":") + ":" + option.description) + "\n";
    }
  }
  std::string cases;
  for (const Command& command : Named(commands)) {
    names += "    " + Quoted(Escaped(command.name, ":") + ":" + command.description) + "\n";
    cases += "    " + command.name + ")\n      _arguments";
    for (const Option& option : command.NamedOptions()) {
      for (const std::string& name : option.Names()) {
        // With "=" a value may stand behind a blank too.
        const std::string value = option.TakesValue() ? ZshValue(option) : "";
        cases += " \\\n        " + Quoted("*" + name + (value.empty() ? "" : "=") + "[" +
                                          Escaped(option.description, "[]") + "]" + value);
      }
    }
    std::size_t place = 0;
    for (const Option& positional : command.Positionals()) {
      ++place;
      cases += " \\\n        " +
               Quoted((positional.IsList() ? "*" : std::to_string(place)) + ZshValue(positional));
    }
    cases += " ;;\n";
  }
  return R"(#compdef orvanta-config
# Completion of orvanta-config for zsh.
_orvanta_config() {
  local -a commands=(
)" + names +
         "  )\n  local -a options=(\n" + options +
         R"(  )
  if (( CURRENT == 2 )); then
    _describe command commands
    _describe -o option options
    return
  fi
  local command=$words[2]
  shift words
  (( CURRENT-- ))
  case $command in
)" + cases +
         R"(  esac
}
if [[ $zsh_eval_context[-1] == loadautofunc ]]; then
  _orvanta_config "$@"
else
  compdef _orvanta_config orvanta-config
fi
)";
}

// ---- fish ---------------------------------------------------------------------------------------

std::string FishValue(const Option& option) {
  if (!option.TakesValue()) return "";
  if (!option.Choices().empty()) return " -x -a " + Quoted(Words(option.Choices()));
  return option.TakesFile() ? " -r -F" : " -x";
}

std::string FishNames(const Option& option) {
  std::string names;
  for (const std::string& name : option.Names()) {
    names += name.starts_with("--") ? " -l " + name.substr(2) : " -s " + name.substr(1);
  }
  return names;
}

std::string FishScript(const Commands& commands) {
  const std::string start = "complete -c orvanta-config";
  std::string script = "# Completion of orvanta-config for fish.\n" + start + " -f\n";
  for (const Option& option : commands[0].options) {
    script += start + " -n __fish_use_subcommand" + FishNames(option) + " -d " +
              Quoted(option.description) + "\n";
  }
  for (const Command& command : Named(commands)) {
    script += start + " -n __fish_use_subcommand -a " + command.name + " -d " +
              Quoted(command.description) + "\n";
    const std::string condition =
        start + " -n " + Quoted("__fish_seen_subcommand_from " + command.name);
    for (const Option& option : command.NamedOptions()) {
      script += condition + FishNames(option) + FishValue(option) + " -d " +
                Quoted(option.description) + "\n";
    }
    for (const Option& positional : command.Positionals()) {
      script += condition + (positional.TakesFile() ? " -F" : FishValue(positional)) + "\n";
    }
  }
  return script;
}

constexpr struct {
  const char* shell;
  std::string (*script)(const Commands& commands);
} kShells[] = {{"bash", BashScript}, {"zsh", ZshScript}, {"fish", FishScript}};

}  // namespace

Command CompletionCommand(std::string& shell) {
  return {"completion",
          "write a completion script for a shell",
          kFooter,
          {{"SHELL", &shell, "bash|zsh|fish", "the shell", /*isRequired=*/true}}};
}

int Completion(const std::string& shell, const Commands& commands, const Streams& streams) {
  for (const auto& row : kShells) {
    if (shell == row.shell) streams.out << row.script(commands);
  }
  return kDone;
}

}  // namespace tool
