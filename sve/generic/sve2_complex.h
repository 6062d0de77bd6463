// The SVE2 complex integer forms, on pairs of elements (real even, imaginary
// odd): cadd and sqcadd, cmla and sqrdcmlah with their indexed forms, the
// complex dot products, and the long add and subtract with carry.
#pragma once

#include <cstdint>

#include "sve2_indexed.h"
#include "widen_narrow.h"

namespace generic {

// cadd, sqcadd: b rotated by 90 (rot 0) or 270 (rot 1) degrees, added to a.
template <typename T, bool Saturate>
void complex_add(VecV* out, const VecV* a, const VecV* b, uint32_t rot, CpuContext* ctx) {
  VecV r;
  const unsigned n = element_count(ctx, esize_of<T>);
  for (unsigned i = 0; i < n; i += 2) {
    const wide br = widen<T>(raw<T>(*b, i)), bi = widen<T>(raw<T>(*b, i + 1));
    const wide re = widen<T>(raw<T>(*a, i)) + (rot ? bi : -bi);
    const wide im = widen<T>(raw<T>(*a, i + 1)) + (rot ? -br : br);
    set_raw<T>(r, i, Saturate ? SatQ(re, esize_of<T>, false).value : bits(re));
    set_raw<T>(r, i + 1, Saturate ? SatQ(im, esize_of<T>, false).value : bits(im));
  }
  *out = r;
}

// The two products a complex multiply-add by a rotation adds to the real
// and imaginary parts of pair i, each already signed.
template <typename T> struct ComplexTerms { wide real, imaginary; };
template <typename T>
ComplexTerms<T> complex_terms(const VecV& a, const VecV& b, unsigned i, uint32_t rot) {
  const unsigned sel_a = rot & 1, sel_b = sel_a ^ 1;
  const bool neg_imaginary = rot >> 1, neg_real = (rot & 1) != (rot >> 1);
  const wide x = widen<T>(raw<T>(a, i + sel_a));
  const wide real = x * widen<T>(raw<T>(b, i + sel_a));
  const wide imaginary = x * widen<T>(raw<T>(b, i + sel_b));
  return {neg_real ? -real : real, neg_imaginary ? -imaginary : imaginary};
}

// cmla: c plus the terms, in the element's width.
template <typename T>
void complex_multiply_add(VecV* out, const VecV* a, const VecV* b, const VecV* c, uint32_t rot,
                          CpuContext* ctx) {
  VecV r;
  const unsigned n = element_count(ctx, esize_of<T>);
  for (unsigned i = 0; i < n; i += 2) {
    const ComplexTerms<T> t = complex_terms<T>(*a, *b, i, rot);
    set_raw<T>(r, i, raw<T>(*c, i) + bits(t.real));
    set_raw<T>(r, i + 1, raw<T>(*c, i + 1) + bits(t.imaginary));
  }
  *out = r;
}

// sqrdcmlah: (c << w) plus twice the term, rounded, its high half
// saturated; computed halved, as sqrdmlah does, to stay inside 128 bits.
template <typename T> uint64_t rounding_doubling_add(uint64_t c, wide term) {
  constexpr unsigned w = esize_of<T>;
  const wide sum = widen<T>(c) * (wide(1) << (w - 1)) + term + (wide(1) << (w - 2));
  return SatQ(sum >> (w - 1), w, false).value;
}
template <typename T>
void complex_rounding_doubling_multiply_add(VecV* out, const VecV* a, const VecV* b, const VecV* c,
                                            uint32_t rot, CpuContext* ctx) {
  VecV r;
  const unsigned n = element_count(ctx, esize_of<T>);
  for (unsigned i = 0; i < n; i += 2) {
    const ComplexTerms<T> t = complex_terms<T>(*a, *b, i, rot);
    set_raw<T>(r, i, rounding_doubling_add<T>(raw<T>(*c, i), t.real));
    set_raw<T>(r, i + 1, rounding_doubling_add<T>(raw<T>(*c, i + 1), t.imaginary));
  }
  *out = r;
}

// cdot: each element of c plus, over the two complex pairs of quarter width
// it covers, the real (rot 0, 180) or imaginary (90, 270) part of a times b
// rotated; 180 and 270 take b's conjugate.
template <typename T>
void complex_dot(VecV* out, const VecV* a, const VecV* b, const VecV* c, uint32_t rot,
                 CpuContext* ctx) {
  using Q = half_of<half_of<T>>;
  VecV r;
  const unsigned n = element_count(ctx, esize_of<T>);
  const unsigned sel_a = rot & 1, sel_b = sel_a ^ 1;
  const bool subtract = (rot & 1) == (rot >> 1);
  for (unsigned e = 0; e < n; ++e) {
    wide sum = widen<T>(raw<T>(*c, e));
    for (unsigned k = 4 * e; k < 4 * e + 4; k += 2) {
      const wide re = widen<Q>(raw<Q>(*a, k)), im = widen<Q>(raw<Q>(*a, k + 1));
      const wide p = re * widen<Q>(raw<Q>(*b, k + sel_a));
      const wide q = im * widen<Q>(raw<Q>(*b, k + sel_b));
      sum += subtract ? p - q : p + q;
    }
    set_raw<T>(r, e, bits(sum));
  }
  *out = r;
}

// The indexed forms: b replaced by its pair (or, for cdot, its group of
// four quarter-width elements) `index` of each 128-bit segment; the pair
// is one element of twice T's width.
template <typename Unit, auto Fn>
void complex_indexed(VecV* out, const VecV* a, const VecV* b, const VecV* c, uint32_t rot,
                     uint32_t index, CpuContext* ctx) {
  const VecV m = repeat_in_segments<Unit>(*b, index, ctx);
  Fn(out, a, &m, c, rot, ctx);
}

// adclb, sbclt: the even element of c plus a's bottom (or top) element,
// inverted when subtracting, plus the carry in bit 0 of b's odd element;
// the carry out goes to the odd element.
template <typename T, unsigned Top, bool Subtract>
void add_carry_long(VecV* out, const VecV* a, const VecV* b, const VecV* c, CpuContext* ctx) {
  VecV r;
  const unsigned n = element_count(ctx, esize_of<T>);
  for (unsigned i = 0; i < n; i += 2) {
    const uint64_t x = Subtract ? ~raw<T>(*a, i + Top) & ones(esize_of<T>) : raw<T>(*a, i + Top);
    const wide sum =
        UInt(raw<T>(*c, i), esize_of<T>) + UInt(x, esize_of<T>) + (raw<T>(*b, i + 1) & 1);
    set_raw<T>(r, i, bits(sum));
    set_raw<T>(r, i + 1, uint64_t(sum >> esize_of<T>));
  }
  *out = r;
}

// clang-format off
#define ZORVO_COMPLEX_FORMS(K, S)                                                               \
  constexpr auto VecS##K##CAddVVI = &complex_add<S, false>;                                     \
  constexpr auto VecS##K##QCAddVVI = &complex_add<S, true>;                                     \
  constexpr auto VecS##K##CMlaVVVI = &complex_multiply_add<S>;                                  \
  constexpr auto VecS##K##QRDCMlaHVVVI = &complex_rounding_doubling_multiply_add<S>;
ZORVO_COMPLEX_FORMS(8, int8_t)
ZORVO_COMPLEX_FORMS(16, int16_t)
ZORVO_COMPLEX_FORMS(32, int32_t)
ZORVO_COMPLEX_FORMS(64, int64_t)
#undef ZORVO_COMPLEX_FORMS
constexpr auto VecS16CMlaVVVII = &complex_indexed<uint32_t, &complex_multiply_add<int16_t>>;
constexpr auto VecS32CMlaVVVII = &complex_indexed<uint64_t, &complex_multiply_add<int32_t>>;
constexpr auto VecS16QRDCMlaHVVVII =
    &complex_indexed<uint32_t, &complex_rounding_doubling_multiply_add<int16_t>>;
constexpr auto VecS32QRDCMlaHVVVII =
    &complex_indexed<uint64_t, &complex_rounding_doubling_multiply_add<int32_t>>;
constexpr auto VecS32CDotVVVI = &complex_dot<int32_t>;
constexpr auto VecS64CDotVVVI = &complex_dot<int64_t>;
constexpr auto VecS32CDotVVVII = &complex_indexed<uint32_t, &complex_dot<int32_t>>;
constexpr auto VecS64CDotVVVII = &complex_indexed<uint64_t, &complex_dot<int64_t>>;
constexpr auto VecU32AdcLBVVV = &add_carry_long<uint32_t, 0, false>;
constexpr auto VecU32AdcLTVVV = &add_carry_long<uint32_t, 1, false>;
constexpr auto VecU32SbcLBVVV = &add_carry_long<uint32_t, 0, true>;
constexpr auto VecU32SbcLTVVV = &add_carry_long<uint32_t, 1, true>;
constexpr auto VecU64AdcLBVVV = &add_carry_long<uint64_t, 0, false>;
constexpr auto VecU64AdcLTVVV = &add_carry_long<uint64_t, 1, false>;
constexpr auto VecU64SbcLBVVV = &add_carry_long<uint64_t, 0, true>;
constexpr auto VecU64SbcLTVVV = &add_carry_long<uint64_t, 1, true>;
// clang-format on

} // namespace generic
