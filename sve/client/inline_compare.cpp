#include "inline_compare.h"

using namespace a64;

namespace {

// One of the Advanced SIMD compares of two vectors (cmhs_v .. cmeq_v).
using vector_compare = uint32_t (*)(simd_size, unsigned, unsigned, unsigned);

// Bit i of each byte's weight, at the first byte of every element only: the
// bytes of a mask ANDed with it and summed eight at a time give one bit per
// vector byte.
uint64_t first_byte_weights(simd_size size) {
  uint64_t w = 0;
  for (unsigned i = 0; i < 8; i += 1u << size) w |= uint64_t{1} << (8 * i + i);
  return w;
}

// Vd.d[0] = the pairwise sums of V(regs[0..3]) down to 8 bytes: bit i of it
// is byte i of the four chunks (with V31 zero for chunks past the vector).
void pack_chunks(inline_code& c, const unsigned* regs, unsigned vd, unsigned scratch) {
  const auto addp = [](unsigned d, unsigned n, unsigned m) {
    return 0x4e20bc00 | m << 16 | n << 5 | d;
  };
  c.put(addp(vd, regs[0], regs[1]));
  c.put(addp(scratch, regs[2], regs[3]));
  c.put(addp(vd, vd, scratch));
  c.put(addp(vd, vd, vd));
}

// The compare under a partial Pg: inactive elements false. R (the result)
// and G (Pg's elements) packed into X11 and X12; N is R at G's lowest bit, C
// the inverse of R at its highest (none: bit 63, which R lacks then too).
void partial_compare(inline_code& c, simd_size size, vector_compare compare, bool negate,
                     unsigned zn, unsigned zm, unsigned pg, unsigned pd) {
  lane_ones(c, size, 4);
  move_constant(c, 9, first_byte_weights(size));
  c.put(dup_v_from_x(D, 30, 9));
  c.put(movi_b(31, 0));
  unsigned result[4] = {31, 31, 31, 31}, active[4] = {31, 31, 31, 31};
  for (unsigned k = 0; k < vector_chunks(); ++k) {
    result[k] = 16 + k, active[k] = 24 + k;
    load_q(c, 0, kInlineRecord, z_offset(zn, k));
    load_q(c, 1, kInlineRecord, z_offset(zm, k));
    load_q(c, 3, kInlineRecord, p_offset(pg, k));
    c.put(test_v(size, 3, 3, 4));
    c.put(compare(size, 0, 0, 1));
    if (negate) c.put(not_v(0, 0));
    c.put(and_v(0, 0, 3));
    c.put(and_v(result[k], 0, 30));
    c.put(and_v(active[k], 3, 30));
    c.put(lane_sign_to_one(size, 0, 0));
    store_q(c, 0, kInlineRecord, p_offset(pd, k));
  }
  pack_chunks(c, result, 20, 21);
  pack_chunks(c, active, 28, 29);
  c.put(umov_d(11, 20, 0));
  c.put(umov_d(12, 28, 0));
  c.put(0xcb0c03ed);                           // neg x13, x12
  c.put(and_x(13, 13, 12));                    // G's lowest bit
  c.put(0xdac01180 | 12 << 5 | 14);            // clz x14, x12
  c.put(0xd2f00000 | 0x8000 << 5 | 15);        // mov x15, #1 << 63
  c.put(0x9ac02400 | 14 << 16 | 15 << 5 | 15); // lsr x15, x15, x14: G's highest bit
  c.put(0xea000000 | 13 << 16 | 11 << 5 | 31); // tst x11, x13
  c.put(0x1a9f07e0 | 9);                       // cset w9, ne: N
  c.put(0xea000000 | 15 << 16 | 11 << 5 | 31); // tst x11, x15
  c.put(0x1a9f17e0 | 10);                      // cset w10, eq: C
  c.put(0xf100017f);                           // cmp x11, #0
  c.put(0x1a9f17e0 | 11);                      // cset w11, eq: Z
  store_flags(c, 9, 11, 10);
}

} // namespace

// cmphs, cmphi, cmpge, cmpgt, cmpeq, cmpne Pd.T, Pg/z, Zn.T, Zm.T: Advanced
// SIMD compares give each element's mask, shifted down to the predicate's
// byte. Flags as a test of the result under Pg: N its first active element,
// Z none, C not its last. Under an all-true Pg those are the vector's first
// and last elements; under another one (up to 512 bits) the result and Pg
// are packed one bit per vector byte into X11 and X12; longer vectors take
// the call path then.
bool emit_compare(simd_size size, uint32_t word, uint64_t pc, inline_code& c) {
  const unsigned pd = field(word, 3, 0), zn = field(word, 9, 5), pg = field(word, 12, 10);
  const unsigned zm = field(word, 20, 16);
  // Bits 15 and 13 (op, o2) and 4 (ne) pick the comparison.
  const unsigned kind = field(word, 15, 15) << 2 | field(word, 13, 13) << 1 | field(word, 4, 4);
  vector_compare compare;
  bool negate = false;
  switch (kind) {
  case 0b000:
    compare = cmhs_v; // cmphs
    break;
  case 0b001:
    compare = cmhi_v; // cmphi
    break;
  case 0b100:
    compare = cmge_v; // cmpge
    break;
  case 0b101:
    compare = cmgt_v; // cmpgt
    break;
  case 0b110:
    compare = cmeq_v; // cmpeq
    break;
  case 0b111:
    compare = cmeq_v; // cmpne: not cmeq
    negate = true;
    break;
  default:
    return false;
  }
  const sve_decoder decoder = get_sve_handler(word);
  if (decoder == nullptr) return false;
  const unsigned to_call = branch_unless_all_true(c, pg, size);
  // Chunk k's result stays in V(5 + k): its first and last elements give N
  // and C, the OR of all of them Z.
  const unsigned last = 5 + vector_chunks() - 1;
  for (unsigned k = 0; k < vector_chunks(); ++k) {
    const unsigned v = 5 + k;
    load_q(c, 0, kInlineRecord, z_offset(zn, k));
    load_q(c, 1, kInlineRecord, z_offset(zm, k));
    c.put(compare(size, v, 0, 1));
    if (negate) c.put(not_v(v, v));
    c.put(lane_sign_to_one(size, v, v));
    store_q(c, v, kInlineRecord, p_offset(pd, k));
    if (k == 1) c.put(orr_v(2, 5, 6));
    if (k > 1) c.put(orr_v(2, 2, v));
  }
  const unsigned any = vector_chunks() == 1 ? 5 : 2;
  c.put(umov_d(11, any, 0));
  c.put(umov_d(12, any, 1));
  c.put(orr_x(11, 11, 12));
  c.put(umov_b0(9, 5));
  c.put(0x0e003c00 | ((kChunkBytes - (1u << size)) << 1 | 1) << 16 | last << 5 |
        10);                        // umov w10, b[last]
  c.put(0x52000000 | 10 << 5 | 10); // eor w10, w10, #1: C
  c.put(0xf100017f);                // cmp x11, #0
  c.put(0x1a9f17e0 | 11);           // cset w11, eq: Z
  store_flags(c, 9, 11, 10);
  const unsigned to_end = c.put_branch(kBranch);
  c.land(to_call);
  if (vector_chunks() <= 4)
    partial_compare(c, size, compare, negate, zn, zm, pg, pd);
  else
    call_decoder(c, decoder, word, pc);
  c.land(to_end);
  return true;
}

// fcmge, fcmgt, fcmeq, fcmne, fcmuo Pd.T, Pg/z, Zn.T, Zm.T and fcmge, fcmgt,
// fcmlt, fcmle, fcmeq, fcmne Pd.T, Pg/z, Zn.T, #0.0, single and double, under
// any predicate: the operands of inactive elements become +0, which compare
// without a flag (the Advanced SIMD compares signal on NaNs exactly as the
// SVE ones: the ordered ones on any, fcmeq and so fcmuo on a signalling
// one), and the mask clears their results. They leave NZCV alone.
bool emit_fp_compare(simd_size size, uint32_t word, bool with_zero, inline_code& c) {
  const unsigned pd = field(word, 3, 0), zn = field(word, 9, 5), pg = field(word, 12, 10);
  const unsigned zm = field(word, 20, 16);
  enum : uint8_t { ge, gt, eq, ne, uo, lt, le, none };
  // Two vectors: bits 15, 13 and 4 (op, o2, o3) pick the comparison; with
  // zero, bits 17, 16 and 4 (eq, lt, ne).
  static constexpr uint8_t kTwoVectors[] = {ge, gt, eq, ne, uo, none, none, none};
  static constexpr uint8_t kWithZero[] = {ge, gt, lt, le, eq, none, ne, none};
  const uint8_t kind =
      with_zero
          ? kWithZero[field(word, 17, 16) << 1 | field(word, 4, 4)]
          : kTwoVectors[field(word, 15, 15) << 2 | field(word, 13, 13) << 1 | field(word, 4, 4)];
  if (kind == none) return false;
  const uint32_t sz = size == D ? 1u << 22 : 0;
  // V0 = V0 op V1 (or op 0), all ones where the comparison holds.
  auto compare = [&] {
    if (with_zero) {
      static constexpr uint32_t kZero[] = {0x6ea0c800, 0x4ea0c800, 0x4ea0d800, 0x4ea0d800,
                                           0,          0x4ea0e800, 0x6ea0d800};
      c.put(kZero[kind] | sz);
    } else if (kind == uo) {
      c.put(0x4e20e400 | sz | 0 << 16 | 0 << 5 | 2); // fcmeq v2, v0, v0
      c.put(0x4e20e400 | sz | 1 << 16 | 1 << 5 | 1); // fcmeq v1, v1, v1
      c.put(and_v(0, 1, 2));
      c.put(not_v(0, 0));
    } else {
      static constexpr uint32_t kCompare[] = {0x6e20e400, 0x6ea0e400, 0x4e20e400, 0x4e20e400};
      c.put(kCompare[kind] | sz | 1 << 16 | 0 << 5 | 0);
    }
    if (kind == ne) c.put(not_v(0, 0));
  };
  lane_ones(c, size, 4);
  fpsr_in(c);
  for (unsigned k = 0; k < vector_chunks(); ++k) {
    load_q(c, 0, kInlineRecord, z_offset(zn, k));
    if (!with_zero) load_q(c, 1, kInlineRecord, z_offset(zm, k));
    load_q(c, 3, kInlineRecord, p_offset(pg, k));
    c.put(test_v(size, 3, 3, 4));
    c.put(and_v(0, 0, 3));
    if (!with_zero) c.put(and_v(1, 1, 3));
    compare();
    c.put(and_v(0, 0, 3));
    c.put(lane_sign_to_one(size, 0, 0));
    store_q(c, 0, kInlineRecord, p_offset(pd, k));
  }
  fpsr_out(c);
  return true;
}
