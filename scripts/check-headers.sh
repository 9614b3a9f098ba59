#!/usr/bin/env bash
# Compiles each public header as the only include of a file, with g++ and with clang.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

for preset in dev dev-clang; do
  echo "Compiling each public header alone, preset $preset."
  cmake --preset "$preset" --log-level=WARNING >/dev/null
  cmake --build --preset "$preset" --target all_verify_interface_header_sets
done
