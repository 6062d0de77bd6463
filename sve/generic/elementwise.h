// The element loops that most integer families share. An operation takes
// the raw bits of its elements (zero-extended to 64) and the element kind T
// gives the width and the sign; the loop cuts the result to the element.
#pragma once

#include <cstdint>
#include <type_traits>

#include "count.h"

namespace generic {

using ElementOp = uint64_t (*)(uint64_t a, uint64_t b);

template <typename T> uint64_t raw(const VecV& v, unsigned i) {
  return element<std::make_unsigned_t<T>>(v, i);
}
template <typename T> void set_raw(VecV& v, unsigned i, uint64_t x) {
  set_element<std::make_unsigned_t<T>>(v, i, static_cast<std::make_unsigned_t<T>>(x));
}
// The element widened by its kind.
template <typename T> wide widen(uint64_t x) { return Int(x, esize_of<T>, unsigned_kind<T>); }

// The 64-bit element of b that holds byte i * sizeof(T): the count of the
// wide shifts.
template <typename T> uint64_t covering_doubleword(const VecV& b, unsigned i) {
  return element<uint64_t>(b, i * sizeof(T) / 8);
}

// Active elements Op(a, b), inactive ones a. Unary operations ignore a.
template <typename T, ElementOp Op>
void merging(VecV* out, const VecV* a, const PredV* g, const VecV* b, CpuContext* ctx) {
  VecV r;
  const unsigned n = element_count(ctx, esize_of<T>);
  for (unsigned i = 0; i < n; ++i)
    set_raw<T>(r, i, active(*g, i, sizeof(T)) ? Op(raw<T>(*a, i), raw<T>(*b, i)) : raw<T>(*a, i));
  *out = r;
}

template <typename T, ElementOp Op>
void merging_wide(VecV* out, const VecV* a, const PredV* g, const VecV* b, CpuContext* ctx) {
  VecV r;
  const unsigned n = element_count(ctx, esize_of<T>);
  for (unsigned i = 0; i < n; ++i)
    set_raw<T>(r, i,
               active(*g, i, sizeof(T)) ? Op(raw<T>(*a, i), covering_doubleword<T>(*b, i))
                                        : raw<T>(*a, i));
  *out = r;
}

template <typename T, ElementOp Op>
void unpredicated(VecV* out, const VecV* a, const VecV* b, CpuContext* ctx) {
  VecV r;
  const unsigned n = element_count(ctx, esize_of<T>);
  for (unsigned i = 0; i < n; ++i) set_raw<T>(r, i, Op(raw<T>(*a, i), raw<T>(*b, i)));
  *out = r;
}

template <typename T, ElementOp Op>
void unpredicated_wide(VecV* out, const VecV* a, const VecV* b, CpuContext* ctx) {
  VecV r;
  const unsigned n = element_count(ctx, esize_of<T>);
  for (unsigned i = 0; i < n; ++i)
    set_raw<T>(r, i, Op(raw<T>(*a, i), covering_doubleword<T>(*b, i)));
  *out = r;
}

// Every element with the same immediate (or shift count).
template <typename T, ElementOp Op, typename Imm>
void with_immediate(VecV* out, const VecV* a, Imm imm, CpuContext* ctx) {
  VecV r;
  const unsigned n = element_count(ctx, esize_of<T>);
  for (unsigned i = 0; i < n; ++i) set_raw<T>(r, i, Op(raw<T>(*a, i), uint64_t(imm)));
  *out = r;
}

template <typename T, ElementOp Op, typename Imm>
void merging_immediate(VecV* out, const VecV* a, const PredV* g, Imm imm, CpuContext* ctx) {
  VecV r;
  const unsigned n = element_count(ctx, esize_of<T>);
  for (unsigned i = 0; i < n; ++i)
    set_raw<T>(r, i, active(*g, i, sizeof(T)) ? Op(raw<T>(*a, i), uint64_t(imm)) : raw<T>(*a, i));
  *out = r;
}

} // namespace generic
