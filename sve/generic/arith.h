// Integer vector arithmetic of the generic tier.
#pragma once

#include <cstdint>

#include "count.h"

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
// clang-format on

} // namespace generic
