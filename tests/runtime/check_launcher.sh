#!/usr/bin/env bash
# The launcher's answers to what a user can get wrong, and its options.
# usage: check_launcher.sh ZORVO STATIC_PROGRAM PASSTHROUGH_PROGRAM
set -uo pipefail
zorvo=$1 static_program=$2 program=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failures=0

# expect STATUS STDERR-SUBSTRING COMMAND...: runs COMMAND and checks both.
expect() {
  local want_status=$1 want_text=$2
  shift 2
  "$@" </dev/null >"$work/out" 2>"$work/err"
  local status=$?
  if [ "$status" != "$want_status" ] || ! grep -qF -- "$want_text" "$work/err" "$work/out"; then
    echo "FAIL: $* -> status $status (want $want_status), output:" >&2
    cat "$work/err" "$work/out" | head -5 >&2
    echo "  wanted: $want_text" >&2
    failures=$((failures + 1))
  fi
}

expect 2 "zorvo: no application given" "$zorvo"
expect 2 "zorvo: no application given" "$zorvo" --stats --
expect 127 "zorvo: /no/such/program: no such file" "$zorvo" -- /no/such/program
expect 127 "zorvo: no-such-command-here: command not found" "$zorvo" -- no-such-command-here
touch "$work/plain" && chmod 644 "$work/plain"
expect 126 "zorvo: $work/plain: not executable" "$zorvo" -- "$work/plain"
expect 126 "zorvo: $work: is a directory" "$zorvo" -- "$work"
printf '#!/bin/sh\necho hi\n' >"$work/script" && chmod 755 "$work/script"
expect 2 "zorvo: $work/script: not an AArch64 ELF program" "$zorvo" -- "$work/script"
# An x86-64 ELF header: right magic, wrong machine.
printf '\177ELF\002\001\001\000\000\000\000\000\000\000\000\000\002\000\076\000' >"$work/x86"
head -c 200 /dev/zero >>"$work/x86" && chmod 755 "$work/x86"
expect 2 "zorvo: $work/x86: not an AArch64 ELF program" "$zorvo" -- "$work/x86"
# A static program's exit runs the exit events too.
expect 6 "blocks built" "$zorvo" --stats -- "$static_program"
expect 2 "zorvo: unknown option '--bogus'" "$zorvo" --bogus -- "$program"
expect 2 "option --trace-dir needs a value" "$zorvo" --trace-dir
# Vector lengths: multiples of 128 bits from 128 to 2048, one line otherwise.
for bad in 0 64 100 384x 2176 4096 -128 ''; do
  expect 2 "zorvo: --vl needs a multiple of 128 from 128 to 2048, not '$bad'" \
    "$zorvo" --vl "$bad" -- "$program"
  [ "$(wc -l <"$work/err")" = 1 ] || {
    echo "FAIL: --vl '$bad' says more than one line" >&2
    failures=$((failures + 1))
  }
done
expect 2 "option --vl needs a value" "$zorvo" --vl
expect 2 "--loglevel needs a number" "$zorvo" --loglevel x -- "$program"
expect 0 "usage: zorvo [options] -- APP" "$zorvo" --help

# Options that reach the runtime and the client.
expect 1 "SVE emulation client usage error: Unknown option: -x" \
  "$zorvo" --client-option -x -- "$program"
expect 42 "argv[0] = '$program'" "$zorvo" --client-option -- --client-option -x -- "$program"
expect 42 "zorvo: 0 blocks built, 0 fragments, 0 signals taken, 0 fragment entries" \
  "$zorvo" --stats -- "$program"
# A trace directory that cannot be written: one line, before the program
# starts; a relative name is shown as the directory it names.
for bad in "$work/none" "$work/plain" none; do
  shown=$bad
  [[ $bad == /* ]] || shown=$PWD/$bad
  expect 2 "zorvo: --trace-dir $shown: not a writable directory" \
    "$zorvo" --trace-dir "$bad" -- "$program"
  if [ "$(wc -l <"$work/err")" != 1 ] || [ -s "$work/out" ]; then
    echo "FAIL: --trace-dir $bad: more than one line, or the program ran" >&2
    failures=$((failures + 1))
  fi
done
expect 42 "SVE client initializing" "$zorvo" --loglevel 1 -- "$program"
expect 42 "SVE client exiting" "$zorvo" --loglevel 1 -- "$program"
if [ "$(uname -m)" != aarch64 ]; then
  expect 1 "needs /no/qemu" env ZORVO_QEMU="/no/qemu -cpu max" "$zorvo" -- "$program"
fi

if [ $failures -ne 0 ]; then
  echo "$failures launcher checks failed" >&2
  exit 1
fi
echo "all launcher checks passed"
