// The SVE2 shifts by an immediate: rounding right shifts, shift-and-accumulate,
// shift-and-insert, saturating left shifts, and the long and narrowing
// shifts between the two halves of a wider element.
#pragma once

#include <cstdint>

#include "widen_narrow.h"

namespace generic {

// a >> sh in T's kind, rounded to nearest (ties up) when Round; sh is at
// least 1 and at most the element's width.
template <typename T, bool Round> wide shift_right_value(uint64_t a, uint64_t sh) {
  const wide v = widen<T>(a);
  return (Round ? v + (wide(1) << (sh - 1)) : v) >> sh;
}

template <typename T, bool Round> uint64_t shift_right(uint64_t a, uint64_t sh) {
  return bits(shift_right_value<T, Round>(a, sh));
}

// sqshl, uqshl and sqshlu by an immediate: a read as T, shifted left and
// saturated to the element as signed or, with ToUnsigned, unsigned.
template <typename T, bool ToUnsigned> uint64_t saturating_shift_left(uint64_t a, uint64_t sh) {
  return SatQ(widen<T>(a) * (wide(1) << sh), esize_of<T>, ToUnsigned || unsigned_kind<T>).value;
}

// ssra, ursra...: d plus n shifted right.
template <typename T, bool Round>
void shift_right_accumulate(VecV* out, const VecV* n, unsigned sh, const VecV* d, CpuContext* ctx) {
  VecV r;
  const unsigned count = element_count(ctx, esize_of<T>);
  for (unsigned i = 0; i < count; ++i)
    set_raw<T>(r, i, raw<T>(*d, i) + shift_right<T, Round>(raw<T>(*n, i), sh));
  *out = r;
}

// sri, sli: n shifted into d, keeping the bits of d that the shift vacates.
template <typename T, bool Left>
void shift_insert(VecV* out, const VecV* n, unsigned sh, const VecV* d, CpuContext* ctx) {
  VecV r;
  const unsigned count = element_count(ctx, esize_of<T>);
  const uint64_t all = ones(esize_of<T>);
  const uint64_t kept = Left ? ~(all << sh) & all : sh >= 64 ? all : ~(all >> sh) & all;
  for (unsigned i = 0; i < count; ++i) {
    const uint64_t x = raw<T>(*n, i);
    const uint64_t moved = Left ? x << sh : sh >= 64 ? 0 : x >> sh;
    set_raw<T>(r, i, (raw<T>(*d, i) & kept) | (moved & ~kept));
  }
  *out = r;
}

// sshllb, ushllt: the bottom or top half of each element, extended by T's
// kind and shifted left.
template <typename T, unsigned Top>
void shift_left_long(VecV* out, const VecV* n, unsigned sh, CpuContext* ctx) {
  VecV r;
  const unsigned count = element_count(ctx, esize_of<T>);
  for (unsigned i = 0; i < count; ++i) set_raw<T>(r, i, bits(half_at<T>(*n, i, Top) << sh));
  *out = r;
}

// How a narrowing shift fits its result to the half width.
enum class Narrow { truncate, signed_saturate, unsigned_saturate };

// shrnb, sqrshrunt...: each element of n (read as T) shifted right, fitted
// to half the width, into the bottom halves (tops zero) or the top halves
// (bottoms kept from d).
template <typename T, bool Round, Narrow Fit, unsigned Top>
void shift_right_narrow(VecV* out, const VecV* n, unsigned sh, const VecV* d, CpuContext* ctx) {
  using H = half_of<T>;
  VecV r = *d;
  const unsigned count = element_count(ctx, esize_of<T>);
  for (unsigned i = 0; i < count; ++i) {
    const wide v = shift_right_value<T, Round>(raw<T>(*n, i), sh);
    const uint64_t x = Fit == Narrow::truncate
                           ? bits(v)
                           : SatQ(v, esize_of<H>, Fit == Narrow::unsigned_saturate).value;
    set_raw<H>(r, 2 * i + Top, x);
    if (!Top) set_raw<H>(r, 2 * i + 1, 0);
  }
  *out = r;
}

template <typename T, bool Round, Narrow Fit>
void shift_right_narrow_bottom(VecV* out, const VecV* n, unsigned sh, CpuContext* ctx) {
  shift_right_narrow<T, Round, Fit, 0>(out, n, sh, n, ctx);
}

// sadalp, uadalp: each active element of d plus the sum of the pair of
// half-width elements of n it covers.
template <typename T>
void pairwise_add_accumulate_long(VecV* out, const PredV* g, const VecV* d, const VecV* n,
                                  CpuContext* ctx) {
  VecV r;
  const unsigned count = element_count(ctx, esize_of<T>);
  for (unsigned i = 0; i < count; ++i) {
    const uint64_t acc = raw<T>(*d, i);
    const wide pair = half_at<T>(*n, i, 0) + half_at<T>(*n, i, 1);
    set_raw<T>(r, i, active(*g, i, sizeof(T)) ? acc + bits(pair) : acc);
  }
  *out = r;
}

// clang-format off
#define ZORVO_SHIFT_IMM_FORMS(K, S, U)                                                          \
  constexpr auto VecS##K##RShrVIM = &merging_immediate<S, shift_right<S, true>, unsigned>;     \
  constexpr auto VecU##K##RShrVIM = &merging_immediate<U, shift_right<U, true>, unsigned>;     \
  constexpr auto VecS##K##QShlVIM = &merging_immediate<S, saturating_shift_left<S, false>, unsigned>; \
  constexpr auto VecU##K##QShlVIM = &merging_immediate<U, saturating_shift_left<U, false>, unsigned>; \
  constexpr auto VecS##K##QShlUVIM = &merging_immediate<S, saturating_shift_left<S, true>, unsigned>; \
  constexpr auto VecS##K##SraVVI = &shift_right_accumulate<S, false>;                          \
  constexpr auto VecU##K##SraVVI = &shift_right_accumulate<U, false>;                          \
  constexpr auto VecS##K##RSraVVI = &shift_right_accumulate<S, true>;                          \
  constexpr auto VecU##K##RSraVVI = &shift_right_accumulate<U, true>;                          \
  constexpr auto VecU##K##SriVVI = &shift_insert<U, false>;                                    \
  constexpr auto VecU##K##SliVVI = &shift_insert<U, true>;
ZORVO_SHIFT_IMM_FORMS(8, int8_t, uint8_t)
ZORVO_SHIFT_IMM_FORMS(16, int16_t, uint16_t)
ZORVO_SHIFT_IMM_FORMS(32, int32_t, uint32_t)
ZORVO_SHIFT_IMM_FORMS(64, int64_t, uint64_t)
#undef ZORVO_SHIFT_IMM_FORMS

// The long and narrowing forms are named by their wide element.
#define ZORVO_WIDE_SHIFT_FORMS(K, S, U)                                                         \
  constexpr auto VecS##K##ShllBVI = &shift_left_long<S, 0>;                                     \
  constexpr auto VecS##K##ShllTVI = &shift_left_long<S, 1>;                                     \
  constexpr auto VecU##K##ShllBVI = &shift_left_long<U, 0>;                                     \
  constexpr auto VecU##K##ShllTVI = &shift_left_long<U, 1>;                                     \
  constexpr auto VecU##K##ShrNBVI = &shift_right_narrow_bottom<U, false, Narrow::truncate>;     \
  constexpr auto VecU##K##RShrNBVI = &shift_right_narrow_bottom<U, true, Narrow::truncate>;     \
  constexpr auto VecS##K##QShrNBVI = &shift_right_narrow_bottom<S, false, Narrow::signed_saturate>; \
  constexpr auto VecS##K##QRShrNBVI = &shift_right_narrow_bottom<S, true, Narrow::signed_saturate>; \
  constexpr auto VecS##K##QShrUNBVI = &shift_right_narrow_bottom<S, false, Narrow::unsigned_saturate>; \
  constexpr auto VecS##K##QRShrUNBVI = &shift_right_narrow_bottom<S, true, Narrow::unsigned_saturate>; \
  constexpr auto VecU##K##QShrNBVI = &shift_right_narrow_bottom<U, false, Narrow::unsigned_saturate>; \
  constexpr auto VecU##K##QRShrNBVI = &shift_right_narrow_bottom<U, true, Narrow::unsigned_saturate>; \
  constexpr auto VecU##K##ShrNTVVI = &shift_right_narrow<U, false, Narrow::truncate, 1>;        \
  constexpr auto VecU##K##RShrNTVVI = &shift_right_narrow<U, true, Narrow::truncate, 1>;        \
  constexpr auto VecS##K##QShrNTVVI = &shift_right_narrow<S, false, Narrow::signed_saturate, 1>; \
  constexpr auto VecS##K##QRShrNTVVI = &shift_right_narrow<S, true, Narrow::signed_saturate, 1>; \
  constexpr auto VecS##K##QShrUNTVVI = &shift_right_narrow<S, false, Narrow::unsigned_saturate, 1>; \
  constexpr auto VecS##K##QRShrUNTVVI = &shift_right_narrow<S, true, Narrow::unsigned_saturate, 1>; \
  constexpr auto VecU##K##QShrNTVVI = &shift_right_narrow<U, false, Narrow::unsigned_saturate, 1>; \
  constexpr auto VecU##K##QRShrNTVVI = &shift_right_narrow<U, true, Narrow::unsigned_saturate, 1>; \
  constexpr auto VecS##K##AdaLPVM = &pairwise_add_accumulate_long<S>;                          \
  constexpr auto VecU##K##AdaLPVM = &pairwise_add_accumulate_long<U>;
ZORVO_WIDE_SHIFT_FORMS(16, int16_t, uint16_t)
ZORVO_WIDE_SHIFT_FORMS(32, int32_t, uint32_t)
ZORVO_WIDE_SHIFT_FORMS(64, int64_t, uint64_t)
#undef ZORVO_WIDE_SHIFT_FORMS
// clang-format on

} // namespace generic
