#!/usr/bin/env bash
# Installs what is missing on a Debian machine for the named groups: build, test, ci, bench (default: build).
set -euo pipefail

declare -A packages=(
  [build]="g++ cmake ninja-build libutfcpp-dev libjsoncpp-dev libicu-dev"
  [test]="libgtest-dev libgmock-dev librapidcheck-dev python3 pkg-config rsyslog strace util-linux tzdata"
  [ci]="clang libclang-rt-14-dev llvm-14 clang-format clang-tidy shellcheck"
  [bench]="libbenchmark-dev libspdlog-dev"
)

needed=()
for group in "${@:-build}"; do
  if [[ -z ${packages[$group]:-} ]]; then
    echo "$0: no group '$group': the groups are build, test, ci, bench" >&2
    exit 2
  fi
  read -ra names <<<"${packages[$group]}"
  needed+=("${names[@]}")
done

if ! command -v dpkg-query >/dev/null; then
  echo "No Debian system: see to what corresponds to ${needed[*]} yourself."
  exit 0
fi

missing=()
for package in "${needed[@]}"; do
  # One that dpkg has never heard of makes the query fail.
  status=$(dpkg-query --show --showformat='${db:Status-Status}' "$package" 2>/dev/null) || status=unknown
  [[ $status == installed ]] || missing+=("$package")
done
if ((${#missing[@]} == 0)); then
  echo "Dependencies: all there (${*:-build})."
  exit 0
fi

as_root=()
if ((EUID != 0)); then
  if ! command -v sudo >/dev/null; then
    echo "Missing, and neither root nor sudo to install it: apt-get install ${missing[*]}" >&2
    exit 1
  fi
  as_root=(sudo)
fi

echo "Dependencies: installing ${missing[*]}"
apt_get=("${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get --quiet --quiet -o Acquire::Retries=3 -o Dpkg::Use-Pty=0)
"${apt_get[@]}" update
"${apt_get[@]}" install --yes --no-install-recommends "${missing[@]}" </dev/null
