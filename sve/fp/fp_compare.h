// Ordering of two raw floating-point values: the compares, and the minimum
// and maximum with and without the rule that a quiet NaN gives way to a
// number. Nothing here produces a new value, so nothing rounds; the flags are
// input denormal and invalid operation only.
#pragma once

#include <cstdint>

#include "fp_core.h"

// Both operands unpacked, with the input flush of the current mode applied,
// so that a flushed denormal orders as a zero.
template <typename T> struct fp_pair {
  int a_sgn, a_exp, b_sgn, b_exp;
  T a_mnt, b_mnt;
};

template <typename T> inline fp_pair<T> fp_unpack_pair(T op1, T op2, int mode, int* flags) {
  fp_pair<T> p;
  fp_unpack(&p.a_sgn, &p.a_exp, &p.a_mnt, op1, mode, flags);
  fp_unpack(&p.b_sgn, &p.b_exp, &p.b_mnt, op2, mode, flags);
  return p;
}

// Whether op1 is at or above op2, for ordered operands that are not equal
// zeros: on differing signs the positive one is above, and within a sign the
// exponent and then the mantissa decide, reversed for negative values.
template <typename T> inline bool fp_above_or_equal(const fp_pair<T>& p, bool or_equal) {
  if (p.a_sgn != p.b_sgn) return p.b_sgn;
  if (p.a_exp != p.b_exp) return p.a_sgn ^ (p.a_exp > p.b_exp);
  if (p.a_mnt != p.b_mnt) return p.a_sgn ^ (p.a_mnt > p.b_mnt);
  return or_equal;
}

template <typename T> inline bool fp_equal_unpacked(T op1, T op2, const fp_pair<T>& p) {
  return op1 == op2 || (!p.a_mnt && !p.b_mnt);
}

// Whether the pair is unordered. A signalling NaN raises IOC; a quiet one
// does too where the comparison signals on every NaN.
template <typename T> inline bool fp_unordered(T op1, T op2, bool signal_quiet, int* flags) {
  if (!fp_is_nan(op1) && !fp_is_nan(op2)) return false;
  if (signal_quiet || fp_is_signalling_nan(op1) || fp_is_signalling_nan(op2)) *flags |= FP_IOC;
  return true;
}

template <typename T> inline bool FPCompareEQ(T op1, T op2, FPSCR& fpscr) {
  int flags = 0;
  const fp_pair<T> p = fp_unpack_pair(op1, op2, fp_mode_of(fpscr), &flags);
  bool result;
  if (fp_unordered(op1, op2, false, &flags)) {
    result = false;
  } else {
    result = fp_equal_unpacked(op1, op2, p);
  }
  fp_flags_merge(flags, fpscr);
  return result;
}

// GE and GT signal on any NaN, quiet or not.
template <typename T> inline bool fp_compare_order(T op1, T op2, bool or_equal, FPSCR& fpscr) {
  int flags = 0;
  const fp_pair<T> p = fp_unpack_pair(op1, op2, fp_mode_of(fpscr), &flags);
  bool result;
  if (fp_unordered(op1, op2, true, &flags)) {
    result = false;
  } else if (!p.a_mnt && !p.b_mnt) {
    result = or_equal;
  } else {
    result = fp_above_or_equal(p, or_equal);
  }
  fp_flags_merge(flags, fpscr);
  return result;
}

template <typename T> inline bool FPCompareGE(T op1, T op2, FPSCR& fpscr) {
  return fp_compare_order(op1, op2, true, fpscr);
}

template <typename T> inline bool FPCompareGT(T op1, T op2, FPSCR& fpscr) {
  return fp_compare_order(op1, op2, false, fpscr);
}

template <typename T> inline bool FPCompareUN(T op1, T op2, FPSCR& fpscr) {
  int flags = 0;
  fp_unpack_pair(op1, op2, fp_mode_of(fpscr), &flags);
  const bool unordered = fp_unordered(op1, op2, false, &flags);
  fp_flags_merge(flags, fpscr);
  return unordered;
}

// The NZCV nibble of a scalar compare: 3 unordered, 6 equal, 8 below, 2 above.
template <typename T> inline int FPCompare(T op1, T op2, bool signal_nans, FPSCR& fpscr) {
  int flags = 0;
  const fp_pair<T> p = fp_unpack_pair(op1, op2, fp_mode_of(fpscr), &flags);
  int result;
  if (fp_unordered(op1, op2, signal_nans, &flags)) {
    result = 3;
  } else if (fp_equal_unpacked(op1, op2, p)) {
    result = 6;
  } else {
    result = fp_above_or_equal(p, false) ? 2 : 8;
  }
  fp_flags_merge(flags, fpscr);
  return result;
}

// Maximum and minimum return the picked operand re-packed from its unpacked
// fields, so a denormal flushed on input comes out as a zero of its sign.
// Within a sign the raw patterns order the magnitudes; across signs the sign
// decides, which also puts +0 above -0.
template <typename T> inline T fp_min_max(T op1, T op2, bool want_max, FPSCR& fpscr) {
  const int mode = fp_mode_of(fpscr);
  int flags = 0;
  const fp_pair<T> p = fp_unpack_pair(op1, op2, mode, &flags);
  T result = fp_nan_two(op1, op2, mode, &flags);
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
