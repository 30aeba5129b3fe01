#!/usr/bin/env bash
# Runs one Windows program under Wine, in a prefix of its own: run-wine.sh PREFIX PROGRAM [ARGUMENT...]
# The prefix is made when it is missing. Safe to run several times at once.
set -euo pipefail

WINEPREFIX=$(realpath -m "$1")
shift
export WINEPREFIX
export WINEDEBUG=-all
# No browser or .NET installers and no menu entries; without a debugger a crash ends with an error.
export WINEDLLOVERRIDES="mscoree,mshtml=;winemenubuilder.exe=;winedbg.exe="

# The first program of a prefix starts helper processes that outlive it and inherit its pipes: a
# test runner would wait for them. So a program that nobody reads from comes first, one at a time,
# and the server then lingers.
warm() {
  mkdir -p "$WINEPREFIX"
  if [[ ! -e $WINEPREFIX/ready ]]; then
    wineboot -i && wineserver -w && touch "$WINEPREFIX/ready"
  fi
  if ! wineserver -k0; then
    wineserver -p60
    wine cmd.exe /c exit
  fi
}

mkdir -p "$(dirname "$WINEPREFIX")"
(
  flock 9
  warm </dev/null >/dev/null 2>&1 9>&-
) 9>"$WINEPREFIX.lock" || { echo "run-wine.sh: cannot start Wine in $WINEPREFIX" >&2; exit 1; }

# Once in a thousand starts Wine itself ends at once, without a word. A test program always says
# something first, so one that failed in silence was never run.
said=$(mktemp)
trap 'rm -f "$said"' EXIT
for attempt in first second; do
  status=0
  wine "$@" 2>&1 | tee "$said" || status=$?
  [[ $status != 0 && ! -s $said ]] || break
  echo "run-wine.sh: Wine ended with $status in silence at the $attempt attempt" >&2
done
exit "$status"
