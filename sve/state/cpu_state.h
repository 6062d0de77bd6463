// One application thread's emulated register file, and the small records a
// decoder uses to tell a fast handler which registers an instruction names.
#pragma once

#include <cstddef>
#include <cstdint>

// The record holds the longest vector the architecture allows, 2048 bits; the
// process runs at one length, chosen once at start (see vector_length.h).
constexpr unsigned kMaxVectorBytes = 256;

struct cpu_state {
  uint64_t regs[32]; // X0..X30, then SP at 31
  uint64_t pc;       // address of the instruction being emulated
  uint64_t nzcv;     // as MRS NZCV reads it: N bit 31 .. V bit 28
  uint32_t fpsr;
  uint32_t fpcr;                              // shadow of the application's FPCR writes
  alignas(16) uint8_t z[32][kMaxVectorBytes]; // first 16 bytes of z[n] mirror Qn
  // P and FFR start at multiples of 4 KiB, which one add instruction reaches
  // (Z is reached through the immediate offsets of its loads and stores).
  uint8_t unused_before_p[3 * 4096 - 288 - 32 * kMaxVectorBytes];
  uint8_t p[16][kMaxVectorBytes]; // one byte per vector byte, 0 or 1
  uint8_t ffr[kMaxVectorBytes];   // same form as p
  uint64_t raw_instr;             // the word, written by thin decoders
  // Nonzero while one of the thread's words is being emulated (on the lean
  // path: for a whole run of them), when a fault of an emulated access is
  // the application's, at the instruction at pc, with these registers.
  uint64_t emulating;
};

// Generated code addresses these fields with immediate offsets: whoever
// emits code takes them from here.
namespace record_offset {
constexpr size_t regs = 0, pc = 256, nzcv = 264, fpsr = 272, fpcr = 276;
constexpr size_t z = 288, z_stride = kMaxVectorBytes;
constexpr size_t p = 3 * 4096, p_stride = kMaxVectorBytes;
constexpr size_t ffr = p + 16 * p_stride;
constexpr size_t raw_instr = ffr + kMaxVectorBytes;
constexpr size_t emulating = raw_instr + 8;
} // namespace record_offset

static_assert(offsetof(cpu_state, regs) == record_offset::regs);
static_assert(offsetof(cpu_state, pc) == record_offset::pc);
static_assert(offsetof(cpu_state, nzcv) == record_offset::nzcv);
static_assert(offsetof(cpu_state, fpsr) == record_offset::fpsr);
static_assert(offsetof(cpu_state, fpcr) == record_offset::fpcr);
static_assert(offsetof(cpu_state, z) == record_offset::z);
static_assert(offsetof(cpu_state, z[1]) - offsetof(cpu_state, z[0]) == record_offset::z_stride);
static_assert(offsetof(cpu_state, p) == record_offset::p);
static_assert(offsetof(cpu_state, ffr) == record_offset::ffr);
static_assert(offsetof(cpu_state, raw_instr) == record_offset::raw_instr);
static_assert(offsetof(cpu_state, emulating) == record_offset::emulating);
static_assert(alignof(cpu_state) == 16);

enum element_size : uint32_t {
  ELEM_B = 0,
  ELEM_H = 1,
  ELEM_S = 2,
  ELEM_D = 3,
  ELEM_Q = 4,
};

enum aarch64_decode_rc : int {
  AARCH64_DECODE_OK = 0,
  AARCH64_DECODE_UNIMPLEMENTED = 2,
};

// A vector register operand. Exactly one of `elem` (ordinary operand) and
// `rw_elem` (destructive Zdn) carries the element size; the other holds 5.
struct aarch64_z_reg {
  uint32_t num;
  uint32_t elem;
  uint32_t rw_elem;
  uint32_t rw_elem2;
  static const char* const zname[32];
  static const char* const zname_b[32];
  static const char* const zname_h[32];
  static const char* const zname_s[32];
  static const char* const zname_d[32];
};
constexpr uint32_t kZNone = 5;

// A predicate operand. `elem`: 0..3 element size, 4 merging, 5 zeroing,
// 6 plain, 7 none.
struct aarch64_p_reg {
  uint32_t num;
  uint32_t elem;
  uint32_t rw_elem;
  uint32_t rw_elem2;
  static const char* const pname[16];
  static const char* const pname_z[16];
  static const char* const pname_m[16];
  static const char* const pname_b[16];
  static const char* const pname_h[16];
  static const char* const pname_s[16];
  static const char* const pname_d[16];
};
constexpr uint32_t kPMerging = 4;
constexpr uint32_t kPZeroing = 5;
constexpr uint32_t kPPlain = 6;
constexpr uint32_t kPNone = 7;

// A general register where 31 is the zero register.
struct aarch64_i_reg {
  uint32_t num;
  uint32_t elem;
  uint32_t rw_elem;
  uint32_t rw_elem2;
  static const char* const xname[32];
  static const char* const wname[32];
};
constexpr uint32_t kRNone = 4;

// A general register where 31 is SP.
struct aarch64_i_rsp_reg {
  uint32_t num;
  uint32_t elem;
  static const char* const xname[32];
  static const char* const wname[32];
};

static_assert(sizeof(aarch64_z_reg) == 16 && sizeof(aarch64_p_reg) == 16);
static_assert(sizeof(aarch64_i_reg) == 16 && sizeof(aarch64_i_rsp_reg) == 8);

// A logical immediate already expanded to 64 bits.
struct aarch64_sve_logical64_imm {
  uint64_t value;
};

// The single i1 bit of the floating-point arithmetic immediates; what it
// stands for depends on the instruction.
struct aarch64_sve_fp_arith_imm {
  uint8_t i1;
};

// An 8-bit floating-point immediate expanded to all three widths.
struct aarch64_sve_fp_dup_imm {
  uint16_t half;
  uint32_t single;
  uint64_t dbl;
};

// Register access rules shared by every handler.
inline uint64_t read_reg(const cpu_state* s, aarch64_i_reg r) {
  return r.num == 31 ? 0 : s->regs[r.num];
}
inline void write_reg(cpu_state* s, aarch64_i_reg r, uint64_t v) {
  if (r.num != 31) s->regs[r.num] = v;
}
inline uint64_t read_reg(const cpu_state* s, aarch64_i_rsp_reg r) { return s->regs[r.num]; }
inline void write_reg(cpu_state* s, aarch64_i_rsp_reg r, uint64_t v) { s->regs[r.num] = v; }

// A decoder: the value type of every decode map.
using sve_decoder = aarch64_decode_rc (*)(cpu_state*, uint32_t);
