#!/usr/bin/env bash
# Puts the arm64 build of Debian's user-mode emulator into DIR (default
# build/bench/qemu-user), extracted from its package, not installed: the bench
# runs it inside the no-SVE processor as the alternative a user has to zorvo.
# Quiet when it is already there; needs root (or sudo) the first time, to add
# the arm64 architecture to apt.
set -euo pipefail

dir=${1:-build/bench/qemu-user}
binary=$dir/usr/bin/qemu-aarch64-static
[ -x "$binary" ] && exit 0

sudo_cmd=()
if [ "$(id -u)" -ne 0 ]; then sudo_cmd=(sudo); fi
export DEBIAN_FRONTEND=noninteractive
if ! dpkg --print-foreign-architectures | grep -qx arm64; then
  "${sudo_cmd[@]}" dpkg --add-architecture arm64
  "${sudo_cmd[@]}" apt-get update -qq
fi
mkdir -p "$dir"
download=$(mktemp -d)
trap 'rm -rf "$download"' EXIT
(cd "$download" && apt-get download -qq qemu-user-static:arm64 ||
  { "${sudo_cmd[@]}" apt-get update -qq && apt-get download -qq qemu-user-static:arm64; })
dpkg-deb -x "$download"/qemu-user-static_*_arm64.deb "$dir"
[ -x "$binary" ] || { echo "fetch-qemu-user-arm64: no $binary in the package" >&2; exit 1; }
