// Counting by pattern and by predicate: cnt*, inc*/dec* and their
// saturating forms, on scalars and on vectors.
#pragma once

#include <cstdint>
#include <type_traits>

#include "support.h"
#include "vector.h"

namespace generic {

template <typename T> constexpr unsigned esize_of = sizeof(T) * 8;
template <typename T> constexpr bool unsigned_kind = std::is_unsigned_v<T>;

// The elements a pattern selects, times imm4 + 1.
template <typename T>
uint64_t pattern_step(uint32_t pattern, uint32_t imm4, const CpuContext* ctx) {
  return uint64_t{VecTrueILength(pattern, element_count(ctx, esize_of<T>))} * (imm4 + 1);
}

// The number of active elements of p.
template <typename T> uint64_t active_count(const PredV& p, const CpuContext* ctx) {
  const unsigned n = element_count(ctx, esize_of<T>);
  uint64_t count = 0;
  for (unsigned i = 0; i < n; ++i) count += active(p, i, sizeof(T));
  return count;
}

constexpr bool kIncrement = false;
constexpr bool kDecrement = true;

// A scalar of Bits moved by `step`, saturating with the sign of T. A signed
// 32-bit result comes back sign-extended; an unsigned one zero-extended.
template <typename T, unsigned Bits, bool Decrement>
uint64_t saturating_step(uint64_t x, uint64_t step) {
  const uint64_t r =
      Decrement ? SatSub(x, step, Bits, unsigned_kind<T>) : SatAdd(x, step, Bits, unsigned_kind<T>);
  return unsigned_kind<T> ? r : bits(Int(r, Bits, false));
}

// Each element moved by `step`, saturating at its own width.
template <typename T, bool Decrement>
void saturating_step_vector(VecV* out, const VecV& a, uint64_t step, const CpuContext* ctx) {
  VecV r;
  const unsigned n = element_count(ctx, esize_of<T>);
  for (unsigned i = 0; i < n; ++i) {
    const wide x = Int(uint64_t(element<T>(a, i)), esize_of<T>, unsigned_kind<T>);
    const wide moved = Decrement ? x - wide(step) : x + wide(step);
    set_element<T>(r, i, T(SatQ(moved, esize_of<T>, unsigned_kind<T>).value));
  }
  *out = r;
}

template <typename T> uint64_t count_vl(uint32_t pattern, uint32_t imm4, CpuContext* ctx) {
  return pattern_step<T>(pattern, imm4, ctx);
}

template <typename T, unsigned Bits, bool Decrement>
uint64_t saturating_step_vl(uint64_t x, uint32_t pattern, uint32_t imm4, CpuContext* ctx) {
  return saturating_step<T, Bits, Decrement>(x, pattern_step<T>(pattern, imm4, ctx));
}

template <typename T, bool Decrement>
void saturating_step_vl_vector(VecV* out, const VecV* a, uint32_t pattern, uint32_t imm4,
                               CpuContext* ctx) {
  saturating_step_vector<T, Decrement>(out, *a, pattern_step<T>(pattern, imm4, ctx), ctx);
}

template <typename T, unsigned Bits, bool Decrement>
uint64_t saturating_step_count(const PredV* p, uint64_t x, CpuContext* ctx) {
  return saturating_step<T, Bits, Decrement>(x, active_count<T>(*p, ctx));
}

template <typename T, bool Decrement>
void saturating_step_count_vector(VecV* out, const PredV* p, const VecV* a, CpuContext* ctx) {
  saturating_step_vector<T, Decrement>(out, *a, active_count<T>(*p, ctx), ctx);
}

template <typename T> uint64_t decrement_count(const PredV* p, uint64_t x, CpuContext* ctx) {
  return x - active_count<T>(*p, ctx);
}

template <typename T, bool Decrement>
void step_count_vector(VecV* out, const PredV* p, const VecV* a, CpuContext* ctx) {
  const T step = T(active_count<T>(*p, ctx));
  VecV r;
  const unsigned n = element_count(ctx, esize_of<T>);
  for (unsigned i = 0; i < n; ++i)
    set_element<T>(r, i, T(Decrement ? element<T>(*a, i) - step : element<T>(*a, i) + step));
  *out = r;
}

// clang-format off
constexpr auto VecU8CountVLSI = &count_vl<uint8_t>;
constexpr auto VecU16CountVLSI = &count_vl<uint16_t>;
constexpr auto VecU32CountVLSI = &count_vl<uint32_t>;
constexpr auto VecU64CountVLSI = &count_vl<uint64_t>;

constexpr auto VecS8QIncrVL4SI = &saturating_step_vl<int8_t, 32, kIncrement>;
constexpr auto VecU8QIncrVL4SI = &saturating_step_vl<uint8_t, 32, kIncrement>;
constexpr auto VecS8QDecrVL4SI = &saturating_step_vl<int8_t, 32, kDecrement>;
constexpr auto VecS8QIncrVL8SI = &saturating_step_vl<int8_t, 64, kIncrement>;
constexpr auto VecU8QIncrVL8SI = &saturating_step_vl<uint8_t, 64, kIncrement>;
constexpr auto VecS8QDecrVL8SI = &saturating_step_vl<int8_t, 64, kDecrement>;
constexpr auto VecS16QIncrVL4SI = &saturating_step_vl<int16_t, 32, kIncrement>;
constexpr auto VecU16QIncrVL4SI = &saturating_step_vl<uint16_t, 32, kIncrement>;
constexpr auto VecS16QDecrVL4SI = &saturating_step_vl<int16_t, 32, kDecrement>;
constexpr auto VecU16QDecrVL4SI = &saturating_step_vl<uint16_t, 32, kDecrement>;
constexpr auto VecS16QIncrVL8SI = &saturating_step_vl<int16_t, 64, kIncrement>;
constexpr auto VecU16QIncrVL8SI = &saturating_step_vl<uint16_t, 64, kIncrement>;
constexpr auto VecS16QDecrVL8SI = &saturating_step_vl<int16_t, 64, kDecrement>;
constexpr auto VecU16QDecrVL8SI = &saturating_step_vl<uint16_t, 64, kDecrement>;
constexpr auto VecS32QIncrVL4SI = &saturating_step_vl<int32_t, 32, kIncrement>;
constexpr auto VecU32QIncrVL4SI = &saturating_step_vl<uint32_t, 32, kIncrement>;
constexpr auto VecS32QDecrVL4SI = &saturating_step_vl<int32_t, 32, kDecrement>;
constexpr auto VecU32QDecrVL4SI = &saturating_step_vl<uint32_t, 32, kDecrement>;
constexpr auto VecS32QIncrVL8SI = &saturating_step_vl<int32_t, 64, kIncrement>;
constexpr auto VecU32QIncrVL8SI = &saturating_step_vl<uint32_t, 64, kIncrement>;
constexpr auto VecS32QDecrVL8SI = &saturating_step_vl<int32_t, 64, kDecrement>;
constexpr auto VecU32QDecrVL8SI = &saturating_step_vl<uint32_t, 64, kDecrement>;
constexpr auto VecS64QIncrVL4SI = &saturating_step_vl<int64_t, 32, kIncrement>;
constexpr auto VecU64QIncrVL4SI = &saturating_step_vl<uint64_t, 32, kIncrement>;
constexpr auto VecS64QDecrVL4SI = &saturating_step_vl<int64_t, 32, kDecrement>;
constexpr auto VecU64QDecrVL4SI = &saturating_step_vl<uint64_t, 32, kDecrement>;
constexpr auto VecS64QIncrVL8SI = &saturating_step_vl<int64_t, 64, kIncrement>;
constexpr auto VecU64QIncrVL8SI = &saturating_step_vl<uint64_t, 64, kIncrement>;
constexpr auto VecS64QDecrVL8SI = &saturating_step_vl<int64_t, 64, kDecrement>;
constexpr auto VecU64QDecrVL8SI = &saturating_step_vl<uint64_t, 64, kDecrement>;

constexpr auto VecS16QIncrVLVI = &saturating_step_vl_vector<int16_t, kIncrement>;
constexpr auto VecU16QIncrVLVI = &saturating_step_vl_vector<uint16_t, kIncrement>;
constexpr auto VecS16QDecrVLVI = &saturating_step_vl_vector<int16_t, kDecrement>;
constexpr auto VecU16QDecrVLVI = &saturating_step_vl_vector<uint16_t, kDecrement>;
constexpr auto VecS32QIncrVLVI = &saturating_step_vl_vector<int32_t, kIncrement>;
constexpr auto VecU32QIncrVLVI = &saturating_step_vl_vector<uint32_t, kIncrement>;
constexpr auto VecS32QDecrVLVI = &saturating_step_vl_vector<int32_t, kDecrement>;
constexpr auto VecU32QDecrVLVI = &saturating_step_vl_vector<uint32_t, kDecrement>;
constexpr auto VecS64QIncrVLVI = &saturating_step_vl_vector<int64_t, kIncrement>;
constexpr auto VecU64QIncrVLVI = &saturating_step_vl_vector<uint64_t, kIncrement>;
constexpr auto VecS64QDecrVLVI = &saturating_step_vl_vector<int64_t, kDecrement>;
constexpr auto VecU64QDecrVLVI = &saturating_step_vl_vector<uint64_t, kDecrement>;

constexpr auto VecS8QIncrSCount4PS = &saturating_step_count<int8_t, 32, kIncrement>;
constexpr auto VecS8QIncrSCount8PS = &saturating_step_count<int8_t, 64, kIncrement>;
constexpr auto VecS8QDecrSCount4PS = &saturating_step_count<int8_t, 32, kDecrement>;
constexpr auto VecS8QDecrSCount8PS = &saturating_step_count<int8_t, 64, kDecrement>;
constexpr auto VecU8QIncrSCount4PS = &saturating_step_count<uint8_t, 32, kIncrement>;
constexpr auto VecU8QIncrSCount8PS = &saturating_step_count<uint8_t, 64, kIncrement>;
constexpr auto VecU8QDecrSCount4PS = &saturating_step_count<uint8_t, 32, kDecrement>;
constexpr auto VecU8QDecrSCount8PS = &saturating_step_count<uint8_t, 64, kDecrement>;
constexpr auto VecU8DecrSCountPS = &decrement_count<uint8_t>;
constexpr auto VecS16QIncrSCount4PS = &saturating_step_count<int16_t, 32, kIncrement>;
constexpr auto VecS16QIncrSCount8PS = &saturating_step_count<int16_t, 64, kIncrement>;
constexpr auto VecS16QDecrSCount4PS = &saturating_step_count<int16_t, 32, kDecrement>;
constexpr auto VecS16QDecrSCount8PS = &saturating_step_count<int16_t, 64, kDecrement>;
constexpr auto VecU16QIncrSCount4PS = &saturating_step_count<uint16_t, 32, kIncrement>;
constexpr auto VecU16QIncrSCount8PS = &saturating_step_count<uint16_t, 64, kIncrement>;
constexpr auto VecU16QDecrSCount4PS = &saturating_step_count<uint16_t, 32, kDecrement>;
constexpr auto VecU16QDecrSCount8PS = &saturating_step_count<uint16_t, 64, kDecrement>;
constexpr auto VecS16QIncrCountPV = &saturating_step_count_vector<int16_t, kIncrement>;
constexpr auto VecS16QDecrCountPV = &saturating_step_count_vector<int16_t, kDecrement>;
constexpr auto VecU16QIncrCountPV = &saturating_step_count_vector<uint16_t, kIncrement>;
constexpr auto VecU16QDecrCountPV = &saturating_step_count_vector<uint16_t, kDecrement>;
constexpr auto VecU16DecrSCountPS = &decrement_count<uint16_t>;
constexpr auto VecU16IncrCountPV = &step_count_vector<uint16_t, kIncrement>;
constexpr auto VecU16DecrCountPV = &step_count_vector<uint16_t, kDecrement>;
constexpr auto VecS32QIncrSCount4PS = &saturating_step_count<int32_t, 32, kIncrement>;
constexpr auto VecS32QIncrSCount8PS = &saturating_step_count<int32_t, 64, kIncrement>;
constexpr auto VecS32QDecrSCount4PS = &saturating_step_count<int32_t, 32, kDecrement>;
constexpr auto VecS32QDecrSCount8PS = &saturating_step_count<int32_t, 64, kDecrement>;
constexpr auto VecU32QIncrSCount4PS = &saturating_step_count<uint32_t, 32, kIncrement>;
constexpr auto VecU32QIncrSCount8PS = &saturating_step_count<uint32_t, 64, kIncrement>;
constexpr auto VecU32QDecrSCount4PS = &saturating_step_count<uint32_t, 32, kDecrement>;
constexpr auto VecU32QDecrSCount8PS = &saturating_step_count<uint32_t, 64, kDecrement>;
constexpr auto VecS32QIncrCountPV = &saturating_step_count_vector<int32_t, kIncrement>;
constexpr auto VecS32QDecrCountPV = &saturating_step_count_vector<int32_t, kDecrement>;
constexpr auto VecU32QIncrCountPV = &saturating_step_count_vector<uint32_t, kIncrement>;
constexpr auto VecU32QDecrCountPV = &saturating_step_count_vector<uint32_t, kDecrement>;
constexpr auto VecU32DecrSCountPS = &decrement_count<uint32_t>;
constexpr auto VecU32IncrCountPV = &step_count_vector<uint32_t, kIncrement>;
constexpr auto VecU32DecrCountPV = &step_count_vector<uint32_t, kDecrement>;
constexpr auto VecS64QIncrSCount4PS = &saturating_step_count<int64_t, 32, kIncrement>;
constexpr auto VecS64QIncrSCount8PS = &saturating_step_count<int64_t, 64, kIncrement>;
constexpr auto VecS64QDecrSCount4PS = &saturating_step_count<int64_t, 32, kDecrement>;
constexpr auto VecS64QDecrSCount8PS = &saturating_step_count<int64_t, 64, kDecrement>;
constexpr auto VecU64QIncrSCount4PS = &saturating_step_count<uint64_t, 32, kIncrement>;
constexpr auto VecU64QIncrSCount8PS = &saturating_step_count<uint64_t, 64, kIncrement>;
constexpr auto VecU64QDecrSCount4PS = &saturating_step_count<uint64_t, 32, kDecrement>;
constexpr auto VecU64QDecrSCount8PS = &saturating_step_count<uint64_t, 64, kDecrement>;
constexpr auto VecS64QIncrCountPV = &saturating_step_count_vector<int64_t, kIncrement>;
constexpr auto VecS64QDecrCountPV = &saturating_step_count_vector<int64_t, kDecrement>;
constexpr auto VecU64QIncrCountPV = &saturating_step_count_vector<uint64_t, kIncrement>;
constexpr auto VecU64QDecrCountPV = &saturating_step_count_vector<uint64_t, kDecrement>;
constexpr auto VecU64DecrSCountPS = &decrement_count<uint64_t>;
constexpr auto VecU64IncrCountPV = &step_count_vector<uint64_t, kIncrement>;
constexpr auto VecU64DecrCountPV = &step_count_vector<uint64_t, kDecrement>;
// clang-format on

} // namespace generic
