// The host's scalar floating-point instructions on raw patterns, under a
// chosen FPCR, with the FPSR flags and the NZCV they leave. Everything stays
// in general registers outside the one asm statement, so the compiler never
// computes in floating point around it. Half precision needs +fp16.
#pragma once

#include <cstdint>

struct host_out {
  uint64_t value; // v0 after the instruction, the width's low bits
  uint32_t fpsr;
  uint32_t nzcv; // N Z C V as a nibble
};

// REG is the register view ("s" moves half and single, "d" double) and GP
// the matching general-register modifier. v0 is cleared first for the
// compares that only set NZCV.
#define HOST_FP_OP(name, insn, REG, GP)                                                            \
  inline host_out name(uint64_t a, uint64_t b, uint32_t fpcr) {                                    \
    uint64_t saved, r, fpsr, nzcv;                                                                 \
    asm volatile("mrs %[saved], fpcr\n\t"                                                          \
                 "msr fpcr, %[c]\n\t"                                                              \
                 "msr fpsr, xzr\n\t"                                                               \
                 "movi d0, #0\n\t"                                                                 \
                 "fmov " REG "1, %" GP "[a]\n\t"                                                   \
                 "fmov " REG "2, %" GP "[b]\n\t" insn "\n\t"                                       \
                 "mrs %[s], fpsr\n\t"                                                              \
                 "mrs %[n], nzcv\n\t"                                                              \
                 "fmov %" GP "[r], " REG "0\n\t"                                                   \
                 "msr fpcr, %[saved]"                                                              \
                 : [saved] "=&r"(saved), [r] "=&r"(r), [s] "=&r"(fpsr), [n] "=&r"(nzcv)            \
                 : [a] "r"(a), [b] "r"(b), [c] "r"(uint64_t{fpcr})                                 \
                 : "v0", "v1", "v2", "cc", "memory");                                              \
    return {r, static_cast<uint32_t>(fpsr), static_cast<uint32_t>(nzcv >> 28)};                    \
  }

// Three instructions of one form, for h, s and d registers.
#define HOST_FP_FORM3(op, R) op " " R "0, " R "1, " R "2"
#define HOST_FP_FORM2(op, R) op " " R "0, " R "1"
#define HOST_FP_FORM_CMP(op, R) op " " R "1, " R "2"
#define HOST_FP_WIDTHS(name, FORM, op)                                                             \
  HOST_FP_OP(name##16, FORM(op, "h"), "s", "w")                                                    \
  HOST_FP_OP(name##32, FORM(op, "s"), "s", "w")                                                    \
  HOST_FP_OP(name##64, FORM(op, "d"), "d", "x")

HOST_FP_WIDTHS(host_fdiv, HOST_FP_FORM3, "fdiv")
HOST_FP_WIDTHS(host_fsqrt, HOST_FP_FORM2, "fsqrt")
HOST_FP_WIDTHS(host_fcmeq, HOST_FP_FORM3, "fcmeq")
HOST_FP_WIDTHS(host_fcmge, HOST_FP_FORM3, "fcmge")
HOST_FP_WIDTHS(host_fcmgt, HOST_FP_FORM3, "fcmgt")
HOST_FP_WIDTHS(host_fcmp, HOST_FP_FORM_CMP, "fcmp")
HOST_FP_WIDTHS(host_fcmpe, HOST_FP_FORM_CMP, "fcmpe")
HOST_FP_WIDTHS(host_fmax, HOST_FP_FORM3, "fmax")
HOST_FP_WIDTHS(host_fmin, HOST_FP_FORM3, "fmin")
HOST_FP_WIDTHS(host_fmaxnm, HOST_FP_FORM3, "fmaxnm")
HOST_FP_WIDTHS(host_fminnm, HOST_FP_FORM3, "fminnm")

// The same instruction for the element type T.
#define HOST_FP_BY_TYPE(name)                                                                      \
  template <typename T> host_out name(uint64_t a, uint64_t b, uint32_t fpcr) {                     \
    if constexpr (sizeof(T) == 2)                                                                  \
      return name##16(a, b, fpcr);                                                                 \
    else if constexpr (sizeof(T) == 4)                                                             \
      return name##32(a, b, fpcr);                                                                 \
    else                                                                                           \
      return name##64(a, b, fpcr);                                                                 \
  }
HOST_FP_BY_TYPE(host_fdiv)
HOST_FP_BY_TYPE(host_fsqrt)
HOST_FP_BY_TYPE(host_fcmeq)
HOST_FP_BY_TYPE(host_fcmge)
HOST_FP_BY_TYPE(host_fcmgt)
HOST_FP_BY_TYPE(host_fcmp)
HOST_FP_BY_TYPE(host_fcmpe)
HOST_FP_BY_TYPE(host_fmax)
HOST_FP_BY_TYPE(host_fmin)
HOST_FP_BY_TYPE(host_fmaxnm)
HOST_FP_BY_TYPE(host_fminnm)
