// Integer compares that set the flags: against the covering 64-bit element
// of a second vector, or against an immediate.
#pragma once

#include <cstdint>

#include "elementwise.h"

namespace generic {

using WideCompare = bool (*)(wide, wide);
constexpr bool is_eq(wide a, wide b) { return a == b; }
constexpr bool is_ne(wide a, wide b) { return a != b; }
constexpr bool is_ge(wide a, wide b) { return a >= b; }
constexpr bool is_gt(wide a, wide b) { return a > b; }
constexpr bool is_le(wide a, wide b) { return a <= b; }
constexpr bool is_lt(wide a, wide b) { return a < b; }

template <typename T, WideCompare Cmp>
void compare_wide(PredV* out, const PredV* g, const VecV* a, const VecV* b, CpuContext* ctx) {
  const unsigned n = element_count(ctx, esize_of<T>);
  for (unsigned i = 0; i < n; ++i) {
    const wide second = Int(covering_doubleword<T>(*b, i), 64, unsigned_kind<T>);
    set_group(*out, i, sizeof(T), active(*g, i, sizeof(T)) && Cmp(widen<T>(raw<T>(*a, i)), second));
  }
  PredSetNZCV(*g, *out, esize_of<T>, ctx);
}

template <typename T, WideCompare Cmp>
void compare_immediate(PredV* out, const PredV* g, const VecV* a, int64_t imm, CpuContext* ctx) {
  const unsigned n = element_count(ctx, esize_of<T>);
  for (unsigned i = 0; i < n; ++i)
    set_group(*out, i, sizeof(T), active(*g, i, sizeof(T)) && Cmp(widen<T>(raw<T>(*a, i)), imm));
  PredSetNZCV(*g, *out, esize_of<T>, ctx);
}

} // namespace generic

namespace generic {

// clang-format off
constexpr auto VecS8CmpFlgEQVWZ = &compare_wide<int8_t, is_eq>;
constexpr auto VecS8CmpFlgNEVWZ = &compare_wide<int8_t, is_ne>;
constexpr auto VecS8CmpFlgGEVWZ = &compare_wide<int8_t, is_ge>;
constexpr auto VecS8CmpFlgGTVWZ = &compare_wide<int8_t, is_gt>;
constexpr auto VecS8CmpFlgLTVWZ = &compare_wide<int8_t, is_lt>;
constexpr auto VecS8CmpFlgLEVWZ = &compare_wide<int8_t, is_le>;
constexpr auto VecU8CmpFlgGEVWZ = &compare_wide<uint8_t, is_ge>;
constexpr auto VecU8CmpFlgGTVWZ = &compare_wide<uint8_t, is_gt>;
constexpr auto VecU8CmpFlgLTVWZ = &compare_wide<uint8_t, is_lt>;
constexpr auto VecU8CmpFlgLEVWZ = &compare_wide<uint8_t, is_le>;
constexpr auto VecS16CmpFlgEQVWZ = &compare_wide<int16_t, is_eq>;
constexpr auto VecS16CmpFlgNEVWZ = &compare_wide<int16_t, is_ne>;
constexpr auto VecS16CmpFlgGEVWZ = &compare_wide<int16_t, is_ge>;
constexpr auto VecS16CmpFlgGTVWZ = &compare_wide<int16_t, is_gt>;
constexpr auto VecS16CmpFlgLTVWZ = &compare_wide<int16_t, is_lt>;
constexpr auto VecS16CmpFlgLEVWZ = &compare_wide<int16_t, is_le>;
constexpr auto VecU16CmpFlgGEVWZ = &compare_wide<uint16_t, is_ge>;
constexpr auto VecU16CmpFlgGTVWZ = &compare_wide<uint16_t, is_gt>;
constexpr auto VecU16CmpFlgLTVWZ = &compare_wide<uint16_t, is_lt>;
constexpr auto VecU16CmpFlgLEVWZ = &compare_wide<uint16_t, is_le>;
constexpr auto VecS32CmpFlgEQVWZ = &compare_wide<int32_t, is_eq>;
constexpr auto VecS32CmpFlgNEVWZ = &compare_wide<int32_t, is_ne>;
constexpr auto VecS32CmpFlgGEVWZ = &compare_wide<int32_t, is_ge>;
constexpr auto VecS32CmpFlgGTVWZ = &compare_wide<int32_t, is_gt>;
constexpr auto VecS32CmpFlgLTVWZ = &compare_wide<int32_t, is_lt>;
constexpr auto VecS32CmpFlgLEVWZ = &compare_wide<int32_t, is_le>;
constexpr auto VecU32CmpFlgGEVWZ = &compare_wide<uint32_t, is_ge>;
constexpr auto VecU32CmpFlgGTVWZ = &compare_wide<uint32_t, is_gt>;
constexpr auto VecU32CmpFlgLTVWZ = &compare_wide<uint32_t, is_lt>;
constexpr auto VecU32CmpFlgLEVWZ = &compare_wide<uint32_t, is_le>;
constexpr auto VecS8CmpFlgGEVIZ = &compare_immediate<int8_t, is_ge>;
constexpr auto VecS16CmpFlgGEVIZ = &compare_immediate<int16_t, is_ge>;
constexpr auto VecS32CmpFlgGEVIZ = &compare_immediate<int32_t, is_ge>;
constexpr auto VecS64CmpFlgGEVIZ = &compare_immediate<int64_t, is_ge>;
constexpr auto VecU8CmpFlgGEVIZ = &compare_immediate<uint8_t, is_ge>;
constexpr auto VecU8CmpFlgLEVIZ = &compare_immediate<uint8_t, is_le>;
constexpr auto VecU16CmpFlgGEVIZ = &compare_immediate<uint16_t, is_ge>;
constexpr auto VecU16CmpFlgLEVIZ = &compare_immediate<uint16_t, is_le>;
constexpr auto VecU32CmpFlgGEVIZ = &compare_immediate<uint32_t, is_ge>;
constexpr auto VecU32CmpFlgLEVIZ = &compare_immediate<uint32_t, is_le>;
constexpr auto VecU64CmpFlgGEVIZ = &compare_immediate<uint64_t, is_ge>;
constexpr auto VecU64CmpFlgLEVIZ = &compare_immediate<uint64_t, is_le>;
// clang-format on

} // namespace generic
