// The processor's own instructions in the shape the generic tier's element
// loops want: one template per operation, T op(a, b, c), run under the FPCR
// that the caller's host_fpcr_scope set, whose flags() then hold what it
// raised. The scalar forms come from the shared harness in tests/fp_host.
#pragma once

#include <cstdint>

#include "fp_host/fp_random.h"
#include "fp_host/host_fp.h"

#define HOST_UNDER_SCOPE(name, host_op, ...)                                                       \
  template <typename T> T name(T a, T b = 0, T c = 0) {                                            \
    (void)b, (void)c;                                                                              \
    return T(host_op(__VA_ARGS__, host_fpcr_scope::current()).bits);                               \
  }
#define HOST_UNARY(name, host_op) HOST_UNDER_SCOPE(name, host_op, a)
#define HOST_BINARY(name, host_op) HOST_UNDER_SCOPE(name, host_op, a, b)
#define HOST_FUSED(name, host_op) HOST_UNDER_SCOPE(name, host_op, a, b, c)

namespace host {
HOST_BINARY(add, host_fadd)
HOST_BINARY(sub, host_fsub)
HOST_BINARY(mul, host_fmul)
HOST_BINARY(div, host_fdiv)
HOST_BINARY(max, host_fmax)
HOST_BINARY(min, host_fmin)
HOST_BINARY(maxnm, host_fmaxnm)
HOST_BINARY(minnm, host_fminnm)
HOST_BINARY(mulx, host_fmulx)
HOST_BINARY(abd, host_fabd)
HOST_BINARY(recps, host_frecps)
HOST_BINARY(rsqrts, host_frsqrts)
HOST_BINARY(cmeq, host_fcmeq)
HOST_BINARY(cmge, host_fcmge)
HOST_BINARY(cmgt, host_fcmgt)
HOST_BINARY(acge, host_facge)
HOST_BINARY(acgt, host_facgt)
HOST_UNARY(sqrt, host_fsqrt)
HOST_UNARY(recpe, host_frecpe)
HOST_UNARY(rsqrte, host_frsqrte)
HOST_UNARY(recpx, host_frecpx)
HOST_UNARY(frinti, host_frinti)
HOST_UNARY(frintx, host_frintx)
HOST_UNARY(frinta, host_frinta)
HOST_UNARY(cmle_zero, host_fcmle_zero)
HOST_UNARY(cmlt_zero, host_fcmlt_zero)
// a + b * c, and with the product negated: FMADD and FMSUB of the addend a.
HOST_FUSED(madd, host_fmadd)
HOST_FUSED(msub, host_fmsub)
HOST_FUSED(nmadd, host_fnmadd)
HOST_FUSED(nmsub, host_fnmsub)
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
