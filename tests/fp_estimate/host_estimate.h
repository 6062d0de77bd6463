// The host's estimate and Newton step instructions at each width, through
// the shared scalar harness of the library's tests.
#pragma once

#include "host_fp.h"

#define HOST_FP_UNARY(name, mnemonic)                                                              \
  inline host_result name(uint16_t a, FPSCR fpscr) {                                               \
    return HOST_FP_CALL(mnemonic " h0, h0", a, 0, 0, 0, fpscr);                                    \
  }                                                                                                \
  inline host_result name(uint32_t a, FPSCR fpscr) {                                               \
    return HOST_FP_CALL(mnemonic " s0, s0", a, 0, 0, 0, fpscr);                                    \
  }                                                                                                \
  inline host_result name(uint64_t a, FPSCR fpscr) {                                               \
    return HOST_FP_CALL(mnemonic " d0, d0", a, 0, 0, 0, fpscr);                                    \
  }

HOST_FP_UNARY(host_frecpe, "frecpe")
HOST_FP_UNARY(host_frsqrte, "frsqrte")
HOST_FP_UNARY(host_frecpx, "frecpx")
HOST_FP_BINARY(host_frecps, "frecps")
HOST_FP_BINARY(host_frsqrts, "frsqrts")

// The unsigned estimates exist only as vector instructions; lane 0 counts.
inline uint32_t host_urecpe(uint32_t a) {
  return static_cast<uint32_t>(HOST_FP_CALL("urecpe v0.2s, v0.2s", a, 0, 0, 0, 0).bits);
}
inline uint32_t host_ursqrte(uint32_t a) {
  return static_cast<uint32_t>(HOST_FP_CALL("ursqrte v0.2s, v0.2s", a, 0, 0, 0, 0).bits);
}
