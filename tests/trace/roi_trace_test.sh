#!/usr/bin/env bash
# Runs a program with region-of-interest markers under zorvo and checks the
# trace file against the records the program says it caused; then runs it
# without markers and checks that no trace file appears.
# usage: roi_trace_test.sh ZORVO "EMULATOR PREFIX" ZORVO_TRACE PROGRAM
set -euo pipefail
zorvo=$1 run_prefix=$2 trace_tool=$3 program=$4
dir=$(mktemp -d)
trap 'rm -rf "$dir"' EXIT

fail() { echo "roi_trace_test: $*" >&2; exit 1; }

# The records of the call path (--no-inline) first; the default run, where
# the hot memory forms are code of their own, must leave the same ones.
mkdir -p "$dir/called"
"$zorvo" --no-inline --trace-dir "$dir/called" -- "$program" >"$dir/expected-called" 2>"$dir/stderr" \
  || fail "program failed with --no-inline: $(cat "$dir/stderr")"
called=("$dir"/called/zorvo.*.trace)
[ ${#called[@]} -eq 1 ] && [ -f "${called[0]}" ] || fail "--no-inline: expected one trace file"
# shellcheck disable=SC2086
$run_prefix "$trace_tool" csv "${called[0]}" | tail -n +2 | cut -d, -f2- >"$dir/actual-called"
diff -u "$dir/expected-called" "$dir/actual-called" || fail "--no-inline: records differ"

mkdir -p "$dir/marked"
"$zorvo" --trace-dir "$dir/marked" -- "$program" >"$dir/expected" 2>"$dir/stderr" \
  || fail "program failed: $(cat "$dir/stderr")"
[ ! -s "$dir/stderr" ] || fail "unexpected messages: $(head -3 "$dir/stderr")"
traces=("$dir"/marked/zorvo.*.trace)
[ ${#traces[@]} -eq 1 ] && [ -f "${traces[0]}" ] || fail "expected one trace file, found: ${traces[*]}"

# shellcheck disable=SC2086
$run_prefix "$trace_tool" csv "${traces[0]}" >"$dir/csv" 2>"$dir/tool-stderr" \
  || fail "zorvo-trace csv failed: $(cat "$dir/tool-stderr")"
[ ! -s "$dir/tool-stderr" ] || fail "zorvo-trace warned: $(cat "$dir/tool-stderr")"
tail -n +2 "$dir/csv" | cut -d, -f2- >"$dir/actual"
diff -u "$dir/expected" "$dir/actual" || fail "records differ from what the program caused"
# Same fields in the same order; only the thread ids may differ between runs.
cut -d, -f2- "$dir/actual" >"$dir/inline-records"
cut -d, -f2- "$dir/actual-called" >"$dir/called-records"
diff -u "$dir/called-records" "$dir/inline-records" || fail "inline code and call path leave different records"

# Sequence numbers increase by one from record to record.
tail -n +2 "$dir/csv" | cut -d, -f1 | awk 'NR > 1 && $1 != prev + 1 { bad = 1 } { prev = $1 } END { exit bad }' \
  || fail "sequence numbers are not consecutive"

mkdir -p "$dir/unmarked"
"$zorvo" --trace-dir "$dir/unmarked" -- "$program" unmarked >/dev/null 2>"$dir/stderr" \
  || fail "unmarked run failed: $(cat "$dir/stderr")"
[ -z "$(ls -A "$dir/unmarked")" ] || fail "a program without markers left a trace: $(ls "$dir/unmarked")"
echo "roi_trace_test: $(wc -l <"$dir/expected") records as expected"
