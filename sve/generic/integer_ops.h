// Element operations of the integer families, for the loops of
// elementwise.h. Arguments and results are raw element bits; T is the kind.
#pragma once

#include <cstdint>

#include "elementwise.h"

namespace generic {

template <typename T> uint64_t op_subr(uint64_t a, uint64_t b) { return b - a; }
template <typename T> uint64_t op_abd(uint64_t a, uint64_t b) {
  return bits(AbsInt(widen<T>(a) - widen<T>(b)));
}
// The high half of the exact product.
template <typename T> uint64_t op_mulh(uint64_t a, uint64_t b) {
  if constexpr (unsigned_kind<T>)
    return uint64_t(static_cast<unsigned __int128>(a) * b >> esize_of<T>);
  else
    return bits(widen<T>(a) * widen<T>(b) >> esize_of<T>);
}
template <typename T> uint64_t op_qadd(uint64_t a, uint64_t b) {
  return SatAdd(a, b, esize_of<T>, unsigned_kind<T>);
}
template <typename T> uint64_t op_qsub(uint64_t a, uint64_t b) {
  return SatSub(a, b, esize_of<T>, unsigned_kind<T>);
}
// The immediate forms take the immediate as an unsigned number.
template <typename T> uint64_t op_qadd_unsigned(uint64_t a, uint64_t imm) {
  return SatQ(widen<T>(a) + wide(imm), esize_of<T>, unsigned_kind<T>).value;
}
template <typename T> uint64_t op_qsub_unsigned(uint64_t a, uint64_t imm) {
  return SatQ(widen<T>(a) - wide(imm), esize_of<T>, unsigned_kind<T>).value;
}
template <typename T> uint64_t op_max(uint64_t a, uint64_t b) {
  return Max(a, b, esize_of<T>, unsigned_kind<T>);
}
template <typename T> uint64_t op_min(uint64_t a, uint64_t b) {
  return Min(a, b, esize_of<T>, unsigned_kind<T>);
}

// Shifts by an unsigned count: past the element a left shift gives 0, a
// right shift 0 or the sign.
template <typename T> uint64_t op_shl(uint64_t a, uint64_t count) {
  return bits(ShiftLeftInt(widen<T>(a), wide(count)));
}
template <typename T> uint64_t op_shr(uint64_t a, uint64_t count) {
  return bits(ShiftRightInt(widen<T>(a), wide(count)));
}
template <typename T> uint64_t op_shl_reversed(uint64_t a, uint64_t b) { return op_shl<T>(b, a); }
template <typename T> uint64_t op_shr_reversed(uint64_t a, uint64_t b) { return op_shr<T>(b, a); }
// asrd: rounds toward zero.
template <typename T> uint64_t op_shr_divide(uint64_t a, uint64_t count) {
  const wide x = widen<T>(a);
  return bits(ShiftRightInt(x < 0 ? x + ShiftLeftInt(1, wide(count)) - 1 : x, wide(count)));
}

// Unary operations on b.
template <typename T> uint64_t op_abs(uint64_t, uint64_t b) { return bits(AbsInt(widen<T>(b))); }
template <typename T> uint64_t op_cls(uint64_t, uint64_t b) {
  return CountLeadingSignBits(b, esize_of<T>);
}
template <typename T> uint64_t op_clz(uint64_t, uint64_t b) {
  return CountLeadingZeroBits(b, esize_of<T>);
}
template <typename T> uint64_t op_cnt(uint64_t, uint64_t b) { return BitCount(b, esize_of<T>); }
template <typename T> uint64_t op_cnot(uint64_t, uint64_t b) { return b == 0; }
template <typename T> uint64_t op_not(uint64_t, uint64_t b) { return ~b; }
template <typename T> uint64_t op_extend_byte(uint64_t, uint64_t b) {
  return bits(Int(b, 8, unsigned_kind<T>));
}
template <typename T, unsigned Unit> uint64_t op_reverse(uint64_t, uint64_t b) {
  return Reverse(b, esize_of<T>, Unit);
}

} // namespace generic
