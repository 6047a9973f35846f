# Sourced by the scripts: what they need of the machine, and the builds.
# Debian's packages are the only source of tools and libraries.
# shellcheck shell=bash

# Used by the scripts that source this file.
# shellcheck disable=SC2034
{
# The command line carries the boot images: kernel, loaders and the 32-bit agent. It makes disks with
# the programs of dosfstools and mtools.
NATIVE_PACKAGES=(g++ cmake ninja-build libgtest-dev libgmock-dev libbenchmark-dev libcli11-dev
  nlohmann-json3-dev linux-source-6.1 gcc make flex bison bc xz-utils nasm libarchive-tools
  lib32gcc-12-dev lib32stdc++-12-dev dosfstools mtools)
NETWORK_PACKAGES=(iproute2)
# Clients of other makers for the boot images, and the names of ports that they look up.
TFTP_PACKAGES=(curl atftp tftp-hpa netbase)
WINDOWS_PACKAGES=(g++-mingw-w64-x86-64-posix g++-mingw-w64-i686-posix googletest wine wine64)
SCREEN_PACKAGES=(xvfb xauth openbox imagemagick fonts-wine fonts-liberation)
# Drives of the window's tests.
DRIVE_PACKAGES=(fuse python3-fusepy mtools dosfstools)
# Virtual PCs, and what reads their disks.
VM_PACKAGES=(qemu-system-x86 ipxe-qemu seabios fdisk)
CHECK_PACKAGES=(git clang-format)
FUZZ_PACKAGES=(clang libclang-rt-14-dev)
}

say() { printf '%s\n' "$*"; }

die() {
  printf '%s\n' "$*" >&2
  exit 1
}

# Starts the script again with the highest rights, which network namespaces need.
require_root() { # the script's arguments
  [ "$(id -u)" -eq 0 ] || exec sudo -- "$0" "$@"
}

# Runs a command with the highest rights.
as_root() {
  if [ "$(id -u)" -eq 0 ]; then "$@"; else sudo "$@"; fi
}

# Of the packages; they are fetched once a run.
lists_are_new=

# need PACKAGE...: installs the packages that are missing.
need() {
  local missing=() package
  for package in "$@"; do
    dpkg-query -W -f '${Status}' "$package" 2>/dev/null | grep -q 'ok installed' ||
      missing+=("$package")
  done
  [ ${#missing[@]} -eq 0 ] && return 0
  say "Installing ${missing[*]} ..."
  { { [ -n "$lists_are_new" ] || as_root apt-get -qq update; } &&
    as_root env DEBIAN_FRONTEND=noninteractive \
      apt-get -y -qq --no-install-recommends install "${missing[@]}"; } \
    >"$BUILD/apt.log" 2>&1 || {
    tail -n 20 "$BUILD/apt.log" >&2
    die "Cannot install ${missing[*]}."
  }
  lists_are_new=yes
}

# What a build says to the person who waits, for minutes where a kernel is built.
BUILD_NEWS='^(Building the kernel|  kernel: |The kernel has|Waiting for another build)'

# build PRESET [TARGET...]: configures, and builds what changed.
build() {
  local preset=$1 log="$BUILD/$1.log" targets=() news=
  shift
  # The others carry the boot images that the native build makes.
  case $preset in
    linux | fuzz) ;;
    *) build linux payload || return ;;
  esac
  [ $# -gt 0 ] && targets=(--target "$@")
  [ -d "$BUILD/$preset" ] || news=" this takes some minutes the first time"
  say "Building ($preset) ...$news"
  { cmake -S "$TOP" --preset "$preset" &&
    cmake --build "$BUILD/$preset" "${targets[@]}"; } 2>&1 |
    tee "$log" | grep -E --line-buffered "$BUILD_NEWS"
  [ "${PIPESTATUS[0]}" -eq 0 ] && return 0
  grep -E 'error|FAILED' -A 8 "$log" | head -n 60 >&2
  tail -n 5 "$log" >&2
  return 1
}

TOP=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
BUILD=$TOP/build
mkdir -p "$BUILD"
cd "$TOP" || exit 1
