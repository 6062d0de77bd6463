// Reductions to a scalar, and the picking of the last active lane (lasta,
// clasta, clastb), whose element kinds differ only in the register class.
#pragma once

#include <cstdint>

#include "count.h"

namespace generic {

template <typename T> uint64_t add_reduce(const PredV* g, const VecV* a, CpuContext* ctx) {
  const unsigned n = element_count(ctx, esize_of<T>);
  wide sum = 0;
  for (unsigned i = 0; i < n; ++i)
    if (active(*g, i, sizeof(T)))
      sum += Int(uint64_t(element<T>(*a, i)), esize_of<T>, unsigned_kind<T>);
  return bits(sum);
}

// lasta picks the element after the last active one, wrapping to 0;
// lastb the last active one, or the top element when none is active.
constexpr bool kAfterLast = true;
constexpr bool kLast = false;
template <typename T, bool AfterLast> unsigned last_lane(const PredV& g, const CpuContext* ctx) {
  const unsigned n = element_count(ctx, esize_of<T>);
  const int32_t last = FindLastActive(g, esize_of<T>, ctx);
  if (AfterLast) return last < 0 || unsigned(last) + 1 >= n ? 0 : unsigned(last) + 1;
  return last < 0 ? n - 1 : unsigned(last);
}

template <typename T> uint64_t last_after(const PredV* g, const VecV* a, CpuContext* ctx) {
  return element<T>(*a, last_lane<T, kAfterLast>(*g, ctx));
}

// The picked element, or the scalar when no element is active.
template <typename T, bool AfterLast>
uint64_t conditional_extract(const PredV* g, uint64_t scalar, const VecV* a, CpuContext* ctx) {
  if (FindLastActive(*g, esize_of<T>, ctx) < 0) return T(scalar);
  return element<T>(*a, last_lane<T, AfterLast>(*g, ctx));
}

// The picked element of b in every element, or a when no element is active.
template <typename T, bool AfterLast>
void conditional_broadcast(VecV* out, const PredV* g, const VecV* a, const VecV* b,
                           CpuContext* ctx) {
  if (FindLastActive(*g, esize_of<T>, ctx) < 0) {
    *out = *a;
    return;
  }
  const T picked = element<T>(*b, last_lane<T, AfterLast>(*g, ctx));
  VecV r;
  const unsigned n = element_count(ctx, esize_of<T>);
  for (unsigned i = 0; i < n; ++i) set_element<T>(r, i, picked);
  *out = r;
}

// clang-format off
constexpr auto VecS8AddReduceV = &add_reduce<int8_t>;
constexpr auto VecS16AddReduceV = &add_reduce<int16_t>;
constexpr auto VecS32AddReduceV = &add_reduce<int32_t>;

constexpr auto VecU8LastAV = &last_after<uint8_t>;
constexpr auto VecB8LastAV = &last_after<uint8_t>;
constexpr auto VecU16LastAV = &last_after<uint16_t>;
constexpr auto VecH16LastAV = &last_after<uint16_t>;
constexpr auto VecU32LastAV = &last_after<uint32_t>;
constexpr auto VecF32LastAV = &last_after<uint32_t>;
constexpr auto VecU64LastAV = &last_after<uint64_t>;
constexpr auto VecD64LastAV = &last_after<uint64_t>;

constexpr auto VecU8CondXASV = &conditional_extract<uint8_t, kAfterLast>;
constexpr auto VecB8CondXASV = &conditional_extract<uint8_t, kAfterLast>;
constexpr auto VecB8CondXBSV = &conditional_extract<uint8_t, kLast>;
constexpr auto VecU16CondXASV = &conditional_extract<uint16_t, kAfterLast>;
constexpr auto VecH16CondXASV = &conditional_extract<uint16_t, kAfterLast>;
constexpr auto VecH16CondXBSV = &conditional_extract<uint16_t, kLast>;
constexpr auto VecU32CondXASV = &conditional_extract<uint32_t, kAfterLast>;
constexpr auto VecF32CondXASV = &conditional_extract<uint32_t, kAfterLast>;
constexpr auto VecF32CondXBSV = &conditional_extract<uint32_t, kLast>;
constexpr auto VecU64CondXASV = &conditional_extract<uint64_t, kAfterLast>;
constexpr auto VecD64CondXASV = &conditional_extract<uint64_t, kAfterLast>;
constexpr auto VecD64CondXBSV = &conditional_extract<uint64_t, kLast>;

constexpr auto VecU8VCondXAVV = &conditional_broadcast<uint8_t, kAfterLast>;
constexpr auto VecU8VCondXBVV = &conditional_broadcast<uint8_t, kLast>;
constexpr auto VecU16VCondXAVV = &conditional_broadcast<uint16_t, kAfterLast>;
constexpr auto VecU16VCondXBVV = &conditional_broadcast<uint16_t, kLast>;
constexpr auto VecU32VCondXAVV = &conditional_broadcast<uint32_t, kAfterLast>;
constexpr auto VecU32VCondXBVV = &conditional_broadcast<uint32_t, kLast>;
constexpr auto VecU64VCondXAVV = &conditional_broadcast<uint64_t, kAfterLast>;
constexpr auto VecU64VCondXBVV = &conditional_broadcast<uint64_t, kLast>;
// clang-format on

} // namespace generic
