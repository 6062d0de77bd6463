// The SVE2 predicated shifts by a vector: each element of a shifted by b's
// element taken as signed, left when positive and right when negative, rounding and saturating as
// the form says. The reversed forms swap the operands.
#pragma once

#include <cstdint>

#include "elementwise.h"

namespace generic {

template <typename T, bool Round, bool Saturate>
uint64_t shift_by_signed(uint64_t a_bits, uint64_t b_bits) {
  constexpr unsigned width = esize_of<T>;
  const wide a = widen<T>(a_bits);
  const wide count = Int(b_bits, width, false);
  const int shift = count > width          ? int(width) + 1
                    : count < -wide(width) ? -int(width) - 1
                                           : int(count);
  wide r;
  if (shift >= 0) {
    // Past the width a non-zero value is out of range whatever its size.
    if (unsigned(shift) >= width) {
      if (!Saturate || a == 0) return 0;
      return SatQ(a < 0 ? -(wide(1) << 100) : wide(1) << 100, width, unsigned_kind<T>).value;
    }
    r = a * (wide(1) << shift);
  } else {
    // Beyond the width every right shift gives what 70 gives.
    const int right = -shift > 70 ? 70 : -shift;
    r = ((Round ? a + (wide(1) << (right - 1)) : a)) >> right;
  }
  return Saturate ? SatQ(r, width, unsigned_kind<T>).value : bits(r);
}

template <typename T, uint64_t (*Op)(uint64_t, uint64_t), bool Reversed>
void predicated_shift(VecV* out, const PredV* g, const VecV* a, const VecV* b, CpuContext* ctx) {
  VecV r;
  const unsigned n = element_count(ctx, esize_of<T>);
  for (unsigned i = 0; i < n; ++i) {
    const uint64_t x = raw<T>(*a, i), y = raw<T>(*b, i);
    set_raw<T>(r, i, active(*g, i, sizeof(T)) ? (Reversed ? Op(y, x) : Op(x, y)) : x);
  }
  *out = r;
}

// clang-format off
#define ZORVO_SHIFT_FORMS(K, S, U)                                                              \
  constexpr auto VecS##K##RShlVVM = &predicated_shift<S, shift_by_signed<S, true, false>, false>;  \
  constexpr auto VecU##K##RShlVVM = &predicated_shift<U, shift_by_signed<U, true, false>, false>;  \
  constexpr auto VecS##K##QShlVVM = &predicated_shift<S, shift_by_signed<S, false, true>, false>;  \
  constexpr auto VecU##K##QShlVVM = &predicated_shift<U, shift_by_signed<U, false, true>, false>;  \
  constexpr auto VecS##K##QRShlVVM = &predicated_shift<S, shift_by_signed<S, true, true>, false>;  \
  constexpr auto VecU##K##QRShlVVM = &predicated_shift<U, shift_by_signed<U, true, true>, false>;  \
  constexpr auto VecS##K##RShlRVVM = &predicated_shift<S, shift_by_signed<S, true, false>, true>;  \
  constexpr auto VecU##K##RShlRVVM = &predicated_shift<U, shift_by_signed<U, true, false>, true>;  \
  constexpr auto VecS##K##QShlRVVM = &predicated_shift<S, shift_by_signed<S, false, true>, true>;  \
  constexpr auto VecU##K##QShlRVVM = &predicated_shift<U, shift_by_signed<U, false, true>, true>;  \
  constexpr auto VecS##K##QRShlRVVM = &predicated_shift<S, shift_by_signed<S, true, true>, true>;  \
  constexpr auto VecU##K##QRShlRVVM = &predicated_shift<U, shift_by_signed<U, true, true>, true>;
ZORVO_SHIFT_FORMS(8, int8_t, uint8_t)
ZORVO_SHIFT_FORMS(16, int16_t, uint16_t)
ZORVO_SHIFT_FORMS(32, int32_t, uint32_t)
ZORVO_SHIFT_FORMS(64, int64_t, uint64_t)
#undef ZORVO_SHIFT_FORMS
// clang-format on

} // namespace generic
