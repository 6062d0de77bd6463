// The host's own floating-point instructions, one per function, for single
// and double precision.
//
// Each is a volatile asm statement rather than C++ arithmetic: the compiler
// may then neither fold an operation under its own idea of the rounding mode,
// nor drop one whose only visible effect is a status flag, nor move one across
// the FPSR exchange of the decoders (itself volatile asm). It also pins the
// exact instruction where C++ has no equivalent (fmaxnm, frecpe, frinta) or
// where the compiler could pick another (fcmp versus fcmpe, fmadd).
#pragma once

#include <cstdint>

#include "element.h"

namespace ZORVO_LENGTH {

// ---- Arithmetic ----

#define HOST_FP_UNARY(name, insn)                                                                  \
  inline float name(float a) {                                                                     \
    float r;                                                                                       \
    asm volatile(insn " %s0, %s1" : "=w"(r) : "w"(a));                                             \
    return r;                                                                                      \
  }                                                                                                \
  inline double name(double a) {                                                                   \
    double r;                                                                                      \
    asm volatile(insn " %d0, %d1" : "=w"(r) : "w"(a));                                             \
    return r;                                                                                      \
  }

#define HOST_FP_BINARY(name, insn)                                                                 \
  inline float name(float a, float b) {                                                            \
    float r;                                                                                       \
    asm volatile(insn " %s0, %s1, %s2" : "=w"(r) : "w"(a), "w"(b));                                \
    return r;                                                                                      \
  }                                                                                                \
  inline double name(double a, double b) {                                                         \
    double r;                                                                                      \
    asm volatile(insn " %d0, %d1, %d2" : "=w"(r) : "w"(a), "w"(b));                                \
    return r;                                                                                      \
  }

// Three 128-bit lanes' worth of one operation: four singles or two doubles.
#define HOST_FP_BINARY_SIMD(name, insn)                                                            \
  inline simd128<float>::type name(simd128<float>::type a, simd128<float>::type b) {               \
    simd128<float>::type r;                                                                        \
    asm volatile(insn " %0.4s, %1.4s, %2.4s" : "=w"(r) : "w"(a), "w"(b));                          \
    return r;                                                                                      \
  }                                                                                                \
  inline simd128<double>::type name(simd128<double>::type a, simd128<double>::type b) {            \
    simd128<double>::type r;                                                                       \
    asm volatile(insn " %0.2d, %1.2d, %2.2d" : "=w"(r) : "w"(a), "w"(b));                          \
    return r;                                                                                      \
  }

HOST_FP_UNARY(host_fsqrt, "fsqrt")
HOST_FP_UNARY(host_frinta, "frinta")
HOST_FP_UNARY(host_frecpe, "frecpe")

HOST_FP_BINARY(host_fadd, "fadd")
HOST_FP_BINARY(host_fsub, "fsub")
HOST_FP_BINARY(host_fmul, "fmul")
HOST_FP_BINARY(host_fdiv, "fdiv")
HOST_FP_BINARY(host_fmax, "fmax")
HOST_FP_BINARY(host_fmaxnm, "fmaxnm")
HOST_FP_BINARY(host_fminnm, "fminnm")
HOST_FP_BINARY(host_frecps, "frecps")

HOST_FP_BINARY_SIMD(host_fadd, "fadd")
HOST_FP_BINARY_SIMD(host_fsub, "fsub")
HOST_FP_BINARY_SIMD(host_fmul, "fmul")

// a + n * m with a single rounding.
inline float host_fmadd(float n, float m, float a) {
  float r;
  asm volatile("fmadd %s0, %s1, %s2, %s3" : "=w"(r) : "w"(n), "w"(m), "w"(a));
  return r;
}
inline double host_fmadd(double n, double m, double a) {
  double r;
  asm volatile("fmadd %d0, %d1, %d2, %d3" : "=w"(r) : "w"(n), "w"(m), "w"(a));
  return r;
}

#undef HOST_FP_UNARY
#undef HOST_FP_BINARY
#undef HOST_FP_BINARY_SIMD

// ---- Compares ----

// The flags of a compare, as a read of NZCV gives them. An unordered pair
// gives C and V. fcmp raises Invalid Operation for a signalling NaN only,
// fcmpe for any NaN.
#define HOST_FP_COMPARE(name, insn)                                                                \
  inline uint64_t name(float a, float b) {                                                         \
    uint64_t flags;                                                                                \
    asm volatile(insn " %s1, %s2\n\tmrs %0, nzcv" : "=r"(flags) : "w"(a), "w"(b) : "cc");          \
    return flags;                                                                                  \
  }                                                                                                \
  inline uint64_t name(double a, double b) {                                                       \
    uint64_t flags;                                                                                \
    asm volatile(insn " %d1, %d2\n\tmrs %0, nzcv" : "=r"(flags) : "w"(a), "w"(b) : "cc");          \
    return flags;                                                                                  \
  }

HOST_FP_COMPARE(host_fcmp, "fcmp")
HOST_FP_COMPARE(host_fcmpe, "fcmpe")
#undef HOST_FP_COMPARE

// ---- Conversions ----

#define HOST_FP_CONVERT(name, insn, To, to_reg, to_operand, From, from_reg, from_operand)          \
  inline To name(From a) {                                                                         \
    To r;                                                                                          \
    asm volatile(insn " %" to_operand "0, %" from_operand "1" : "=" to_reg(r) : from_reg(a));      \
    return r;                                                                                      \
  }

HOST_FP_CONVERT(host_fcvt_widen, "fcvt", double, "w", "d", float, "w", "s")
HOST_FP_CONVERT(host_fcvt_narrow, "fcvt", float, "w", "s", double, "w", "d")
HOST_FP_CONVERT(host_fcvtzs_w, "fcvtzs", int32_t, "r", "w", float, "w", "s")
HOST_FP_CONVERT(host_fcvtzs_w, "fcvtzs", int32_t, "r", "w", double, "w", "d")
HOST_FP_CONVERT(host_fcvtzs_x, "fcvtzs", int64_t, "r", "x", float, "w", "s")
HOST_FP_CONVERT(host_fcvtzs_x, "fcvtzs", int64_t, "r", "x", double, "w", "d")
HOST_FP_CONVERT(host_fcvtzu_w, "fcvtzu", uint32_t, "r", "w", double, "w", "d")
HOST_FP_CONVERT(host_fcvtzu_x, "fcvtzu", uint64_t, "r", "x", double, "w", "d")
HOST_FP_CONVERT(host_scvtf_s, "scvtf", float, "w", "s", int32_t, "r", "w")
HOST_FP_CONVERT(host_scvtf_s, "scvtf", float, "w", "s", int64_t, "r", "x")
HOST_FP_CONVERT(host_scvtf_d, "scvtf", double, "w", "d", int32_t, "r", "w")
HOST_FP_CONVERT(host_scvtf_d, "scvtf", double, "w", "d", int64_t, "r", "x")
HOST_FP_CONVERT(host_ucvtf_s, "ucvtf", float, "w", "s", uint32_t, "r", "w")
HOST_FP_CONVERT(host_ucvtf_d, "ucvtf", double, "w", "d", uint32_t, "r", "w")
HOST_FP_CONVERT(host_ucvtf_d, "ucvtf", double, "w", "d", uint64_t, "r", "x")
#undef HOST_FP_CONVERT

} // namespace ZORVO_LENGTH
