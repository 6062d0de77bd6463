// The processor's own scalar floating-point instructions as the reference for
// the software library: each call sets FPCR, clears FPSR, runs one
// instruction on raw bit patterns and reads the result and FPSR back.
// Operands travel in the low bits of d0..d3, which is where the half and
// single forms read them; a scalar result clears the bits above it.
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

#define HOST_FP_CALL(insn, a, b, c, d, fpscr)                                                      \
  [&] {                                                                                            \
    host_result out;                                                                               \
    uint64_t status, result;                                                                       \
    uint64_t control = (fpscr)&HOST_FPCR_CONTROLS;                                                 \
    asm volatile("msr fpcr, %[control]\n\t"                                                        \
                 "msr fpsr, xzr\n\t"                                                               \
                 "fmov d0, %[a0]\n\t"                                                              \
                 "fmov d1, %[a1]\n\t"                                                              \
                 "fmov d2, %[a2]\n\t"                                                              \
                 "fmov d3, %[a3]\n\t" insn "\n\t"                                                  \
                 "fmov %[result], d0\n\t"                                                          \
                 "mrs %[status], fpsr\n\t"                                                         \
                 "msr fpcr, xzr\n\t"                                                               \
                 : [result] "=r"(result), [status] "=r"(status)                                    \
                 : [a0] "r"(uint64_t(a)), [a1] "r"(uint64_t(b)), [a2] "r"(uint64_t(c)),            \
                   [a3] "r"(uint64_t(d)), [control] "r"(control)                                   \
                 : "v0", "v1", "v2", "v3", "memory");                                              \
    out.bits = result;                                                                             \
    out.fpsr = static_cast<uint32_t>(status);                                                      \
    return out;                                                                                    \
  }()

// One function per operation and width: op(a, b[, c], fpscr).
#define HOST_FP_BINARY(name, mnemonic)                                                             \
  inline host_result name(uint16_t a, uint16_t b, FPSCR fpscr) {                                   \
    return HOST_FP_CALL(mnemonic " h0, h0, h1", a, b, 0, 0, fpscr);                                \
  }                                                                                                \
  inline host_result name(uint32_t a, uint32_t b, FPSCR fpscr) {                                   \
    return HOST_FP_CALL(mnemonic " s0, s0, s1", a, b, 0, 0, fpscr);                                \
  }                                                                                                \
  inline host_result name(uint64_t a, uint64_t b, FPSCR fpscr) {                                   \
    return HOST_FP_CALL(mnemonic " d0, d0, d1", a, b, 0, 0, fpscr);                                \
  }

HOST_FP_BINARY(host_fadd, "fadd")
HOST_FP_BINARY(host_fsub, "fsub")
HOST_FP_BINARY(host_fmul, "fmul")
HOST_FP_BINARY(host_fmulx, "fmulx")

// addend + op1 x op2, rounded once.
inline host_result host_fmadd(uint16_t addend, uint16_t op1, uint16_t op2, FPSCR fpscr) {
  return HOST_FP_CALL("fmadd h0, h1, h2, h0", addend, op1, op2, 0, fpscr);
}
inline host_result host_fmadd(uint32_t addend, uint32_t op1, uint32_t op2, FPSCR fpscr) {
  return HOST_FP_CALL("fmadd s0, s1, s2, s0", addend, op1, op2, 0, fpscr);
}
inline host_result host_fmadd(uint64_t addend, uint64_t op1, uint64_t op2, FPSCR fpscr) {
  return HOST_FP_CALL("fmadd d0, d1, d2, d0", addend, op1, op2, 0, fpscr);
}

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
