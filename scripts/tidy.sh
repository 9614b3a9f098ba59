#!/usr/bin/env bash
# Runs clang-tidy over the library's sources, or over those whose paths match the given patterns.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

echo "Running clang-tidy."
cmake --preset dev-clang --log-level=WARNING >/dev/null
# Leaves out the counts of warnings in the system's headers, of which there is one for each file.
run-clang-tidy -quiet -p build/dev-clang -j "$(nproc)" "${@:-^$PWD/(Foundation|Log|examples)/}" 2>&1 |
  grep --invert-match 'warnings generated\.$'
