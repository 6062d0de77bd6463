#!/usr/bin/env bash
# zorvo --mix on a program whose SVE instructions are counted by hand
# (programs/mix_threads.c): the table on standard error, the CSV and the JSON
# of --mix-out, the threads summed, symbols for the hot addresses; the
# program's own output as on the reference; and nothing without --mix.
# Usage: mix_test.sh ZORVO "REFERENCE COMMAND" PROGRAM
set -euo pipefail
zorvo=$1 program=$3
read -r -a reference <<<"$2"
dir=$(mktemp -d)
trap 'rm -rf "$dir"' EXIT
fail() { echo "mix_test: $*"; exit 1; }

"${reference[@]}" "$program" >"$dir/expected"
"$zorvo" --mix -- "$program" >"$dir/out" 2>"$dir/err"
cmp -s "$dir/expected" "$dir/out" || fail "the program printed otherwise under zorvo --mix"
for line in 'zorvo: instruction mix: 8,010 SVE instructions emulated in 4 threads' \
  '            4,000  49.94%  add        VecU32AddVVX' \
  '            4,000  49.94%  sub        VecU64SubVVX' \
  '               10   0.12%  orr        VecU64OrVVX' \
  'zorvo: the 3 addresses that emulated most'; do
  grep -qxF -- "$line" "$dir/err" || fail "no line '$line' in:$(printf '\n')$(cat "$dir/err")"
done
grep -Eq '^ +4,000  49.94%  0x[0-9a-f]+ +add +hot_loop[.a-z0-9]*\+0x[0-9a-f]+$' "$dir/err" ||
  fail "the hot add is not named by its symbol: $(cat "$dir/err")"

"$zorvo" --mix-out "$dir/mix.csv" -- "$program" >/dev/null 2>&1
grep -qx 'kind,count,share,mnemonic,form,address,symbol' "$dir/mix.csv"
grep -qx 'form,10,0.1248,orr,VecU64OrVVX,,' "$dir/mix.csv" || fail "CSV: $(cat "$dir/mix.csv")"
grep -Eqx 'address,4000,49.9376,sub,VecU64SubVVX,0x[0-9a-f]+,hot_loop[.a-z0-9]*\+0x[0-9a-f]+' \
  "$dir/mix.csv" || fail "CSV: $(cat "$dir/mix.csv")"
[ "$(wc -l <"$dir/mix.csv")" -eq 7 ] || fail "CSV has other rows: $(cat "$dir/mix.csv")"

"$zorvo" --mix-out "$dir/mix.json" -- "$program" >/dev/null 2>&1
python3 - "$dir/mix.json" <<'PY'
import json, sys
mix = json.load(open(sys.argv[1]))
assert (mix["total"], mix["threads"], mix["uncounted_addresses"]) == (8010, 4, 0), mix
assert [(f["mnemonic"], f["count"]) for f in mix["forms"]] == \
    [("add", 4000), ("sub", 4000), ("orr", 10)], mix["forms"]
assert mix["addresses"][2]["symbol"].startswith("cold_loop"), mix["addresses"]
PY

"$zorvo" -- "$program" >/dev/null 2>"$dir/plain-err"
[ ! -s "$dir/plain-err" ] || fail "without --mix: $(cat "$dir/plain-err")"
if "$zorvo" --mix-out 2>"$dir/usage"; then fail "--mix-out without a file ran"; fi
grep -q "needs a value" "$dir/usage"
echo "mix_test: counts, shares, symbols, CSV and JSON as expected"
