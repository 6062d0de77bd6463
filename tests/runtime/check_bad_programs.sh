#!/usr/bin/env bash
# Damaged programs under zorvo: each one either runs, or zorvo refuses it
# with one line and a non-zero status. zorvo never dies by a signal unless
# the program, run on the reference, dies by the same one.
# usage: check_bad_programs.sh MUTATIONS_TOOL PROGRAM COUNT
# environment: ZORVO (the launcher), REFERENCE (the reference command)
set -uo pipefail
tool=$1 program=$2 count=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
read -r -a reference <<<"$REFERENCE"
"$tool" --write "$work" "$program" "$count" >"$work/list" || exit 1
failures=0 refused=0
while IFS=$'\t' read -r mutant what; do
  chmod 755 "$mutant"
  # In a subshell that does not exec, so that a death by signal is reported
  # here by its status, not by the shell's message.
  (timeout 20 "$ZORVO" -- "$mutant" </dev/null >"$work/out" 2>"$work/err"; exit $?) 2>/dev/null
  status=$?
  if grep -q "^zorvo: " "$work/err"; then
    refused=$((refused + 1))
    if [ "$status" = 0 ] || [ "$(wc -l <"$work/err")" != 1 ]; then
      echo "FAIL: $what: status $status, standard error:" >&2
      cat "$work/err" >&2
      failures=$((failures + 1))
    fi
  elif [ "$status" -ge 124 ]; then
    (timeout 20 "${reference[@]}" "$mutant" </dev/null >/dev/null 2>&1; exit $?) 2>/dev/null
    ref_status=$?
    if [ "$ref_status" != "$status" ]; then
      echo "FAIL: $what: status $status under zorvo, $ref_status on the reference" >&2
      head -3 "$work/err" >&2
      failures=$((failures + 1))
    fi
  fi
done <"$work/list"
echo "$count damaged programs, $refused refused by zorvo, $failures failures"
[ "$failures" = 0 ] && [ "$refused" -gt 0 ]
