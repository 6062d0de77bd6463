// The int8 matrix multiplies and the dot products that mix signed and
// unsigned bytes.
#pragma once

#include <cstdint>

#include "elementwise.h"

namespace generic {

// The sum of four byte products, A's bytes from a and B's from b, plus c.
template <typename A, typename B>
uint32_t mixed_dot_group(const VecV& a, unsigned a_first, const VecV& b, unsigned b_first,
                         uint32_t c) {
  int64_t sum = int32_t(c);
  for (unsigned k = 0; k < 4; ++k)
    sum += int64_t(A(raw<A>(a, a_first + k))) * int64_t(B(raw<B>(b, b_first + k)));
  return uint32_t(sum);
}

// usdot: unsigned bytes of a, signed bytes of b.
inline void unsigned_signed_dot(VecV* out, const VecV* a, const VecV* b, const VecV* c,
                                CpuContext* ctx) {
  VecV r;
  const unsigned n = element_count(ctx, 32);
  for (unsigned i = 0; i < n; ++i)
    set_raw<uint32_t>(r, i,
                      mixed_dot_group<uint8_t, int8_t>(*a, 4 * i, *b, 4 * i, raw<uint32_t>(*c, i)));
  *out = r;
}

// usdot and sudot (indexed): every result of a 128-bit segment uses group
// `index` of b's segment.
template <typename A, typename B>
void mixed_dot_indexed(VecV* out, const VecV* a, const VecV* b, const VecV* c, uint32_t index,
                       CpuContext* ctx) {
  VecV r;
  const unsigned n = element_count(ctx, 32);
  for (unsigned i = 0; i < n; ++i)
    set_raw<uint32_t>(
        r, i, mixed_dot_group<A, B>(*a, 4 * i, *b, 4 * ((i & ~3u) + index), raw<uint32_t>(*c, i)));
  *out = r;
}

// The 2x2 words of each 128-bit segment of a matrix multiply-add:
// cell(segment, row, col, accumulator) gives word 4 segment + 2 row + col.
template <typename Cell>
void each_matrix_cell(VecV* out, const VecV& c, CpuContext* ctx, Cell cell) {
  VecV r;
  const unsigned segments = element_count(ctx, 32) / 4;
  for (unsigned s = 0; s < segments; ++s)
    for (unsigned row = 0; row < 2; ++row)
      for (unsigned col = 0; col < 2; ++col) {
        const unsigned i = 4 * s + 2 * row + col;
        set_raw<uint32_t>(r, i, cell(s, row, col, uint32_t(raw<uint32_t>(c, i))));
      }
  *out = r;
}

// smmla, ummla, usmmla: c plus the 2x8 bytes of a times the transpose of
// the 2x8 bytes of b.
template <typename A, typename B>
void matrix_multiply_add(VecV* out, const VecV* a, const VecV* b, const VecV* c, CpuContext* ctx) {
  each_matrix_cell(out, *c, ctx, [&](unsigned s, unsigned row, unsigned col, uint32_t sum) {
    for (unsigned half = 0; half < 2; ++half)
      sum = mixed_dot_group<A, B>(*a, 16 * s + 8 * row + 4 * half, *b, 16 * s + 8 * col + 4 * half,
                                  sum);
    return sum;
  });
}

constexpr auto VecS32MMlaVVV = &matrix_multiply_add<int8_t, int8_t>;
constexpr auto VecU32MMlaVVV = &matrix_multiply_add<uint8_t, uint8_t>;
constexpr auto VecU32USMMlaVVV = &matrix_multiply_add<uint8_t, int8_t>;
constexpr auto VecU32USDotVVV = &unsigned_signed_dot;
constexpr auto VecU32USDotVVVI = &mixed_dot_indexed<uint8_t, int8_t>;
constexpr auto VecU32SUDotVVVI = &mixed_dot_indexed<int8_t, uint8_t>;

} // namespace generic
