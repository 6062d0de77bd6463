#!/usr/bin/env bash
# A trace made under zorvo --vl BITS says the length it was made at, and its
# records follow that length: the whole-vector load of the program's first
# record covers BITS / 8 bytes.
# usage: trace_length_test.sh ZORVO "EMULATOR PREFIX" ZORVO_TRACE PROGRAM BITS
set -euo pipefail
zorvo=$1 run_prefix=$2 trace_tool=$3 program=$4 bits=$5
dir=$(mktemp -d)
trap 'rm -rf "$dir"' EXIT
fail() { echo "trace_length_test: $*" >&2; exit 1; }

"$zorvo" --vl "$bits" --trace-dir "$dir" -- "$program" >/dev/null 2>"$dir/stderr" ||
  fail "program failed: $(cat "$dir/stderr")"
traces=("$dir"/zorvo.*.trace)
[ -f "${traces[0]}" ] || fail "no trace file"
# shellcheck disable=SC2086
$run_prefix "$trace_tool" stats "${traces[0]}" >"$dir/stats"
grep -qx "vector     $((bits / 8)) bytes" "$dir/stats" ||
  fail "the trace does not say $((bits / 8)) bytes: $(grep vector "$dir/stats")"
# shellcheck disable=SC2086
$run_prefix "$trace_tool" csv "${traces[0]}" >"$dir/csv"
# The first load: the first thread's all-active word load (seq,tid,kind,addr,size,...).
size=$(grep -m 1 ',load,' "$dir/csv" | cut -d, -f5)
[ "$size" = $((bits / 8)) ] || fail "the first load covers $size bytes, not $((bits / 8))"
echo "trace_length_test: $bits bits, $(($(wc -l <"$dir/csv") - 1)) records"
