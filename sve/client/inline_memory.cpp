#include "inline_memory.h"

using namespace a64;

// A contiguous load or store of whole elements. The inline code takes the
// common case only: tracing off and every element active, when the vector
// moves in Q registers. Anything else branches to a call of the word's thin
// decoder, after the fast code. The record changes only once every access
// has succeeded, so a fault leaves it as before the word, with the word's
// address in it, which is what the fault path hands the application.
bool emit_contiguous(inline_op op, simd_size size, uint32_t word, uint64_t pc, inline_code& c) {
  const sve_decoder decoder = get_sve_handler(word);
  if (decoder == nullptr) return false;
  const unsigned zt = field(word, 4, 0), xn = field(word, 9, 5), pg = field(word, 12, 10);
  const unsigned xm = field(word, 20, 16);
  const bool load = op == inline_op::load_imm || op == inline_op::load_reg;

  const unsigned to_call_if_tracing = c.put_branch(kBranchNonZero | kInlineTraceGate);
  const unsigned to_call_if_partial = branch_unless_all_true(c, pg, size);

  // The word's address is among the call's constants below.
  const unsigned pc_literal = c.put_branch(kLoadLiteralX | 10);
  store_x(c, 10, kInlineRecord, offsetof(cpu_state, pc));
  load_x(c, 9, kInlineRecord, x_offset(xn));
  if (op == inline_op::load_imm || op == inline_op::store_imm) {
    const int imm4 = int(field(word, 19, 16) ^ 8) - 8;
    if (imm4 != 0) add_constant(c, 9, 9, int64_t{imm4} * process_vector_bytes());
  } else if (xm != 31) {
    load_x(c, 10, kInlineRecord, x_offset(xm));
    c.put(add_shifted(9, 9, 10, size));
  }
  if (load) {
    for (unsigned k = 0; k < vector_chunks(); ++k) load_q(c, k, 9, k * kChunkBytes);
    for (unsigned k = 0; k < vector_chunks(); ++k) store_q(c, k, kInlineRecord, z_offset(zt, k));
  } else {
    for (unsigned k = 0; k < vector_chunks(); ++k) {
      load_q(c, 0, kInlineRecord, z_offset(zt, k));
      store_q(c, 0, 9, k * kChunkBytes);
    }
  }
  const unsigned to_end = c.put_branch(kBranch);

  c.land(to_call_if_tracing);
  c.land(to_call_if_partial);
  c.point(pc_literal, c.count + 1 + 2); // past the blr and the decoder
  call_decoder(c, decoder, word, pc);
  c.land(to_end);
  return true;
}
