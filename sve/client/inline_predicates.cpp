#include "inline_predicates.h"
#include "../decode/sve_utils.h"
#include "inline_compare.h"
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

// Registers of the predicate code besides the record's X19 and those of the
// predicate test (inline_parts.h): V0 to V3 one chunk's operands, V20 to V23
// scratch.

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
    load_q(c, 2, xNumbers, k * kChunkBytes);
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

// ptest Pg, Pn.B
void emit_test(uint32_t word, inline_code& c) {
  const unsigned pn = field(word, 8, 5), pg = field(word, 13, 10);
  load_byte_numbers(c);
  for (unsigned k = 0; k < vector_chunks(); ++k) {
    load_q(c, 1, kInlineRecord, p_offset(pg, k));
    load_q(c, 0, kInlineRecord, p_offset(pn, k));
    c.put(and_v(0, 0, 1));
    load_q(c, 2, xNumbers, k * kChunkBytes);
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
  move_constant(c, xNumbers, reinterpret_cast<uint64_t>(kLeadingChunks.b[size]));
  unsigned loaded = ~0u;
  for (unsigned k = 0; k < vector_chunks(); ++k) {
    const unsigned before = k * per_chunk;
    const unsigned j = count <= before              ? 0
                       : count - before < per_chunk ? count - before
                                                    : per_chunk;
    if (j != loaded) load_q(c, 0, xNumbers, j * kChunkBytes);
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
    load_q(c, 3, xNumbers, k * kChunkBytes);
    c.put(and_v(2, 2, 1));
    c.put(neg_v(B, 2, 2));
    c.put(orn_v(k == 0 ? vBreak : 2, 3, 2));
    if (k > 0) c.put(umin_b(vBreak, vBreak, 2));
  }
  c.put(uminv_v(B, vBreak, vBreak));
  c.put(dup_b0(vBreak, vBreak));
  for (unsigned k = 0; k < vector_chunks(); ++k) {
    load_q(c, 1, kInlineRecord, p_offset(pg, k));
    load_q(c, 3, xNumbers, k * kChunkBytes);
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
    load_q(c, 2, xNumbers, k * kChunkBytes);
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
  return !uses_byte_numbers(op) || process_vector_bytes() <= kMostBytesTested;
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
    return emit_compare_imm(size, word, pc, c);
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
