// Add, subtract and multiply on raw half, single and double patterns, each
// correctly rounded once under the rounding mode of the control word; and
// the sign operations, which are pure bit manipulation.
#pragma once

#include <cstdint>
#include <type_traits>

#include "fp_core.h"

template <typename T> constexpr T fp_two(int sgn) {
  return fp_pack<T>(sgn, fp_format<T>::bias + 1, 0);
}

// op1 + op2, or op1 - op2 when neg is 1. Flags go to *flags; the caller
// merges them.
template <typename T> inline T fp_add(T op1, T op2, int neg, int mode, int* flags) {
  using F = fp_format<T>;
  auto [a_sgn, a_exp, a_mnt, b_sgn, b_exp, b_mnt, nan] = fp_unpack_two<T>(op1, op2, mode, flags);
  if (nan) return nan;

  // After NaN selection, so that a NaN second operand keeps its sign.
  b_sgn ^= neg;

  if (a_exp == F::exp_max && b_exp == F::exp_max && a_sgn != b_sgn) {
    *flags |= FP_IOC;
    return fp_default_nan<T>();
  }
  if (a_exp == F::exp_max) return fp_infinity<T>(a_sgn);
  if (b_exp == F::exp_max) return fp_infinity<T>(b_sgn);
  if (!a_mnt && !b_mnt && a_sgn == b_sgn) return fp_zero<T>(a_sgn);

  // Three guard places; the word still has room for the carry of the sum.
  a_mnt = static_cast<T>(a_mnt << 3);
  b_mnt = static_cast<T>(b_mnt << 3);
  int x_exp;
  if (a_exp >= b_exp) {
    b_mnt = fp_jam_shift<T>(b_mnt, a_exp - b_exp);
    x_exp = a_exp;
  } else {
    a_mnt = fp_jam_shift<T>(a_mnt, b_exp - a_exp);
    x_exp = b_exp;
  }

  int x_sgn = a_sgn;
  T x_mnt;
  if (a_sgn == b_sgn) {
    x_mnt = static_cast<T>(a_mnt + b_mnt);
  } else if (a_mnt >= b_mnt) {
    x_mnt = static_cast<T>(a_mnt - b_mnt);
  } else {
    x_mnt = static_cast<T>(b_mnt - a_mnt);
    x_sgn ^= 1;
  }

  // An exact zero sum is negative only when rounding towards minus infinity.
  if (!x_mnt) return fp_zero<T>((mode & FP_MODE_RMODE) == FPRounding_NEGINF);

  fp_normalise(&x_mnt, &x_exp);
  return fp_round<T>(x_sgn, x_exp + F::E - 3, static_cast<T>(x_mnt << 1), mode & FP_MODE_RMODE,
                     mode, flags);
}

// Rounds the exact product of two non-zero unpacked mantissas. The product
// lives in a word twice the operand width (two words for double), and K
// turns the sum of the operands' exponents into the exponent of the
// normalised product's leading bit.
template <typename T>
inline T fp_round_product(int sgn, int a_exp, T a_mnt, int b_exp, T b_mnt, int mode, int* flags) {
  using F = fp_format<T>;
  constexpr int K = 2 * F::W - 1 - 2 * F::M - F::bias;
  int x_exp = a_exp + b_exp + K;
  T mnt;
  if constexpr (F::W == 64) {
    uint64_t lo, hi;
    fp_mul62x62(&lo, &hi, a_mnt, b_mnt);
    fp_normalise(&hi, &lo, &x_exp);
    mnt = (hi << 1) | (lo != 0);
  } else {
    using P = std::conditional_t<F::W == 16, uint32_t, uint64_t>;
    P product = static_cast<P>(static_cast<P>(a_mnt) * b_mnt);
    fp_normalise(&product, &x_exp);
    // W+1 bits with a sticky bit; narrowing drops the leading 1.
    mnt = static_cast<T>(fp_jam_shift<P>(product, F::W - 1));
  }
  return fp_round<T>(sgn, x_exp, mnt, mode & FP_MODE_RMODE, mode, flags);
}

// op1 x op2. With mulx set, zero times infinity is 2.0 of the sign product
// instead of an invalid operation: no flag, and DN does not apply.
template <typename T> inline T fp_mul(T op1, T op2, bool mulx, int mode, int* flags) {
  using F = fp_format<T>;
  auto [a_sgn, a_exp, a_mnt, b_sgn, b_exp, b_mnt, nan] = fp_unpack_two<T>(op1, op2, mode, flags);
  if (nan) return nan;

  const int sgn = a_sgn ^ b_sgn;
  // A denormal flushed by unpacking counts as zero here.
  if ((a_exp == F::exp_max && !b_mnt) || (b_exp == F::exp_max && !a_mnt)) {
    if (mulx) return fp_two<T>(sgn);
    *flags |= FP_IOC;
    return fp_default_nan<T>();
  }
  if (a_exp == F::exp_max || b_exp == F::exp_max) return fp_infinity<T>(sgn);
  if (!a_mnt || !b_mnt) return fp_zero<T>(sgn);
  return fp_round_product<T>(sgn, a_exp, a_mnt, b_exp, b_mnt, mode, flags);
}

template <typename T> inline T FPAdd(T op1, T op2, FPSCR& fpscr) {
  int flags = 0;
  T result = fp_add<T>(op1, op2, 0, fp_mode_of(fpscr), &flags);
  fp_flags_merge(flags, fpscr);
  return result;
}

template <typename T> inline T FPSub(T op1, T op2, FPSCR& fpscr) {
  int flags = 0;
  T result = fp_add<T>(op1, op2, 1, fp_mode_of(fpscr), &flags);
  fp_flags_merge(flags, fpscr);
  return result;
}

template <typename T> inline T FPMul(T op1, T op2, FPSCR& fpscr) {
  int flags = 0;
  T result = fp_mul<T>(op1, op2, false, fp_mode_of(fpscr), &flags);
  fp_flags_merge(flags, fpscr);
  return result;
}

template <typename T> inline T FPMulX(T op1, T op2, FPSCR& fpscr) {
  int flags = 0;
  T result = fp_mul<T>(op1, op2, true, fp_mode_of(fpscr), &flags);
  fp_flags_merge(flags, fpscr);
  return result;
}

// No NaN processing and no flags: a signalling NaN stays signalling. The
// half absolute value is a mask at the caller, so there is no half form.
template <typename T> constexpr T FPAbs(T op) {
  static_assert(sizeof(T) == 4 || sizeof(T) == 8, "FPAbs is single and double only");
  return static_cast<T>(op & ~fp_sign_bit<T>());
}

template <typename T> constexpr T FPNeg(T op) { return static_cast<T>(op ^ fp_sign_bit<T>()); }
