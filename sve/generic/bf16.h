// The SVE BF16 forms: conversions from single, which follow the controls,
// and the dot products and matrix multiply, which ignore them: round to odd
// with overflow to infinity, denormal inputs and results flushed, the
// default NaN for any NaN, and no flags.
#pragma once

#include <cstdint>

#include "../fp/fp_add_mul.h"
#include "../fp/fp_bf16.h"
#include "../fp/fp_muladd.h"
#include "fp_vector.h"
#include "int8_matrix.h"

namespace generic {

// Round to odd is truncation with the lowest bit set when anything was
// lost; an overflow truncates to the largest finite value, so it is made
// infinite again.
inline uint32_t odd_from_truncated(uint32_t r, int flags) {
  if (flags & FP_OFC) return (r & 0x80000000u) | 0x7f800000u;
  if ((flags & FP_IXC) && !fp_is_nan(r) && !fp_is_infinity(r)) r |= 1;
  return r;
}
constexpr int kBf16DotMode = FPRounding_ZERO | FP_MODE_FZ | FP_MODE_DN;
inline uint32_t bf_mul(uint32_t a, uint32_t b) {
  int flags = 0;
  return odd_from_truncated(fp_mul<uint32_t>(a, b, false, kBf16DotMode, &flags), flags);
}
inline uint32_t bf_add(uint32_t a, uint32_t b) {
  int flags = 0;
  return odd_from_truncated(fp_add<uint32_t>(a, b, 0, kBf16DotMode, &flags), flags);
}
inline uint32_t bf16_of(const VecV& v, unsigned i) {
  return uint32_t{element<uint16_t>(v, i)} << 16;
}

// sum + (a[2i] b[2j] + a[2i+1] b[2j+1]), the pair products added first.
inline uint32_t bf_dot_add(uint32_t sum, const VecV& a, unsigned i, const VecV& b, unsigned j) {
  const uint32_t low = bf_mul(bf16_of(a, 2 * i), bf16_of(b, 2 * j));
  const uint32_t high = bf_mul(bf16_of(a, 2 * i + 1), bf16_of(b, 2 * j + 1));
  return bf_add(sum, bf_add(low, high));
}

inline void bf_dot(VecV* out, const VecV* a, const VecV* b, const VecV* c, CpuContext* ctx) {
  VecV r;
  const unsigned n = element_count(ctx, 32);
  for (unsigned i = 0; i < n; ++i)
    set_element<uint32_t>(r, i, bf_dot_add(element<uint32_t>(*c, i), *a, i, *b, i));
  *out = r;
}

// Every result of a 128-bit segment uses pair `index` of b's segment.
inline void bf_dot_indexed(VecV* out, const VecV* a, const VecV* b, const VecV* c, uint32_t index,
                           CpuContext* ctx) {
  VecV r;
  const unsigned n = element_count(ctx, 32);
  for (unsigned i = 0; i < n; ++i)
    set_element<uint32_t>(r, i, bf_dot_add(element<uint32_t>(*c, i), *a, i, *b, (i & ~3u) + index));
  *out = r;
}

// bfmmla: c (2x2 singles) plus a (2x4) times the transpose of b (2x4), as
// two dot steps of two pairs each.
inline void bf_matrix_multiply_add(VecV* out, const VecV* a, const VecV* b, const VecV* c,
                                   CpuContext* ctx) {
  each_matrix_cell(out, *c, ctx, [&](unsigned s, unsigned row, unsigned col, uint32_t sum) {
    for (unsigned k = 0; k < 2; ++k)
      sum = bf_dot_add(sum, *a, 4 * s + 2 * row + k, *b, 4 * s + 2 * col + k);
    return sum;
  });
}

// bfcvt: the bottom half of each active word, the top half cleared.
inline uint32_t bf_convert(uint32_t x, FPSCR& status) { return fp32_to_bf16(x, status); }

// bfcvtnt: the top half of each active word; the bottom half is kept.
inline void bf_convert_top(VecV* out, const VecV* a, const PredV* g, const VecV* b,
                           CpuContext* ctx) {
  merge_computed<uint32_t>(out, *a, *g, ctx, [&](unsigned i, FPSCR& s) {
    return (element<uint32_t>(*a, i) & 0xffffu) |
           uint32_t{fp32_to_bf16(element<uint32_t>(*b, i), s)} << 16;
  });
}

// bfmlalb/bfmlalt: c + a[2i+Top] b[2i+Top], fused, under the controls.
template <unsigned Top>
void bf_multiply_add_long(VecV* out, const VecV* a, const VecV* b, const VecV* c, CpuContext* ctx) {
  compute_each<uint32_t>(out, ctx, [&](unsigned i, FPSCR& s) {
    return FPMulAdd<uint32_t>(element<uint32_t>(*c, i), bf16_of(*a, 2 * i + Top),
                              bf16_of(*b, 2 * i + Top), s);
  });
}

constexpr auto VecF32BfDotVVV = &bf_dot;
constexpr auto VecF32BfDotVVVI = &bf_dot_indexed;
constexpr auto VecF32BfMMlaVVV = &bf_matrix_multiply_add;
constexpr auto VecF32BfCvtVM = &fp_merging_unary<uint32_t, &bf_convert>;
constexpr auto VecF32BfCvtNTVM = &bf_convert_top;
constexpr auto VecF32BfMlalBVVV = &bf_multiply_add_long<0>;
constexpr auto VecF32BfMlalTVVV = &bf_multiply_add_long<1>;

} // namespace generic
