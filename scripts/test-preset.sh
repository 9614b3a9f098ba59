#!/usr/bin/env bash
# Configures, builds and tests one preset: test-preset.sh PRESET [ctest arguments].
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

preset=${1:?"usage: $0 PRESET [ctest arguments]"}
shift

# Tests with the label "mounts" mount a file system that only they see. Root may do that, and on most systems other
# users as well, in a user namespace. In some containers and in a chroot nobody but the machine's root may.
choose_tests() {
  local reason count
  reason=$("build/$preset/tests/mount_probe" 2>&1) && return
  reason=${reason#child process: }
  count=$(ctest --preset "$preset" --show-only --label-regex '^mounts$' | sed -n 's/^Total Tests: //p')
  note="$count tests are left out: they mount file systems of their own, which is not permitted here ($reason).
Root can run them: sudo ctest --preset $preset --label-regex mounts"
  chosen=(--label-exclude '^mounts$')
}

echo "Configuring and building preset $preset."
# Standard output gets the list of the preset's variables only; warnings and errors go to standard error.
cmake --preset "$preset" --log-level=WARNING >/dev/null
cmake --build --preset "$preset"

note=
chosen=()
choose_tests
echo "Running the tests of preset $preset.${note:+ $note}"
status=0
ctest --preset "$preset" --parallel "$(nproc)" "${chosen[@]}" "$@" || status=$?
# Said again where it is read, after the summary.
[[ -z $note ]] || echo "$note"
exit "$status"
