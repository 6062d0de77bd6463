// Element moves of the generic tier: insr, sunpk, splice, compact.
#pragma once

#include <cstdint>

#include "elementwise.h"

namespace generic {

// insr: the scalar in element 0, the vector moved up by one.
template <typename T>
void insert_scalar(VecV* out, const VecV* a, uint64_t scalar, CpuContext* ctx) {
  VecV r;
  const unsigned n = element_count(ctx, esize_of<T>);
  if (n > 0) set_raw<T>(r, 0, scalar);
  for (unsigned i = 1; i < n; ++i) set_raw<T>(r, i, raw<T>(*a, i - 1));
  *out = r;
}

// The low (or high) half of a's elements of half the width, extended.
template <typename T, typename Half, bool High>
void unpack(VecV* out, const VecV* a, CpuContext* ctx) {
  VecV r;
  const unsigned n = element_count(ctx, esize_of<T>);
  for (unsigned i = 0; i < n; ++i)
    set_raw<T>(r, i, bits(widen<Half>(raw<Half>(*a, High ? n + i : i))));
  *out = r;
}

// a from its first to its last active element, then b from its start.
template <typename T>
void splice(VecV* out, const PredV* g, const VecV* a, const VecV* b, CpuContext* ctx) {
  VecV r;
  const unsigned n = element_count(ctx, esize_of<T>);
  const int32_t first = FindFirstActive(*g, esize_of<T>, ctx);
  const int32_t last = FindLastActive(*g, esize_of<T>, ctx);
  unsigned to = 0;
  if (first >= 0)
    for (int32_t i = first; i <= last; ++i) set_raw<T>(r, to++, raw<T>(*a, unsigned(i)));
  for (unsigned i = 0; to < n; ++i) set_raw<T>(r, to++, raw<T>(*b, i));
  *out = r;
}

// compact: the active elements packed to the bottom, zeros above.
template <typename T> void compress(VecV* out, const PredV* g, const VecV* a, CpuContext* ctx) {
  VecV r;
  const unsigned n = element_count(ctx, esize_of<T>);
  unsigned to = 0;
  for (unsigned i = 0; i < n; ++i)
    if (active(*g, i, sizeof(T))) set_raw<T>(r, to++, raw<T>(*a, i));
  while (to < n) set_raw<T>(r, to++, 0);
  *out = r;
}

} // namespace generic

namespace generic {

// clang-format off
constexpr auto VecU8InsertS = &insert_scalar<uint8_t>;
constexpr auto VecB8InsertS = &insert_scalar<uint8_t>;
constexpr auto VecU16InsertS = &insert_scalar<uint16_t>;
constexpr auto VecS16UnpackLoV = &unpack<int16_t, int8_t, false>;
constexpr auto VecS16UnpackHiV = &unpack<int16_t, int8_t, true>;
constexpr auto VecH16InsertS = &insert_scalar<uint16_t>;
constexpr auto VecU32InsertS = &insert_scalar<uint32_t>;
constexpr auto VecS32UnpackLoV = &unpack<int32_t, int16_t, false>;
constexpr auto VecS32UnpackHiV = &unpack<int32_t, int16_t, true>;
constexpr auto VecF32InsertS = &insert_scalar<uint32_t>;
constexpr auto VecU64InsertS = &insert_scalar<uint64_t>;
constexpr auto VecD64InsertS = &insert_scalar<uint64_t>;
constexpr auto VecU8SpliceVV = &splice<uint8_t>;
constexpr auto VecU16SpliceVV = &splice<uint16_t>;
constexpr auto VecU32CompressVV = &compress<uint32_t>;
constexpr auto VecU32SpliceVV = &splice<uint32_t>;
constexpr auto VecU64CompressVV = &compress<uint64_t>;
constexpr auto VecU64SpliceVV = &splice<uint64_t>;
// clang-format on

} // namespace generic
