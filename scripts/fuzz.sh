#!/usr/bin/env bash
# Builds the fuzz targets and runs each for some seconds (default 10), beginning with its corpus.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

seconds=${1:-10}
echo "Building the fuzz targets."
cmake --preset fuzz --log-level=WARNING >/dev/null
cmake --build --preset fuzz --target fuzzers

for corpus in tests/fuzz/corpus/*/; do
  target=$(basename "$corpus")
  found=build/fuzz/found/$target
  mkdir -p "$found"
  arguments=(-max_total_time="$seconds" -max_len=2048 -artifact_prefix="$found/")
  dictionary=tests/fuzz/$target.dict
  [[ -e $dictionary ]] && arguments+=(-dict="$dictionary")

  echo "Fuzzing $target for $seconds s."
  if ! build/fuzz/tests/fuzz/"$target" "${arguments[@]}" "$found" "$corpus" >"$found.log" 2>&1; then
    tail -n 100 "$found.log"
    exit 1
  fi
  tail -n 1 "$found.log"
done
