#!/usr/bin/env bash
# Runs clang-tidy over the library's sources, or over those whose paths match the given patterns.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

echo "Running clang-tidy."
cmake --preset dev-clang --log-level=WARNING >/dev/null
# Not how many warnings there were in headers of the system, once for each file.
run-clang-tidy -quiet -p build/dev-clang -j "$(nproc)" "${@:-^$PWD/(Foundation|Log|examples)/}" 2>&1 |
  grep --invert-match 'warnings generated\.$'
