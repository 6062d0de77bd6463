#include "inline_compare.h"

using namespace a64;

namespace {

// An integer compare as the Advanced SIMD compares of two vectors give it.
struct integer_compare {
  uint32_t (*compare)(simd_size, unsigned, unsigned, unsigned) = nullptr; // cmhs_v .. cmeq_v
  bool negate = false;                                                    // ne: not eq
  bool swap = false; // lt, le, lo, ls: gt, ge, hi, hs with the operands swapped
};

// The second operand that is no Z register: an immediate, in every lane of V1
// before the compare's code.
constexpr unsigned kImmediateInV1 = 32;

// cmp<cc> Pd.T, Pg/z, Zn.T and Zm.T or an immediate: Advanced SIMD compares
// give each element's mask, shifted down to the predicate's byte. Flags as a
// test of the result under Pg: N its first active element, Z none, C not
// its last. Under an all-true Pg those are the vector's first and last
// elements; under another one the test is gathered chunk by chunk, up to
// kMostBytesTested; longer vectors take the call path then. (Compares with
// an immediate never get here above that length: their row is not inline
// there, predicate_op_at_this_length refuses it.)
bool emit_integer_compare(simd_size size, uint32_t word, uint64_t pc, integer_compare how,
                          unsigned zm, inline_code& c) {
  const unsigned pd = field(word, 3, 0), zn = field(word, 9, 5), pg = field(word, 12, 10);
  const bool partial_inline = process_vector_bytes() <= kMostBytesTested;
  const sve_decoder decoder = partial_inline ? nullptr : get_sve_handler(word);
  if (!partial_inline && decoder == nullptr) return false;
  // Vd: 1 in the first byte of each element of Zn's chunk k where the
  // comparison holds, 0 elsewhere (V0 and V1 the operands).
  const auto compare_chunk = [&](unsigned k, unsigned vd) {
    load_q(c, 0, kInlineRecord, z_offset(zn, k));
    if (zm != kImmediateInV1) load_q(c, 1, kInlineRecord, z_offset(zm, k));
    c.put(how.swap ? how.compare(size, vd, 1, 0) : how.compare(size, vd, 0, 1));
    if (how.negate) c.put(not_v(vd, vd));
    c.put(lane_sign_to_one(size, vd, vd));
  };
  const unsigned to_partial = branch_unless_all_true(c, pg, size);
  // Chunk k's result stays in V(5 + k): its first and last elements give N
  // and C, the OR of all of them Z.
  const unsigned last = 5 + vector_chunks() - 1;
  for (unsigned k = 0; k < vector_chunks(); ++k) {
    const unsigned v = 5 + k;
    compare_chunk(k, v);
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

  c.land(to_partial);
  if (partial_inline) {
    // Inactive elements false; the test gathered over the chunks.
    load_byte_numbers(c);
    if (size != B) element_ones(c, size);
    for (unsigned k = 0; k < vector_chunks(); ++k) {
      compare_chunk(k, 0);
      load_q(c, 2, kInlineRecord, p_offset(pg, k));
      c.put(and_v(0, 0, 2));
      store_q(c, 0, kInlineRecord, p_offset(pd, k));
      load_q(c, 3, xNumbers, k * kChunkBytes);
      test_chunk(c, k, size, 2, 0, 3);
    }
    finish_test(c, size, pd);
  } else {
    call_decoder(c, decoder, word, pc);
  }
  c.land(to_end);
  return true;
}

} // namespace

// cmphs, cmphi, cmpge, cmpgt, cmpeq, cmpne Pd.T, Pg/z, Zn.T, Zm.T; bits 15
// and 13 (op, o2) and 4 (ne) pick the comparison.
bool emit_compare(simd_size size, uint32_t word, uint64_t pc, inline_code& c) {
  integer_compare how;
  switch (field(word, 15, 15) << 2 | field(word, 13, 13) << 1 | field(word, 4, 4)) {
  case 0b000:
    how.compare = cmhs_v; // cmphs
    break;
  case 0b001:
    how.compare = cmhi_v; // cmphi
    break;
  case 0b100:
    how.compare = cmge_v; // cmpge
    break;
  case 0b101:
    how.compare = cmgt_v; // cmpgt
    break;
  case 0b110:
    how.compare = cmeq_v; // cmpeq
    break;
  case 0b111:
    how.compare = cmeq_v; // cmpne: not cmeq
    how.negate = true;
    break;
  default:
    return false;
  }
  return emit_integer_compare(size, word, pc, how, field(word, 20, 16), c);
}

// cmp<cc> Pd.T, Pg/z, Zn.T, #imm: signed (bit 24), with a 5-bit immediate
// and ge, gt, lt, le, eq, ne in bits 15, 13 and 4, or unsigned, with a 7-bit
// one and hs, hi, lo, ls in bits 13 and 4.
bool emit_compare_imm(simd_size size, uint32_t word, uint64_t pc, inline_code& c) {
  const bool is_signed = field(word, 24, 24);
  uint64_t imm;
  unsigned kind; // 0 ge/hs, 1 gt/hi, 2 lt/lo, 3 le/ls, 4 eq, 5 ne
  if (is_signed) {
    imm = uint64_t(int64_t(int32_t(field(word, 20, 16) << 27) >> 27));
    kind = field(word, 15, 15) << 2 | field(word, 13, 13) << 1 | field(word, 4, 4);
    if (kind > 5) return false;
  } else {
    imm = field(word, 20, 14);
    kind = field(word, 13, 13) << 1 | field(word, 4, 4);
  }
  integer_compare how;
  const bool or_equal = kind == 0 || kind == 3;
  if (kind >= 4)
    how.compare = cmeq_v;
  else if (is_signed)
    how.compare = or_equal ? cmge_v : cmgt_v;
  else
    how.compare = or_equal ? cmhs_v : cmhi_v;
  how.negate = kind == 5;
  how.swap = kind == 2 || kind == 3;
  move_constant(c, 9, imm);
  c.put(dup_v_from_x(size, 1, 9));
  return emit_integer_compare(size, word, pc, how, kImmediateInV1, c);
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
    load_element_mask(c, size, 3, pg, k, 4);
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
