#!/usr/bin/env bash
# Runs a program on the reference SVE processor and under zorvo on the
# processor without SVE, and fails unless both print the same standard
# output and end with the same status.
#
# usage: compare_with_reference.sh [options] -- PROGRAM [ARGS...]
#   --stdin FILE          both runs read FILE
#   --zorvo-option OPT    passed to zorvo (may be repeated)
#   --stderr-has TEXT     zorvo's standard error must contain this line, in
#                         the order given (may be repeated)
#   --stderr-matches RE   as --stderr-has, a whole line matching the extended
#                         regular expression RE, once and only once
#   --stderr-lacks RE     no line of zorvo's standard error matches RE
#   --only-add-sub        PROGRAM may hold no SVE instruction but add and sub
# environment: ZORVO (the launcher), REFERENCE (the reference command),
#              OBJDUMP (for --only-add-sub)
set -uo pipefail
stdin=/dev/null zorvo_options=() stderr_lines=() stderr_patterns=() stderr_absent=()
only_add_sub=
while [ $# -gt 0 ]; do
  case $1 in
  --stdin) stdin=$2; shift 2 ;;
  --zorvo-option) zorvo_options+=("$2"); shift 2 ;;
  --stderr-has) stderr_lines+=("$2"); shift 2 ;;
  --stderr-matches) stderr_patterns+=("$2"); shift 2 ;;
  --stderr-lacks) stderr_absent+=("$2"); shift 2 ;;
  --only-add-sub) only_add_sub=1; shift ;;
  --) shift; break ;;
  *) echo "unknown option $1" >&2; exit 2 ;;
  esac
done
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failed=0

if [ -n "$only_add_sub" ]; then
  others=$("$OBJDUMP" -d "$1" | grep -E '\s(z[0-9]+\.|p[0-9]+/)' |
    awk -F'\t' '{split($3, m, " "); if (m[1] != "add" && m[1] != "sub") print}')
  if [ -n "$others" ]; then
    echo "FAIL: SVE instructions other than add and sub:" >&2
    echo "$others" >&2
    failed=1
  fi
fi

read -r -a reference <<<"$REFERENCE"
"${reference[@]}" "$@" <"$stdin" >"$work/ref.out" 2>"$work/ref.err"
ref_status=$?
"$ZORVO" "${zorvo_options[@]}" -- "$@" <"$stdin" >"$work/zorvo.out" 2>"$work/zorvo.err"
zorvo_status=$?

if ! cmp -s "$work/ref.out" "$work/zorvo.out"; then
  echo "FAIL: standard output differs (reference <, zorvo >):" >&2
  diff "$work/ref.out" "$work/zorvo.out" | head -40 >&2
  failed=1
fi
if [ "$ref_status" != "$zorvo_status" ]; then
  echo "FAIL: exit status $zorvo_status under zorvo, $ref_status on the reference" >&2
  failed=1
fi
from=1
for line in "${stderr_lines[@]}"; do
  at=$(tail -n +"$from" "$work/zorvo.err" | grep -nxF -- "$line" | head -1 | cut -d: -f1)
  if [ -z "$at" ]; then
    echo "FAIL: zorvo's standard error lacks, in order, the line: $line" >&2
    failed=1
  else
    from=$((from + at))
  fi
done
for pattern in "${stderr_patterns[@]}"; do
  count=$(grep -cxE -- "$pattern" "$work/zorvo.err")
  if [ "$count" != 1 ]; then
    echo "FAIL: $count lines of zorvo's standard error match: $pattern" >&2
    failed=1
  fi
done
for pattern in "${stderr_absent[@]}"; do
  if grep -qE -- "$pattern" "$work/zorvo.err"; then
    echo "FAIL: zorvo's standard error has a line matching: $pattern" >&2
    failed=1
  fi
done
if [ $failed -ne 0 ]; then
  echo "--- zorvo's standard error:" >&2
  head -20 "$work/zorvo.err" >&2
  exit 1
fi
echo "same output ($(wc -l <"$work/ref.out") lines) and status $ref_status"
