#!/usr/bin/env bash
# Configures, builds and tests one preset: test-preset.sh PRESET [ctest arguments].
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

preset=${1:?"usage: $0 PRESET [ctest arguments]"}
shift

# Tests with the label "mounts" mount file systems that only they see. Root is allowed to do that, and on most systems
# other users are, too, in a user namespace. In some containers and in a chroot, only the machine's root is.
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
# Standard output is only the list of the preset's variables; warnings and errors are on standard error.
cmake --preset "$preset" --log-level=WARNING >/dev/null
cmake --build --preset "$preset"

note=
chosen=()
choose_tests
echo "Running the tests of preset $preset.${note:+ $note}"
status=0
ctest --preset "$preset" --parallel "$(nproc)" "${chosen[@]}" "$@" || status=$?
# Repeated after the summary, where it is not overlooked.
[[ -z $note ]] || echo "$note"
exit "$status"
