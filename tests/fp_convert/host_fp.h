// The processor's own conversion instructions, run one at a time under a
// chosen FPCR with FPSR cleared before and read after, and the random
// operands and control words that the conversion tests draw.
#pragma once

#include <cstdint>
#include <cstdio>
#include <random>
#include <string>
#include <utility>

#include <gtest/gtest.h>

struct HostResult {
  uint64_t value;
  uint32_t flags; // FPSR's cumulative exception bits
};

constexpr uint32_t kFlagBits = 0x9f;
constexpr uint32_t kIOC = 1, kOFC = 4, kUFC = 8, kIXC = 16, kIDC = 128;
constexpr uint32_t kFZ16 = 1u << 19, kFZ = 1u << 24, kDN = 1u << 25, kAHP = 1u << 26;

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
  uint64_t r = 0, sr;                                                                              \
  asm volatile("msr fpcr, %[c]\n\tmsr fpsr, xzr\n\t" body "\n\tmrs %[sr], fpsr\n\tmsr fpcr, xzr"   \
               : [r] "=&r"(r), [sr] "=&r"(sr)                                                      \
               : [a] "r"(a), [c] "r"(uint64_t(fpcr)), ##__VA_ARGS__                                \
               : "v0", "v1", "memory");                                                            \
  return { r, uint32_t(sr) & kFlagBits }

// name(a, fpcr): `insn dst, src`.
#define HOST_UNARY(name, insn, src, dst)                                                           \
  inline HostResult name(uint64_t a, uint32_t fpcr) {                                              \
    HOST_ASM(SRC_SETUP_##src insn " " DST_REG_##dst ", " SRC_REG_##src DST_FETCH_##dst);           \
  }

// name::run<F>(a, fpcr): `insn dst, src, #F`, the fixed-point forms.
#define HOST_FIXED(name, insn, src, dst)                                                           \
  struct name {                                                                                    \
    template <int F> static HostResult run(uint64_t a, uint32_t fpcr) {                            \
      HOST_ASM(SRC_SETUP_##src insn " " DST_REG_##dst ", " SRC_REG_##src                           \
               ", #%[f]" DST_FETCH_##dst,                                                          \
               [f] "i"(F));                                                                        \
    }                                                                                              \
  }

using HostFn = HostResult (*)(uint64_t, uint32_t);

// The fixed-point form with F fraction bits, 1 <= F <= Max, chosen at run time.
template <typename Op, int... F>
HostResult run_fixed_impl(int fbits, uint64_t a, uint32_t fpcr, std::integer_sequence<int, F...>) {
  static constexpr HostFn table[] = {&Op::template run<F + 1>...};
  return table[fbits - 1](a, fpcr);
}
template <typename Op, int Max> HostResult run_fixed(int fbits, uint64_t a, uint32_t fpcr) {
  return run_fixed_impl<Op>(fbits, a, fpcr, std::make_integer_sequence<int, Max>());
}

// Shape of a format, written out here rather than taken from the library.
template <typename T> struct Shape;
template <> struct Shape<uint16_t> { static constexpr int W = 16, M = 10, bias = 15; };
template <> struct Shape<uint32_t> { static constexpr int W = 32, M = 23, bias = 127; };
template <> struct Shape<uint64_t> { static constexpr int W = 64, M = 52, bias = 1023; };

using Rng = std::mt19937_64;

inline uint64_t bits(Rng& rng, int n) { return n >= 64 ? rng() : rng() & ((1ull << n) - 1); }

// Any rounding mode, and each of FZ, DN, FZ16 and AHP with even odds.
inline uint32_t draw_fpcr(Rng& rng) {
  const uint64_t r = rng();
  return uint32_t((r & 3) << 22) | (r & 4 ? kFZ : 0) | (r & 8 ? kDN : 0) | (r & 16 ? kFZ16 : 0) |
         (r & 32 ? kAHP : 0);
}

// The low k bits of v replaced by one of the patterns that sit on or next to
// a rounding boundary: zero, exactly half, just below or just above half.
inline uint64_t shape_tail(Rng& rng, uint64_t v, int k) {
  if (k <= 0) return v;
  const uint64_t mask = k >= 64 ? ~0ull : (1ull << k) - 1;
  const uint64_t half = 1ull << (k - 1);
  const uint64_t tails[] = {0, half, half - 1, half + 1, mask, 1, v & mask};
  return (v & ~mask) | (tails[rng() % 7] & mask);
}

// Unbiased exponents where conversions change behaviour: the edges of the
// three formats' normal and denormal ranges and of the integer widths.
inline int draw_hot_exponent(Rng& rng) {
  static const int hot[] = {-1074, -1022, -149, -126, -24, -14, -1, 0,   1,   10,  15,
                            16,    23,    31,   32,   52,  63,  64, 127, 128, 1023};
  return hot[rng() % (sizeof hot / sizeof hot[0])] + int(rng() % 7) - 3;
}

// A raw pattern of format T biased towards zeros, denormals, the largest and
// smallest normals, infinities, both kinds of NaN, and values whose low bits
// lie at rounding boundaries.
template <typename T> T draw_fp(Rng& rng) {
  using S = Shape<T>;
  const int top = (1 << (S::W - 1 - S::M)) - 1;
  const uint64_t sign = uint64_t(rng() & 1) << (S::W - 1);
  const uint64_t quiet = 1ull << (S::M - 1);
  uint64_t frac = shape_tail(rng, bits(rng, S::M), int(rng() % (S::M + 1)));
  int field;
  switch (rng() % 12) {
  case 0:
    return T(sign);
  case 1:
    field = 0;
    frac |= frac ? 0 : 1;
    break;
  case 2:
    field = 1;
    break;
  case 3:
    field = top - 1;
    break;
  case 4:
    return T(sign | (uint64_t(top) << S::M));
  case 5:
    return T(sign | (uint64_t(top) << S::M) | quiet | bits(rng, S::M - 1));
  case 6:
    return T(sign | (uint64_t(top) << S::M) | (bits(rng, S::M - 1) | 1));
  case 7:
    return T(rng());
  case 8:
  case 9:
    field = draw_hot_exponent(rng) + S::bias;
    break;
  default: // a power of two, or all ones below one
    field = draw_hot_exponent(rng) + S::bias;
    frac = rng() & 1 ? 0 : (1ull << S::M) - 1;
    break;
  }
  if (field <= 0 || field >= top) field = int(1 + rng() % (top - 1));
  return T(sign | (uint64_t(field) << S::M) | frac);
}

// A 64-bit integer with its leading bit anywhere and its low bits at a
// rounding boundary of some width; negative as often as not.
inline uint64_t draw_integer(Rng& rng) {
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
  void check(const std::string& what, uint64_t op, uint32_t fpcr, const HostResult& want,
             uint64_t got, uint32_t fpscr) {
    if (want.value == got && want.flags == (fpscr & kFlagBits) && (fpscr & ~kFlagBits) == fpcr)
      return;
    if (++count <= 8)
      ADD_FAILURE() << what << " op=0x" << std::hex << op << " fpcr=0x" << fpcr << ": want 0x"
                    << want.value << " flags 0x" << want.flags << ", got 0x" << got << " fpscr 0x"
                    << fpscr;
  }
};
