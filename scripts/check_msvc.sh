#!/usr/bin/env bash
# Parses every source of the plug-in as Visual C++ would take it, as far as clang can tell: for its
# target, with its rules for templates and its extensions, and with every warning about an extension
# of either compiler as an error. The headers of the libraries are those of mingw-w64; they see the
# compiler that they know.
set -euo pipefail
cd "$(dirname "$0")/.."

library=$(x86_64-w64-mingw32-g++-win32 -print-file-name=include/c++)
target=(--target=x86_64-pc-windows-msvc -std=c++20
  -fms-compatibility -fms-extensions -fdelayed-template-parsing)
headers=(-fmsc-version=0 -fgnuc-version=12.2 -D__MINGW32__ -D__MINGW64__ -D__STRICT_ANSI__
  '-D__declspec(a)=__attribute__((a))'
  -nostdinc++ -isystem "$library" -isystem "$library/x86_64-w64-mingw32"
  -isystem /usr/x86_64-w64-mingw32/include)
warnings=(-Werror -Wall -Wextra -Wpedantic -Wconversion -Wgnu -Wmicrosoft -Wshadow
  -Wsign-conversion)

find base common handlers toolbox platform -path platform/simulated -prune -o -name '*.cpp' -print0 |
  xargs -0 -n 4 -P "$(nproc)" \
    clang++ -fsyntax-only "${target[@]}" "${headers[@]}" "${warnings[@]}" -I .
