// Conversions between the three formats, rounding to an integral value, and
// conversions to and from 16-, 32- and 64-bit integers with an optional count
// of fraction bits. Each operation takes its rounding from the caller, as the
// instruction names it, and reads only the flush, default-NaN and alternative
// half controls from the control word.
#pragma once

#include <cstdint>

#include "fp_core.h"

// Whether an integer part x with discarded bits err (0 exact, 1 below half,
// 2 half, 3 above) steps away from zero under the rounding; any mode not
// listed truncates.
inline bool fp_int_round_up(uint64_t x, int err, int sgn, FPRounding rounding) {
  switch (rounding) {
  case FPRounding_TIEEVEN:
    return err == 3 || (err == 2 && (x & 1));
  case FPRounding_POSINF:
    return err && !sgn;
  case FPRounding_NEGINF:
    return err && sgn;
  case FPRounding_TIEAWAY:
    return err >= 2;
  default:
    return false;
  }
}

// value >> shift together with the error class of the bits shifted out, in
// the same four classes; a shift above 64 leaves only whether value was
// non-zero.
inline uint64_t fp_shift_error(uint64_t value, int shift, int* err) {
  if (shift <= 0) {
    *err = 0;
    return value;
  }
  if (shift > 64) {
    *err = value != 0;
    return 0;
  }
  const uint64_t below_half = shift >= 2 ? value & ((uint64_t(1) << (shift - 1)) - 1) : 0;
  const uint64_t half = (value >> (shift - 1)) & 1;
  *err = int(half << 1) | (below_half != 0);
  return shift == 64 ? 0 : value >> shift;
}

// A format to a narrower one: the source is brought to the target's width
// with a sticky bit and handed to the target's rounding. A half result is
// never flushed; AHP selects the alternative half format.
template <typename T, typename U>
inline U fp_convert_narrow(T op, FPRounding rounding, FPSCR& fpscr) {
  using S = fp_format<T>;
  using D = fp_format<U>;
  const bool ahp = D::W == 16 && (fpscr & FPSCR_AHP);
  const int sgn = int(op >> (S::W - 1));
  const int field = fp_exp_field(op);
  const T frac = op & fp_mantissa_mask<T>();
  int flags = 0;
  U result;
  if (field == 0 && (!frac || (fpscr & FPSCR_FZ))) {
    if (frac) flags |= FP_IDC;
    result = fp_zero<U>(sgn);
  } else if (field == S::exp_max && !frac) {
    if (ahp) flags |= FP_IOC;
    result = ahp ? fp_pack<U>(sgn, D::exp_max, fp_mantissa_mask<U>()) : fp_infinity<U>(sgn);
  } else if (field == S::exp_max) {
    if (ahp || fp_is_signalling_nan(op)) flags |= FP_IOC;
    // The top payload bits below the quiet bit survive; the quiet bit is set.
    const U payload = U(frac >> (S::M - D::M));
    if (ahp)
      result = fp_zero<U>(sgn);
    else if (fpscr & FPSCR_DN)
      result = fp_default_nan<U>();
    else
      result = fp_pack<U>(sgn, D::exp_max, U(payload | fp_quiet_bit<U>()));
  } else {
    // A denormal source lies far below the target's range, so counting it
    // from exponent 1 without a hidden bit only matters as a tiny non-zero.
    const int exp = (field ? field : 1) - (S::bias - D::bias);
    const T m = field ? T(frac | fp_hidden_bit<T>()) : frac;
    // The hidden bit lands just above U's width and falls off.
    const U mnt = U(fp_jam_shift<T>(m, S::M - D::W));
    const int mode = D::W == 16 ? int((fpscr >> FPSCR_RMODE_SHIFT) & 15) | (ahp ? FP_MODE_AHP : 0)
                                : fp_mode_of(fpscr);
    result = fp_round<U>(sgn, exp, mnt, rounding, mode, &flags);
  }
  fp_flags_merge(flags, fpscr);
  return result;
}

// A format to a wider one is exact. Under AHP a half source has no
// infinities or NaNs: exponent field 31 is an ordinary value.
template <typename T, typename U> inline U fp_convert_widen(T op, FPSCR& fpscr) {
  using S = fp_format<T>;
  using D = fp_format<U>;
  const bool ahp = S::W == 16 && (fpscr & FPSCR_AHP);
  const int sgn = int(op >> (S::W - 1));
  const int field = fp_exp_field(op);
  const T frac = op & fp_mantissa_mask<T>();
  int flags = 0;
  U result;
  if (field == 0 && (!frac || (fp_mode_of(fpscr) & S::flush_bit))) {
    if (frac && S::flush_sets_idc) flags |= FP_IDC;
    result = fp_zero<U>(sgn);
  } else if (field == S::exp_max && !ahp && !frac) {
    result = fp_infinity<U>(sgn);
  } else if (field == S::exp_max && !ahp) {
    if (fp_is_signalling_nan(op)) flags |= FP_IOC;
    result = (fpscr & FPSCR_DN)
                 ? fp_default_nan<U>()
                 : fp_pack<U>(sgn, D::exp_max, U(U(frac) << (D::M - S::M)) | fp_quiet_bit<U>());
  } else {
    // Left-justify in T, so that a denormal source becomes normal, then
    // count the exponent from the hidden bit's place again.
    int exp = field ? field : 1;
    T m = field ? T(frac | fp_hidden_bit<T>()) : frac;
    fp_normalise(&m, &exp);
    const int biased = exp + S::E + D::bias - S::bias;
    result = fp_pack<U>(sgn, biased, U(U(m) << (D::M + 1 - S::W)));
  }
  fp_flags_merge(flags, fpscr);
  return result;
}

// op in format T converted to format U under rounding; FZ16 and AHP of fpscr
// are honoured, so callers that must ignore them clear them first.
template <typename T, typename U> inline U FPConvert(T op, FPRounding rounding, FPSCR& fpscr) {
  static_assert(sizeof(T) != sizeof(U), "a conversion changes the format");
  if constexpr (sizeof(U) < sizeof(T))
    return fp_convert_narrow<T, U>(op, rounding, fpscr);
  else
    return fp_convert_widen<T, U>(op, fpscr);
}

// op rounded to an integral value in its own format. exact asks for the
// inexact flag when the value changes.
template <typename T> inline T FPRoundInt(T op, FPRounding rounding, bool exact, FPSCR& fpscr) {
  using F = fp_format<T>;
  const int mode = fp_mode_of(fpscr);
  int flags = 0;
  int sgn, exp;
  T mnt;
  fp_unpack(&sgn, &exp, &mnt, op, mode, &flags);
  T result;
  const int expint = F::bias + F::M;
  if (exp == F::exp_max) {
    result = fp_is_nan(op) ? fp_nan_one(op, mode, &flags) : fp_infinity<T>(sgn);
  } else if (!mnt) {
    result = fp_zero<T>(sgn);
  } else if (exp >= expint) {
    result = op;
  } else {
    int err;
    uint64_t x = fp_shift_error(mnt, expint - exp, &err);
    x += fp_int_round_up(x, err, sgn, rounding);
    if (!x) {
      result = fp_zero<T>(sgn);
    } else {
      // Left-justified, the leading 1 sits E places above the hidden bit.
      int x_exp = expint;
      T top = T(x);
      fp_normalise(&top, &x_exp);
      result = fp_pack<T>(sgn, x_exp + F::E, T(top >> F::E));
    }
    if (err && exact) flags |= FP_IXC;
  }
  fp_flags_merge(flags, fpscr);
  return result;
}

// The rounding of a double-form value (hidden bit at bit 52 of mnt, exponent
// biased as a double) to a 64-bit integer. *flags is replaced, not added to:
// only a non-zero mantissa reaches either write, and a flushed one is zero.
inline uint64_t FPToFixed_64(int sgn, int exp, uint64_t mnt, bool u, FPRounding rounding,
                             int* flags) {
  const uint64_t v = mnt << 11;
  int err;
  uint64_t x = fp_shift_error(v, 1086 - exp, &err);
  x += fp_int_round_up(x, err, sgn, rounding);
  const uint64_t limit = (uint64_t(1) << 63) - (sgn ? 0 : 1);
  if ((u && sgn && x) || (!u && x > limit)) {
    *flags = FP_IOC;
    return (uint64_t(!u) << 63) - !sgn;
  }
  if (err) *flags = FP_IXC;
  return sgn ? 0 - x : x;
}

// op in format T to a U-sized integer, signed or unsigned, scaled by 2^fbits
// first. Out-of-range values saturate and raise only invalid.
template <typename T, typename U>
inline U fplibFPToFixed(T op, int fbits, bool u, FPRounding rounding, FPSCR& fpscr) {
  using F = fp_format<T>;
  constexpr int N = sizeof(U) * 8;
  const int sgn = int(op >> (F::W - 1));
  const int field = fp_exp_field(op);
  T frac = op & fp_mantissa_mask<T>();
  const U saturated = U((U(!u) << (N - 1)) - U(!sgn));
  int flags = 0;
  U result;
  if (field == F::exp_max) {
    flags = FP_IOC;
    result = frac ? 0 : saturated;
  } else {
    if (!field && frac && (fp_mode_of(fpscr) & F::flush_bit)) {
      if (F::flush_sets_idc) flags |= FP_IDC;
      frac = 0;
    }
    const uint64_t mnt = uint64_t(field ? frac | fp_hidden_bit<T>() : frac) << (52 - F::M);
    const int exp = (field ? field : 1) + fbits + 1023 - F::bias;
    uint64_t x;
    if (exp > 1086) {
      x = (uint64_t(!u) << 63) - !sgn;
      flags = FP_IOC;
    } else {
      x = FPToFixed_64(sgn, exp, mnt, u, rounding, &flags);
    }
    result = U(x);
    if constexpr (N < 64) {
      const bool in_range =
          u ? x <= uint64_t(U(~U(0)))
            : (int64_t(x) >= -(int64_t(1) << (N - 1)) && int64_t(x) < (int64_t(1) << (N - 1)));
      if (!in_range) {
        result = saturated;
        flags = FP_IOC;
      }
    }
  }
  fp_flags_merge(flags, fpscr);
  return result;
}

// A 64-bit integer, signed (sign-extended by the caller) or unsigned, divided
// by 2^fbits and rounded to format T. Half results are never flushed and
// never in the alternative format.
template <typename T>
inline T fplibFixedToFP(uint64_t op, int fbits, bool u, FPRounding rounding, FPSCR& fpscr) {
  using F = fp_format<T>;
  const int sgn = !u && (op >> 63);
  if (sgn) op = 0 - op;
  if (!op) return 0;
  int exp = F::bias + 63 - fbits;
  fp_normalise(&op, &exp);
  // The leading 1 moves just above T's width and falls off.
  const T mnt = T(F::W == 64 ? op << 1 : fp_jam_shift<uint64_t>(op, 63 - F::W));
  const int mode = int((fpscr >> 22) & 12) | rounding;
  int flags = 0;
  const T result = fp_round<T>(sgn, exp, mnt, rounding, mode, &flags);
  fp_flags_merge(flags, fpscr);
  return result;
}
