#!/usr/bin/env bash
# Compares the runtime's encoder with GNU as, word by word.
# usage: check_encoder.sh AS OBJCOPY RUN...   (RUN: the form lister, with its emulator)
set -euo pipefail
as=$1 objcopy=$2
shift 2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

"$@" >"$work/forms.txt"
cut -f2 "$work/forms.txt" >"$work/forms.s"
"$as" -march=armv8.2-a "$work/forms.s" -o "$work/forms.o"
"$objcopy" -O binary -j .text "$work/forms.o" "$work/forms.bin"
od -An -v -tx4 --endian=little "$work/forms.bin" | tr -s ' ' '\n' | sed '/^$/d' >"$work/as.txt"
cut -f1 "$work/forms.txt" >"$work/ours.txt"

total=$(wc -l <"$work/ours.txt")
if [ "$(wc -l <"$work/as.txt")" -ne "$total" ]; then
  echo "GNU as produced $(wc -l <"$work/as.txt") words for $total forms" >&2
  exit 1
fi
bad=$(paste "$work/ours.txt" "$work/as.txt" "$work/forms.s" | awk -F'\t' '$1 != $2' | head -20)
if [ -n "$bad" ]; then
  echo "encoder and GNU as differ (ours, GNU as, instruction):" >&2
  echo "$bad" >&2
  exit 1
fi
echo "encoder matches GNU as on all $total forms"
