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
traced=$build/examples/sve_ledger_traced
zorvo=$build/tools/zorvo
trace_tool=$build/host/zorvo-trace
[ -x "$trace_tool" ] || trace_tool=$build/tracesink/zorvo-trace
for f in "$program" "$traced" "$zorvo"; do
  [ -x "$f" ] || { echo "demo: $f is missing; run 'make demo' from the top of the checkout" >&2; exit 1; }
done
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# Bold headings on a terminal only: a log or a pipe gets plain text.
if [ -t 1 ]; then
  step() { printf '\n\033[1m== %s\033[0m\n' "$*"; }
else
  step() { printf '\n== %s\n' "$*"; }
fi

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

step "4. Its memory trace: $zorvo --trace-dir DIR -- $traced"
echo "  (the same program with ZORVO_ROI_START() and ZORVO_ROI_STOP() around its week)"
"$zorvo" --trace-dir "$work" -- "$traced" >/dev/null || exit 1
trace=$(ls "$work"/zorvo.*.trace)
"$trace_tool" stats "$trace" | sed 's/^/  /'
report=$build/examples/sve_ledger_report.html
"$trace_tool" report "$trace" -o "$report" || exit 1
echo
echo "  zorvo-trace report wrote $report: charts of addresses over time,"
echo "  bytes, strides and cache hits by instruction; open it in a browser."
