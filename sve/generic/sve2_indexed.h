// The SVE2 indexed integer multiplies: the vector form with b replaced by
// its element `index` of each 128-bit segment, repeated over the segment.
#pragma once

#include <cstdint>

#include "sve2_integer.h"
#include "sve2_unpredicated.h"

namespace generic {

template <typename T> VecV repeat_in_segments(const VecV& b, uint32_t index, CpuContext* ctx) {
  VecV r;
  const unsigned n = element_count(ctx, esize_of<T>), per_segment = 16 / sizeof(T);
  for (unsigned i = 0; i < n; ++i) set_raw<T>(r, i, raw<T>(b, (i & ~(per_segment - 1)) + index));
  return r;
}

template <typename T, void (*Fn)(VecV*, const VecV*, const VecV*, CpuContext*)>
void indexed(VecV* out, const VecV* a, const VecV* b, uint32_t index, CpuContext* ctx) {
  const VecV m = repeat_in_segments<T>(*b, index, ctx);
  Fn(out, a, &m, ctx);
}

template <typename T, void (*Fn)(VecV*, const VecV*, const VecV*, const VecV*, CpuContext*)>
void indexed_accumulate(VecV* out, const VecV* a, const VecV* b, const VecV* c, uint32_t index,
                        CpuContext* ctx) {
  const VecV m = repeat_in_segments<T>(*b, index, ctx);
  Fn(out, a, &m, c, ctx);
}

// mla, mls: c +/- ab, in the element's width.
template <typename T, bool Subtract>
void multiply_accumulate(VecV* out, const VecV* a, const VecV* b, const VecV* c, CpuContext* ctx) {
  VecV r;
  const unsigned n = element_count(ctx, esize_of<T>);
  for (unsigned i = 0; i < n; ++i) {
    const uint64_t p = raw<T>(*a, i) * raw<T>(*b, i);
    set_raw<T>(r, i, Subtract ? raw<T>(*c, i) - p : raw<T>(*c, i) + p);
  }
  *out = r;
}

// clang-format off
#define ZORVO_INDEXED_FORMS(K, S, U)                                                             \
  constexpr auto VecU##K##MulVVI = &indexed<U, &multiply_half<U, false>>;                        \
  constexpr auto VecS##K##QDMulHVVI = &indexed<S, &doubling_multiply_high<S, false>>;            \
  constexpr auto VecS##K##QRDMulHVVI = &indexed<S, &doubling_multiply_high<S, true>>;            \
  constexpr auto VecU##K##MlaVVVI = &indexed_accumulate<U, &multiply_accumulate<U, false>>;      \
  constexpr auto VecU##K##MlsVVVI = &indexed_accumulate<U, &multiply_accumulate<U, true>>;       \
  constexpr auto VecS##K##QRDMlaHVVVI =                                                          \
      &indexed_accumulate<S, &rounding_doubling_multiply_accumulate<S, false>>;                  \
  constexpr auto VecS##K##QRDMlsHVVVI =                                                          \
      &indexed_accumulate<S, &rounding_doubling_multiply_accumulate<S, true>>;
ZORVO_INDEXED_FORMS(16, int16_t, uint16_t)
ZORVO_INDEXED_FORMS(32, int32_t, uint32_t)
ZORVO_INDEXED_FORMS(64, int64_t, uint64_t)
#undef ZORVO_INDEXED_FORMS
// clang-format on

} // namespace generic

namespace generic {

// The indexed long multiplies: the vector form on b's half-width element
// `index` of each segment.
// clang-format off
#define ZORVO_LONG_INDEXED_FORMS(K, S, U)                                                         \
  constexpr auto VecS##K##MulLBVVI = &indexed<half_of<S>, &long_op<S, wide_mul, 0, 0>>;          \
  constexpr auto VecS##K##MulLTVVI = &indexed<half_of<S>, &long_op<S, wide_mul, 1, 1>>;          \
  constexpr auto VecU##K##MulLBVVI = &indexed<half_of<U>, &long_op<U, wide_mul, 0, 0>>;          \
  constexpr auto VecU##K##MulLTVVI = &indexed<half_of<U>, &long_op<U, wide_mul, 1, 1>>;          \
  constexpr auto VecS##K##MlaLBVVVI = &indexed_accumulate<half_of<S>, &long_accumulate<S, wide_mul, 0, false>>; \
  constexpr auto VecS##K##MlaLTVVVI = &indexed_accumulate<half_of<S>, &long_accumulate<S, wide_mul, 1, false>>; \
  constexpr auto VecS##K##MlsLBVVVI = &indexed_accumulate<half_of<S>, &long_accumulate<S, wide_mul, 0, true>>;  \
  constexpr auto VecS##K##MlsLTVVVI = &indexed_accumulate<half_of<S>, &long_accumulate<S, wide_mul, 1, true>>;  \
  constexpr auto VecU##K##MlaLBVVVI = &indexed_accumulate<half_of<U>, &long_accumulate<U, wide_mul, 0, false>>; \
  constexpr auto VecU##K##MlaLTVVVI = &indexed_accumulate<half_of<U>, &long_accumulate<U, wide_mul, 1, false>>; \
  constexpr auto VecU##K##MlsLBVVVI = &indexed_accumulate<half_of<U>, &long_accumulate<U, wide_mul, 0, true>>;  \
  constexpr auto VecU##K##MlsLTVVVI = &indexed_accumulate<half_of<U>, &long_accumulate<U, wide_mul, 1, true>>;  \
  constexpr auto VecS##K##QDMulLBVVI = &indexed<half_of<S>, &saturating_doubling_long<S, 0, 0>>; \
  constexpr auto VecS##K##QDMulLTVVI = &indexed<half_of<S>, &saturating_doubling_long<S, 1, 1>>; \
  constexpr auto VecS##K##QDMlaLBVVVI = &indexed_accumulate<half_of<S>, &saturating_doubling_long_accumulate<S, 0, 0, false>>; \
  constexpr auto VecS##K##QDMlaLTVVVI = &indexed_accumulate<half_of<S>, &saturating_doubling_long_accumulate<S, 1, 1, false>>; \
  constexpr auto VecS##K##QDMlsLBVVVI = &indexed_accumulate<half_of<S>, &saturating_doubling_long_accumulate<S, 0, 0, true>>;  \
  constexpr auto VecS##K##QDMlsLTVVVI = &indexed_accumulate<half_of<S>, &saturating_doubling_long_accumulate<S, 1, 1, true>>;
ZORVO_LONG_INDEXED_FORMS(32, int32_t, uint32_t)
ZORVO_LONG_INDEXED_FORMS(64, int64_t, uint64_t)
#undef ZORVO_LONG_INDEXED_FORMS
// clang-format on

} // namespace generic
