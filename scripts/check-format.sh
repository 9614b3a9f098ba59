#!/usr/bin/env bash
# Checks the layout of every C++ file against .clang-format; with --fix, corrects it instead.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

arguments=(--dry-run --Werror)
[[ ${1:-} == --fix ]] && arguments=(-i)

echo "Checking the layout of C++ files."
find . \( -path ./build -o -path ./.git \) -prune -o \( -name '*.h' -o -name '*.cpp' \) -print0 |
  xargs -0 --no-run-if-empty clang-format "${arguments[@]}"
