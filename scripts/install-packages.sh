#!/usr/bin/env bash
# Installs the Debian packages of the named groups, as far as they are missing:
#   scripts/install-packages.sh GROUP...
# Needs root only when something is missing; otherwise says what it would install and fails.
set -euo pipefail

declare -A packages=(
  [native]="cmake g++ libcli11-dev make ninja-build nlohmann-json3-dev"
  [tests]="clang libclang-rt-14-dev libgmock-dev libgtest-dev python3 python3-jsonschema"
  [windows]="clang g++-mingw-w64-x86-64-posix g++-mingw-w64-x86-64-win32 googletest locales python3 wine wine64"
  [lint]="clang-format python3"
  [count]="cloc git"
  [coverage]="gcovr"
  [tidy]="clang-tidy cppcheck python3"
  [bench]="libbenchmark-dev libglib2.0-dev libicu-dev libinih-dev libsimpleini-dev pkg-config python3 time"
)

missing=()
for group in "$@"; do
  for package in ${packages[$group]:?no such group}; do
    status=$(dpkg-query --show --showformat='${db:Status-Status}' "$package" 2>/dev/null || true)
    [[ $status == installed ]] || missing+=("$package")
  done
done
((${#missing[@]})) || exit 0

install="apt-get install -y --no-install-recommends ${missing[*]}"
if ((EUID != 0)); then
  printf 'These packages are missing: %s\nInstall them as root, and start again:\n  %s\n' \
    "${missing[*]}" "$install" >&2
  exit 1
fi
echo "Installing: ${missing[*]}"
export DEBIAN_FRONTEND=noninteractive
apt-get update -q </dev/null
$install -q </dev/null
