#!/usr/bin/env bash
# The README's walk through a trace, on the example program: the traced build
# prints under zorvo what the plain one prints on the reference, leaves one
# trace with the loads and stores of its week (at 48-byte vectors, one record
# per load or store of the 8 accounts: 5 loads and 3 stores a day for 7
# days), and zorvo-trace stats and report read it.
# Usage: ledger_trace_test.sh ZORVO "REFERENCE COMMAND" PLAIN TRACED ZORVO-TRACE
set -euo pipefail
zorvo=$1 plain=$3 traced=$4 tool=$5
read -r -a reference <<<"$2"
dir=$(mktemp -d)
trap 'rm -rf "$dir"' EXIT

"${reference[@]}" "$plain" >"$dir/expected"
"$zorvo" --trace-dir "$dir" -- "$traced" >"$dir/actual"
diff -u "$dir/expected" "$dir/actual"
traces=("$dir"/zorvo.sve_ledger_traced.*.trace)
[ ${#traces[@]} -eq 1 ] && [ -f "${traces[0]}" ]
"$tool" stats "${traces[0]}" >"$dir/stats"
for line in 'records    58 (56 accesses, 2 markers)' 'loads      35 records, 1120 bytes' \
  'stores     21 records, 672 bytes' 'markers    1 start, 1 stop'; do
  grep -qx "$line" "$dir/stats" || { echo "stats lack '$line':"; cat "$dir/stats"; exit 1; }
done
"$tool" report "${traces[0]}" -o "$dir/report.html"
grep -q 'id="address-plot"' "$dir/report.html"
echo "the example's trace is as expected"
