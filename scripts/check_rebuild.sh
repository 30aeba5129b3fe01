#!/usr/bin/env bash
# Builds a plug-in DLL a second time, from a copy of the sources in another folder, and compares the
# bytes: check_rebuild.sh DLL
set -euo pipefail

dll=$(realpath "$1")
cd "$(dirname "$0")/.."
copy=$(mktemp -d)
trap 'rm -rf "$copy"' EXIT

tar --create --exclude=./.git --exclude=./build . | tar --extract --directory="$copy"
export CCACHE_DISABLE=1  # or the first build would answer
cmake -S "$copy" --preset windows >/dev/null
cmake --build "$copy/build/windows" -j "$(nproc)" --target config
cmp "$dll" "$copy/build/windows/$(basename "$dll")"
echo "$(basename "$dll"): the second build has the same bytes."
