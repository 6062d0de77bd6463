// Pieces that the inline forms of every family share: the forms themselves,
// the tests of a predicate, lane numbers and pattern counts, the packing of
// flags and the FPSR around floating-point code.
#pragma once

#include <cstdint>

#include "../decode/fields.h"
#include "../decode/sve_utils.h"
#include "inline_emit.h"

// Whether a decoder's name fits an inline row's pattern, where a star stands
// for a run of digits: "VecU*AddVVX" fits "VecU32AddVVX", "VecS*CLoad*SIZ"
// fits "VecS64CLoad2SIZ". Constant, so that every form's operation is found
// when the client is compiled, not while a block is translated.
constexpr bool name_fits(const char* pattern, const char* name) {
  for (; *pattern; ++pattern) {
    if (*pattern != '*') {
      if (*name++ != *pattern) return false;
      continue;
    }
    if (*name < '0' || *name > '9') return false;
    while (*name >= '0' && *name <= '9') ++name;
  }
  return *name == '\0';
}

enum class inline_op : uint8_t {
  none,
  add_zzz,
  sub_zzz,
  and_zzz,
  orr_zzz,
  eor_zzz,
  add_zi,
  sub_zi,
  dup_zi,
  dup_zr,
  count_x,
  increment_x,
  decrement_x,
  increment_z,
  decrement_z,
  load_imm, // ld1 Zt, Pg/z, [Xn|SP, #imm, mul vl], element size as memory
  load_reg, // ld1 Zt, Pg/z, [Xn|SP, Xm, lsl #size]
  store_imm,
  store_reg,
  load_widen_imm, // ld1b..ld1w, ld1sb..ld1sw into wider elements
  load_widen_reg,
  store_narrow_imm, // st1b..st1w from wider elements
  store_narrow_reg,
  fadd_zzz,
  fsub_zzz,
  fmul_zzz,
  fadd_zpz,
  fsub_zpz,
  fmul_zpz,
  fmla_zpzz,
  fmls_zpzz,
  fnmla_zpzz,
  fnmls_zpzz,
  fmad_zpzz,
  fmsb_zpzz,
  add_zpz, // integer, merging under any predicate
  sub_zpz,
  mul_zpz,
  and_zpz,
  orr_zpz,
  eor_zpz,
  smax_zpz,
  umax_zpz,
  smin_zpz,
  umin_zpz,
  smulh_zpz,
  umulh_zpz,
  neg_zp,
  abs_zp,
  mla_zpzz, // Zda + Zn * Zm
  mls_zpzz,
  mad_zpzz, // Za + Zdn * Zm
  msb_zpzz,
  sel_zpzz,
  movprfx_zz,
  cmp_vv,  // integer compares of two vectors, into a predicate, with flags
  fcmp_vv, // floating-point compares of two vectors, into a predicate
  fcmp_v0, // and of a vector with zero
  lsl_zzi, // unpredicated shifts by an immediate
  asr_zzi,
  lsr_zzi,
  while_lo, // whilelo and whilelt, W or X operands (bit 12)
  while_lt,
};

// Vd: chunk k of Pg as an element mask, all ones in every active element of
// the size; Vones holds 1 in each element's first byte.
void load_element_mask(inline_code& c, a64::simd_size size, unsigned vd, unsigned pg, unsigned k,
                       unsigned vones);

// A branch (to be landed) taken unless every element of Pg is active, that is
// bit 0 of each element's first predicate byte is set. X9, X10, X14, X15
// and V2 to V5 are scratch.
unsigned branch_unless_all_true(inline_code& c, unsigned pg, a64::simd_size size);
// A branch (to be landed) taken when no element of Pg is active; the same
// registers.
unsigned branch_unless_any_active(inline_code& c, unsigned pg, a64::simd_size size);

// Lane i of the vector holding i, in lanes of 1 << size bytes: where a
// predicate's elements are, for the forms that build or search one.
const uint8_t* lane_numbers(a64::simd_size size);

// The element count that a predicate pattern (POW2, VL1 .. ALL) names at the process's
// vector length, for elements of 1 << size bytes.
unsigned pattern_elements(a64::simd_size size, unsigned pattern);

// NZCV into the record from three W registers that hold 0 or 1 each: N, Z
// and C (V clear). The C register is scratch for the packing.
void store_flags(inline_code& c, unsigned wn, unsigned wz, unsigned wc);

// The application's FPSR on the host around floating-point code (X9 as
// scratch), and its flags back into the record: the architecture's
// cumulative flags, raised by the same operations.
void fpsr_in(inline_code& c);
void fpsr_out(inline_code& c);

// The flags of a predicate result as a test of it under a governing
// predicate, gathered chunk by chunk, for the forms that write a predicate
// and set NZCV. Their registers besides the record's X19: X9 to X15 as
// scratch (X13 the byte numbers), V16 to V18 what the test gathers over the
// chunks, V19 one in each element's first byte, V20 and V21 scratch.
constexpr unsigned xNumbers = 13;
constexpr unsigned vOnes = 19;
// Byte numbers go up to 255, and the code of the forms that gather the test
// grows with the vector: up to this many bytes it stays within
// kInlineMaxWords.
constexpr unsigned kMostBytesTested = 128;

// X13: bytes that hold their own numbers, where a predicate's first and last
// active elements are.
void load_byte_numbers(inline_code& c);
// V19: 1 in the first byte of every element of the size.
void element_ones(inline_code& c, a64::simd_size size);
// The predicate test of a result under a governing predicate, gathered chunk
// by chunk: the first and the last byte number of the governing predicate's
// active elements (0xff and 0 when it has none) and whether the result has
// any element set. The result must be part of the governing predicate or be
// ANDed with it in Vr. Vnum holds the chunk's byte numbers.
void test_chunk(inline_code& c, unsigned k, a64::simd_size size, unsigned vg, unsigned vr,
                unsigned vnum);
// NZCV into the record from what test_chunk gathered: N the first governed
// element of predicate `tested`, Z none set, C not its last, V clear.
// `tested` is the result, or ptest's Pn, which equals the AND at those
// elements whenever any element is set.
void finish_test(inline_code& c, a64::simd_size size, unsigned tested);
