// Correctly rounded division and square root on raw half, single and double
// patterns. Every width has its own integer method, chosen by what a 32-bit
// or 64-bit integer division can deliver: half and single divide once, double
// builds a reciprocal and corrects it by one unit, and square root iterates
// Newton steps from a linear start and settles the last bit by squaring.
// No 128-bit division occurs anywhere, and no loop depends on the data.
#pragma once

#include <cstdint>

#include "fp_core.h"

// -1, 0 or 1 as (ahi, alo) is below, equal to or above (bhi, blo).
inline int fp_cmp128(uint64_t ahi, uint64_t alo, uint64_t bhi, uint64_t blo) {
  if (ahi != bhi) return ahi < bhi ? -1 : 1;
  if (alo != blo) return alo < blo ? -1 : 1;
  return 0;
}

// Half and single quotients of finite non-zero operands, unpacked: one
// integer division in a word of twice the width gives the whole quotient, and
// the remainder becomes the sticky bit. A denormal divisor is left as it is:
// it only makes the quotient longer.
template <typename T, typename Wide>
inline T fp_div_one_division(int x_sgn, int a_exp, T a_mnt, int b_exp, T b_mnt, int mode,
                             int* flags) {
  constexpr int W = fp_format<T>::W;
  constexpr int dividend_shift = W == 16 ? 15 : 18;
  constexpr int exp_offset = W == 16 ? 31 : 172;
  fp_normalise(&a_mnt, &a_exp);
  const Wide n = Wide(a_mnt) << dividend_shift;
  Wide q = n / b_mnt;
  q |= (q * b_mnt != n);
  int x_exp = a_exp - b_exp + exp_offset;
  fp_normalise(&q, &x_exp);
  const Wide below = q & ((Wide(1) << (W - 1)) - 1);
  return fp_round<T>(x_sgn, x_exp, T(q >> (W - 1) | (below != 0)), mode & 3, mode, flags);
}

inline uint16_t fp_div_finite(int x_sgn, int a_exp, uint16_t a_mnt, int b_exp, uint16_t b_mnt,
                              int mode, int* flags) {
  return fp_div_one_division<uint16_t, uint32_t>(x_sgn, a_exp, a_mnt, b_exp, b_mnt, mode, flags);
}

inline uint32_t fp_div_finite(int x_sgn, int a_exp, uint32_t a_mnt, int b_exp, uint32_t b_mnt,
                              int mode, int* flags) {
  return fp_div_one_division<uint32_t, uint64_t>(x_sgn, a_exp, a_mnt, b_exp, b_mnt, mode, flags);
}

// No integer word holds a double quotient, so the divisor's reciprocal is
// estimated from its top 33 bits, refined by one Newton step and multiplied
// by the dividend. That under-estimates by at most one unit, which the
// product of the divisor with the next value up settles, exactly.
inline uint64_t fp_div_finite(int x_sgn, int a_exp, uint64_t a_mnt, int b_exp, uint64_t b_mnt,
                              int mode, int* flags) {
  fp_normalise(&a_mnt, &a_exp);
  fp_normalise(&b_mnt, &b_exp);

  const uint64_t r = ~uint64_t(0) / (b_mnt >> 31);
  uint64_t t0 = (b_mnt & 0xffffffff) * r;
  uint64_t t1 = (t0 >> 32) + (b_mnt >> 32) * r;
  uint64_t lo = (t1 << 32) | (t0 & 0xffffffff);
  uint64_t hi = t1 >> 32;
  // 2^96 minus the product, scaled down by 2^32: the Newton correction.
  const uint64_t nlo = -lo;
  const uint64_t nhi = (uint64_t(1) << 32) - hi - (lo != 0);
  const uint64_t e = (nhi << 32) | (nlo >> 32);
  t0 = (e & 0xffffffff) * r;
  t1 = (t0 >> 32) + (e >> 32) * r;
  const uint64_t recip = t1 >> 1;

  fp_mul62x62(&lo, &hi, recip, a_mnt >> 2);
  uint64_t x_mnt = hi >> 4;
  int x_exp = a_exp - b_exp + 1031;

  const uint64_t up = x_mnt + 1;
  fp_mul62x62(&lo, &hi, b_mnt >> 2, up);
  const int c = fp_cmp128(hi, lo, a_mnt >> 11, 0);
  if (c <= 0) x_mnt = up;
  fp_normalise(&x_mnt, &x_exp);
  return fp64_round_(x_sgn, x_exp, (x_mnt << 1) | (c != 0), mode & 3, mode, flags);
}

template <typename T> inline T FPDiv(T op1, T op2, FPSCR& fpscr) {
  constexpr int top = fp_format<T>::exp_max;
  const int mode = fp_mode_of(fpscr);
  int flags = 0;
  const auto [a_sgn, a_exp, a_mnt, b_sgn, b_exp, b_mnt, nan] =
      fp_unpack_two(op1, op2, mode, &flags);
  const int x_sgn = a_sgn ^ b_sgn;
  T result;
  if (nan) {
    result = nan;
  } else if ((a_exp == top && b_exp == top) || (!a_mnt && !b_mnt)) {
    flags |= FP_IOC;
    result = fp_default_nan<T>();
  } else if (a_exp == top) {
    result = fp_infinity<T>(x_sgn);
  } else if (!b_mnt) {
    flags |= FP_DZC;
    result = fp_infinity<T>(x_sgn);
  } else if (!a_mnt || b_exp == top) {
    result = fp_zero<T>(x_sgn);
  } else {
    result = fp_div_finite(x_sgn, a_exp, a_mnt, b_exp, b_mnt, mode, &flags);
  }
  fp_flags_merge(flags, fpscr);
  return result;
}

// Roots of the prepared mantissa a of a finite positive operand, with the
// root's exponent x_exp (see FPSqrt). The comparison of the candidate's
// square with the operand at the end is the only place where the exact root
// is looked at.
inline uint16_t fp_sqrt_finite(uint16_t a_mnt, int x_exp, int mode, int* flags) {
  const uint32_t a = a_mnt;
  uint32_t x = (a >> 3) + (a >> 2) + 0x5000;
  const uint32_t n = a << 16;
  x = (n / x + x) >> 1;
  x = (n / x + x) >> 1;
  const uint64_t wide = uint64_t(x) << 16;
  const uint32_t v = uint32_t(((uint64_t(a) << 48) / wide + wide) >> 17);
  uint32_t m = (v - 4) >> 3;
  const uint32_t t0 = a << 10;
  const uint32_t t1 = (m + 1) * (m + 1);
  if (t1 <= t0) ++m;
  uint16_t root = uint16_t(m);
  fp_normalise(&root, &x_exp);
  return fp16_round_(0, x_exp, uint16_t((root << 1) | (t1 != t0)), mode & 3, mode, flags);
}

inline uint32_t fp_sqrt_finite(uint32_t a, int x_exp, int mode, int* flags) {
  const uint32_t x = (a >> 3) + (a >> 2) + 0x50000000;
  const uint32_t s1 = a / (x >> 15) + (x >> 16);
  const uint32_t s2 = ((s1 >> 1) & 0xffff) + a / s1;
  const uint32_t wide = s2 << 15;
  uint32_t m = ((wide >> 1) - 32 + uint32_t(((uint64_t(a) << 32) / wide) >> 2)) >> 6;
  const uint64_t t0 = uint64_t(a) << 19;
  const uint64_t t1 = uint64_t(m + 1) * (m + 1);
  if (t1 <= t0) ++m;
  fp_normalise(&m, &x_exp);
  return fp32_round_(0, x_exp, (m << 1) | (t1 != t0), mode & 3, mode, flags);
}

// Two Newton steps on the top half give a 32-bit root estimate; its
// reciprocal, refined once, turns the operand's full width into a correction
// of the estimate without a 128-bit division.
inline uint64_t fp_sqrt_finite(uint64_t a, int x_exp, int mode, int* flags) {
  const uint32_t x = uint32_t((a >> 34) + (a >> 35) + 0x50000000);
  const uint64_t h = a >> 32;
  const uint32_t s1 = uint32_t(h / (x >> 15) + (x >> 16));
  const uint32_t y = s1 << 15;
  const uint32_t s2 = uint32_t(h / (y >> 15) + (y >> 16));
  const uint32_t x2 = s2 << 15;
  const uint32_t estimate = uint32_t(((a / x2) >> 2) + (x2 >> 1));

  const uint64_t r = (uint64_t(1) << 62) / estimate;
  const uint64_t residual = -(r * estimate) << 1;
  const uint64_t r32 = r & 0xffffffff;
  const uint64_t t0 = (residual & 0xffffffff) * r32;
  const uint64_t t1 = (t0 >> 32) + (residual >> 32) * r32;
  uint64_t lo = (t1 << 32) | (t0 & 0xffffffff);
  uint64_t hi = t1 >> 32;
  const uint64_t recip = (hi << 33) | (lo >> 31);

  fp_mul62x62(&lo, &hi, a >> 10, recip >> 2);
  const uint64_t correction = (hi << 13) | (lo >> 51);
  uint64_t m = ((uint64_t(estimate) << 31) - 0x100 + (correction >> 1)) >> 9;

  const uint64_t up = m + 1;
  fp_mul62x62(&lo, &hi, up, up);
  const int c = fp_cmp128((hi << 19) | (lo >> 45), lo << 19, a, 0);
  if (c <= 0) m = up;
  fp_normalise(&m, &x_exp);
  return fp64_round_(0, x_exp, (m << 1) | (c != 0), mode & 3, mode, flags);
}

template <typename T> inline T FPSqrt(T op, FPSCR& fpscr) {
  const int mode = fp_mode_of(fpscr);
  int flags = 0;
  int a_sgn, a_exp;
  T a_mnt, result;
  fp_unpack(&a_sgn, &a_exp, &a_mnt, op, mode, &flags);
  if (fp_is_nan(op)) {
    result = fp_nan_one(op, mode, &flags);
  } else if (!a_mnt) {
    result = fp_zero<T>(a_sgn); // -0 stays -0, and so does a flushed negative denormal
  } else if (a_exp == fp_format<T>::exp_max && !a_sgn) {
    result = fp_infinity<T>(0);
  } else if (a_sgn) {
    flags |= FP_IOC;
    result = fp_default_nan<T>();
  } else {
    // Normalise, then give the exponent the parity that halves exactly for
    // the width's bias, moving the mantissa one place to keep the value.
    constexpr int parity_to_move = sizeof(T) == 8 ? 1 : 0;
    constexpr int root_exp_offset = sizeof(T) == 2 ? 25 : sizeof(T) == 4 ? 147 : 1053;
    fp_normalise(&a_mnt, &a_exp);
    if ((a_exp & 1) == parity_to_move) {
      ++a_exp;
      a_mnt = T(a_mnt >> 1);
    }
    result = fp_sqrt_finite(a_mnt, (a_exp + root_exp_offset) >> 1, mode, &flags);
  }
  fp_flags_merge(flags, fpscr);
  return result;
}
