// Integer vector arithmetic of the generic tier.
#pragma once

#include <cstdint>

#include <type_traits>

#include "elementwise.h"

namespace generic {

// adr: a + b * Scale, with b as an element or as its low 32 bits extended.
enum class Offset { whole, signed32, unsigned32 };
template <typename T, Offset Kind, unsigned Scale>
void address_vector(VecV* out, const VecV* a, const VecV* b, CpuContext* ctx) {
  VecV r;
  const unsigned n = element_count(ctx, esize_of<T>);
  for (unsigned i = 0; i < n; ++i) {
    T offset = element<T>(*b, i);
    if (Kind == Offset::signed32) offset = T(int64_t(int32_t(offset)));
    if (Kind == Offset::unsigned32) offset = T(uint32_t(offset));
    set_element<T>(r, i, T(element<T>(*a, i) + offset * Scale));
  }
  *out = r;
}

// Dot products of four elements of a quarter of the width, plus the
// accumulator c.
template <typename T>
using quarter_of =
    std::conditional_t<sizeof(T) == 4, std::conditional_t<std::is_signed_v<T>, int8_t, uint8_t>,
                       std::conditional_t<std::is_signed_v<T>, int16_t, uint16_t>>;

template <typename T>
uint64_t dot_group(const VecV& a, unsigned a_first, const VecV& b, unsigned b_first, uint64_t c) {
  using Q = quarter_of<T>;
  wide sum = widen<T>(c);
  for (unsigned k = 0; k < 4; ++k)
    sum += widen<Q>(raw<Q>(a, a_first + k)) * widen<Q>(raw<Q>(b, b_first + k));
  return bits(sum);
}

template <typename T>
void dot(VecV* out, const VecV* a, const VecV* b, const VecV* c, CpuContext* ctx) {
  VecV r;
  const unsigned n = element_count(ctx, esize_of<T>);
  for (unsigned i = 0; i < n; ++i)
    set_raw<T>(r, i, dot_group<T>(*a, 4 * i, *b, 4 * i, raw<T>(*c, i)));
  *out = r;
}

// All results of a 128-bit segment use the group `index` of b's segment.
template <typename T>
void dot_indexed(VecV* out, const VecV* a, const VecV* b, const VecV* c, uint32_t index,
                 CpuContext* ctx) {
  VecV r;
  const unsigned n = element_count(ctx, esize_of<T>), per_segment = 16 / sizeof(T);
  for (unsigned i = 0; i < n; ++i) {
    const unsigned segment_first = i & ~(per_segment - 1);
    set_raw<T>(r, i, dot_group<T>(*a, 4 * i, *b, 4 * (segment_first + index), raw<T>(*c, i)));
  }
  *out = r;
}

// clang-format off
constexpr auto VecU32LEA1VV = &address_vector<uint32_t, Offset::whole, 1>;
constexpr auto VecU32LEA2VV = &address_vector<uint32_t, Offset::whole, 2>;
constexpr auto VecU32LEA4VV = &address_vector<uint32_t, Offset::whole, 4>;
constexpr auto VecU32LEA8VV = &address_vector<uint32_t, Offset::whole, 8>;
constexpr auto VecU64LEA1XVV = &address_vector<uint64_t, Offset::signed32, 1>;
constexpr auto VecU64LEA2XVV = &address_vector<uint64_t, Offset::signed32, 2>;
constexpr auto VecU64LEA4XVV = &address_vector<uint64_t, Offset::signed32, 4>;
constexpr auto VecU64LEA8XVV = &address_vector<uint64_t, Offset::signed32, 8>;
constexpr auto VecU64LEA1YVV = &address_vector<uint64_t, Offset::unsigned32, 1>;
constexpr auto VecU64LEA2YVV = &address_vector<uint64_t, Offset::unsigned32, 2>;
constexpr auto VecU64LEA4YVV = &address_vector<uint64_t, Offset::unsigned32, 4>;
constexpr auto VecU64LEA8YVV = &address_vector<uint64_t, Offset::unsigned32, 8>;
constexpr auto VecS32DotVVVX = &dot<int32_t>;
constexpr auto VecU32DotVVVX = &dot<uint32_t>;
constexpr auto VecS32DotVVVIX = &dot_indexed<int32_t>;
constexpr auto VecU32DotVVVIX = &dot_indexed<uint32_t>;
constexpr auto VecS64DotVVVX = &dot<int64_t>;
constexpr auto VecU64DotVVVX = &dot<uint64_t>;
constexpr auto VecS64DotVVVIX = &dot_indexed<int64_t>;
constexpr auto VecU64DotVVVIX = &dot_indexed<uint64_t>;
// clang-format on

} // namespace generic
