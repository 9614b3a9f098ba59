#!/usr/bin/env bash
# Installs what is missing on a Debian machine for the named groups: build, test, ci, bench (default: build).
set -euo pipefail

declare -A packages=(
  [build]="g++ cmake ninja-build libutfcpp-dev libjsoncpp-dev nlohmann-json3-dev libicu-dev pkg-config"
  [test]="libgtest-dev libgmock-dev librapidcheck-dev python3 rsyslog groff-base strace util-linux tzdata"
  [ci]="clang libclang-rt-14-dev llvm-14 clang-format clang-tidy shellcheck mmdebstrap"
  [bench]="libbenchmark-dev libspdlog-dev"
)

needed=()
for group in "${@:-build}"; do
  if [[ -z ${packages[$group]:-} ]]; then
    echo "$0: unknown group '$group'; the groups are build, test, ci, bench" >&2
    exit 2
  fi
  read -ra names <<<"${packages[$group]}"
  needed+=("${names[@]}")
done

if ! command -v dpkg-query >/dev/null; then
  echo "This is not a Debian system: install what corresponds to ${needed[*]} yourself."
  exit 0
fi

find_missing() {
  local package status
  missing=()
  for package in "${needed[@]}"; do
    # The query fails for a package that dpkg does not know.
    status=$(dpkg-query --show --showformat='${db:Status-Status}' "$package" 2>/dev/null) || status=unknown
    [[ $status == installed ]] || missing+=("$package")
  done
}

run_apt_get() {
  local as_root=()
  ((EUID == 0)) || as_root=(sudo)
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
    apt-get --quiet --quiet -o Acquire::Retries=3 -o Dpkg::Use-Pty=0 "$@" </dev/null
}

find_missing
if ((${#missing[@]} == 0)); then
  echo "Dependencies: nothing is missing (${*:-build})."
  exit 0
fi
if ((EUID != 0)) && ! command -v sudo >/dev/null; then
  echo "Missing, and only root can install it: apt-get install ${missing[*]}" >&2
  exit 1
fi

echo "Dependencies: installing ${missing[*]}"
# A failure shows in what is missing afterwards: if the lists cannot be updated, the old ones may be sufficient.
run_apt_get update || true
run_apt_get install --yes --no-install-recommends "${missing[@]}" || true
find_missing
if ((${#missing[@]} > 0)); then
  echo "Missing, because apt-get could not install it (is there a network?): ${missing[*]}" >&2
  exit 1
fi
