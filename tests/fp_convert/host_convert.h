// The processor's own conversion instructions, with operands and results in
// integer registers and the #fbits forms, run one at a time through the
// shared harness in tests/fp_host, and the conversion-specific draws on top
// of its random operands and control words.
#pragma once

#include <cstdint>
#include <string>
#include <utility>

#include <gtest/gtest.h>

#include "fp_host/fp_random.h"
#include "fp_host/host_fp.h"

// Where an operand comes from and where a result goes, as operand strings.
// Half and single operands travel in the low bits of s registers.
#define SRC_SETUP_h "fmov s0, %w[a]\n\t"
#define SRC_SETUP_s "fmov s0, %w[a]\n\t"
#define SRC_SETUP_d "fmov d0, %[a]\n\t"
#define SRC_SETUP_w ""
#define SRC_SETUP_x ""
#define SRC_REG_h "h0"
#define SRC_REG_s "s0"
#define SRC_REG_d "d0"
#define SRC_REG_w "%w[a]"
#define SRC_REG_x "%[a]"
#define DST_REG_h "h1"
#define DST_REG_s "s1"
#define DST_REG_d "d1"
#define DST_REG_w "%w[r]"
#define DST_REG_x "%[r]"
#define DST_FETCH_h "\n\tumov %w[r], v1.h[0]"
#define DST_FETCH_s "\n\tfmov %w[r], s1"
#define DST_FETCH_d "\n\tfmov %[r], d1"
#define DST_FETCH_w ""
#define DST_FETCH_x ""

#define HOST_ASM(body, ...)                                                                        \
  host_fpcr_scope scope(fpcr);                                                                     \
  uint64_t r = 0;                                                                                  \
  asm volatile(body : [r] "=&r"(r) : [a] "r"(a), ##__VA_ARGS__ : "v0", "v1", "memory");            \
  return { r, scope.flags() & FP_FLAG_BITS }

// name(a, fpcr): `insn dst, src`.
#define HOST_UNARY(name, insn, src, dst)                                                           \
  inline host_result name(uint64_t a, uint32_t fpcr) {                                             \
    HOST_ASM(SRC_SETUP_##src insn " " DST_REG_##dst ", " SRC_REG_##src DST_FETCH_##dst);           \
  }

// name::run<F>(a, fpcr): `insn dst, src, #F`, the fixed-point forms.
#define HOST_FIXED(name, insn, src, dst)                                                           \
  struct name {                                                                                    \
    template <int F> static host_result run(uint64_t a, uint32_t fpcr) {                           \
      HOST_ASM(SRC_SETUP_##src insn " " DST_REG_##dst ", " SRC_REG_##src                           \
               ", #%[f]" DST_FETCH_##dst,                                                          \
               [f] "i"(F));                                                                        \
    }                                                                                              \
  }

using HostFn = host_result (*)(uint64_t, uint32_t);

// The fixed-point form with F fraction bits, 1 <= F <= Max, chosen at run time.
template <typename Op, int... F>
host_result run_fixed_impl(int fbits, uint64_t a, uint32_t fpcr, std::integer_sequence<int, F...>) {
  static constexpr HostFn table[] = {&Op::template run<F + 1>...};
  return table[fbits - 1](a, fpcr);
}
template <typename Op, int Max> host_result run_fixed(int fbits, uint64_t a, uint32_t fpcr) {
  return run_fixed_impl<Op>(fbits, a, fpcr, std::make_integer_sequence<int, Max>());
}

inline uint64_t bits(fp_rng& rng, int n) { return n >= 64 ? rng() : rng() & ((1ull << n) - 1); }

// The low k bits of v replaced by one of the patterns that sit on or next to
// a rounding boundary: zero, exactly half, just below or just above half.
inline uint64_t shape_tail(fp_rng& rng, uint64_t v, int k) {
  if (k <= 0) return v;
  const uint64_t mask = k >= 64 ? ~0ull : (1ull << k) - 1;
  const uint64_t half = 1ull << (k - 1);
  const uint64_t tails[] = {0, half, half - 1, half + 1, mask, 1, v & mask};
  return (v & ~mask) | (tails[rng() % 7] & mask);
}

// Unbiased exponents where conversions change behaviour: the edges of the
// three formats' normal and denormal ranges and of the integer widths.
inline int draw_hot_exponent(fp_rng& rng) {
  static const int hot[] = {-1074, -1022, -149, -126, -24, -14, -1, 0,   1,   10,  15,
                            16,    23,    31,   32,   52,  63,  64, 127, 128, 1023};
  return hot[rng() % (sizeof hot / sizeof hot[0])] + int(rng() % 7) - 3;
}

// The general hard cases, or a value at one of the exponents above with its
// low bits at a rounding boundary, a power of two or all ones below one.
template <typename T> T draw_fp(fp_rng& rng) {
  using F = fp_format<T>;
  if (rng.below(2)) return random_operand<T>(rng);
  int field = draw_hot_exponent(rng) + F::bias;
  if (field <= 0 || field >= F::exp_max) field = int(1 + rng() % (F::exp_max - 1));
  uint64_t frac = shape_tail(rng, bits(rng, F::M), int(rng() % (F::M + 1)));
  if (rng.below(3) == 0) frac = rng.coin() ? 0 : (1ull << F::M) - 1;
  return fp_pack<T>(rng.coin(), field, T(frac));
}

// A 64-bit integer with its leading bit anywhere and its low bits at a
// rounding boundary of some width; negative as often as not.
inline uint64_t draw_integer(fp_rng& rng) {
  const int lead = int(rng() % 64);
  uint64_t v = (1ull << lead) | bits(rng, lead);
  v = shape_tail(rng, v, int(rng() % (lead + 1)));
  switch (rng() % 8) {
  case 0:
    v = rng() % 4;
    break;
  case 1:
    v = 1ull << 63;
    break;
  default:
    break;
  }
  return rng() & 1 ? 0 - v : v;
}

// Counts mismatches between the library and the processor and reports the
// first few with everything needed to replay them.
struct Mismatches {
  int count = 0;
  // fpscr is the library's control word after the call: its flags must
  // match the processor's and its control bits must be as they were.
  void check(const std::string& what, uint64_t op, uint32_t fpcr, const host_result& want,
             uint64_t got, uint32_t fpscr) {
    if (want.bits == got && want.fpsr == (fpscr & FP_FLAG_BITS) && (fpscr & ~FP_FLAG_BITS) == fpcr)
      return;
    if (++count <= 8)
      ADD_FAILURE() << what << " op=0x" << std::hex << op << " fpcr=0x" << fpcr << ": want 0x"
                    << want.bits << " flags 0x" << want.fpsr << ", got 0x" << got << " fpscr 0x"
                    << fpscr;
  }
};
