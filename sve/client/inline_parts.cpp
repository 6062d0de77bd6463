#include "inline_parts.h"

#include <cstring>

using namespace a64;

unsigned field(uint32_t word, unsigned hi, unsigned lo) {
  return word >> lo & ((1u << (hi - lo + 1)) - 1);
}

namespace {

// X9 = the AND (or, with `any`, the OR) of Pg's chunks folded into 8 bytes,
// of which each element's first byte keeps bit 0.
void fold_predicate(inline_code& c, unsigned pg, simd_size size, bool any) {
  const auto combine = any ? orr_v : and_v;
  if (vector_chunks() >= 3 && vector_chunks() <= 4) {
    add_constant(c, 9, kInlineRecord, int64_t(p_offset(pg, 0)));
    c.put(load_consecutive_q(2, vector_chunks(), 9));
    for (unsigned k = 1; k < vector_chunks(); ++k) c.put(combine(2, 2, 2 + k));
  } else {
    for (unsigned k = 0; k < vector_chunks(); ++k) {
      load_q(c, k == 0 ? 2 : 3, kInlineRecord, p_offset(pg, k));
      if (k > 0) c.put(combine(2, 2, 3));
    }
  }
  c.put(umov_d(9, 2, 0));
  c.put(umov_d(10, 2, 1));
  c.put(any ? orr_x(9, 9, 10) : and_x(9, 9, 10));
  c.put(and_element_ones(size, 9, 9));
}

} // namespace

// Every element's byte is 1 in the AND of all chunks exactly when all are
// active.
unsigned branch_unless_all_true(inline_code& c, unsigned pg, simd_size size) {
  fold_predicate(c, pg, size, false);
  c.put(eor_element_ones(size, 9, 9));
  return c.put_branch(kBranchNonZero | 9);
}

unsigned branch_unless_any_active(inline_code& c, unsigned pg, simd_size size) {
  fold_predicate(c, pg, size, true);
  return c.put_branch(kBranchZero | 9);
}

void lane_ones(inline_code& c, simd_size size, unsigned v) {
  static constexpr uint32_t kMoviOne[] = {0x4f00e420, 0x4f008420, 0x4f000420};
  if (size != D) {
    c.put(kMoviOne[size] | v);
    return;
  }
  move_constant(c, 9, 1);
  c.put(dup_v_from_x(D, v, 9));
}

// The call path for the word, as a run calls a thin decoder: `blr` to the
// entry, followed by the decoder, the word's address and the word.
void call_decoder(inline_code& c, sve_decoder decoder, uint32_t word, uint64_t pc) {
  c.put(kBlr | kInlineThinCall << 5);
  uint32_t constants[kWordCallWords] = {};
  const uint64_t decoder_address = reinterpret_cast<uint64_t>(decoder);
  std::memcpy(&constants[0], &decoder_address, 8);
  std::memcpy(&constants[2], &pc, 8);
  constants[4] = word;
  for (uint32_t w : constants) c.put(w);
}
