// The processor's own scalar floating-point instructions as the reference for
// the software floating-point library and the generic tier: each call sets
// FPCR, clears FPSR, runs one instruction on raw bit patterns and reads the
// result and FPSR back. Operands travel in the low bits of d0..d3, which is
// where the half and single forms read them; a scalar result clears the bits
// above it.
#pragma once

#include <cstdint>

#include "fp/fp_core.h"

struct host_result {
  uint64_t bits;
  uint32_t fpsr;
};

// Only the control bits the library reads reach FPCR: trap enables stay 0.
constexpr uint32_t HOST_FPCR_CONTROLS =
    FPSCR_FZ16 | (3u << FPSCR_RMODE_SHIFT) | FPSCR_FZ | FPSCR_DN | FPSCR_AHP;

// FPCR holds the controls of `fpscr` and FPSR starts clear for the lifetime
// of the scope; flags() is what the instructions run inside it raised.
struct host_fpcr_scope {
  uint64_t saved;
  explicit host_fpcr_scope(FPSCR fpscr) {
    asm volatile("mrs %0, fpcr" : "=r"(saved));
    asm volatile("msr fpcr, %0\n\tmsr fpsr, xzr" ::"r"(uint64_t{fpscr & HOST_FPCR_CONTROLS}));
  }
  static FPSCR current() {
    uint64_t v;
    asm volatile("mrs %0, fpcr" : "=r"(v));
    return static_cast<FPSCR>(v);
  }
  uint32_t flags() const {
    uint64_t v;
    asm volatile("mrs %0, fpsr" : "=r"(v));
    return static_cast<uint32_t>(v);
  }
  ~host_fpcr_scope() { asm volatile("msr fpcr, %0" ::"r"(saved)); }
};

// insn on a..d in d0..d3 under the FPCR in force; the result comes from d0.
#define HOST_FP_RUN(insn, a, b, c, d)                                                              \
  [&] {                                                                                            \
    uint64_t result;                                                                               \
    asm volatile("fmov d0, %[a0]\n\t"                                                              \
                 "fmov d1, %[a1]\n\t"                                                              \
                 "fmov d2, %[a2]\n\t"                                                              \
                 "fmov d3, %[a3]\n\t" insn "\n\t"                                                  \
                 "fmov %[result], d0\n\t"                                                          \
                 : [result] "=r"(result)                                                           \
                 : [a0] "r"(uint64_t(a)), [a1] "r"(uint64_t(b)), [a2] "r"(uint64_t(c)),            \
                   [a3] "r"(uint64_t(d))                                                           \
                 : "v0", "v1", "v2", "v3", "memory");                                              \
    return result;                                                                                 \
  }()

#define HOST_FP_CALL(insn, a, b, c, d, fpscr)                                                      \
  [&] {                                                                                            \
    host_fpcr_scope scope(fpscr);                                                                  \
    const uint64_t bits = HOST_FP_RUN(insn, a, b, c, d);                                           \
    return host_result{bits, scope.flags()};                                                       \
  }()

// One function per operation and width: op(a[, b[, c]], fpscr); `operands`
// names the registers after the destination h0, s0 or d0.
#define HOST_FP_OP(name, mnemonic, h_operands, s_operands, d_operands, params, ...)                \
  inline host_result name(HOST_FP_PARAMS_##params(uint16_t), FPSCR fpscr) {                        \
    return HOST_FP_CALL(mnemonic " h0, " h_operands, __VA_ARGS__, fpscr);                          \
  }                                                                                                \
  inline host_result name(HOST_FP_PARAMS_##params(uint32_t), FPSCR fpscr) {                        \
    return HOST_FP_CALL(mnemonic " s0, " s_operands, __VA_ARGS__, fpscr);                          \
  }                                                                                                \
  inline host_result name(HOST_FP_PARAMS_##params(uint64_t), FPSCR fpscr) {                        \
    return HOST_FP_CALL(mnemonic " d0, " d_operands, __VA_ARGS__, fpscr);                          \
  }
#define HOST_FP_PARAMS_1(T) T a
#define HOST_FP_PARAMS_2(T) T a, T b
#define HOST_FP_PARAMS_3(T) T a, T b, T c

#define HOST_FP_UNARY(name, mnemonic) HOST_FP_OP(name, mnemonic, "h0", "s0", "d0", 1, a, 0, 0, 0)
#define HOST_FP_BINARY(name, mnemonic)                                                             \
  HOST_FP_OP(name, mnemonic, "h0, h1", "s0, s1", "d0, d1", 2, a, b, 0, 0)
// a + b x c and its negated forms, rounded once: the addend comes first.
#define HOST_FP_FUSED(name, mnemonic)                                                              \
  HOST_FP_OP(name, mnemonic, "h1, h2, h0", "s1, s2, s0", "d1, d2, d0", 3, a, b, c, 0)

HOST_FP_BINARY(host_fadd, "fadd")
HOST_FP_BINARY(host_fsub, "fsub")
HOST_FP_BINARY(host_fmul, "fmul")
HOST_FP_BINARY(host_fmulx, "fmulx")
HOST_FP_BINARY(host_fdiv, "fdiv")
HOST_FP_BINARY(host_fabd, "fabd")
HOST_FP_BINARY(host_fmax, "fmax")
HOST_FP_BINARY(host_fmin, "fmin")
HOST_FP_BINARY(host_fmaxnm, "fmaxnm")
HOST_FP_BINARY(host_fminnm, "fminnm")
HOST_FP_BINARY(host_fcmeq, "fcmeq")
HOST_FP_BINARY(host_fcmge, "fcmge")
HOST_FP_BINARY(host_fcmgt, "fcmgt")
HOST_FP_BINARY(host_facge, "facge")
HOST_FP_BINARY(host_facgt, "facgt")
HOST_FP_BINARY(host_frecps, "frecps")
HOST_FP_BINARY(host_frsqrts, "frsqrts")
HOST_FP_UNARY(host_fsqrt, "fsqrt")
HOST_FP_UNARY(host_frecpe, "frecpe")
HOST_FP_UNARY(host_frsqrte, "frsqrte")
HOST_FP_UNARY(host_frecpx, "frecpx")
HOST_FP_UNARY(host_frinti, "frinti")
HOST_FP_UNARY(host_frintx, "frintx")
HOST_FP_UNARY(host_frinta, "frinta")
HOST_FP_OP(host_fcmle_zero, "fcmle", "h0, #0.0", "s0, #0.0", "d0, #0.0", 1, a, 0, 0, 0)
HOST_FP_OP(host_fcmlt_zero, "fcmlt", "h0, #0.0", "s0, #0.0", "d0, #0.0", 1, a, 0, 0, 0)
HOST_FP_FUSED(host_fmadd, "fmadd")
HOST_FP_FUSED(host_fmsub, "fmsub")
HOST_FP_FUSED(host_fnmadd, "fnmadd")
HOST_FP_FUSED(host_fnmsub, "fnmsub")

// Narrowing conversions of a double: the processor's rounding of an exact
// 53-bit value to single and to half, and the round-to-odd narrowing.
inline host_result host_fcvt_d_to_s(uint64_t a, FPSCR fpscr) {
  return HOST_FP_CALL("fcvt s0, d0", a, 0, 0, 0, fpscr);
}
inline host_result host_fcvt_d_to_h(uint64_t a, FPSCR fpscr) {
  return HOST_FP_CALL("fcvt h0, d0", a, 0, 0, 0, fpscr);
}
inline host_result host_fcvtxn_d_to_s(uint64_t a, FPSCR fpscr) {
  return HOST_FP_CALL("fcvtxn s0, d0", a, 0, 0, 0, fpscr);
}

// The unsigned estimates exist only as vector instructions; lane 0 counts.
inline uint32_t host_urecpe(uint32_t a) {
  return static_cast<uint32_t>(HOST_FP_CALL("urecpe v0.2s, v0.2s", a, 0, 0, 0, 0).bits);
}
inline uint32_t host_ursqrte(uint32_t a) {
  return static_cast<uint32_t>(HOST_FP_CALL("ursqrte v0.2s, v0.2s", a, 0, 0, 0, 0).bits);
}
