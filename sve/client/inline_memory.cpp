#include "inline_memory.h"

using namespace a64;

namespace {

// Every page is at least this large, so a span inside one such block lies in
// one page.
constexpr unsigned kSmallestPage = 4096;
// A partial store goes element by element up to this many elements; longer
// vectors take the call path for it.
constexpr unsigned kMostElementsStored = 64;

struct contiguous_word {
  bool load;
  bool immediate;
  simd_size size;   // of the register's elements
  simd_size memory; // of the memory's elements: smaller for a widening load
  bool is_signed;   // a widening load sign-extends
  unsigned zt, xn, pg, xm;
  int imm4;
  // Bytes of memory the vector's elements take.
  unsigned footprint() const { return process_vector_bytes() >> (size - memory); }
};

contiguous_word decode(inline_op op, simd_size size, uint32_t word) {
  contiguous_word w;
  w.load = op == inline_op::load_imm || op == inline_op::load_reg ||
           op == inline_op::load_widen_imm || op == inline_op::load_widen_reg;
  w.immediate = op == inline_op::load_imm || op == inline_op::store_imm ||
                op == inline_op::load_widen_imm || op == inline_op::store_narrow_imm;
  w.size = size;
  w.memory = size;
  w.is_signed = false;
  if (op == inline_op::store_narrow_imm || op == inline_op::store_narrow_reg)
    w.memory = simd_size(field(word, 24, 23)); // msz
  if (op == inline_op::load_widen_imm || op == inline_op::load_widen_reg) {
    // dtype (bits 24:21) says the memory element; below the diagonal of
    // its table (memory size above register size) are the signed forms.
    const unsigned dtype = field(word, 24, 21), row = dtype >> 2, column = dtype & 3;
    w.is_signed = row > column;
    w.memory = simd_size(w.is_signed ? 3 - row : row);
  }
  w.zt = field(word, 4, 0);
  w.xn = field(word, 9, 5);
  w.pg = field(word, 12, 10);
  w.xm = field(word, 20, 16);
  w.imm4 = int(field(word, 19, 16) ^ 8) - 8;
  return w;
}

// The word's address into the record's pc, from a literal among the call's
// constants (its index goes into `literals`), then the access's address into
// X9, with X10 as scratch.
void emit_address(inline_code& c, const contiguous_word& w, unsigned* literals, unsigned* count) {
  literals[(*count)++] = c.put_branch(kLoadLiteralX | 10);
  store_x(c, 10, kInlineRecord, offsetof(cpu_state, pc));
  load_x(c, 9, kInlineRecord, x_offset(w.xn));
  if (w.immediate) {
    if (w.imm4 != 0) add_constant(c, 9, 9, int64_t{w.imm4} * w.footprint());
  } else if (w.xm != 31) {
    load_x(c, 10, kInlineRecord, x_offset(w.xm));
    c.put(add_shifted(9, 9, 10, w.memory));
  }
}

// Q0.. Q(chunks - 1) = the vector's elements from X9: a chunk's memory
// elements, then widened (uxtl or sxtl) one size at a time.
void load_chunks(inline_code& c, const contiguous_word& w) {
  const unsigned steps = w.size - w.memory;
  // ldr of a B, H, S or D register, unsigned scaled offset.
  static constexpr uint32_t kLoad[] = {0x3d400000, 0x7d400000, 0xbd400000, 0xfd400000};
  for (unsigned k = 0; k < vector_chunks(); ++k) {
    if (steps == 0) {
      load_q(c, k, 9, k * kChunkBytes);
      continue;
    }
    c.put(kLoad[4 - steps] | k << 10 | 9 << 5 | k); // the k-th 16 >> steps bytes
    for (unsigned from = w.memory; from < w.size; ++from)
      c.put((w.is_signed ? 0x0f00a400 : 0x2f00a400) | (8u << from) << 16 | k << 5 | k);
  }
}

void whole_vector(inline_code& c, const contiguous_word& w) {
  if (w.load) {
    load_chunks(c, w);
    for (unsigned k = 0; k < vector_chunks(); ++k) store_q(c, k, kInlineRecord, z_offset(w.zt, k));
    return;
  }
  // A narrowing store keeps each element's low bytes (xtn, one size at a
  // time) and writes a chunk's 8, 4 or 2 bytes of them.
  static constexpr uint32_t kStore[] = {0x3d000000, 0x7d000000, 0xbd000000, 0xfd000000};
  const unsigned steps = w.size - w.memory;
  for (unsigned k = 0; k < vector_chunks(); ++k) {
    load_q(c, 0, kInlineRecord, z_offset(w.zt, k));
    if (steps == 0) {
      store_q(c, 0, 9, k * kChunkBytes);
      continue;
    }
    for (unsigned from = w.size; from > w.memory; --from)
      c.put(0x0e212800 | (from - 1) << 22);          // xtn v0, v0
    c.put(kStore[4 - steps] | k << 10 | 9 << 5 | 0); // the k-th 16 >> steps bytes
  }
}

// A branch (to be landed) taken unless the vector's memory from X9 lies in
// one page (X10 as scratch).
unsigned branch_unless_in_one_page(inline_code& c, const contiguous_word& w) {
  c.put(0x92402c00 | 9 << 5 | 10);                                     // and x10, x9, #0xfff
  c.put(0xf100001f | (kSmallestPage - w.footprint()) << 10 | 10 << 5); // cmp x10, #room
  return c.put_branch(kBranchHigher);
}

// Inactive elements are zero and must not be read: a read of one may fault
// where the architecture does not. When the whole vector lies in one page and
// some element is active, that element's page is the vector's, so the whole
// vector can be read, and the inactive lanes are cleared after. Otherwise
// (none active, or a page boundary inside) the branches go to the call path.
void partial_load(inline_code& c, const contiguous_word& w, unsigned* literals,
                  unsigned* literal_count, unsigned* to_call) {
  to_call[0] = branch_unless_any_active(c, w.pg, w.size);
  lane_ones(c, w.size, 17);
  emit_address(c, w, literals, literal_count);
  to_call[1] = branch_unless_in_one_page(c, w);
  load_chunks(c, w);
  for (unsigned k = 0; k < vector_chunks(); ++k) {
    load_element_mask(c, w.size, 16, w.pg, k, 17);
    c.put(and_v(k, k, 16));
    store_q(c, k, kInlineRecord, z_offset(w.zt, k));
  }
}

// One element, when its predicate bit (`bit` of Xp) is set: lane `lane` of
// the 8 bytes in Xd, shifted down through Xt, goes to X9 + its index times
// the memory element's bytes (its low bytes only, for a narrowing store).
void store_if_active(inline_code& c, const contiguous_word& w, unsigned xp, unsigned bit,
                     unsigned xd, unsigned lane, unsigned xt, unsigned index) {
  const unsigned skip = c.put_branch(branch_if_bit_clear(xp, bit));
  const unsigned shift = (lane << w.size) * 8;
  if (shift != 0) c.put(lsr_x(xt, xd, shift));
  c.put(store_element(w.memory, shift != 0 ? xt : xd, 9, index << w.memory));
  c.land(skip);
}

// A store must never write an inactive element, not even its old value
// again: another thread may own those bytes. Each element goes on its own
// when its predicate bit is set, in ascending order as the call path stores
// them, so that a fault leaves the same elements written.
void partial_store(inline_code& c, const contiguous_word& w, unsigned* literals,
                   unsigned* literal_count) {
  emit_address(c, w, literals, literal_count);
  const unsigned lanes = 8 >> w.size; // elements in 8 bytes
  if (lanes <= 2) {
    // Predicates through X14 and data through X15, 16 bytes a pair. The
    // second lane of 8 bytes is shifted down into its predicate's register,
    // done with by then.
    add_constant(c, 14, kInlineRecord, int64_t(p_offset(w.pg, 0)));
    add_constant(c, 15, kInlineRecord, int64_t(z_offset(w.zt, 0)));
    for (unsigned k = 0; k < vector_chunks(); ++k) {
      c.put(load_pair_x(10, 11, 14, k * kChunkBytes));
      c.put(load_pair_x(12, 13, 15, k * kChunkBytes));
      for (unsigned half = 0; half < 2; ++half)
        for (unsigned lane = 0; lane < lanes; ++lane)
          store_if_active(c, w, 10 + half, (lane << w.size) * 8, 12 + half, lane, 10 + half,
                          ((k * kChunkBytes + 8 * half) >> w.size) + lane);
    }
    return;
  }
  for (unsigned g = 0; g < process_vector_bytes() / 8; ++g) {
    load_x(c, 10, kInlineRecord, p_offset(w.pg, 0) + 8 * g);
    load_x(c, 11, kInlineRecord, z_offset(w.zt, 0) + 8 * g);
    for (unsigned lane = 0; lane < lanes; ++lane)
      store_if_active(c, w, 10, (lane << w.size) * 8, 11, lane, 12, ((8 * g) >> w.size) + lane);
  }
}

} // namespace

// A contiguous load or store of whole elements, inline with tracing off:
// under an all-true predicate the vector moves in Q registers; under another
// one a load reads the whole vector when that is sound and a store writes
// the active elements one by one. Anything else branches to a call of the
// word's thin decoder, after the fast code. The record changes only once
// every access has succeeded, so a fault leaves it as before the word, with
// the word's address in it, which is what the fault path hands the
// application.
bool emit_contiguous(inline_op op, simd_size size, uint32_t word, uint64_t pc, inline_code& c) {
  const sve_decoder decoder = get_sve_handler(word);
  if (decoder == nullptr) return false;
  const contiguous_word w = decode(op, size, word);
  unsigned literals[2], literal_count = 0;
  unsigned to_call[3], call_count = 0;

  to_call[call_count++] = c.put_branch(kBranchNonZero | kInlineTraceGate);
  const unsigned to_partial = branch_unless_all_true(c, w.pg, size);
  emit_address(c, w, literals, &literal_count);
  whole_vector(c, w);
  const unsigned to_end = c.put_branch(kBranch);

  c.land(to_partial);
  unsigned to_end_partial = 0;
  const bool stored_by_element = (process_vector_bytes() >> size) <= kMostElementsStored;
  if (w.load || stored_by_element) {
    if (w.load) {
      partial_load(c, w, literals, &literal_count, &to_call[call_count]);
      call_count += 2;
    } else {
      partial_store(c, w, literals, &literal_count);
    }
    to_end_partial = c.put_branch(kBranch);
  }

  for (unsigned i = 0; i < call_count; ++i) c.land(to_call[i]);
  // The word's address is among the call's constants.
  for (unsigned i = 0; i < literal_count; ++i) c.point(literals[i], c.count + kWordCallPcWord);
  call_decoder(c, decoder, word, pc);
  c.land(to_end);
  if (to_end_partial != 0) c.land(to_end_partial);
  return true;
}

// ldff1 scalar plus scalar, into elements of its memory size or wider.
// Inline only the common case: tracing off, every element active and the
// vector's memory within one page, where either every element can be read or
// the first one faults as a plain load's does; FFR stays as it was. Anything
// else (an element after the first that may fault, which clears FFR from
// there on) takes the call path after the code.
bool emit_first_fault_load(simd_size size, uint32_t word, uint64_t pc, inline_code& c) {
  const sve_decoder decoder = get_sve_handler(word);
  if (decoder == nullptr) return false;
  // Its fields and dtype are those of ld1's scalar plus scalar form.
  const contiguous_word w = decode(inline_op::load_widen_reg, size, word);
  unsigned literals[1], literal_count = 0;
  unsigned to_call[3];
  to_call[0] = c.put_branch(kBranchNonZero | kInlineTraceGate);
  to_call[1] = branch_unless_all_true(c, w.pg, size);
  emit_address(c, w, literals, &literal_count);
  to_call[2] = branch_unless_in_one_page(c, w);
  whole_vector(c, w);
  const unsigned to_end = c.put_branch(kBranch);
  for (unsigned to : to_call) c.land(to);
  c.point(literals[0], c.count + kWordCallPcWord);
  call_decoder(c, decoder, word, pc);
  c.land(to_end);
  return true;
}
