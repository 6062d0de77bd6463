#include "inline_predicates.h"
#include "../decode/sve_utils.h"
#include "inline_memory.h"

namespace {

using namespace a64;
using namespace predicate_forms;

// FFR lies right after P15 in the record, so it is predicate 16 there.
constexpr unsigned kFfr = 16;
static_assert(p_offset(kFfr, 0) == record_offset::ffr);

// 16 predicate bytes with the first j elements of a size active, for ptrue:
// [size][j].
struct leading_chunks {
  alignas(16) uint8_t b[4][17][kChunkBytes] = {};
  constexpr leading_chunks() {
    for (unsigned size = 0; size < 4; ++size)
      for (unsigned j = 0; j <= (kChunkBytes >> size); ++j)
        for (unsigned e = 0; e < j; ++e) b[size][j][e << size] = 1;
  }
};
constexpr leading_chunks kLeadingChunks;

// Registers of the predicate code besides the record's X19: X9 to X15 as
// scratch (X13 the byte numbers, X15 the scratch of add_constant), V0 to V3
// one chunk's operands, V16 to V18 what the predicate test gathers over the
// chunks, V19 one in each element's first byte, V20 to V23 scratch.
constexpr unsigned kNumbers = 13;
constexpr unsigned vFirst = 16, vLast = 17, vAny = 18, vOnes = 19;

void load_byte_numbers(inline_code& c) {
  // Byte i holds i: where a predicate's first and last active elements are.
  move_constant(c, kNumbers, reinterpret_cast<uint64_t>(lane_numbers(B)));
}

// V19: 1 in the first byte of every element of the size.
void element_ones(inline_code& c, simd_size size) { lane_ones(c, size, vOnes); }

// Vd: all ones over every element whose first byte in predicate chunk Vg is
// set (V19 prepared for sizes other than bytes).
uint32_t active_elements(simd_size size, unsigned vd, unsigned vg) {
  return size == B ? neg_v(B, vd, vg) : test_v(size, vd, vg, vOnes);
}

// The predicate test of a result under a governing predicate, gathered chunk
// by chunk: the first and the last byte number of the governing predicate's
// active elements (0xff and 0 when it has none) and whether the result has
// any element set. The result must be part of the governing predicate or be
// ANDed with it in Vr. Vnum holds the chunk's byte numbers.
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

// NZCV into the record from the first governed byte in W11, the last in W12
// and V18 (any element set): N the tested predicate's first governed
// element, Z none set, C not its last, V clear. `tested` is the predicate
// whose bytes the result's first and last governed elements are read from
// (the result, or ptest's Pn, which equals the AND at those elements
// whenever any element is set).
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

// The same from what test_chunk gathered.
void finish_test(inline_code& c, simd_size size, unsigned tested) {
  c.put(uminv_v(B, vFirst, vFirst));
  c.put(umaxv_v(B, vLast, vLast));
  c.put(umov_b0(11, vFirst));
  c.put(umov_b0(12, vLast));
  // The last active byte lies in the last element: its first byte.
  if (size != B) c.put(0x12000000 | (32 - size) << 16 | (31 - size) << 10 | 12 << 5 | 12);
  flags_from_bounds(c, tested);
}

void copy_predicate(inline_code& c, unsigned from, unsigned to) {
  for (unsigned k = 0; k < vector_chunks(); ++k) {
    load_q(c, 0, kInlineRecord, p_offset(from, k));
    store_q(c, 0, kInlineRecord, p_offset(to, k));
  }
}

void fill_predicate(inline_code& c, unsigned p, uint8_t byte) {
  c.put(movi_b(0, byte));
  for (unsigned k = 0; k < vector_chunks(); ++k) store_q(c, 0, kInlineRecord, p_offset(p, k));
}

// rdffr Pd, Pg/z and rdffrs: FFR AND Pg, a byte at a time.
void read_ffr_governed(inline_code& c, uint32_t word, bool flags) {
  const unsigned pd = field(word, 3, 0), pg = field(word, 8, 5);
  if (flags) load_byte_numbers(c);
  for (unsigned k = 0; k < vector_chunks(); ++k) {
    load_q(c, 0, kInlineRecord, p_offset(kFfr, k));
    load_q(c, 1, kInlineRecord, p_offset(pg, k));
    c.put(and_v(0, 0, 1));
    store_q(c, 0, kInlineRecord, p_offset(pd, k));
    if (!flags) continue;
    load_q(c, 2, kNumbers, k * kChunkBytes);
    test_chunk(c, k, B, 1, 0, 2);
  }
  if (flags) finish_test(c, B, pd);
}

// W9: the number of active elements of Pn.T (AND Pg.T when pg < 16).
void count_active(inline_code& c, simd_size size, unsigned pg, unsigned pn) {
  if (size != B) element_ones(c, size);
  for (unsigned k = 0; k < vector_chunks(); ++k) {
    // The chunk's last step writes V2, the sum, in chunk 0.
    const unsigned sum = k == 0 ? 2 : 0;
    const bool masked = pg < 16, sized = size != B;
    load_q(c, masked || sized ? 0 : sum, kInlineRecord, p_offset(pn, k));
    if (masked) {
      load_q(c, 1, kInlineRecord, p_offset(pg, k));
      c.put(and_v(sized ? 0 : sum, 0, 1));
    }
    if (sized) c.put(and_v(sum, 0, vOnes));
    if (k > 0) c.put(add_v(B, 2, 2, 0));
  }
  // Each byte lane holds at most one per chunk; the sum of the lanes fits a
  // halfword.
  c.put(uaddlv_b(2, 2));
  c.put(umov_h0(9, 2));
}

bool emit_count(pred_op op, simd_size size, uint32_t word, inline_code& c) {
  const unsigned rd = field(word, 4, 0), pn = field(word, 8, 5);
  if (op == count_p) {
    if (rd == 31) return false; // the zero register
    count_active(c, size, field(word, 13, 10), pn);
    store_x(c, 9, kInlineRecord, x_offset(rd));
    return true;
  }
  count_active(c, size, 16, pn);
  if (op == increment_x || op == decrement_x) {
    if (rd == 31) return false;
    load_x(c, 10, kInlineRecord, x_offset(rd));
    c.put((op == increment_x ? 0x8b090140 : 0xcb090140) | 10); // add/sub x10, x10, x9
    store_x(c, 10, kInlineRecord, x_offset(rd));
    return true;
  }
  c.put(dup_v_from_x(size, 1, 9));
  for (unsigned k = 0; k < vector_chunks(); ++k) {
    load_q(c, 0, kInlineRecord, z_offset(rd, k));
    c.put(op == increment_z ? add_v(size, 0, 0, 1) : sub_v(size, 0, 0, 1));
    store_q(c, 0, kInlineRecord, z_offset(rd, k));
  }
  return true;
}

// cmp<cc> Pd.T, Pg/z, Zn.T, #imm: the Advanced SIMD compare of each chunk
// with the immediate in every lane, its lanes shifted down to the
// predicate's byte and ANDed with Pg; the flags test the result under Pg.
bool emit_compare_imm(simd_size size, uint32_t word, inline_code& c) {
  const unsigned pd = field(word, 3, 0), zn = field(word, 9, 5), pg = field(word, 12, 10);
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
  // V0: 1 in each element of chunk k of Zn where the comparison holds.
  const auto compare_chunk = [&](unsigned k) {
    load_q(c, 0, kInlineRecord, z_offset(zn, k));
    // lt and le are gt and ge with the operands swapped.
    const unsigned first = kind == 2 || kind == 3 ? 1 : 0, second = 1 - first;
    const bool or_equal = kind == 0 || kind == 3;
    if (kind >= 4)
      c.put(cmeq_v(size, 0, 0, 1));
    else if (is_signed)
      c.put(or_equal ? cmge_v(size, 0, first, second) : cmgt_v(size, 0, first, second));
    else
      c.put(or_equal ? cmhs_v(size, 0, first, second) : cmhi_v(size, 0, first, second));
    if (kind == 5) c.put(not_v(0, 0));
    c.put(lane_sign_to_one(size, 0, 0));
  };
  move_constant(c, 9, imm);
  c.put(dup_v_from_x(size, 1, 9));
  // Every element active, as in most loops: the result as it is, and the
  // flags from its first and last element. Up to 512 bits, where both ways
  // fit the code's room.
  unsigned to_any_predicate = 0, to_end = 0;
  const bool all_true_way = vector_chunks() <= 4;
  if (all_true_way) {
    to_any_predicate = branch_unless_all_true(c, pg, size); // V1 outlives its scratch
    for (unsigned k = 0; k < vector_chunks(); ++k) {
      compare_chunk(k);
      store_q(c, 0, kInlineRecord, p_offset(pd, k));
      c.put(k == 0 ? orr_v(vAny, 0, 0) : orr_v(vAny, vAny, 0));
    }
    move_constant(c, 11, 0);
    move_constant(c, 12, process_vector_bytes() - (1u << size));
    flags_from_bounds(c, pd);
    to_end = c.put_branch(kBranch);
    c.land(to_any_predicate);
  }
  load_byte_numbers(c);
  if (size != B) element_ones(c, size);
  for (unsigned k = 0; k < vector_chunks(); ++k) {
    compare_chunk(k);
    load_q(c, 2, kInlineRecord, p_offset(pg, k));
    c.put(and_v(0, 0, 2));
    store_q(c, 0, kInlineRecord, p_offset(pd, k));
    load_q(c, 3, kNumbers, k * kChunkBytes);
    test_chunk(c, k, size, 2, 0, 3);
  }
  finish_test(c, size, pd);
  if (all_true_way) c.land(to_end);
  return true;
}

// ptest Pg, Pn.B
void emit_test(uint32_t word, inline_code& c) {
  const unsigned pn = field(word, 8, 5), pg = field(word, 13, 10);
  load_byte_numbers(c);
  for (unsigned k = 0; k < vector_chunks(); ++k) {
    load_q(c, 1, kInlineRecord, p_offset(pg, k));
    load_q(c, 0, kInlineRecord, p_offset(pn, k));
    c.put(and_v(0, 0, 1));
    load_q(c, 2, kNumbers, k * kChunkBytes);
    test_chunk(c, k, B, 1, 0, 2);
  }
  finish_test(c, B, pn);
}

// ptrue and ptrues: the pattern's element count is a constant at this
// length, so each chunk is one of a table's, and so are the flags.
void emit_true(simd_size size, uint32_t word, bool flags, inline_code& c) {
  const unsigned pd = field(word, 3, 0), pattern = field(word, 9, 5);
  const unsigned count = pattern_elements(size, pattern);
  const unsigned per_chunk = kChunkBytes >> size;
  move_constant(c, kNumbers, reinterpret_cast<uint64_t>(kLeadingChunks.b[size]));
  unsigned loaded = ~0u;
  for (unsigned k = 0; k < vector_chunks(); ++k) {
    const unsigned before = k * per_chunk;
    const unsigned j = count <= before              ? 0
                       : count - before < per_chunk ? count - before
                                                    : per_chunk;
    if (j != loaded) load_q(c, 0, kNumbers, j * kChunkBytes);
    loaded = j;
    store_q(c, 0, kInlineRecord, p_offset(pd, k));
  }
  if (!flags) return;
  // The result tests itself: any element set makes both its first and its
  // last element active.
  const uint64_t nzcv = count > 0 ? 0x80000000 : 0x60000000;
  move_constant(c, 9, nzcv);
  store_x(c, 9, kInlineRecord, offsetof(cpu_state, nzcv));
}

// brka, brkb (zeroing or merging) and brkas, brkbs: the first byte number
// where Pg and Pn are both set (0xff when none) decides which active
// elements stay: those before it (brkb), or up to it (brka).
void emit_break(uint32_t word, bool flags, inline_code& c) {
  const unsigned pd = field(word, 3, 0), pn = field(word, 8, 5), pg = field(word, 13, 10);
  const bool merging = field(word, 4, 4), after = !field(word, 23, 23);
  constexpr unsigned vBreak = 23;
  load_byte_numbers(c);
  for (unsigned k = 0; k < vector_chunks(); ++k) {
    load_q(c, 1, kInlineRecord, p_offset(pg, k));
    load_q(c, 2, kInlineRecord, p_offset(pn, k));
    load_q(c, 3, kNumbers, k * kChunkBytes);
    c.put(and_v(2, 2, 1));
    c.put(neg_v(B, 2, 2));
    c.put(orn_v(k == 0 ? vBreak : 2, 3, 2));
    if (k > 0) c.put(umin_b(vBreak, vBreak, 2));
  }
  c.put(uminv_v(B, vBreak, vBreak));
  c.put(dup_b0(vBreak, vBreak));
  for (unsigned k = 0; k < vector_chunks(); ++k) {
    load_q(c, 1, kInlineRecord, p_offset(pg, k));
    load_q(c, 3, kNumbers, k * kChunkBytes);
    c.put(after ? cmhs_v(B, 0, vBreak, 3) : cmhi_v(B, 0, vBreak, 3));
    c.put(and_v(0, 0, 1));
    if (merging) {
      load_q(c, 2, kInlineRecord, p_offset(pd, k));
      c.put(bic_v(2, 2, 1));
      c.put(orr_v(0, 0, 2));
    }
    store_q(c, 0, kInlineRecord, p_offset(pd, k));
    if (flags) test_chunk(c, k, B, 1, 0, 3);
  }
  if (flags) finish_test(c, B, pd);
}

// and, bic, eor, sel, orr, orn, nor, nand of predicates under Pg/z, and the
// flag-setting ones, which test the result under Pg.
bool emit_logic(uint32_t word, bool flags, inline_code& c) {
  const unsigned pd = field(word, 3, 0), pn = field(word, 8, 5), pg = field(word, 13, 10);
  const unsigned pm = field(word, 19, 16);
  const unsigned kind = field(word, 23, 23) << 2 | field(word, 9, 9) << 1 | field(word, 4, 4);
  if (flags && kind == 3) return false; // no flag-setting sel
  if (flags) load_byte_numbers(c);
  for (unsigned k = 0; k < vector_chunks(); ++k) {
    load_q(c, 1, kInlineRecord, p_offset(pg, k));
    load_q(c, 2, kInlineRecord, p_offset(pn, k));
    load_q(c, 3, kInlineRecord, p_offset(pm, k));
    switch (kind) {
    case 0: // and
      c.put(and_v(0, 2, 3));
      break;
    case 1: // bic
      c.put(bic_v(0, 2, 3));
      break;
    case 2: // eor
      c.put(eor_v(0, 2, 3));
      break;
    case 3: // sel: Pm with the bytes where Pn differs and Pg is set flipped
      c.put(eor_v(0, 2, 3));
      break;
    case 4: // orr
      c.put(orr_v(0, 2, 3));
      break;
    case 5: // orn
      c.put(orn_v(0, 2, 3));
      break;
    case 6: // nor
      c.put(orr_v(0, 2, 3));
      break;
    default: // nand
      c.put(and_v(0, 2, 3));
      break;
    }
    if (kind >= 6)
      c.put(bic_v(0, 1, 0));
    else
      c.put(and_v(0, 0, 1));
    if (kind == 3) c.put(eor_v(0, 0, 3));
    store_q(c, 0, kInlineRecord, p_offset(pd, k));
    if (!flags) continue;
    load_q(c, 2, kNumbers, k * kChunkBytes);
    test_chunk(c, k, B, 1, 0, 2);
  }
  if (flags) finish_test(c, B, pd);
  return true;
}

bool uses_byte_numbers(uint8_t op) {
  switch (op) {
  case read_ffr_flags:
  case compare_imm:
  case test_p:
  case break_p:
  case break_p_flags:
  case logic_p_flags:
    return true;
  default:
    return false;
  }
}

} // namespace

bool predicate_op_at_this_length(uint8_t op) {
  // Byte numbers go up to 255; the code of these forms grows with the
  // vector, and up to 1024 bits it stays within kInlineMaxWords.
  return !uses_byte_numbers(op) || process_vector_bytes() <= 128;
}

bool emit_predicate_op(uint8_t op, element_size elem, uint32_t word, uint64_t pc, inline_code& c) {
  const simd_size size = simd_size(elem);
  switch (pred_op(op)) {
  case set_ffr:
    fill_predicate(c, kFfr, 1);
    return true;
  case read_ffr:
    copy_predicate(c, kFfr, field(word, 3, 0));
    return true;
  case read_ffr_z:
  case read_ffr_flags:
    read_ffr_governed(c, word, op == read_ffr_flags);
    return true;
  case write_ffr:
    copy_predicate(c, field(word, 8, 5), kFfr);
    return true;
  case load_first_fault:
    return emit_first_fault_load(size, word, pc, c);
  case compare_imm:
    return emit_compare_imm(size, word, c);
  case test_p:
    emit_test(word, c);
    return true;
  case true_p:
  case true_p_flags:
    emit_true(size, word, op == true_p_flags, c);
    return true;
  case false_p:
    fill_predicate(c, field(word, 3, 0), 0);
    return true;
  case break_p:
  case break_p_flags:
    emit_break(word, op == break_p_flags, c);
    return true;
  case count_p:
  case increment_x:
  case decrement_x:
  case increment_z:
  case decrement_z:
    return emit_count(pred_op(op), size, word, c);
  case logic_p:
  case logic_p_flags:
    return emit_logic(word, op == logic_p_flags, c);
  }
  return false;
}
