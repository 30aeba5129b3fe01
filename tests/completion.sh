#!/usr/bin/env bash
# Presses Tab in bash, and shows the scripts for the other shells to them where they are installed:
#   completion.sh TOOL
set -euo pipefail
tool=$(realpath "$1")
PATH=$(dirname "$tool"):$PATH
failures=0

fail() {
  printf '%s\n' "$1"
  failures=$((failures + 1))
}

# shellcheck disable=SC1090
source <("$tool" completion bash)

# expect COMPLETIONS WORD...: what Tab offers behind the last word.
expect() {
  local expected=$1
  shift
  COMP_WORDS=(orvanta-config "$@")
  COMP_CWORD=$#
  _orvanta_config orvanta-config "${@: -1}"
  local offered
  offered=$(printf '%s\n' "${COMPREPLY[@]}" | sort | paste -sd ' ')
  [[ $offered == "$expected" ]] || fail "$*: offered '$offered', not '$expected'"
}

folder=$(mktemp -d)
export LC_ALL=C
trap 'rm -r "$folder"' EXIT
cd "$folder"
touch 'my pc.cfg' my-pc.json

expect 'check' ch
expect '--help' --h
expect '--sarif' check --sa
expect '--fix' check --fi
expect '--message' simulate file.cfg --mess
expect 'prep-for-image' simulate --message p
expect 'my pc.cfg my-pc.json' check my
expect 'my pc.cfg my-pc.json' simulate --machine ''
expect '' simulate --set A
expect 'zsh' completion z
expect '' send Internal ''

for shell in zsh fish; do
  command -v "$shell" >/dev/null || continue
  "$tool" completion "$shell" >"$folder/$shell"
  "$shell" -n "$folder/$shell" || fail "$shell does not understand its script"
done
if command -v zsh >/dev/null; then
  # A terminal in which Tab is pressed behind each line.
  cat >"$folder/tab.zsh" <<'END'
zmodload zsh/zpty
zpty shell zsh -f -i
zpty -w shell "PS1= TERM=dumb; autoload -U compinit; compinit -u -D; source ./zsh; echo rea''dy"
zpty -r shell output '*ready*'
for line in "$@"; do zpty -w -n shell "$line"$'\t'; sleep 1; zpty -w -n shell $'\C-u'; done
zpty -w shell "echo do''ne"
zpty -r shell output '*done*'
print -r -- "$output"
END
  offered=$(timeout 60 zsh -f tab.zsh 'orvanta-config --vers' 'orvanta-config plan --machine=my-' \
    'orvanta-config send Internal --plug')
  for word in --version --machine=my-pc.json --plugin; do
    [[ $offered == *"$word"* ]] || fail "zsh: offered '$offered', without '$word'"
  done
  [[ $offered != *_arguments:* ]] || fail "zsh: $offered"
fi
if command -v fish >/dev/null; then
  offered=$(HOME=$folder fish -c "source '$folder/fish'; complete -C 'orvanta-config check --sa'")
  [[ $offered == --sarif* ]] || fail "fish: offered '$offered', not '--sarif'"
  offered=$(HOME=$folder fish -c "source '$folder/fish'; complete -C 'orvanta-config --vers'")
  [[ $offered == --version* ]] || fail "fish: offered '$offered', not '--version'"
fi

# The formatter warns of whatever it does not understand.
"$tool" man >"$folder/page.1"
if command -v groff >/dev/null; then
  warnings=$(groff -man -Tascii -ww "$folder/page.1" 2>&1 >"$folder/page.txt")
  [[ -z $warnings ]] || fail "$warnings"
  grep -q 'FILE' "$folder/page.txt" || fail 'the manual page is empty'
fi

exit $((failures > 0))
