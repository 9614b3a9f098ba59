#!/usr/bin/env bash
# Runs the commands of README.md as its readers do: as an ordinary user with sudo, on a new and minimal Debian system.
# The tree is in a path with blanks there. Needs root, a network, and the packages of the group "ci".
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

((EUID == 0)) || exec sudo --preserve-env=CMAKE_CXX_COMPILER_LAUNCHER,RC_PARAMS,http_proxy,https_proxy \
  "$PWD/scripts/check-readme.sh"

launcher=${CMAKE_CXX_COMPILER_LAUNCHER:-}
work=$PWD/build/check-readme
archive=$work/system${launcher:+-with-$launcher}.tar
# Results of the compiler, which are kept between runs if ccache is used.
cache=$work/ccache
tree="home/reader/YLog with blanks"

# Print where this machine gets Debian's packages from, and how.
print_sources() {
  # shellcheck disable=SC2016
  apt-get indextargets --format 'deb $(REPO_URI) $(RELEASE) $(COMPONENT)' 'Created-By: Packages' 'Origin: Debian'
}

print_apt_options() {
  apt-config dump --no-empty | grep -E '^Acquire::(http|https|ftp|Check-Valid-Until|Check-Date)\b' || true
  [[ -z ${http_proxy:-} ]] || echo "Acquire::http::Proxy \"$http_proxy\";"
  [[ -z ${https_proxy:-} ]] || echo "Acquire::https::Proxy \"$https_proxy\";"
  echo 'Acquire::Languages "none";'
  # What the reader would answer.
  echo 'APT::Get::Assume-Yes "true";'
}

create_archive() {
  # The compiler's launcher, if there is one, has the name of its package: ccache.
  local codename sources packages=sudo
  codename=$(sed -n 's/^VERSION_CODENAME=//p' /etc/os-release)
  [[ -n $(print_sources) ]] || apt-get --quiet --quiet update
  sources=$(print_sources)
  [[ $sources != *https:* ]] || packages+=,ca-certificates
  packages+=${launcher:+,$launcher}
  print_apt_options >"$work/apt.conf"
  echo "Creating a minimal Debian system with $packages."
  # shellcheck disable=SC2016
  mmdebstrap --quiet --format=tar --variant=minbase --include="$packages" --aptopt="$work/apt.conf" \
    --customize-hook='chroot "$1" useradd --uid 1000 --create-home --shell /bin/bash reader' \
    --customize-hook='echo "reader ALL=(ALL) NOPASSWD: ALL" >"$1/etc/sudoers.d/reader"' \
    "$codename" "$archive.new" - <<<"$sources"
  mv "$archive.new" "$archive"
}

# unpack_system NAME: creates a new system in that folder, with the tree and with the commands from standard input.
unpack_system() {
  local root=$work/$1
  rm -rf --one-file-system "$root"
  mkdir "$root"
  tar --extract --file="$archive" --directory="$root"
  cp --dereference /etc/resolv.conf /etc/hosts "$root/etc/"
  mkdir "$root/$tree" "$root/var/cache/ccache"
  tar --create --exclude=./build --exclude=./.git . | tar --extract --directory="$root/$tree"
  cat >"$root/$tree/commands"
  chown --recursive 1000:1000 "$root/$tree"
}

# run_commands NAME: runs the commands in that system, as the reader. Not in a chroot, where users cannot create
# namespaces.
run_commands() {
  local environment=(HOME=/home/reader PATH=/usr/local/bin:/usr/bin:/bin)
  if [[ -n $launcher ]]; then
    environment+=("CMAKE_CXX_COMPILER_LAUNCHER=$launcher" CCACHE_DIR=/var/cache/ccache)
    # The tree has just been copied, and most tests use a precompiled header.
    environment+=("CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime")
  fi
  [[ -z ${RC_PARAMS:-} ]] || environment+=("RC_PARAMS=$RC_PARAMS")
  # shellcheck disable=SC2016
  unshare --mount --pid --fork --kill-child --propagation private bash -euc '
    mount --bind "$1" "$1"
    cd "$1"
    mount --rbind /dev dev
    mount -t proc proc proc
    mount --bind "$2" var/cache/ccache
    pivot_root . mnt
    umount --lazy /mnt
    cd "/$3"
    shift 3
    exec runuser --user reader -- env --ignore-environment "$@" bash -euxo pipefail commands
  ' bash "$work/$1" "$cache" "$tree" "${environment[@]}" </dev/null
}

# What the reader does with the blocks that are not commands: the first program, and the lines for CMake.
print_client_commands() {
  echo './server && grep " Order 4711 took 12.5 ms$" orders.log'
  echo 'mkdir client && cat >client/CMakeLists.txt <<END'
  echo 'cmake_minimum_required(VERSION 3.25)'
  echo 'project(server LANGUAGES CXX)'
  echo 'add_executable(server ../server.cpp)'
  scripts/docs.py blocks cmake README.md
  echo 'END'
  echo 'cmake -S client -B client/build -G Ninja && cmake --build client/build'
  echo 'rm orders.log && client/build/server && grep " Order 4711 took 12.5 ms$" orders.log'
}

mkdir -p "$work" "$cache"
chown 1000:1000 "$cache"
# At most a day old, like the system that a reader gets.
[[ -n $(find "$archive" -mtime -1 2>/dev/null) ]] || create_archive

commands=$(scripts/docs.py blocks sh README.md)
tests=$(grep '^scripts/test.sh' <<<"$commands")
run_time=$(grep '^sudo apt-get install' <<<"$commands")
{
  echo 'cp examples/first_program.cpp server.cpp'
  # The tests come last: they install more than the other commands may rely on.
  grep -vxF -e "$tests" -e "$run_time" <<<"$commands"
  print_client_commands
  echo "$tests"
} | unpack_system build
echo "Running the commands of README.md on a system that has only what they install."
run_commands build

{
  echo 'sudo apt-get update'
  echo "$run_time"
  echo 'sudo ldconfig'
  echo './server && grep " Order 4711 took 12.5 ms$" orders.log'
} | unpack_system run
cp --no-dereference "$work"/build/usr/local/lib/libYLog.so.* "$work/run/usr/local/lib/"
cp "$work/build/$tree/server" "$work/run/$tree/"
echo "Running a program on a system that has only the packages for running it."
run_commands run
# They are kept after a failure, for inspection.
rm -rf --one-file-system "$work/build" "$work/run"
