// A64 and Advanced SIMD words for the code that carries out SVE words inline,
// on the register record, with no call. Each helper encodes one instruction;
// the record offsets come from cpu_state.h and the vector length from
// kVectorBytes, so the same code serves any length that is a multiple of 16.
#pragma once

#include <cstddef>
#include <cstdint>

#include "../state/cpu_state.h"
#include "../state/vector_length.h"

// Registers of the inline code: the record is in X19 throughout a run; X9 to
// X15 and every vector register are free there, since the record holds the
// application's values. X21 holds the entry that calls a thin decoder with
// the word_call constants that follow its blr (transfer.h), and X22 the trace
// gate (non-zero while the thread records its accesses), so that a memory
// form can leave its work to the call path.
constexpr unsigned kInlineRecord = 19;
constexpr unsigned kInlineThinCall = 21;
constexpr unsigned kInlineTraceGate = 22;
constexpr unsigned kChunkBytes = 16;
// The process's vector length is a whole number of Q registers; the code is
// made for it when a word is translated.
inline unsigned vector_chunks() { return process_vector_bytes() / kChunkBytes; }

// Where the record keeps a register, and the 16 bytes of a vector register
// that one Q register holds.
constexpr size_t z_offset(unsigned z, unsigned chunk) {
  return offsetof(cpu_state, z) + z * sizeof(cpu_state::z[0]) + chunk * kChunkBytes;
}
constexpr size_t p_offset(unsigned p, unsigned chunk) {
  return offsetof(cpu_state, p) + p * sizeof(cpu_state::p[0]) + chunk * kChunkBytes;
}
constexpr size_t x_offset(unsigned x) { return offsetof(cpu_state, regs) + 8 * x; }

// Up to this many words stand for one SVE word: room for a partial store
// element by element, up to 64 elements.
constexpr unsigned kInlineMaxWords = 64 + 16 * (kMaxVectorBytes / kChunkBytes);

// The words that, after a `blr` to the thin call entry, name the word to
// emulate (the layout of word_call).
constexpr unsigned kWordCallWords = 6;
// Where the emulated word's address lies, in words from the `blr`.
constexpr unsigned kWordCallPcWord = 1 + 2;

struct inline_code {
  uint32_t words[kInlineMaxWords];
  unsigned count = 0;
  bool overflow = false; // a word did not fit, or an offset was out of reach

  void put(uint32_t word) {
    if (count < kInlineMaxWords)
      words[count++] = word;
    else
      overflow = true;
  }
  // A branch whose target is set later by `land` (b, b.cond, cbz, cbnz, tbz,
  // tbnz, or a literal load): put it, keep its index.
  unsigned put_branch(uint32_t opcode) {
    put(opcode);
    return count - 1;
  }
  // Points the branch at `index` at the word at `target`, or at the next
  // word put.
  void point(unsigned index, unsigned target);
  void land(unsigned index) { point(index, count); }
};

namespace a64 {

// Element size as the Advanced SIMD `size` field has it: 0 B .. 3 D.
enum simd_size : unsigned { B = 0, H = 1, S = 2, D = 3 };

// ldr/str of a Q or X register at an unsigned, scaled offset from a base.
void load_q(inline_code& c, unsigned qt, unsigned base, size_t offset);
void store_q(inline_code& c, unsigned qt, unsigned base, size_t offset);
void load_x(inline_code& c, unsigned xt, unsigned base, size_t offset);
void store_x(inline_code& c, unsigned xt, unsigned base, size_t offset);
// Q registers vt.. vt+count-1 (count 1 to 4) from consecutive bytes at Xn.
uint32_t load_consecutive_q(unsigned vt, unsigned count, unsigned xn);

// Any 64-bit constant into Xd with movz and movk.
void move_constant(inline_code& c, unsigned xd, uint64_t value);
// Xd = Xn + value (value may be negative; Xd and Xn are not SP), with X15 as
// scratch for constants that no immediate form holds.
void add_constant(inline_code& c, unsigned xd, unsigned xn, int64_t value);

// Xd = Xn + (Xm << shift).
uint32_t add_shifted(unsigned xd, unsigned xn, unsigned xm, unsigned shift);
uint32_t and_x(unsigned xd, unsigned xn, unsigned xm);
uint32_t orr_x(unsigned xd, unsigned xn, unsigned xm);
// Xd = Xn >> shift, logical.
uint32_t lsr_x(unsigned xd, unsigned xn, unsigned shift);
// ldp Xt1, Xt2, [Xn, #offset], offset a multiple of 8 below 512.
uint32_t load_pair_x(unsigned xt1, unsigned xt2, unsigned xn, unsigned offset);
// str of the low 1 << size bytes of Xt at Xn + offset (a multiple of them).
uint32_t store_element(simd_size size, unsigned xt, unsigned xn, unsigned offset);
// tbz Xt, #bit: a branch to be landed, taken when the bit is clear.
uint32_t branch_if_bit_clear(unsigned xt, unsigned bit);
// Xd = Xn AND / EOR the pattern of one set bit at the bottom of every element
// of 1 << size bytes (0x0101..01 for bytes, 1 for doublewords).
uint32_t and_element_ones(simd_size size, unsigned xd, unsigned xn);
uint32_t eor_element_ones(simd_size size, unsigned xd, unsigned xn);
// Xd = the doubleword `lane` (0 or 1) of Vn.
uint32_t umov_d(unsigned xd, unsigned vn, unsigned lane);
constexpr uint32_t kBranch = 0x14000000;        // b
constexpr uint32_t kBranchNonZero = 0xb5000000; // cbnz Xt: or in the register
constexpr uint32_t kBlr = 0xd63f0000;           // or in Rn << 5
constexpr uint32_t kLoadLiteralX = 0x58000000;  // ldr Xt, <label>: or in Rt
constexpr uint32_t kBranchZero = 0xb4000000;    // cbz Xt: or in the register
constexpr uint32_t kBranchHigher = 0x54000008;  // b.hi

// Three-register Advanced SIMD operations on full 128-bit vectors.
uint32_t add_v(simd_size size, unsigned vd, unsigned vn, unsigned vm);
uint32_t sub_v(simd_size size, unsigned vd, unsigned vn, unsigned vm);
uint32_t and_v(unsigned vd, unsigned vn, unsigned vm);
uint32_t orr_v(unsigned vd, unsigned vn, unsigned vm);
uint32_t eor_v(unsigned vd, unsigned vn, unsigned vm);
// Each lane all ones where Vn AND Vm is non-zero in it (cmtst).
uint32_t test_v(simd_size size, unsigned vd, unsigned vn, unsigned vm);
// Vd = Vn where Vm's bits are set, else Vd (bit).
uint32_t insert_if_true_v(unsigned vd, unsigned vn, unsigned vm);
// Floating point on full vectors of singles or doubles.
uint32_t fadd_v(bool is_double, unsigned vd, unsigned vn, unsigned vm);
uint32_t fsub_v(bool is_double, unsigned vd, unsigned vn, unsigned vm);
uint32_t fmul_v(bool is_double, unsigned vd, unsigned vn, unsigned vm);
// Vd + Vn * Vm and Vd - Vn * Vm, fused.
uint32_t fmla_v(bool is_double, unsigned vd, unsigned vn, unsigned vm);
uint32_t fmls_v(bool is_double, unsigned vd, unsigned vn, unsigned vm);
uint32_t fneg_v(bool is_double, unsigned vd, unsigned vn);
// Every lane of Vd from the low bits of Xn.
uint32_t dup_v_from_x(simd_size size, unsigned vd, unsigned xn);

// The call path for a word from inside its inline code, as a run calls a thin
// decoder: `blr` to the entry in X21, followed by the decoder, the word's
// address and the word.
void call_decoder(inline_code& c, sve_decoder decoder, uint32_t word, uint64_t pc);

// Byte-lane Advanced SIMD operations for the predicate forms, whose record
// bytes hold 0 or 1.
uint32_t orn_v(unsigned vd, unsigned vn, unsigned vm); // Vn OR NOT Vm
uint32_t bic_v(unsigned vd, unsigned vn, unsigned vm); // Vn AND NOT Vm
uint32_t umin_b(unsigned vd, unsigned vn, unsigned vm);
uint32_t umax_b(unsigned vd, unsigned vn, unsigned vm);
// The least (greatest) lane of Vn into lane 0 of Vd.
uint32_t uminv_v(simd_size size, unsigned vd, unsigned vn);
uint32_t umaxv_v(simd_size size, unsigned vd, unsigned vn);
uint32_t uaddlv_b(unsigned vd, unsigned vn); // the sum of the bytes, as a halfword
uint32_t neg_v(simd_size size, unsigned vd, unsigned vn);
uint32_t not_v(unsigned vd, unsigned vn);
// All-ones lanes where the comparison holds: Vn > Vm unsigned, Vn >= Vm
// unsigned, the same signed, and equal.
uint32_t cmhi_v(simd_size size, unsigned vd, unsigned vn, unsigned vm);
uint32_t cmhs_v(simd_size size, unsigned vd, unsigned vn, unsigned vm);
uint32_t cmgt_v(simd_size size, unsigned vd, unsigned vn, unsigned vm);
uint32_t cmge_v(simd_size size, unsigned vd, unsigned vn, unsigned vm);
uint32_t cmeq_v(simd_size size, unsigned vd, unsigned vn, unsigned vm);
// Each lane shifted right, unsigned, by its width less one: all-ones lanes
// become 1.
uint32_t lane_sign_to_one(simd_size size, unsigned vd, unsigned vn);
// Every lane of Vv set to 1 (X9 serves doublewords), so that a test of a
// predicate's chunk against it (test_v) gives each element's mask: all ones
// where the element's first predicate byte has bit 0 set.
void lane_ones(inline_code& c, simd_size size, unsigned v);
// Every byte of Vd set to imm.
uint32_t movi_b(unsigned vd, uint8_t imm);
// Every byte of Vd from byte 0 of Vn; Wd from byte or halfword 0 of Vn.
uint32_t dup_b0(unsigned vd, unsigned vn);
uint32_t umov_b0(unsigned wd, unsigned vn);
uint32_t umov_h0(unsigned wd, unsigned vn);
// ldrb Wt, [Xn, Xm]
uint32_t load_byte_indexed(unsigned wt, unsigned xn, unsigned xm);

} // namespace a64
