#include "tool/cli/Completion.h"

#include <algorithm>
#include <ostream>

#include "tool/io/ToolError.h"

namespace tool {
namespace {

constexpr char kCompletionFooter[] =
    R"(The script asks the tool itself what may follow, so it needs no update.

To install a script permanently:
  orvanta-config completion bash > ~/.local/share/bash-completion/completions/orvanta-config
  orvanta-config completion zsh > a file _orvanta-config in a folder of $fpath
  orvanta-config completion fish > ~/.config/fish/completions/orvanta-config.fish
  orvanta-config completion powershell >> $PROFILE

Exit codes:
  0  the script was written
  2  an argument cannot be used; one line on standard error says why

Examples:
  source <(orvanta-config completion bash)
  orvanta-config completion fish | source
  orvanta-config completion powershell | Out-String | Invoke-Expression)";

/// Printed instead of words if one of the user's files can follow.
constexpr char kFiles[] = ":files";

// Each script passes the word at the cursor and those before it to the tool, and offers what it
// gets back: one word a line, then a tab and a description, or `kFiles`.
constexpr char kBash[] = R"(# Completion of orvanta-config for bash.
_orvanta_config() {
  local -a answer
  COMPREPLY=()
  mapfile -t answer < <("$1" completion bash -- "=$2" "${COMP_WORDS[@]:1:COMP_CWORD-1}" 2>/dev/null)
  if [[ ${answer[0]-} == :files ]]; then
    mapfile -t COMPREPLY < <(compgen -f -- "$2")
  else
    mapfile -t COMPREPLY < <(compgen -W "${answer[*]%%$'\t'*}" -- "$2")
  fi
}
complete -o filenames -F _orvanta_config orvanta-config
)";

constexpr char kZsh[] = R"(#compdef orvanta-config
# Completion of orvanta-config for zsh.
_orvanta_config() {
  local -a answer
  answer=("${(@f)$($words[1] completion zsh -- "=$PREFIX" "${(@)words[2,CURRENT-1]}" 2>/dev/null)}")
  answer=("${(@)answer/$'\t'/:}")
  compset -P '--*='
  if [[ $answer[1] == :files ]]; then
    _files
  else
    _describe argument answer
  fi
}
if [[ $zsh_eval_context[-1] == loadautofunc ]]; then
  _orvanta_config "$@"
else
  compdef _orvanta_config orvanta-config
fi
)";

constexpr char kFish[] = R"(# Completion of orvanta-config for fish.
function __orvanta_config
  set -l words (commandline -opc)
  set -l word (commandline -ct)
  set -l answer ($words[1] completion fish -- "=$word" $words[2..] 2>/dev/null)
  if test "$answer[1]" = :files
    __fish_complete_path $word
  else
    printf '%s\n' $answer
  end
end
complete -c orvanta-config -f -a '(__orvanta_config)'
)";

constexpr char kPowerShell[] = R"(# Completion of orvanta-config for PowerShell.
Register-ArgumentCompleter -Native -CommandName orvanta-config, orvanta-config.exe -ScriptBlock {
  param($word, $line, $cursor)
  $words = @($line.CommandElements | Where-Object { $_.Extent.EndOffset -lt $cursor } |
    ForEach-Object { "$_" })
  & $words[0] completion powershell '--' "=$word" @($words | Select-Object -Skip 1) 2>$null |
    Where-Object { $_ -ne ':files' -and $_ -like "$word*" } | ForEach-Object {
      $text, $note = $_ -split "`t"
      [System.Management.Automation.CompletionResult]::new($text, $text, 'ParameterValue', "$note ")
    }
}
)";

constexpr struct {
  const char* shell;
  const char* script;
} kShells[] = {{"bash", kBash}, {"zsh", kZsh}, {"fish", kFish}, {"powershell", kPowerShell}};

void Offer(const Option& option, std::ostream& out) {
  for (const std::string& choice : option.Choices()) out << choice << '\n';
  if (option.TakesFile()) out << kFiles << '\n';
}

/// Writes what can follow the words `before` if the text at the cursor begins with `word`.
void Complete(const std::vector<std::string>& before, std::string_view word,
              const std::vector<Command>& commands, std::ostream& out) {
  const auto named = std::find_if(commands.begin() + 1, commands.end(), [&](const Command& each) {
    return !before.empty() && each.name == before.front();
  });
  const bool isNamed = named != commands.end();
  const Command& command = isNamed ? *named : commands.front();
  const bool hasValue = word.starts_with("--") && word.find('=') != std::string_view::npos;
  const Option* open = command.Find(hasValue         ? word.substr(0, word.find('='))
                                    : before.empty() ? ""
                                                     : std::string_view(before.back()));
  if (open != nullptr && open->TakesValue() && !open->IsPositional()) return Offer(*open, out);
  for (const Option& option : command.options) {
    if (option.IsPositional() && !word.starts_with('-')) return Offer(option, out);
    if (option.IsPositional() || (isNamed && !word.starts_with('-'))) continue;
    for (const std::string& name : option.Names()) {
      out << name << '\t' << option.description << '\n';
    }
  }
  if (isNamed) return;
  for (auto each = commands.begin() + 1; each != commands.end(); ++each) {
    out << each->name << '\t' << each->description << '\n';
  }
}

}  // namespace

Command CompletionCommand(CompletionOptions& options) {
  return {"completion",
          "write a completion script for a shell",
          kCompletionFooter,
          {{"SHELL", &options.shell, "bash|zsh|fish|powershell", "the shell", /*isRequired=*/true},
           {"WORD", &options.words, "",
            "asked by the script: \"=\" and the word at the cursor, "
            "then the words before it"}}};
}

int Completion(const CompletionOptions& options, const std::vector<Command>& commands,
               const Streams& streams) {
  const std::vector<std::string>& words = options.words;
  if (!words.empty()) {
    Complete({words.begin() + 1, words.end()},
             std::string_view(words[0]).substr(words[0].starts_with('=') ? 1 : 0), commands,
             streams.out);
    return kDone;
  }
  for (const auto& row : kShells) {
    if (options.shell == row.shell) streams.out << row.script;
  }
  return kDone;
}

}  // namespace tool
