#!/usr/bin/env bash
# Runs the reference check at several vector lengths, two at a time, each on
# a reference processor of that length, and writes one table with a column
# per length.
# Usage: check_lengths.sh OUT_DIR MARKDOWN SEED CASES:BITS[,BITS...] [CASES:BITS...] -- QEMU... -- CHECKER
# e.g.   check_lengths.sh build/reference docs/reference.md 1 2000:384 1000:128,256,512,2048 \
#            -- qemu-aarch64 -L /usr/aarch64-linux-gnu -- build/tests/reference/zorvo-reference
set -uo pipefail
out=$1 markdown=$2 seed=$3
shift 3
runs=()
while [ "$1" != -- ]; do
  cases=${1%%:*}
  IFS=, read -r -a lengths <<<"${1#*:}"
  for bits in "${lengths[@]}"; do runs+=("$bits:$cases"); done
  shift
done
shift
qemu=()
while [ "$1" != -- ]; do
  qemu+=("$1")
  shift
done
checker=$2
mkdir -p "$out"

run_one() {
  local bits=${1%%:*} cases=${1#*:}
  # The reference starts a program at the longest length its processor
  # offers only when told to.
  "${qemu[@]}" -cpu "max,sve$bits=on,sve-default-vector-length=$((bits / 8))" "$checker" \
    --cases "$cases" --seed "$seed" --results "$out/vl$bits.tsv" >"$out/vl$bits.log" 2>&1
  local status=$?
  echo "$bits bits: $(tail -n 1 "$out/vl$bits.log") (exit $status)"
  return $status
}
status=0
running=0
for run in "${runs[@]}"; do
  # Two at a time: a new length starts as soon as either running one ends.
  if [ $running -ge 2 ]; then
    wait -n || status=1
    running=$((running - 1))
  fi
  run_one "$run" &
  running=$((running + 1))
done
while [ $running -gt 0 ]; do
  wait -n || status=1
  running=$((running - 1))
done

# Columns in ascending length.
files=$(for run in "${runs[@]}"; do echo "${run%%:*}"; done | sort -n | sed "s|.*|$out/vl&.tsv|" | paste -sd,)
"${qemu[@]}" -cpu max,sve128=on "$checker" --combine "$files" --markdown "$markdown" --seed "$seed" ||
  status=1
exit $status
