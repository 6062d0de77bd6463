// The processor's own scalar floating-point instructions at all three
// widths, run under a given FPCR, with the flags they raise: what the
// generic tier's element loops are held against.
#pragma once

#include <cstdint>
#include <random>

struct host_fpcr_scope {
  uint64_t saved;
  explicit host_fpcr_scope(uint32_t fpcr) {
    asm volatile("mrs %0, fpcr" : "=r"(saved));
    asm volatile("msr fpcr, %0\n msr fpsr, xzr" ::"r"(uint64_t{fpcr}));
  }
  uint32_t flags() const {
    uint64_t v;
    asm volatile("mrs %0, fpsr" : "=r"(v));
    return uint32_t(v);
  }
  ~host_fpcr_scope() { asm volatile("msr fpcr, %0" ::"r"(saved)); }
};

// The operands go through d1..d3 and the result comes back from d0; a
// scalar write of h0 or s0 clears the rest of the register.
#define HOST_FP_ASM(body)                                                                          \
  asm volatile("fmov d1, %1\n fmov d2, %2\n fmov d3, %3\n" body "\n fmov %0, d0"                   \
               : "=r"(r)                                                                           \
               : "r"(uint64_t(a)), "r"(uint64_t(b)), "r"(uint64_t(c))                              \
               : "d0", "d1", "d2", "d3", "x1")

#define HOST_FP_OP(fn, half_body, single_body, double_body)                                        \
  template <typename T> T fn(T a, T b = 0, T c = 0) {                                              \
    uint64_t r;                                                                                    \
    if constexpr (sizeof(T) == 2)                                                                  \
      HOST_FP_ASM(half_body);                                                                      \
    else if constexpr (sizeof(T) == 4)                                                             \
      HOST_FP_ASM(single_body);                                                                    \
    else                                                                                           \
      HOST_FP_ASM(double_body);                                                                    \
    return T(r);                                                                                   \
  }
#define HOST_FP_BINARY(fn, insn)                                                                   \
  HOST_FP_OP(fn, insn " h0, h1, h2", insn " s0, s1, s2", insn " d0, d1, d2")
#define HOST_FP_UNARY(fn, insn) HOST_FP_OP(fn, insn " h0, h1", insn " s0, s1", insn " d0, d1")

namespace host {
HOST_FP_BINARY(add, "fadd")
HOST_FP_BINARY(sub, "fsub")
HOST_FP_BINARY(mul, "fmul")
HOST_FP_BINARY(div, "fdiv")
HOST_FP_BINARY(max, "fmax")
HOST_FP_BINARY(min, "fmin")
HOST_FP_BINARY(maxnm, "fmaxnm")
HOST_FP_BINARY(minnm, "fminnm")
HOST_FP_BINARY(mulx, "fmulx")
HOST_FP_BINARY(abd, "fabd")
HOST_FP_BINARY(recps, "frecps")
HOST_FP_BINARY(rsqrts, "frsqrts")
HOST_FP_BINARY(cmeq, "fcmeq")
HOST_FP_BINARY(cmge, "fcmge")
HOST_FP_BINARY(cmgt, "fcmgt")
HOST_FP_BINARY(acge, "facge")
HOST_FP_BINARY(acgt, "facgt")
HOST_FP_UNARY(sqrt, "fsqrt")
HOST_FP_UNARY(recpe, "frecpe")
HOST_FP_UNARY(rsqrte, "frsqrte")
HOST_FP_UNARY(recpx, "frecpx")
HOST_FP_UNARY(frinti, "frinti")
HOST_FP_UNARY(frintx, "frintx")
HOST_FP_UNARY(frinta, "frinta")
HOST_FP_OP(cmle_zero, "fcmle h0, h1, #0.0", "fcmle s0, s1, #0.0", "fcmle d0, d1, #0.0")
HOST_FP_OP(cmlt_zero, "fcmlt h0, h1, #0.0", "fcmlt s0, s1, #0.0", "fcmlt d0, d1, #0.0")
// a + b * c, and with the product negated: FMADD and FMSUB of the addend a.
HOST_FP_OP(madd, "fmadd h0, h2, h3, h1", "fmadd s0, s2, s3, s1", "fmadd d0, d2, d3, d1")
HOST_FP_OP(msub, "fmsub h0, h2, h3, h1", "fmsub s0, s2, s3, s1", "fmsub d0, d2, d3, d1")
HOST_FP_OP(nmadd, "fnmadd h0, h2, h3, h1", "fnmadd s0, s2, s3, s1", "fnmadd d0, d2, d3, d1")
HOST_FP_OP(nmsub, "fnmsub h0, h2, h3, h1", "fnmsub s0, s2, s3, s1", "fnmsub d0, d2, d3, d1")
// Conversions: the source's bits in the low part of a, the result's bits
// zero-extended.
#define HOST_CONVERT(fn, body)                                                                     \
  inline uint64_t fn(uint64_t a) {                                                                 \
    uint64_t r;                                                                                    \
    asm volatile("fmov d1, %1\n fmov x1, d1\n" body "\n fmov %0, d0"                               \
                 : "=r"(r)                                                                         \
                 : "r"(a)                                                                          \
                 : "d0", "d1", "x1");                                                              \
    return r;                                                                                      \
  }
HOST_CONVERT(scvtf_h, "scvtf h0, x1")
HOST_CONVERT(ucvtf_h, "ucvtf h0, x1")
HOST_CONVERT(ucvtf_s, "ucvtf s0, x1")
HOST_CONVERT(fcvtzs_w_h, "fcvtzs w1, h1\n fmov s0, w1")
HOST_CONVERT(fcvtzu_w_h, "fcvtzu w1, h1\n fmov s0, w1")
HOST_CONVERT(fcvtzs_x_h, "fcvtzs x1, h1\n fmov d0, x1")
HOST_CONVERT(fcvtzu_x_h, "fcvtzu x1, h1\n fmov d0, x1")
HOST_CONVERT(fcvtzu_w_s, "fcvtzu w1, s1\n fmov s0, w1")
HOST_CONVERT(fcvtzu_x_s, "fcvtzu x1, s1\n fmov d0, x1")
HOST_CONVERT(fcvt_s_h, "fcvt s0, h1")
HOST_CONVERT(fcvt_d_h, "fcvt d0, h1")
HOST_CONVERT(fcvt_h_s, "fcvt h0, s1")
HOST_CONVERT(fcvt_h_d, "fcvt h0, d1")
} // namespace host

// Operands biased to the hard cases of each format.
template <typename T> T edge_value(std::mt19937_64& rng) {
  constexpr unsigned mant = sizeof(T) == 2 ? 10 : sizeof(T) == 4 ? 23 : 52;
  constexpr uint64_t exp_max = (sizeof(T) == 2 ? 31 : sizeof(T) == 4 ? 255 : 2047);
  const uint64_t sign = (rng() & 1) ? uint64_t{1} << (sizeof(T) * 8 - 1) : 0;
  const uint64_t mant_all = (uint64_t{1} << mant) - 1, bias = exp_max >> 1;
  auto make = [&](uint64_t e, uint64_t m) { return T(sign | e << mant | (m & mant_all)); };
  switch (rng() % 12) {
  case 0:
    return make(0, 0);
  case 1:
    return make(exp_max, 0);
  case 2:
    return make(exp_max, (mant_all >> 1) + 1 + (rng() & 0xff)); // quiet NaN
  case 3:
    return make(exp_max, 1 + (rng() & ((mant_all >> 1) - 1))); // signalling NaN
  case 4:
    return make(0, rng()); // subnormal
  case 5:
    return make(1, rng());
  case 6:
    return make(exp_max - 1, rng()); // near overflow
  default:
    return make(bias - 6 + rng() % 13, rng());
  }
}

// RMode, FZ, DN, AHP and FZ16 at random; no trap enables.
inline uint32_t random_fpcr(std::mt19937_64& rng) {
  return uint32_t(rng()) & (3u << 22 | 1u << 24 | 1u << 25 | 1u << 26 | 1u << 19);
}
