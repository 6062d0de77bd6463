#!/usr/bin/env bash
# A statically linked program executes an AArch64 program, which must run
# under zorvo too: the two print under zorvo what each prints on the
# reference (which cannot follow an exec into another AArch64 program), and
# the run ends with the second program's status.
# usage: check_static_exec.sh FIRST SECOND [SECOND'S ARGS...]
# environment: ZORVO (the launcher), REFERENCE (the reference command)
set -uo pipefail
first=$1
shift
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
read -r -a reference <<<"$REFERENCE"
# The first program's own output stops where it executes the second.
"${reference[@]}" "$first" >"$work/first.out" 2>/dev/null
"${reference[@]}" "$@" >"$work/second.out" 2>/dev/null
ref_status=$?
{ head -1 "$work/first.out"; cat "$work/second.out"; } >"$work/ref.out"
"$ZORVO" -- "$first" exec "$@" >"$work/zorvo.out" 2>"$work/zorvo.err"
zorvo_status=$?
failed=0
if ! cmp -s "$work/ref.out" "$work/zorvo.out"; then
  echo "FAIL: standard output differs (reference <, zorvo >):" >&2
  diff "$work/ref.out" "$work/zorvo.out" >&2
  head -5 "$work/zorvo.err" >&2
  failed=1
fi
if [ "$ref_status" != "$zorvo_status" ]; then
  echo "FAIL: exit status $zorvo_status under zorvo, $ref_status on the reference" >&2
  failed=1
fi
[ $failed -eq 0 ] && echo "static exec: same output and status $ref_status"
exit $failed
