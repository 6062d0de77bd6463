// The SVE2 floating-point forms: pairwise operations, flogb, the
// conversions to and from the top halves (fcvtlt, fcvtnt, fcvtxnt) and with
// rounding to odd (fcvtx), the half-to-single multiply-adds (fmlalb and
// kin, plain and indexed), the indexed bfmlalb/bfmlalt, the unsigned
// estimates and the floating-point matrix multiplies.
#pragma once

#include <cstdint>

#include "../fp/fp_compare.h"
#include "../fp/fp_estimate.h"
#include "bf16.h"
#include "elementwise.h"
#include "fp_conversions.h"
#include "sve2_indexed.h"

namespace generic {

// faddp, fmaxnmp...: an active even element combines the pair of a it
// starts, an odd one the pair of b it ends.
template <typename T, FpBinary<T> Op>
void fp_pairwise(VecV* out, const VecV* a, const PredV* g, const VecV* b, CpuContext* ctx) {
  merge_computed<T>(out, *a, *g, ctx, [&](unsigned i, FPSCR& s) {
    const VecV& v = i % 2 ? *b : *a;
    const unsigned first = i & ~1u;
    return Op(element<T>(v, first), element<T>(v, first + 1), s);
  });
}

// flogb: the unbiased exponent of x as a signed integer of its width; NaNs
// and zeros (flushed denormals among them) give the most negative integer
// and raise invalid, infinities the most positive.
template <typename T> T fp_log_b(T x, FPSCR& status) {
  using F = fp_format<T>;
  int sgn = 0, exp = 0, flags = 0;
  T mnt = 0;
  fp_unpack<T>(&sgn, &exp, &mnt, x, fp_mode_of(status), &flags);
  T result;
  if (fp_exp_field(x) == F::exp_max && !fp_is_nan(x)) {
    result = T(sign_bit<T> - 1);
  } else if (fp_is_nan(x) || mnt == 0) {
    flags |= FP_IOC;
    result = sign_bit<T>;
  } else {
    int top = F::M;
    while (!(mnt >> top & 1)) --top;
    result = T(exp - F::bias - (F::M - top));
  }
  fp_flags_merge(flags, status);
  return result;
}

// fcvtx: double to single rounding to odd, into the low half.
inline uint64_t convert_to_odd(uint64_t x, FPSCR& status) {
  return FPConvert<uint64_t, uint32_t>(x, FPRounding_ODD, status);
}

// fcvtnt, fcvtxnt: each active element of b narrowed into the top half of
// the element; its bottom half, and inactive elements, keep a.
template <typename C, typename H, int Rounding>
void convert_narrow_top(VecV* out, const VecV* a, const PredV* g, const VecV* b, CpuContext* ctx) {
  constexpr unsigned half_bits = sizeof(H) * 8;
  merge_computed<C>(out, *a, *g, ctx, [&](unsigned i, FPSCR& s) {
    s &= ~(FPSCR_AHP | FPSCR_FZ16);
    const FPRounding rounding =
        Rounding == kControlsRounding ? rounding_of(s) : FPRounding(Rounding);
    const H narrow = FPConvert<C, H>(element<C>(*b, i), rounding, s);
    return C((element<C>(*a, i) & C(ones(half_bits))) | C(C(narrow) << half_bits));
  });
}

// fcvtlt: the top half of each active element of b widened to the element.
template <typename C, typename H>
void convert_widen_top(VecV* out, const VecV* a, const PredV* g, const VecV* b, CpuContext* ctx) {
  merge_computed<C>(out, *a, *g, ctx, [&](unsigned i, FPSCR& s) {
    return between_formats<C, H, C>(C(element<C>(*b, i) >> (sizeof(H) * 8)), s);
  });
}

// A half operand of fmlalb as a single: exact, a denormal flushed under
// FZ16, a NaN kept as it is (signalling or not) for the multiply-add to see.
inline uint32_t single_of_half(uint16_t h, FPSCR status) {
  if (fp_is_nan(h)) return uint32_t(h >> 15) << 31 | 0x7f800000u | uint32_t(h & 0x3ffu) << 13;
  FPSCR scratch = status & ~FPSCR_AHP;
  return FPConvert<uint16_t, uint32_t>(h, FPRounding_TIEEVEN, scratch);
}

// fmlalb, fmlslt...: c plus (or minus) the product of the bottom or top
// halves of a and b, fused, in single precision.
template <unsigned Top, bool Subtract>
void fp_multiply_add_long(VecV* out, const VecV* a, const VecV* b, const VecV* c, CpuContext* ctx) {
  compute_each<uint32_t>(out, ctx, [&](unsigned i, FPSCR& s) {
    const uint16_t x = element<uint16_t>(*a, 2 * i + Top);
    return FPMulAdd<uint32_t>(element<uint32_t>(*c, i),
                              single_of_half(Subtract ? sign_flipped(x) : x, s),
                              single_of_half(element<uint16_t>(*b, 2 * i + Top), s), s);
  });
}

// urecpe, ursqrte: the estimate of each active element, which the form
// reads as a fraction below one.
inline uint64_t unsigned_recip_estimate(uint64_t, uint64_t x) {
  return UnsignedRecipEstimate(x, 32);
}
inline uint64_t unsigned_rsqrt_estimate(uint64_t, uint64_t x) {
  return UnsignedRSqrtEstimate(x, 32);
}

// fmmla: in each segment of four elements, c (2x2) plus a (2x2) times the
// transpose of b (2x2): the two products of a cell added first, then to c,
// every step rounded on its own. Elements past the last whole segment keep c.
template <typename T>
void fp_matrix_multiply_add(VecV* out, const VecV* a, const VecV* b, const VecV* c,
                            CpuContext* ctx) {
  VecV r = *c;
  const unsigned segments = element_count(ctx, esize_of<T>) / 4;
  for (unsigned s = 0; s < segments; ++s)
    for (unsigned row = 0; row < 2; ++row)
      for (unsigned col = 0; col < 2; ++col) {
        const unsigned i = 4 * s + 2 * row + col;
        set_element<T>(r, i, with_status(ctx, [&](FPSCR& st) {
                         const T p0 = FPMul<T>(element<T>(*a, 4 * s + 2 * row),
                                               element<T>(*b, 4 * s + 2 * col), st);
                         const T p1 = FPMul<T>(element<T>(*a, 4 * s + 2 * row + 1),
                                               element<T>(*b, 4 * s + 2 * col + 1), st);
                         return FPAdd<T>(element<T>(*c, i), FPAdd<T>(p0, p1, st), st);
                       }));
      }
  *out = r;
}

// clang-format off
#define ZORVO_SVE2_FP_FORMS(K, T)                                                           \
  constexpr auto Vec##K##AddPVVM = &fp_pairwise<T, &FPAdd<T>>;                              \
  constexpr auto Vec##K##MaxPVVM = &fp_pairwise<T, &FPMax<T>>;                              \
  constexpr auto Vec##K##MinPVVM = &fp_pairwise<T, &FPMin<T>>;                              \
  constexpr auto Vec##K##MaxNumPVVM = &fp_pairwise<T, &FPMaxNum<T>>;                        \
  constexpr auto Vec##K##MinNumPVVM = &fp_pairwise<T, &FPMinNum<T>>;                        \
  constexpr auto Vec##K##LogBVM = &fp_merging_unary<T, &fp_log_b<T>>;
ZORVO_SVE2_FP_FORMS(F16, uint16_t)
ZORVO_SVE2_FP_FORMS(F32, uint32_t)
ZORVO_SVE2_FP_FORMS(D64, uint64_t)
#undef ZORVO_SVE2_FP_FORMS

constexpr auto VecF64CvtXVM = &fp_merging_unary<uint64_t, &convert_to_odd>;
constexpr auto VecF64CvtXNTVM = &convert_narrow_top<uint64_t, uint32_t, FPRounding_ODD>;
constexpr auto VecF64CvtNTVM = &convert_narrow_top<uint64_t, uint32_t, kControlsRounding>;
constexpr auto VecH32CvtNTVM = &convert_narrow_top<uint32_t, uint16_t, kControlsRounding>;
constexpr auto VecF32CvtLTVM = &convert_widen_top<uint32_t, uint16_t>;
constexpr auto VecD64CvtLTVM = &convert_widen_top<uint64_t, uint32_t>;

constexpr auto VecF32MlalBVVV = &fp_multiply_add_long<0, false>;
constexpr auto VecF32MlalTVVV = &fp_multiply_add_long<1, false>;
constexpr auto VecF32MlslBVVV = &fp_multiply_add_long<0, true>;
constexpr auto VecF32MlslTVVV = &fp_multiply_add_long<1, true>;
constexpr auto VecF32MlalBVVVI = &indexed_accumulate<uint16_t, &fp_multiply_add_long<0, false>>;
constexpr auto VecF32MlalTVVVI = &indexed_accumulate<uint16_t, &fp_multiply_add_long<1, false>>;
constexpr auto VecF32MlslBVVVI = &indexed_accumulate<uint16_t, &fp_multiply_add_long<0, true>>;
constexpr auto VecF32MlslTVVVI = &indexed_accumulate<uint16_t, &fp_multiply_add_long<1, true>>;
constexpr auto VecF32BfMlalBVVVI = &indexed_accumulate<uint16_t, &bf_multiply_add_long<0>>;
constexpr auto VecF32BfMlalTVVVI = &indexed_accumulate<uint16_t, &bf_multiply_add_long<1>>;

constexpr auto VecF32MMlaVVV = &fp_matrix_multiply_add<uint32_t>;
constexpr auto VecD64MMlaVVV = &fp_matrix_multiply_add<uint64_t>;
constexpr auto VecU32RecpEVM = &merging<uint32_t, unsigned_recip_estimate>;
constexpr auto VecU32RSqrtEVM = &merging<uint32_t, unsigned_rsqrt_estimate>;
// clang-format on

} // namespace generic
