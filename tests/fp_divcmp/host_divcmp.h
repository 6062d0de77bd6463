// The processor's scalar compares that answer in NZCV rather than in a
// register: fcmp, quiet, and fcmpe, which signals on every NaN. The rest of
// the host instructions these tests use come from the fp_core harness.
#pragma once

#include <cstdint>

#include "host_fp.h"

struct host_nzcv {
  uint32_t nzcv; // N Z C V as a nibble
  uint32_t fpsr;
};

#define HOST_FP_NZCV_CALL(insn, a, b, fpscr)                                                       \
  [&] {                                                                                            \
    uint64_t status, flags;                                                                        \
    const uint64_t control = (fpscr)&HOST_FPCR_CONTROLS;                                           \
    asm volatile("msr fpcr, %[control]\n\t"                                                        \
                 "msr fpsr, xzr\n\t"                                                               \
                 "fmov d0, %[a0]\n\t"                                                              \
                 "fmov d1, %[a1]\n\t" insn "\n\t"                                                  \
                 "mrs %[flags], nzcv\n\t"                                                          \
                 "mrs %[status], fpsr\n\t"                                                         \
                 "msr fpcr, xzr\n\t"                                                               \
                 : [flags] "=r"(flags), [status] "=r"(status)                                      \
                 : [a0] "r"(uint64_t(a)), [a1] "r"(uint64_t(b)), [control] "r"(control)            \
                 : "v0", "v1", "cc", "memory");                                                    \
    return host_nzcv{static_cast<uint32_t>(flags >> 28), static_cast<uint32_t>(status)};           \
  }()

#define HOST_FP_NZCV(name, mnemonic)                                                               \
  inline host_nzcv name(uint16_t a, uint16_t b, FPSCR fpscr) {                                     \
    return HOST_FP_NZCV_CALL(mnemonic " h0, h1", a, b, fpscr);                                     \
  }                                                                                                \
  inline host_nzcv name(uint32_t a, uint32_t b, FPSCR fpscr) {                                     \
    return HOST_FP_NZCV_CALL(mnemonic " s0, s1", a, b, fpscr);                                     \
  }                                                                                                \
  inline host_nzcv name(uint64_t a, uint64_t b, FPSCR fpscr) {                                     \
    return HOST_FP_NZCV_CALL(mnemonic " d0, d1", a, b, fpscr);                                     \
  }

HOST_FP_NZCV(host_fcmp, "fcmp")
HOST_FP_NZCV(host_fcmpe, "fcmpe")

// Register-answering compares and the minimum and maximum forms.
HOST_FP_BINARY(host_fcmeq, "fcmeq")
HOST_FP_BINARY(host_fcmge, "fcmge")
HOST_FP_BINARY(host_fcmgt, "fcmgt")
HOST_FP_BINARY(host_fmax, "fmax")
HOST_FP_BINARY(host_fmin, "fmin")
HOST_FP_BINARY(host_fmaxnm, "fmaxnm")
HOST_FP_BINARY(host_fminnm, "fminnm")
HOST_FP_BINARY(host_fdiv, "fdiv")

inline host_result host_fsqrt(uint16_t a, FPSCR fpscr) {
  return HOST_FP_CALL("fsqrt h0, h0", a, 0, 0, 0, fpscr);
}
inline host_result host_fsqrt(uint32_t a, FPSCR fpscr) {
  return HOST_FP_CALL("fsqrt s0, s0", a, 0, 0, 0, fpscr);
}
inline host_result host_fsqrt(uint64_t a, FPSCR fpscr) {
  return HOST_FP_CALL("fsqrt d0, d0", a, 0, 0, 0, fpscr);
}
