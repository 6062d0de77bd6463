#include "inline_parts.h"

#include <cstring>

#include "../handlers/pattern_count.h"

using namespace a64;

namespace {

struct lane_number_table {
  alignas(16) uint8_t bytes[4][kMaxVectorBytes] = {};
  constexpr lane_number_table() {
    for (unsigned size = 0; size < 4; ++size)
      for (unsigned lane = 0; lane < kMaxVectorBytes >> size; ++lane)
        for (unsigned b = 0; b < (1u << size) && b < 8; ++b)
          bytes[size][(lane << size) + b] = uint8_t(uint64_t{lane} >> (8 * b));
  }
};
constexpr lane_number_table kLaneNumbers;

// The AND (or, with `any`, the OR) of Pg's chunks into V2, then a branch
// (to be landed) taken when bit 0 of some (or of every) element's first
// byte there is clear. Below doublewords that bit is shifted to the top of
// its lane and the lanes' minimum (or maximum) tested, which no mask
// constant needs; doublewords fold into X9 and test against one.
unsigned branch_on_predicate(inline_code& c, unsigned pg, simd_size size, bool any) {
  const auto combine = any ? orr_v : and_v;
  // Vectors of 3 or 4 chunks load the predicate with one ld1, from its
  // address put in X14: shorter ones need no more words chunk by chunk, and
  // ld1 holds at most four registers.
  if (vector_chunks() >= 3 && vector_chunks() <= 4) {
    add_constant(c, 14, kInlineRecord, int64_t(p_offset(pg, 0)));
    c.put(load_consecutive_q(2, vector_chunks(), 14));
    for (unsigned k = 1; k < vector_chunks(); ++k) c.put(combine(2, 2, 2 + k));
  } else {
    for (unsigned k = 0; k < vector_chunks(); ++k) {
      load_q(c, k == 0 ? 2 : 3, kInlineRecord, p_offset(pg, k));
      if (k > 0) c.put(combine(2, 2, 3));
    }
  }
  if (size != D) {
    const unsigned top = (8u << size) - 1;
    c.put(0x4f005400 | ((8u << size) + top) << 16 | 2 << 5 | 2); // shl v2, v2, #top
    c.put(any ? umaxv_v(size, 2, 2) : uminv_v(size, 2, 2));
    c.put(0x1e260000 | 2 << 5 | 9); // fmov w9, s2
    return c.put_branch(branch_if_bit_clear(9, top));
  }
  c.put(umov_d(9, 2, 0));
  c.put(umov_d(10, 2, 1));
  c.put(any ? orr_x(9, 9, 10) : and_x(9, 9, 10));
  c.put(and_element_ones(size, 9, 9));
  if (any) return c.put_branch(kBranchZero | 9);
  c.put(eor_element_ones(size, 9, 9));
  return c.put_branch(kBranchNonZero | 9);
}

} // namespace

const uint8_t* lane_numbers(simd_size size) { return kLaneNumbers.bytes[size]; }

unsigned pattern_elements(simd_size size, unsigned pattern) {
  switch (size) {
  case B:
    return pattern_count<uint8_t>(pattern);
  case H:
    return pattern_count<uint16_t>(pattern);
  case S:
    return pattern_count<uint32_t>(pattern);
  default:
    return pattern_count<uint64_t>(pattern);
  }
}

void load_element_mask(inline_code& c, simd_size size, unsigned vd, unsigned pg, unsigned k,
                       unsigned vones) {
  load_q(c, vd, kInlineRecord, p_offset(pg, k));
  c.put(test_v(size, vd, vd, vones));
}

unsigned branch_unless_all_true(inline_code& c, unsigned pg, simd_size size) {
  return branch_on_predicate(c, pg, size, false);
}

unsigned branch_unless_any_active(inline_code& c, unsigned pg, simd_size size) {
  return branch_on_predicate(c, pg, size, true);
}

void store_flags(inline_code& c, unsigned wn, unsigned wz, unsigned wc) {
  c.put(0x2a000000 | wz << 16 | 1 << 10 | wc << 5 | wc); // orr wc, wc, wz, lsl #1
  c.put(0x2a000000 | wn << 16 | 2 << 10 | wc << 5 | wc); // orr wc, wc, wn, lsl #2
  c.put(0x53000000 | 3 << 16 | 2 << 10 | wc << 5 | wc);  // lsl wc, wc, #29
  store_x(c, wc, kInlineRecord, offsetof(cpu_state, nzcv));
}

void fpsr_in(inline_code& c) {
  c.put(0xb9400000 | uint32_t(offsetof(cpu_state, fpsr) / 4) << 10 | kInlineRecord << 5 | 9);
  c.put(0xd51b4420 | 9); // msr fpsr, x9
}
void fpsr_out(inline_code& c) {
  c.put(0xd53b4420 | 9); // mrs x9, fpsr
  c.put(0xb9000000 | uint32_t(offsetof(cpu_state, fpsr) / 4) << 10 | kInlineRecord << 5 | 9);
}

// The predicate test gathered chunk by chunk.

namespace {

constexpr unsigned vFirst = 16, vLast = 17, vAny = 18;

// Vd: all ones over every element whose first byte in predicate chunk Vg is
// set (V19 prepared for sizes other than bytes).
uint32_t active_elements(simd_size size, unsigned vd, unsigned vg) {
  return size == B ? neg_v(B, vd, vg) : test_v(size, vd, vg, vOnes);
}

// NZCV into the record, as finish_test gives it, from the number of the
// first governed byte in W11, of the last in W12 and V18 (any element set).
void flags_from_bounds(inline_code& c, unsigned tested) {
  // Predicate bytes hold 0 or 1: the greatest says whether any is set.
  c.put(umaxv_v(B, vAny, vAny));
  c.put(umov_b0(10, vAny));
  add_constant(c, 14, kInlineRecord, int64_t(p_offset(tested, 0)));
  c.put(load_byte_indexed(9, 14, 11));  // the first governed element
  c.put(load_byte_indexed(11, 14, 12)); // the last
  c.put(0x0a0a0129);                    // and w9, w9, w10: N
  c.put(0x0a0a016b);                    // and w11, w11, w10
  c.put(0x52000000 | 11 << 5 | 11);     // eor w11, w11, #1: C
  c.put(0x52000000 | 10 << 5 | 10);     // eor w10, w10, #1: Z
  store_flags(c, 9, 10, 11);
}

} // namespace

void load_byte_numbers(inline_code& c) {
  move_constant(c, xNumbers, reinterpret_cast<uint64_t>(lane_numbers(B)));
}

void element_ones(inline_code& c, simd_size size) { lane_ones(c, size, vOnes); }

void test_chunk(inline_code& c, unsigned k, simd_size size, unsigned vg, unsigned vr,
                unsigned vnum) {
  c.put(active_elements(size, 20, vg));
  if (k == 0) {
    c.put(orn_v(vFirst, vnum, 20));
    c.put(and_v(vLast, vnum, 20));
    c.put(orr_v(vAny, vr, vr));
    return;
  }
  c.put(orn_v(21, vnum, 20));
  c.put(umin_b(vFirst, vFirst, 21));
  c.put(and_v(21, vnum, 20));
  c.put(umax_b(vLast, vLast, 21));
  c.put(orr_v(vAny, vAny, vr));
}

void finish_test(inline_code& c, simd_size size, unsigned tested) {
  c.put(uminv_v(B, vFirst, vFirst));
  c.put(umaxv_v(B, vLast, vLast));
  c.put(umov_b0(11, vFirst));
  c.put(umov_b0(12, vLast));
  // The last active byte lies in the last element: its first byte.
  if (size != B) c.put(0x12000000 | (32 - size) << 16 | (31 - size) << 10 | 12 << 5 | 12);
  flags_from_bounds(c, tested);
}
