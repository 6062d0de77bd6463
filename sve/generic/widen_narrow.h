// The integer forms that take their operands from the even ("bottom") or odd
// ("top") elements of half the width and give a result of the full width,
// and the high-half narrowing forms that go the other way.
#pragma once

#include <cstdint>
#include <type_traits>

#include "elementwise.h"

namespace generic {

template <typename T>
using half_of = std::conditional_t<
    sizeof(T) == 2, std::conditional_t<std::is_signed_v<T>, int8_t, uint8_t>,
    std::conditional_t<sizeof(T) == 4, std::conditional_t<std::is_signed_v<T>, int16_t, uint16_t>,
                       std::conditional_t<std::is_signed_v<T>, int32_t, uint32_t>>>;

using WideOp = wide (*)(wide a, wide b);
inline wide wide_add(wide a, wide b) { return a + b; }
inline wide wide_sub(wide a, wide b) { return a - b; }
inline wide wide_abd(wide a, wide b) { return AbsInt(a - b); }
inline wide wide_mul(wide a, wide b) { return a * b; }

// Element i of the half-width view, from its bottom (0) or top (1) of pair i.
template <typename T> wide half_at(const VecV& v, unsigned i, unsigned top) {
  return widen<half_of<T>>(raw<half_of<T>>(v, 2 * i + top));
}

// saddlb, uabdlt, smullb, saddlbt...: Op on halves of a and b.
template <typename T, WideOp Op, unsigned TopA, unsigned TopB>
void long_op(VecV* out, const VecV* a, const VecV* b, CpuContext* ctx) {
  VecV r;
  const unsigned n = element_count(ctx, esize_of<T>);
  for (unsigned i = 0; i < n; ++i)
    set_raw<T>(r, i, bits(Op(half_at<T>(*a, i, TopA), half_at<T>(*b, i, TopB))));
  *out = r;
}

// sabalb, smlalb, smlslt...: the accumulator c plus (or minus) Op on halves.
template <typename T, WideOp Op, unsigned Top, bool Subtract>
void long_accumulate(VecV* out, const VecV* a, const VecV* b, const VecV* c, CpuContext* ctx) {
  VecV r;
  const unsigned n = element_count(ctx, esize_of<T>);
  for (unsigned i = 0; i < n; ++i) {
    const wide x = Op(half_at<T>(*a, i, Top), half_at<T>(*b, i, Top));
    const uint64_t acc = raw<T>(*c, i);
    set_raw<T>(r, i, Subtract ? acc - bits(x) : acc + bits(x));
  }
  *out = r;
}

// saddwb, usubwt...: full-width a with a half of b.
template <typename T, WideOp Op, unsigned Top>
void wide_op(VecV* out, const VecV* a, const VecV* b, CpuContext* ctx) {
  VecV r;
  const unsigned n = element_count(ctx, esize_of<T>);
  for (unsigned i = 0; i < n; ++i)
    set_raw<T>(r, i, bits(Op(widen<T>(raw<T>(*a, i)), half_at<T>(*b, i, Top))));
  *out = r;
}

// addhnb, rsubhnt...: the high half of a +/- b, rounded or not, into the
// bottom halves (tops zero) or the top halves (bottoms kept from d).
template <typename T, bool Subtract, bool Round, unsigned Top>
void high_narrow(VecV* out, const VecV* d, const VecV* a, const VecV* b, CpuContext* ctx) {
  using H = half_of<T>;
  VecV r = *d;
  const unsigned n = element_count(ctx, esize_of<T>), half_bits = esize_of<H>;
  for (unsigned i = 0; i < n; ++i) {
    uint64_t x = Subtract ? raw<T>(*a, i) - raw<T>(*b, i) : raw<T>(*a, i) + raw<T>(*b, i);
    if (Round) x += uint64_t{1} << (half_bits - 1);
    set_raw<H>(r, 2 * i + Top, (x & ones(esize_of<T>)) >> half_bits);
    if (!Top) set_raw<H>(r, 2 * i + 1, 0);
  }
  *out = r;
}

template <typename T, bool Subtract, bool Round>
void high_narrow_bottom(VecV* out, const VecV* a, const VecV* b, CpuContext* ctx) {
  high_narrow<T, Subtract, Round, 0>(out, a, a, b, ctx);
}
template <typename T, bool Subtract, bool Round>
void high_narrow_top(VecV* out, const VecV* a, const VecV* b, const VecV* d, CpuContext* ctx) {
  high_narrow<T, Subtract, Round, 1>(out, d, a, b, ctx);
}

// pmullb, pmullt: the carry-less product of two halves.
inline wide carryless_mul(wide a, wide b) {
  uint64_t r = 0;
  for (unsigned k = 0; k < 32; ++k)
    if (uint64_t(b) >> k & 1) r ^= uint64_t(a) << k;
  return wide(r);
}

// sqdmullb, sqdmlalbt...: 2ab saturated, then for the accumulating forms
// the accumulator c plus or minus it, saturated again.
template <typename T, unsigned TopA, unsigned TopB>
uint64_t saturated_doubled_product(const VecV& a, const VecV& b, unsigned i) {
  return SatQ(2 * half_at<T>(a, i, TopA) * half_at<T>(b, i, TopB), esize_of<T>, false).value;
}
template <typename T, unsigned TopA, unsigned TopB>
void saturating_doubling_long(VecV* out, const VecV* a, const VecV* b, CpuContext* ctx) {
  VecV r;
  const unsigned n = element_count(ctx, esize_of<T>);
  for (unsigned i = 0; i < n; ++i)
    set_raw<T>(r, i, saturated_doubled_product<T, TopA, TopB>(*a, *b, i));
  *out = r;
}
template <typename T, unsigned TopA, unsigned TopB, bool Subtract>
void saturating_doubling_long_accumulate(VecV* out, const VecV* a, const VecV* b, const VecV* c,
                                         CpuContext* ctx) {
  VecV r;
  const unsigned n = element_count(ctx, esize_of<T>);
  for (unsigned i = 0; i < n; ++i) {
    const wide p = widen<T>(saturated_doubled_product<T, TopA, TopB>(*a, *b, i));
    const wide acc = widen<T>(raw<T>(*c, i));
    set_raw<T>(r, i, SatQ(Subtract ? acc - p : acc + p, esize_of<T>, false).value);
  }
  *out = r;
}

// clang-format off
#define ZORVO_DOUBLING_FORMS(K, T)                                                            \
  constexpr auto VecS##K##QDMulLBVV = &saturating_doubling_long<T, 0, 0>;                     \
  constexpr auto VecS##K##QDMulLTVV = &saturating_doubling_long<T, 1, 1>;                     \
  constexpr auto VecS##K##QDMlaLBVVV = &saturating_doubling_long_accumulate<T, 0, 0, false>;  \
  constexpr auto VecS##K##QDMlaLTVVV = &saturating_doubling_long_accumulate<T, 1, 1, false>;  \
  constexpr auto VecS##K##QDMlaLBTVVV = &saturating_doubling_long_accumulate<T, 0, 1, false>; \
  constexpr auto VecS##K##QDMlsLBVVV = &saturating_doubling_long_accumulate<T, 0, 0, true>;   \
  constexpr auto VecS##K##QDMlsLTVVV = &saturating_doubling_long_accumulate<T, 1, 1, true>;   \
  constexpr auto VecS##K##QDMlsLBTVVV = &saturating_doubling_long_accumulate<T, 0, 1, true>;
ZORVO_DOUBLING_FORMS(16, int16_t)
ZORVO_DOUBLING_FORMS(32, int32_t)
ZORVO_DOUBLING_FORMS(64, int64_t)
#undef ZORVO_DOUBLING_FORMS
constexpr auto VecU16PMulLBVV = &long_op<uint16_t, carryless_mul, 0, 0>;
constexpr auto VecU16PMulLTVV = &long_op<uint16_t, carryless_mul, 1, 1>;
constexpr auto VecU64PMulLBVV = &long_op<uint64_t, carryless_mul, 0, 0>;
constexpr auto VecU64PMulLTVV = &long_op<uint64_t, carryless_mul, 1, 1>;

#define ZORVO_LONG_FORMS(K, T)                                                        \
  constexpr auto Vec##K##AddLBVV = &long_op<T, wide_add, 0, 0>;                       \
  constexpr auto Vec##K##AddLTVV = &long_op<T, wide_add, 1, 1>;                       \
  constexpr auto Vec##K##SubLBVV = &long_op<T, wide_sub, 0, 0>;                       \
  constexpr auto Vec##K##SubLTVV = &long_op<T, wide_sub, 1, 1>;                       \
  constexpr auto Vec##K##AbdLBVV = &long_op<T, wide_abd, 0, 0>;                       \
  constexpr auto Vec##K##AbdLTVV = &long_op<T, wide_abd, 1, 1>;                       \
  constexpr auto Vec##K##MulLBVV = &long_op<T, wide_mul, 0, 0>;                       \
  constexpr auto Vec##K##MulLTVV = &long_op<T, wide_mul, 1, 1>;                       \
  constexpr auto Vec##K##AbaLBVVV = &long_accumulate<T, wide_abd, 0, false>;          \
  constexpr auto Vec##K##AbaLTVVV = &long_accumulate<T, wide_abd, 1, false>;          \
  constexpr auto Vec##K##MlaLBVVV = &long_accumulate<T, wide_mul, 0, false>;          \
  constexpr auto Vec##K##MlaLTVVV = &long_accumulate<T, wide_mul, 1, false>;          \
  constexpr auto Vec##K##MlsLBVVV = &long_accumulate<T, wide_mul, 0, true>;           \
  constexpr auto Vec##K##MlsLTVVV = &long_accumulate<T, wide_mul, 1, true>;           \
  constexpr auto Vec##K##AddWBVV = &wide_op<T, wide_add, 0>;                          \
  constexpr auto Vec##K##AddWTVV = &wide_op<T, wide_add, 1>;                          \
  constexpr auto Vec##K##SubWBVV = &wide_op<T, wide_sub, 0>;                          \
  constexpr auto Vec##K##SubWTVV = &wide_op<T, wide_sub, 1>;
ZORVO_LONG_FORMS(S16, int16_t)
ZORVO_LONG_FORMS(S32, int32_t)
ZORVO_LONG_FORMS(S64, int64_t)
ZORVO_LONG_FORMS(U16, uint16_t)
ZORVO_LONG_FORMS(U32, uint32_t)
ZORVO_LONG_FORMS(U64, uint64_t)
#undef ZORVO_LONG_FORMS

// saddlbt, ssublbt, ssubltb: bottom of a with top of b, and the reverse.
constexpr auto VecS16AddLBTVV = &long_op<int16_t, wide_add, 0, 1>;
constexpr auto VecS32AddLBTVV = &long_op<int32_t, wide_add, 0, 1>;
constexpr auto VecS64AddLBTVV = &long_op<int64_t, wide_add, 0, 1>;
constexpr auto VecS16SubLBTVV = &long_op<int16_t, wide_sub, 0, 1>;
constexpr auto VecS32SubLBTVV = &long_op<int32_t, wide_sub, 0, 1>;
constexpr auto VecS64SubLBTVV = &long_op<int64_t, wide_sub, 0, 1>;
constexpr auto VecS16SubLTBVV = &long_op<int16_t, wide_sub, 1, 0>;
constexpr auto VecS32SubLTBVV = &long_op<int32_t, wide_sub, 1, 0>;
constexpr auto VecS64SubLTBVV = &long_op<int64_t, wide_sub, 1, 0>;

#define ZORVO_NARROW_FORMS(K, T)                                                      \
  constexpr auto Vec##K##AddHNBVV = &high_narrow_bottom<T, false, false>;             \
  constexpr auto Vec##K##RAddHNBVV = &high_narrow_bottom<T, false, true>;             \
  constexpr auto Vec##K##SubHNBVV = &high_narrow_bottom<T, true, false>;              \
  constexpr auto Vec##K##RSubHNBVV = &high_narrow_bottom<T, true, true>;              \
  constexpr auto Vec##K##AddHNTVVV = &high_narrow_top<T, false, false>;               \
  constexpr auto Vec##K##RAddHNTVVV = &high_narrow_top<T, false, true>;               \
  constexpr auto Vec##K##SubHNTVVV = &high_narrow_top<T, true, false>;                \
  constexpr auto Vec##K##RSubHNTVVV = &high_narrow_top<T, true, true>;
ZORVO_NARROW_FORMS(U16, uint16_t)
ZORVO_NARROW_FORMS(U32, uint32_t)
ZORVO_NARROW_FORMS(U64, uint64_t)
#undef ZORVO_NARROW_FORMS
// clang-format on

} // namespace generic
