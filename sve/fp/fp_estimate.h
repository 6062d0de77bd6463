// Reciprocal and reciprocal square root estimates, accurate to about eight
// bits, the exponent-only reciprocal, and the fused Newton steps with which
// a program refines an estimate. All work on raw half, single and double
// patterns with the helpers of fp_core.h. The unsigned estimates and the two
// double helpers behind them are the only code of the library that uses the
// host's floating point; no instruction of the emulator reaches them.
#pragma once

#include <cstdint>
#include <cstring>

#include "fp_add_mul.h"
#include "fp_core.h"
#include "fp_muladd.h"
#include "fp_tables.h"

// Per-width constants of the estimates, from the format's bias: an operand
// whose exponent field is at least 2 * bias - 1 has a reciprocal below the
// normal range, and 3 * bias - 1 is the exponent sum that halves into the
// reciprocal square root's exponent.
template <typename T> struct fp_estimate_format {
  using F = fp_format<T>;
  static constexpr int recip_exp = 2 * F::bias - 1;
  static constexpr int rsqrt_exp = 3 * F::bias - 1;
  // All these bits clear: exponent field 0 and the top two fraction bits 0,
  // so the reciprocal exceeds the largest normal.
  static constexpr T too_small_mask =
      static_cast<T>((T(F::exp_max) << F::M) | (T(3) << (F::M - 2)));
  static constexpr T three = static_cast<T>(fp_two<T>(0) | fp_quiet_bit<T>());
  static constexpr T three_halves = static_cast<T>((T(F::bias) << F::M) | fp_quiet_bit<T>());
};

// The frame of an operation on one operand: unpacking under the control
// word, NaN processing, and the flags merged at the end. Every other case is
// the body's, called as body(sgn, exp, mnt, mode, &flags).
template <typename T, typename Body> inline T fp_unary_operation(T op, FPSCR& fpscr, Body body) {
  const int mode = fp_mode_of(fpscr);
  int flags = 0, sgn, exp;
  T mnt;
  fp_unpack(&sgn, &exp, &mnt, op, mode, &flags);
  const T result = fp_is_nan(op) ? fp_nan_one(op, mode, &flags) : body(sgn, exp, mnt, mode, &flags);
  fp_flags_merge(flags, fpscr);
  return result;
}

// The mantissa (hidden bit included) of a finite non-zero unpacked operand,
// left-justified in its word, and the exponent it then stands for.
template <typename T> inline int fp_estimate_normalise(T* mnt, int exp) {
  exp += fp_format<T>::E;
  fp_normalise(mnt, &exp);
  return exp;
}

template <typename T> inline T FPRecipEstimate(T op, FPSCR& fpscr) {
  return fp_unary_operation(op, fpscr, [op](int sgn, int exp, T mnt, int mode, int* flags) {
    using F = fp_format<T>;
    using K = fp_estimate_format<T>;
    if (fp_is_infinity(op)) return fp_zero<T>(sgn);
    if (!mnt) {
      *flags |= FP_DZC;
      return fp_infinity<T>(sgn);
    }
    // Too large to represent: the result and flags of a rounded overflow in
    // the current rounding mode.
    if (!(op & K::too_small_mask))
      return fp_round<T>(sgn, F::exp_max, 0, mode & FP_MODE_RMODE, mode, flags);
    if ((mode & F::flush_bit) && fp_exp_field(op) >= K::recip_exp) {
      *flags |= FP_UFC;
      return fp_zero<T>(sgn);
    }
    const int n = fp_estimate_normalise(&mnt, exp);
    // Nine leading bits and a half step below them, divided into 2^19 and
    // rounded: a value from 256 to 511 whose bit 8 is the hidden bit.
    const uint32_t a = static_cast<uint32_t>(mnt >> (F::W - 10)) | 1;
    const uint32_t r = ((0x80000u / a) + 1) >> 1;
    T frac = static_cast<T>(T(r) << (F::M - 8));
    int field = K::recip_exp - n;
    if (field <= 0) {
      // Below the normal range: a denormal, one or two places down.
      frac = static_cast<T>(frac >> (1 - field));
      field = 0;
    }
    return fp_pack<T>(sgn, field, frac);
  });
}

template <typename T> inline T FPRSqrtEstimate(T op, FPSCR& fpscr) {
  return fp_unary_operation(op, fpscr, [op](int sgn, int exp, T mnt, int, int* flags) {
    using F = fp_format<T>;
    if (!mnt) {
      *flags |= FP_DZC;
      return fp_infinity<T>(sgn);
    }
    if (sgn) {
      *flags |= FP_IOC;
      return fp_default_nan<T>();
    }
    if (fp_is_infinity(op)) return fp_zero<T>(0);
    const int n = fp_estimate_normalise(&mnt, exp);
    // An even exponent puts the operand in the table's upper half, [0.5, 1)
    // once the square root's exponent has been halved.
    const int index = static_cast<int>((mnt >> (F::W - 8)) & 127) + ((n & 1) ? 0 : 128);
    const T frac = static_cast<T>(T(recip_sqrt_estimate_table[index]) << (F::M - 8));
    return fp_pack<T>(0, (fp_estimate_format<T>::rsqrt_exp - n) >> 1, frac);
  });
}

// The reciprocal's exponent alone: the exponent field inverted, mantissa 0.
// A zero or denormal, having no usable exponent, gives the largest one.
// Unpacking has already reported a flushed input.
template <typename T> inline T FPRecpX(T op, FPSCR& fpscr) {
  return fp_unary_operation(op, fpscr, [op](int sgn, int, T, int, int*) {
    constexpr int top = fp_format<T>::exp_max;
    const int field = fp_exp_field(op);
    return fp_pack<T>(sgn, field ? ~field & top : top - 1, 0);
  });
}

// addend - op1 x op2, scaled by 2^scale and rounded once. Infinity times
// zero is not invalid here: it gives +zero_times_infinity, the value a
// Newton step converges to.
template <typename T>
inline T fp_newton_step(T op1, T op2, T addend, T zero_times_infinity, int scale, FPSCR& fpscr) {
  const int mode = fp_mode_of(fpscr);
  int flags = 0;
  op1 = FPNeg<T>(op1);
  const auto [a_sgn, a_exp, a_mnt, b_sgn, b_exp, b_mnt, nan] =
      fp_unpack_two(op1, op2, mode, &flags);
  const bool a_inf = fp_is_infinity(op1), b_inf = fp_is_infinity(op2);
  T result;
  if (nan)
    result = nan;
  else if ((a_inf && !b_mnt) || (b_inf && !a_mnt))
    result = zero_times_infinity;
  else if (a_inf || b_inf)
    result = fp_infinity<T>(a_sgn ^ b_sgn);
  else
    result = fp_muladd_scaled<T>(addend, op1, op2, scale, mode, &flags);
  fp_flags_merge(flags, fpscr);
  return result;
}

// 2 - op1 x op2: the correction factor of a reciprocal Newton step.
template <typename T> inline T FPRecipStepFused(T op1, T op2, FPSCR& fpscr) {
  return fp_newton_step<T>(op1, op2, fp_two<T>(0), fp_two<T>(0), 0, fpscr);
}

// (3 - op1 x op2) / 2: the correction factor of a reciprocal square root
// Newton step.
template <typename T> inline T FPRSqrtStepFused(T op1, T op2, FPSCR& fpscr) {
  using K = fp_estimate_format<T>;
  return fp_newton_step<T>(op1, op2, K::three, K::three_halves, -1, fpscr);
}

// The unsigned fixed-point estimates, on the host's double precision. An
// operand a in [0.5, 1) is taken to the midpoint of its 1/512 step and the
// quotient rounded to 1/256.
inline double recip_estimate(double a) {
  const int64_t q = static_cast<int64_t>(a * 512.0);
  const double r = 1.0 / ((static_cast<double>(q) + 0.5) / 512.0);
  const int64_t s = static_cast<int64_t>(r * 256.0 + 0.5);
  return static_cast<double>(s) / 256.0;
}

// a in [0.25, 1): below 0.5 the steps are 1/512, above 1/256.
inline double recip_sqrt_estimate(double a) {
  double r;
  if (a < 0.5) {
    const int64_t q = static_cast<int64_t>(a * 512.0);
    r = 1.0 / __builtin_sqrt((static_cast<double>(q) + 0.5) / 512.0);
  } else {
    const int64_t q = static_cast<int64_t>(a * 256.0);
    r = 1.0 / __builtin_sqrt((static_cast<double>(q) + 0.5) / 256.0);
  }
  const int64_t s = static_cast<int64_t>(r * 256.0 + 0.5);
  return static_cast<double>(s) / 256.0;
}

inline double fp_double_from_bits(uint64_t bits) {
  double d;
  std::memcpy(&d, &bits, sizeof d);
  return d;
}
inline uint64_t fp_bits_from_double(double d) {
  uint64_t bits;
  std::memcpy(&bits, &d, sizeof bits);
  return bits;
}

// The 32-bit operand is a fraction with the binary point above bit 31; the
// estimate has the same form, its top nine bits significant. n is unused.
inline uint64_t UnsignedRecipEstimate(uint64_t op, int /*n*/) {
  if (!(op & 0x80000000u)) return 0xffffffffu;
  const double a = fp_double_from_bits(0x3fe0000000000000ull | ((op & 0x7fffffffu) << 21));
  const uint64_t est = fp_bits_from_double(recip_estimate(a));
  return 0x80000000u | ((est >> 21) & 0x7fffffffu);
}

inline uint64_t UnsignedRSqrtEstimate(uint64_t op, int /*n*/) {
  if (!(op & 0xc0000000u)) return 0xffffffffu;
  const uint64_t bits = (op & 0x80000000u) ? 0x3fe0000000000000ull | ((op & 0x7fffffffu) << 21)
                                           : 0x3fd0000000000000ull | ((op & 0x3fffffffu) << 22);
  const uint64_t est = fp_bits_from_double(recip_sqrt_estimate(fp_double_from_bits(bits)));
  return 0x80000000u | ((est >> 21) & 0x7fffffffu);
}
