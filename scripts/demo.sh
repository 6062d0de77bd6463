#!/usr/bin/env bash
# The demonstration: an SVE program runs on a processor without SVE.
#
# examples/sve_ledger.c is an ordinary C program whose arithmetic is written
# with SVE intrinsics. It runs three times:
#   1. on the reference: an AArch64 processor with SVE (qemu, 384-bit vectors);
#   2. on an AArch64 processor without SVE, as it is: it dies at its first
#      SVE instruction;
#   3. on the same processor without SVE, under zorvo.
# Runs 1 and 3 must print the same.
set -uo pipefail
build=${1:-build}
sysroot=/usr/aarch64-linux-gnu
program=$build/examples/sve_ledger
zorvo=$build/tools/zorvo
for f in "$program" "$zorvo"; do
  [ -x "$f" ] || { echo "demo: $f is missing; run 'make demo' from the top of the checkout" >&2; exit 1; }
done
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

step() { printf '\n\033[1m== %s\033[0m\n' "$*"; }

step "The program's SVE instructions (aarch64-linux-gnu-objdump -d $program)"
aarch64-linux-gnu-objdump -d "$program" | grep -E '\s(z[0-9]+\.|p[0-9]+/)' | sed 's/^/  /'

step "1. On the reference, a processor with SVE: qemu-aarch64 -cpu max,sve384=on"
qemu-aarch64 -L $sysroot -cpu max,sve384=on "$program" | tee "$work/reference"

step "2. On a processor without SVE, as it is: qemu-aarch64 -cpu max,sve=off"
# An inner shell waits for it, so that its report of the signal stays here.
bash -c '"$@" >/dev/null; exit $?' demo qemu-aarch64 -L $sysroot -cpu max,sve=off "$program" \
  2>"$work/nosve"
status=$?
grep '^qemu:' "$work/nosve" | sed 's/^/  /'
echo "  (exit status $status: 132 means killed by SIGILL, an illegal instruction)"

step "3. On the processor without SVE, under zorvo: $zorvo --stats -- $program"
"$zorvo" --stats -- "$program" 2>"$work/stats" | tee "$work/zorvo"
sed 's/^/  /' "$work/stats"
echo "  (a block of SVE instructions raises SIGILL once, when it is first met; from then on"
echo "  its first word branches straight into the rewritten code, which emulates each one)"

step "Result"
if cmp -s "$work/reference" "$work/zorvo"; then
  echo "Both print the same: the SVE program ran correctly on a processor without SVE."
else
  echo "The outputs differ:"
  diff "$work/reference" "$work/zorvo"
  exit 1
fi
