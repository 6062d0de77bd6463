// The processor's scalar compares that answer in NZCV rather than in a
// register: fcmp, quiet, and fcmpe, which signals on every NaN. The rest of
// the host instructions these tests use come from the shared harness.
#pragma once

#include <cstdint>

#include "fp_host/host_fp.h"

struct host_nzcv {
  uint32_t nzcv; // N Z C V as a nibble
  uint32_t fpsr;
};

#define HOST_FP_NZCV_CALL(insn, a, b, fpscr)                                                       \
  [&] {                                                                                            \
    host_fpcr_scope scope(fpscr);                                                                  \
    uint64_t flags;                                                                                \
    asm volatile("fmov d0, %[a0]\n\t"                                                              \
                 "fmov d1, %[a1]\n\t" insn "\n\t"                                                  \
                 "mrs %[flags], nzcv\n\t"                                                          \
                 : [flags] "=r"(flags)                                                             \
                 : [a0] "r"(uint64_t(a)), [a1] "r"(uint64_t(b))                                    \
                 : "v0", "v1", "cc", "memory");                                                    \
    return host_nzcv{static_cast<uint32_t>(flags >> 28), scope.flags()};                           \
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
