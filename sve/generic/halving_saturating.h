// The SVE2 predicated halving and saturating forms: the operation on the
// exact values of an active element pair, halved or saturated to the
// element; inactive elements keep the first operand.
#pragma once

#include <cstdint>
#include <type_traits>

#include "widen_narrow.h"

namespace generic {

inline wide halving_add(wide a, wide b) { return (a + b) >> 1; }
inline wide rounding_halving_add(wide a, wide b) { return (a + b + 1) >> 1; }
inline wide halving_sub(wide a, wide b) { return (a - b) >> 1; }
inline wide halving_sub_reversed(wide a, wide b) { return (b - a) >> 1; }
inline wide sub_reversed(wide a, wide b) { return b - a; }

// T gives the result and a's kind, B b's kind: suqadd adds an unsigned b to
// a signed a, usqadd the reverse.
template <typename T, typename B, WideOp Op, bool Saturate>
void predicated_exact(VecV* out, const PredV* g, const VecV* a, const VecV* b, CpuContext* ctx) {
  VecV r;
  const unsigned n = element_count(ctx, esize_of<T>);
  for (unsigned i = 0; i < n; ++i) {
    if (!active(*g, i, sizeof(T))) {
      set_raw<T>(r, i, raw<T>(*a, i));
      continue;
    }
    const wide x = Op(widen<T>(raw<T>(*a, i)), widen<B>(raw<B>(*b, i)));
    set_raw<T>(r, i, Saturate ? SatQ(x, esize_of<T>, unsigned_kind<T>).value : bits(x));
  }
  *out = r;
}

// sqabs, sqneg: active elements of b, inactive ones keep a.
template <typename T, bool Negate>
void saturating_unary(VecV* out, const VecV* a, const PredV* g, const VecV* b, CpuContext* ctx) {
  VecV r;
  const unsigned n = element_count(ctx, esize_of<T>);
  for (unsigned i = 0; i < n; ++i) {
    const wide x = widen<T>(raw<T>(*b, i));
    set_raw<T>(r, i,
               active(*g, i, sizeof(T)) ? SatQ(Negate ? -x : AbsInt(x), esize_of<T>, false).value
                                        : raw<T>(*a, i));
  }
  *out = r;
}

// clang-format off
#define ZORVO_HALVING_SATURATING_FORMS(K, S, U)                                             \
  constexpr auto VecS##K##HAddVVM = &predicated_exact<S, S, halving_add, false>;            \
  constexpr auto VecU##K##HAddVVM = &predicated_exact<U, U, halving_add, false>;            \
  constexpr auto VecS##K##RHAddVVM = &predicated_exact<S, S, rounding_halving_add, false>;  \
  constexpr auto VecU##K##RHAddVVM = &predicated_exact<U, U, rounding_halving_add, false>;  \
  constexpr auto VecS##K##HSubVVM = &predicated_exact<S, S, halving_sub, false>;            \
  constexpr auto VecU##K##HSubVVM = &predicated_exact<U, U, halving_sub, false>;            \
  constexpr auto VecS##K##HSubRVVM = &predicated_exact<S, S, halving_sub_reversed, false>;  \
  constexpr auto VecU##K##HSubRVVM = &predicated_exact<U, U, halving_sub_reversed, false>;  \
  constexpr auto VecS##K##QAddVVM = &predicated_exact<S, S, wide_add, true>;                \
  constexpr auto VecU##K##QAddVVM = &predicated_exact<U, U, wide_add, true>;                \
  constexpr auto VecS##K##QSubVVM = &predicated_exact<S, S, wide_sub, true>;                \
  constexpr auto VecU##K##QSubVVM = &predicated_exact<U, U, wide_sub, true>;                \
  constexpr auto VecS##K##QSubRVVM = &predicated_exact<S, S, sub_reversed, true>;           \
  constexpr auto VecU##K##QSubRVVM = &predicated_exact<U, U, sub_reversed, true>;           \
  constexpr auto VecS##K##SUQAddVVM = &predicated_exact<S, U, wide_add, true>;              \
  constexpr auto VecU##K##USQAddVVM = &predicated_exact<U, S, wide_add, true>;              \
  constexpr auto VecS##K##QAbsVM = &saturating_unary<S, false>;                             \
  constexpr auto VecS##K##QNegVM = &saturating_unary<S, true>;
ZORVO_HALVING_SATURATING_FORMS(8, int8_t, uint8_t)
ZORVO_HALVING_SATURATING_FORMS(16, int16_t, uint16_t)
ZORVO_HALVING_SATURATING_FORMS(32, int32_t, uint32_t)
ZORVO_HALVING_SATURATING_FORMS(64, int64_t, uint64_t)
#undef ZORVO_HALVING_SATURATING_FORMS
// clang-format on

} // namespace generic
