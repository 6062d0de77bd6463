#!/usr/bin/env bash
# A traced program that ends without its exit handlers (_exit from any
# thread, exit_group through syscall(), a fatal signal: a fault, abort,
# SIGTERM) or after changing its working directory: the trace
# file is where --trace-dir (relative) said, complete, with every record.
# usage: trace_exits_test.sh ZORVO "EMULATOR PREFIX" ZORVO_TRACE PROGRAM
set -uo pipefail
zorvo=$1 run_prefix=$2 trace_tool=$3 program=$4
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failures=0
fail() { echo "FAIL ($how): $*" >&2; failures=$((failures + 1)); }

for case in exit:3 thread:4 fatal:139 chdir:0 abort:134 term:143 group:5; do
  how=${case%:*} want=${case#*:}
  mkdir -p "$work/$how/traces"
  (cd "$work/$how" && "$zorvo" --trace-dir traces -- "$program" "$how" >out 2>err)
  status=$?
  [ "$status" = "$want" ] || fail "status $status, want $want: $(head -3 "$work/$how/err")"
  traces=("$work/$how"/traces/zorvo.*.trace)
  if [ ${#traces[@]} -ne 1 ] || [ ! -f "${traces[0]}" ]; then
    fail "expected one trace file, found: $(ls -A "$work/$how/traces")"
    continue
  fi
  # shellcheck disable=SC2086
  $run_prefix "$trace_tool" csv "${traces[0]}" >"$work/$how/csv" 2>"$work/$how/tool-err" ||
    fail "zorvo-trace csv failed: $(cat "$work/$how/tool-err")"
  [ ! -s "$work/$how/tool-err" ] || fail "zorvo-trace warned: $(cat "$work/$how/tool-err")"
  # The faulting load may be recorded or not; the real SVE processor would
  # not have completed it either.
  unmapped=$(sed -n 's/^# unmapped //p' "$work/$how/out")
  tail -n +2 "$work/$how/csv" | cut -d, -f2- | grep -v ",${unmapped:-none}," >"$work/$how/actual"
  grep -v '^#' "$work/$how/out" | diff -u - "$work/$how/actual" >&2 ||
    fail "records differ from what the program caused"
done
[ $failures -eq 0 ] || exit 1
echo "trace_exits_test: every record kept"
