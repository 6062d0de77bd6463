// Ordering of two raw floating-point values: the compares, and the minimum
// and maximum with and without the rule that a quiet NaN gives way to a
// number. Nothing here produces a new value, so nothing rounds; the flags are
// input denormal and invalid operation only.
#pragma once

#include <cstdint>

#include "fp_core.h"

// Whether op1 is above op2, for ordered operands that are not equal: on
// differing signs the positive one is above, and within a sign the exponent
// and then the mantissa decide, reversed for negative values.
template <typename T> inline bool fp_above(const fp_unpacked_pair<T>& p) {
  if (p.a_sgn != p.b_sgn) return p.b_sgn;
  if (p.a_exp != p.b_exp) return p.a_sgn ^ (p.a_exp > p.b_exp);
  return p.a_sgn ^ (p.a_mnt > p.b_mnt);
}

enum fp_order { FP_UNORDERED, FP_EQUAL, FP_BELOW, FP_ABOVE };

// How op1 stands to op2. Every compare is a question about this answer; they
// differ only in whether a quiet NaN raises IOC (a signalling one always
// does). Equal means the same pattern, or two zeros after the input flush,
// so +0 equals -0 and a flushed denormal equals a zero.
template <typename T> inline fp_order fp_order_of(T op1, T op2, bool signal_quiet, FPSCR& fpscr) {
  int flags = 0;
  // The pair's NaN result is not needed; the IOC it raises for a signalling
  // NaN is the one every compare raises anyway. The input flush makes a
  // flushed denormal order as a zero.
  const fp_unpacked_pair<T> p = fp_unpack_two(op1, op2, fp_mode_of(fpscr), &flags);
  fp_order order;
  if (fp_is_nan(op1) || fp_is_nan(op2)) {
    if (signal_quiet || fp_is_signalling_nan(op1) || fp_is_signalling_nan(op2)) flags |= FP_IOC;
    order = FP_UNORDERED;
  } else if (op1 == op2 || (!p.a_mnt && !p.b_mnt)) {
    order = FP_EQUAL;
  } else {
    order = fp_above(p) ? FP_ABOVE : FP_BELOW;
  }
  fp_flags_merge(flags, fpscr);
  return order;
}

template <typename T> inline bool FPCompareEQ(T op1, T op2, FPSCR& fpscr) {
  return fp_order_of(op1, op2, false, fpscr) == FP_EQUAL;
}

// GE and GT signal on any NaN, quiet or not.
template <typename T> inline bool FPCompareGE(T op1, T op2, FPSCR& fpscr) {
  const fp_order order = fp_order_of(op1, op2, true, fpscr);
  return order == FP_EQUAL || order == FP_ABOVE;
}

template <typename T> inline bool FPCompareGT(T op1, T op2, FPSCR& fpscr) {
  return fp_order_of(op1, op2, true, fpscr) == FP_ABOVE;
}

template <typename T> inline bool FPCompareUN(T op1, T op2, FPSCR& fpscr) {
  return fp_order_of(op1, op2, false, fpscr) == FP_UNORDERED;
}

// The NZCV nibble of a scalar compare: unordered 3 (C V), equal 6 (Z C),
// below 8 (N), above 2 (C).
template <typename T> inline int FPCompare(T op1, T op2, bool signal_nans, FPSCR& fpscr) {
  static constexpr int nzcv[] = {3, 6, 8, 2};
  return nzcv[fp_order_of(op1, op2, signal_nans, fpscr)];
}

// Maximum and minimum return the picked operand re-packed from its unpacked
// fields, so a denormal flushed on input comes out as a zero of its sign.
// Within a sign the raw patterns order the magnitudes; across signs the sign
// decides, which also puts +0 above -0.
template <typename T> inline T fp_min_max(T op1, T op2, bool want_max, FPSCR& fpscr) {
  const int mode = fp_mode_of(fpscr);
  int flags = 0;
  const fp_unpacked_pair<T> p = fp_unpack_two(op1, op2, mode, &flags);
  T result = p.nan;
  if (!result) {
    bool pick_op1;
    if (p.a_sgn != p.b_sgn) {
      pick_op1 = want_max ? p.b_sgn : p.a_sgn;
    } else {
      pick_op1 = p.a_sgn ^ (want_max ? op1 > op2 : op1 < op2);
    }
    result = pick_op1 ? fp_repack(p.a_sgn, p.a_exp, p.a_mnt) : fp_repack(p.b_sgn, p.b_exp, p.b_mnt);
  }
  fp_flags_merge(flags, fpscr);
  return result;
}

template <typename T> inline T FPMax(T op1, T op2, FPSCR& fpscr) {
  return fp_min_max(op1, op2, true, fpscr);
}

template <typename T> inline T FPMin(T op1, T op2, FPSCR& fpscr) {
  return fp_min_max(op1, op2, false, fpscr);
}

// A quiet NaN paired with anything but another quiet NaN is replaced by the
// infinity that loses the comparison, so the other operand wins. Only the
// exponent field and the quiet bit are looked at.
template <typename T> inline void fp_quiet_nan_gives_way(T* op1, T* op2, T loser) {
  const bool quiet1 = fp_is_quiet_nan(*op1), quiet2 = fp_is_quiet_nan(*op2);
  if (quiet1 && !quiet2) *op1 = loser;
  if (quiet2 && !quiet1) *op2 = loser;
}

template <typename T> inline T FPMaxNum(T op1, T op2, FPSCR& fpscr) {
  fp_quiet_nan_gives_way(&op1, &op2, fp_infinity<T>(1));
  return FPMax(op1, op2, fpscr);
}

template <typename T> inline T FPMinNum(T op1, T op2, FPSCR& fpscr) {
  fp_quiet_nan_gives_way(&op1, &op2, fp_infinity<T>(0));
  return FPMin(op1, op2, fpscr);
}
