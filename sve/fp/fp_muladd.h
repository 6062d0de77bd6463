// Fused multiply-add: addend + op1 x op2 with a single rounding, on raw
// half, single and double patterns. The core also takes a power-of-two
// scale applied before that rounding, for the Newton steps.
#pragma once

#include <cstdint>

#include "fp_core.h"

// The double core's working word: 128 bits as a high and a low word.
struct fp_u128 {
  uint64_t hi, lo;
};

// Word operations of the core, the same names for the scalar working words
// of half and single and for the double's two-word one.
template <typename P> inline bool fp_word_is_zero(P x) { return x == 0; }
inline bool fp_word_is_zero(fp_u128 x) { return !(x.hi | x.lo); }

template <typename P> inline bool fp_word_less(P a, P b) { return a < b; }
inline bool fp_word_less(fp_u128 a, fp_u128 b) {
  return a.hi < b.hi || (a.hi == b.hi && a.lo < b.lo);
}

template <typename P> inline P fp_word_add(P a, P b) { return a + b; }
inline fp_u128 fp_word_add(fp_u128 a, fp_u128 b) {
  const uint64_t lo = a.lo + b.lo;
  return {a.hi + b.hi + (lo < a.lo), lo};
}

template <typename P> inline P fp_word_sub(P a, P b) { return a - b; }
inline fp_u128 fp_word_sub(fp_u128 a, fp_u128 b) {
  return {a.hi - b.hi - (a.lo < b.lo), a.lo - b.lo};
}

template <typename P> inline P fp_word_jam_shift(P x, int shift) {
  return fp_jam_shift<P>(x, shift);
}
inline fp_u128 fp_word_jam_shift(fp_u128 x, int shift) {
  fp_jam_shift(&x.hi, &x.lo, shift);
  return x;
}

template <typename P> inline void fp_word_normalise(P* x, int* exp) { fp_normalise(x, exp); }
inline void fp_word_normalise(fp_u128* x, int* exp) { fp_normalise(&x->hi, &x->lo, exp); }

// Where addend and product sit in the working word, and the exponent
// offsets that put them on one scale. The half word carries an offset of
// 112 on its exponents that comes off before rounding.
template <typename T> struct fp_muladd_layout;

template <typename T, typename P, int AddendShift, int ProductShift> struct fp_muladd_one_word {
  using word = P;
  static word addend(T mnt) { return static_cast<word>(mnt) << AddendShift; }
  static word product(T b, T c) { return (static_cast<word>(b) * c) << ProductShift; }
  static T round_mnt(word x) { return static_cast<T>(fp_jam_shift<word>(x, sizeof(T) * 8 - 1)); }
};

// Leading bit of a normal addend at 29; of a product of normals at 29 or 30.
template <> struct fp_muladd_layout<uint16_t> : fp_muladd_one_word<uint16_t, uint32_t, 19, 9> {
  static constexpr int addend_exp = 114, product_exp = 99, round_exp = -112;
};

template <> struct fp_muladd_layout<uint32_t> : fp_muladd_one_word<uint32_t, uint64_t, 27, 3> {
  static constexpr int addend_exp = 13, product_exp = -113, round_exp = 0;
};

template <> struct fp_muladd_layout<uint64_t> {
  using word = fp_u128;
  static constexpr int addend_exp = 11, product_exp = -1003, round_exp = 0;
  static word addend(uint64_t mnt) { return {mnt, 0}; }
  static word product(uint64_t b, uint64_t c) {
    word p;
    fp_mul62x62(&p.lo, &p.hi, b, c << 3);
    return p;
  }
  static uint64_t round_mnt(word x) { return (x.hi << 1) | (x.lo != 0); }
};

// (a + b x c) x 2^scale, rounded once under mode & 3; flags are added to
// *flags.
template <typename T> inline T fp_muladd_scaled(T a, T b, T c, int scale, int mode, int* flags) {
  using F = fp_format<T>;
  using L = fp_muladd_layout<T>;
  int a_sgn, a_exp, b_sgn, b_exp, c_sgn, c_exp;
  T a_mnt, b_mnt, c_mnt;
  fp_unpack<T>(&a_sgn, &a_exp, &a_mnt, a, mode, flags);
  fp_unpack<T>(&b_sgn, &b_exp, &b_mnt, b, mode, flags);
  fp_unpack<T>(&c_sgn, &c_exp, &c_mnt, c, mode, flags);

  T nan = fp_nan_three<T>(a, b, c, mode, flags);
  // A quiet NaN addend does not hide the invalid zero times infinity.
  if (fp_is_quiet_nan(a) && ((!b_mnt && fp_is_infinity(c)) || (!c_mnt && fp_is_infinity(b)))) {
    nan = fp_default_nan<T>();
    *flags |= FP_IOC;
  }
  if (nan) return nan;

  const int top = F::exp_max;
  const int p_sgn = b_sgn ^ c_sgn;
  if ((b_exp == top && !c_mnt) || (c_exp == top && !b_mnt) ||
      (a_exp == top && (b_exp == top || c_exp == top) && a_sgn != p_sgn)) {
    *flags |= FP_IOC;
    return fp_default_nan<T>();
  }
  if (a_exp == top) return fp_infinity<T>(a_sgn);
  if (b_exp == top || c_exp == top) return fp_infinity<T>(p_sgn);
  if (!a_mnt && (!b_mnt || !c_mnt) && a_sgn == p_sgn) return fp_zero<T>(a_sgn);

  typename L::word x_mnt = L::addend(a_mnt);
  int x_exp = a_exp + L::addend_exp;
  int x_sgn = a_sgn;
  typename L::word y_mnt = L::product(b_mnt, c_mnt);
  const int y_exp = b_exp + c_exp + L::product_exp;

  if (!fp_word_is_zero(y_mnt)) {
    if (x_exp >= y_exp) {
      y_mnt = fp_word_jam_shift(y_mnt, x_exp - y_exp);
    } else {
      x_mnt = fp_word_jam_shift(x_mnt, y_exp - x_exp);
      x_exp = y_exp;
    }
  }

  if (x_sgn == p_sgn) {
    x_mnt = fp_word_add(x_mnt, y_mnt);
  } else if (!fp_word_less(x_mnt, y_mnt)) {
    x_mnt = fp_word_sub(x_mnt, y_mnt);
  } else {
    x_mnt = fp_word_sub(y_mnt, x_mnt);
    x_sgn ^= 1;
  }

  // An exact zero sum is negative only when rounding towards minus infinity.
  if (fp_word_is_zero(x_mnt)) return fp_zero<T>((mode & FP_MODE_RMODE) == FPRounding_NEGINF);

  fp_word_normalise(&x_mnt, &x_exp);
  return fp_round<T>(x_sgn, x_exp + scale + L::round_exp, L::round_mnt(x_mnt), mode & FP_MODE_RMODE,
                     mode, flags);
}

inline uint16_t fp16_muladd(uint16_t a, uint16_t b, uint16_t c, int scale, int mode, int* flags) {
  return fp_muladd_scaled<uint16_t>(a, b, c, scale, mode, flags);
}
inline uint32_t fp32_muladd(uint32_t a, uint32_t b, uint32_t c, int scale, int mode, int* flags) {
  return fp_muladd_scaled<uint32_t>(a, b, c, scale, mode, flags);
}
inline uint64_t fp64_muladd(uint64_t a, uint64_t b, uint64_t c, int scale, int mode, int* flags) {
  return fp_muladd_scaled<uint64_t>(a, b, c, scale, mode, flags);
}

template <typename T> inline T FPMulAdd(T addend, T op1, T op2, FPSCR& fpscr) {
  int flags = 0;
  T result = fp_muladd_scaled<T>(addend, op1, op2, 0, fp_mode_of(fpscr), &flags);
  fp_flags_merge(flags, fpscr);
  return result;
}
