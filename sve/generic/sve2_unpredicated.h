// SVE2 unpredicated integer forms of one element width: multiplies and
// their high halves, absolute-difference and doubling accumulates, the
// interleaving exclusive ors, the bit permutes, rax1, and the saturating
// extracts to half width.
#pragma once

#include <cstdint>

#include "widen_narrow.h"

namespace generic {

inline wide high_half_product(wide a, wide b, unsigned width) { return (a * b) >> width; }

// mul, smulh, umulh: the low or high half of the exact product.
template <typename T, bool High>
void multiply_half(VecV* out, const VecV* a, const VecV* b, CpuContext* ctx) {
  VecV r;
  const unsigned n = element_count(ctx, esize_of<T>);
  for (unsigned i = 0; i < n; ++i) {
    const wide p = widen<T>(raw<T>(*a, i)) * widen<T>(raw<T>(*b, i));
    set_raw<T>(r, i, bits(High ? p >> esize_of<T> : p));
  }
  *out = r;
}

// pmul: carry-less product of bytes, its low byte.
inline void polynomial_multiply(VecV* out, const VecV* a, const VecV* b, CpuContext* ctx) {
  VecV r;
  const unsigned n = element_count(ctx, 8);
  for (unsigned i = 0; i < n; ++i) {
    unsigned p = 0;
    for (unsigned k = 0; k < 8; ++k)
      if (raw<uint8_t>(*b, i) >> k & 1) p ^= unsigned(raw<uint8_t>(*a, i)) << k;
    set_raw<uint8_t>(r, i, p);
  }
  *out = r;
}

// saba, uaba: c + |a - b|.
template <typename T>
void absolute_difference_accumulate(VecV* out, const VecV* a, const VecV* b, const VecV* c,
                                    CpuContext* ctx) {
  VecV r;
  const unsigned n = element_count(ctx, esize_of<T>);
  for (unsigned i = 0; i < n; ++i)
    set_raw<T>(r, i,
               raw<T>(*c, i) + bits(AbsInt(widen<T>(raw<T>(*a, i)) - widen<T>(raw<T>(*b, i)))));
  *out = r;
}

// sqrdmlah, sqrdmlsh: (c << w) +/- 2ab, rounded, its high half saturated.
// Everything halved, so 64-bit elements stay inside 128 bits.
template <typename T, bool Subtract>
void rounding_doubling_multiply_accumulate(VecV* out, const VecV* a, const VecV* b, const VecV* c,
                                           CpuContext* ctx) {
  VecV r;
  const unsigned n = element_count(ctx, esize_of<T>), w = esize_of<T>;
  for (unsigned i = 0; i < n; ++i) {
    const wide product = widen<T>(raw<T>(*a, i)) * widen<T>(raw<T>(*b, i));
    const wide acc = widen<T>(raw<T>(*c, i)) * (wide(1) << (w - 1));
    const wide sum = (Subtract ? acc - product : acc + product) + (wide(1) << (w - 2));
    set_raw<T>(r, i, SatQ(sum >> (w - 1), w, false).value);
  }
  *out = r;
}

// eorbt: even elements a[2i] ^ b[2i+1]; eortb: odd elements a[2i+1] ^ b[2i].
// The other elements keep c.
template <typename T, unsigned Odd>
void interleaved_exclusive_or(VecV* out, const VecV* a, const VecV* b, const VecV* c,
                              CpuContext* ctx) {
  VecV r = *c;
  const unsigned n = element_count(ctx, esize_of<T>);
  for (unsigned i = Odd; i < n; i += 2) set_raw<T>(r, i, raw<T>(*a, i) ^ raw<T>(*b, i ^ 1));
  *out = r;
}

// bext: the bits of a under b's ones, packed low; bdep: a's low bits spread
// to b's ones; bgrp: bext, then the bits under b's zeros above them.
inline uint64_t bit_extract(uint64_t a, uint64_t mask, unsigned width) {
  uint64_t r = 0;
  unsigned at = 0;
  for (unsigned k = 0; k < width; ++k)
    if (mask >> k & 1) r |= (a >> k & 1) << at++;
  return r;
}
inline uint64_t bit_deposit(uint64_t a, uint64_t mask, unsigned width) {
  uint64_t r = 0;
  unsigned from = 0;
  for (unsigned k = 0; k < width; ++k)
    if (mask >> k & 1) r |= (a >> from++ & 1) << k;
  return r;
}
inline uint64_t bit_group(uint64_t a, uint64_t mask, unsigned width) {
  const unsigned ones_count = static_cast<unsigned>(__builtin_popcountll(mask & ones(width)));
  const uint64_t high = bit_extract(a, ~mask, width);
  return bit_extract(a, mask, width) | (ones_count == 64 ? 0 : high << ones_count);
}
template <typename T, uint64_t (*Op)(uint64_t, uint64_t, unsigned)>
void bit_permute(VecV* out, const VecV* a, const VecV* b, CpuContext* ctx) {
  VecV r;
  const unsigned n = element_count(ctx, esize_of<T>);
  for (unsigned i = 0; i < n; ++i) set_raw<T>(r, i, Op(raw<T>(*a, i), raw<T>(*b, i), esize_of<T>));
  *out = r;
}

// rax1: a ^ (b rotated left by one).
inline void rotate_exclusive_or(VecV* out, const VecV* a, const VecV* b, CpuContext* ctx) {
  VecV r;
  const unsigned n = element_count(ctx, 64);
  for (unsigned i = 0; i < n; ++i) {
    const uint64_t x = element<uint64_t>(*b, i);
    set_element<uint64_t>(r, i, element<uint64_t>(*a, i) ^ (x << 1 | x >> 63));
  }
  *out = r;
}

// sqxtnb, uqxtnb, sqxtunb (bottom: tops cleared) and their top forms
// (bottoms kept from d): each element of a saturated to half its width, a
// signed or unsigned value to a signed or unsigned result.
template <typename T, bool UnsignedResult, unsigned Top>
void saturating_extract(VecV* out, const VecV* a, const VecV* d, CpuContext* ctx) {
  using H = half_of<T>;
  VecV r = *d;
  const unsigned n = element_count(ctx, esize_of<T>);
  for (unsigned i = 0; i < n; ++i) {
    set_raw<H>(r, 2 * i + Top, SatQ(widen<T>(raw<T>(*a, i)), esize_of<H>, UnsignedResult).value);
    if (!Top) set_raw<H>(r, 2 * i + 1, 0);
  }
  *out = r;
}
template <typename T, bool UnsignedResult>
void saturating_extract_bottom(VecV* out, const VecV* a, CpuContext* ctx) {
  saturating_extract<T, UnsignedResult, 0>(out, a, a, ctx);
}

// clang-format off
#define ZORVO_UNPREDICATED_FORMS(K, S, U)                                                   \
  constexpr auto VecU##K##MulVV = &multiply_half<U, false>;                                 \
  constexpr auto VecS##K##MulHVV = &multiply_half<S, true>;                                 \
  constexpr auto VecU##K##MulHVV = &multiply_half<U, true>;                                 \
  constexpr auto VecS##K##AbaVVV = &absolute_difference_accumulate<S>;                      \
  constexpr auto VecU##K##AbaVVV = &absolute_difference_accumulate<U>;                      \
  constexpr auto VecS##K##QRDMlaHVVV = &rounding_doubling_multiply_accumulate<S, false>;    \
  constexpr auto VecS##K##QRDMlsHVVV = &rounding_doubling_multiply_accumulate<S, true>;     \
  constexpr auto VecU##K##EorBTVVV = &interleaved_exclusive_or<U, 0>;                       \
  constexpr auto VecU##K##EorTBVVV = &interleaved_exclusive_or<U, 1>;                       \
  constexpr auto VecU##K##BExtVV = &bit_permute<U, bit_extract>;                            \
  constexpr auto VecU##K##BDepVV = &bit_permute<U, bit_deposit>;                            \
  constexpr auto VecU##K##BGrpVV = &bit_permute<U, bit_group>;
ZORVO_UNPREDICATED_FORMS(8, int8_t, uint8_t)
ZORVO_UNPREDICATED_FORMS(16, int16_t, uint16_t)
ZORVO_UNPREDICATED_FORMS(32, int32_t, uint32_t)
ZORVO_UNPREDICATED_FORMS(64, int64_t, uint64_t)
#undef ZORVO_UNPREDICATED_FORMS

#define ZORVO_EXTRACT_FORMS(K, S, U)                                                        \
  constexpr auto VecS##K##QXtnBV = &saturating_extract_bottom<S, false>;                    \
  constexpr auto VecU##K##QXtnBV = &saturating_extract_bottom<U, true>;                     \
  constexpr auto VecS##K##QXtunBV = &saturating_extract_bottom<S, true>;                    \
  constexpr auto VecS##K##QXtnTVV = &saturating_extract<S, false, 1>;                       \
  constexpr auto VecU##K##QXtnTVV = &saturating_extract<U, true, 1>;                        \
  constexpr auto VecS##K##QXtunTVV = &saturating_extract<S, true, 1>;
ZORVO_EXTRACT_FORMS(16, int16_t, uint16_t)
ZORVO_EXTRACT_FORMS(32, int32_t, uint32_t)
ZORVO_EXTRACT_FORMS(64, int64_t, uint64_t)
#undef ZORVO_EXTRACT_FORMS
// clang-format on

constexpr auto VecU8PMulVV = &polynomial_multiply;
constexpr auto VecU64Rax1VV = &rotate_exclusive_or;

} // namespace generic
