#!/usr/bin/env bash
# Runs the demonstration: the emulator's own handlers on a few instructions.
set -euo pipefail
build=${1:-build}
run=()
if [ "$(uname -m)" != aarch64 ]; then
  run=(qemu-aarch64 -L /usr/aarch64-linux-gnu -cpu max,sve=off)
fi
"${run[@]}" "$build/tools/zorvo-demo"
