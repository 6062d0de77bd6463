#!/bin/sh
# zorvo-decode on the words of the decoder conventions' worked examples, on a
# word no row knows, and on bad arguments.
set -u
tool=$1
failures=0
fail() {
  echo "FAIL: $*"
  failures=$((failures + 1))
}
expect_line() { # output, fixed text of a whole line
  printf '%s\n' "$1" | grep -qxF -- "$2" || fail "missing line: $2"
}

out=$("$tool" 0x04400d41 0x2560e243 0x058000a7 0x25f9ce02)
status=$?
printf '%s\n' "$out"
[ "$status" -eq 0 ] || fail "exit status $status"
expect_line "$out" "0x04400d41: VecU16AddVVM"
expect_line "$out" "  map       decode_map__31_13, key 0x2200"
expect_line "$out" "  handler   sve_add_zpz"
expect_line "$out" "  operands  Z{1, 5, 1, 1} z1.h, P{3, 4, 7, 7} p3/m, Z{10, 1, 5, 5} z10.h"
expect_line "$out" "0x2560e243: VecU16AddVIX"
expect_line "$out" "  map       decode_map__31_14, key 0x9583"
expect_line "$out" "  handler   sve_add_zi"
expect_line "$out" "  operands  Z{3, 5, 1, 1} z3.h, uimm8-shifted 0x1200 (4608)"
expect_line "$out" "0x058000a7: VecU64AndVIX"
expect_line "$out" "  map       decode_map__31_18, key 0x160"
expect_line "$out" "  handler   sve_and_zi"
expect_line "$out" "  operands  Z{7, 5, 3, 3} z7.d, bitmask(17:5) 0x0000003f0000003f"
expect_line "$out" "0x25f9ce02: VecD64DupI"
expect_line "$out" "  map       decode_map__31_13, key 0x12fce"
expect_line "$out" "  handler   sve_fdup_zi"
expect_line "$out" "  operands  Z{2, 3, 5, 5} z2.d, fp-dup {half 0x3c00, single 0x3f800000, double 0x3ff0000000000000}"

# SVE2, int8 matrix and BF16 words: saddlb z0.h, z0.b, z0.b; smmla; bfdot.
out=$("$tool" 0x45400000 0x45009800 0x64608000)
[ "$?" -eq 0 ] || fail "exit status for SVE2 words"
expect_line "$out" "0x45400000: VecS16AddLBVV"
expect_line "$out" "  handler   generic (the generic tier's VecS16AddLBVV)"
expect_line "$out" "0x45009800: VecS32MMlaVVV"
expect_line "$out" "0x64608000: VecF32BfDotVVV"

# Without 0x, two bridge rows (the second a conversion from half), a prefetch
# and a word that is no SVE instruction.
out=$("$tool" 0416a020 655aa020 84200000 D503201F)
status=$?
[ "$status" -eq 0 ] || fail "exit status $status for known and unknown words"
expect_line "$out" "  handler   generic (the generic tier's VecS8AbsVM)"
expect_line "$out" "  fields    Z(4:0), P(12:10, plain), Z(9:5) -> Z(4:0)"
expect_line "$out" "  operands  generic: Z{0, 0, 5, 5} z0.b, P{0, 6, 7, 7} p0, Z{1, 0, 5, 5} z1.b -> z0"
expect_line "$out" "  handler   generic (the generic tier's VecS16_2FromHVM)"
expect_line "$out" "  operands  generic: Z{0, 1, 5, 5} z0.h, P{0, 6, 7, 7} p0, Z{1, 1, 5, 5} z1.h -> z0"
expect_line "$out" "  operands  none"
expect_line "$out" "0xd503201f: no decode row matches; the emulator leaves it to run natively"

for bad in 0x 12345678a xyz 0x12g4 ""; do
  err=$("$tool" 0x04400d41 "$bad" 2>&1 >/dev/null)
  status=$?
  [ "$status" -eq 2 ] || fail "exit status $status for '$bad'"
  [ "$(printf '%s\n' "$err" | wc -l)" -eq 1 ] || fail "not one line of error for '$bad': $err"
  expect_line "$err" "zorvo-decode: not a hexadecimal instruction word: '$bad'"
done

"$tool" >/dev/null 2>&1
[ $? -eq 2 ] || fail "no arguments should be a usage error"
"$tool" --help | grep -q "qemu-aarch64" || fail "--help does not tell how to run it elsewhere"

[ "$failures" -eq 0 ] && echo "all checks passed"
exit "$failures"
