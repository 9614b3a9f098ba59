#!/usr/bin/env bash
# Configures, builds and tests one preset: test-preset.sh PRESET [what ctest takes].
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

preset=${1:?"usage: $0 PRESET [ctest arguments]"}
shift

echo "Configuring and building preset $preset."
cmake --preset "$preset" --log-level=WARNING
cmake --build --preset "$preset"
echo "Running the tests of preset $preset."
ctest --preset "$preset" --parallel "$(nproc)" "$@"
