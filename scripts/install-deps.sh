#!/usr/bin/env bash
# Installs what building and testing Zorvo needs on Debian 12. Quiet and
# quick when everything is already there; run as root (or with sudo).
set -euo pipefail

packages=(
  g++-aarch64-linux-gnu
  g++ # zorvo-trace and the ELF mutation test (with its sanitizers) for the build machine
  binutils-aarch64-linux-gnu
  qemu-user
  cmake
  ninja-build
  googletest
  make
  python3
  chromium # the trace report's browser test (headless)
)

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed'; then
    missing+=("$p")
  fi
done
[ ${#missing[@]} -eq 0 ] && exit 0

echo "install-deps: installing ${missing[*]}"
sudo_cmd=()
if [ "$(id -u)" -ne 0 ]; then sudo_cmd=(sudo); fi
export DEBIAN_FRONTEND=noninteractive
"${sudo_cmd[@]}" apt-get update -qq
"${sudo_cmd[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
