#!/usr/bin/env bash
# zorvo-trace built for the build machine reads a trace written by the
# target's sink exactly as zorvo-trace built for the target does.
# Usage: host_tool_test.sh "RUN-PREFIX" WRITER TARGET-TOOL HOST-TOOL
set -euo pipefail
read -r -a run <<<"$1"
writer=$2 target_tool=$3 host_tool=$4
dir=$(mktemp -d)
trap 'rm -rf "$dir"' EXIT

ZORVO_TRACE_DIR=$dir "${run[@]}" "$writer"
files=("$dir"/zorvo.sample.*.trace)
[ ${#files[@]} -eq 1 ] && [ -f "${files[0]}" ] || { echo "no trace written"; exit 1; }
for command in stats dump csv; do
  "$host_tool" "$command" "${files[0]}" >"$dir/host.$command"
  "${run[@]}" "$target_tool" "$command" "${files[0]}" >"$dir/target.$command"
  cmp "$dir/host.$command" "$dir/target.$command"
done
grep -q '^state      complete' "$dir/host.stats"
grep -q '^records    5 (3 accesses, 2 markers)' "$dir/host.stats"
grep -q '^loads      1 records, 48 bytes' "$dir/host.stats"
grep -q '^stores     2 records, 5 bytes' "$dir/host.stats"
grep -q '^sequence   0 to 4, 5 distinct$' "$dir/host.stats"

if "$host_tool" stats "$writer" 2>"$dir/err"; then
  echo "a program file was taken for a trace"
  exit 1
fi
grep -q "^zorvo-trace: $writer: not a zorvo trace file$" "$dir/err"
echo "host and target readers agree"
