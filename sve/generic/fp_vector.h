// The element loops of the floating-point families. Every library call gets
// a status word of its own, a fresh copy of the context's controls, so that
// the flags of one element never leak into the next; the flags it raises
// are then added to the context's cumulative ones. Inactive elements make
// no call and raise nothing.
#pragma once

#include <cstdint>

#include "../fp/fp_core.h"
#include "vector.h"

namespace generic {

// The FPSR bits a library call may leave behind: the condition bits and QC
// as they were, and the cumulative flags IOC..IXC and IDC.
constexpr uint32_t kFpsrKept = 0xf800009f;

// An operation without a status of its own (the sign-bit operations,
// FEXPA, FTSSEL) leaves the copy as it was, and the update adds nothing.
template <typename Call> auto with_status(CpuContext* ctx, Call call) {
  FPSCR status = ctx->fpcr;
  const auto result = call(status);
  ctx->fpsr = (ctx->fpsr | uint32_t(status)) & kFpsrKept;
  return result;
}

template <typename T> using FpUnary = T (*)(T, FPSCR&);
template <typename T> using FpBinary = T (*)(T, T, FPSCR&);
template <typename T> using BitUnary = T (*)(T);
template <typename T> using BitBinary = T (*)(T, T);

template <typename T> constexpr T sign_bit = T(T(1) << (sizeof(T) * 8 - 1));
template <typename T> T sign_cleared(T x) { return T(x & ~sign_bit<T>); }
template <typename T> T sign_flipped(T x) { return T(x ^ sign_bit<T>); }

// Op with its two operands exchanged: the reversed subtract and divide, and
// the comparisons against zero that the library has no name for.
template <auto Op, typename T> auto swapped(T a, T b, FPSCR& status) { return Op(b, a, status); }

// Constants of the immediate forms, and the identities of the reductions.
enum class FpConstant { zero, half, one, two, minus_infinity, plus_infinity, default_nan };
template <typename T> constexpr T fp_constant(FpConstant c) {
  // Sign, exponent and mantissa of each width.
  constexpr unsigned mant = sizeof(T) == 2 ? 10 : sizeof(T) == 4 ? 23 : 52;
  constexpr T exp_max = T((sign_bit<T> - 1) >> mant), bias = T(exp_max >> 1);
  switch (c) {
  case FpConstant::zero:
    return 0;
  case FpConstant::half:
    return T(T(bias - 1) << mant);
  case FpConstant::one:
    return T(T(bias) << mant);
  case FpConstant::two:
    return T(T(bias + 1) << mant);
  case FpConstant::minus_infinity:
    return T(sign_bit<T> | T(exp_max << mant));
  case FpConstant::plus_infinity:
    return T(exp_max << mant);
  case FpConstant::default_nan:
    return T(T(exp_max << mant) | T(T(1) << (mant - 1)));
  }
  return 0;
}

// ---- Element-wise loops ----

// Element i of the result is compute(i, status) where its predicate bit is
// set, and element i of `old` where it is not.
template <typename T, typename Compute>
void merge_computed(VecV* out, const VecV& old, const PredV& g, CpuContext* ctx, Compute compute) {
  VecV r;
  const unsigned n = element_count(ctx, sizeof(T) * 8);
  for (unsigned i = 0; i < n; ++i)
    set_element<T>(r, i,
                   active(g, i, sizeof(T))
                       ? with_status(ctx, [&](FPSCR& s) { return T(compute(i, s)); })
                       : element<T>(old, i));
  *out = r;
}

// Every element computed.
template <typename T, typename Compute>
void compute_each(VecV* out, CpuContext* ctx, Compute compute) {
  VecV r;
  const unsigned n = element_count(ctx, sizeof(T) * 8);
  for (unsigned i = 0; i < n; ++i)
    set_element<T>(r, i, with_status(ctx, [&](FPSCR& s) { return T(compute(i, s)); }));
  *out = r;
}

// Active elements Op(a, b), inactive ones a.
template <typename T, FpBinary<T> Op>
void fp_merging(VecV* out, const VecV* a, const PredV* g, const VecV* b, CpuContext* ctx) {
  merge_computed<T>(out, *a, *g, ctx, [&](unsigned i, FPSCR& s) {
    return Op(element<T>(*a, i), element<T>(*b, i), s);
  });
}

// Active elements Op(b), inactive ones keep the destination a.
template <typename T, FpUnary<T> Op>
void fp_merging_unary(VecV* out, const VecV* a, const PredV* g, const VecV* b, CpuContext* ctx) {
  merge_computed<T>(out, *a, *g, ctx,
                    [&](unsigned i, FPSCR& s) { return Op(element<T>(*b, i), s); });
}

// The sign-bit operations, which raise nothing.
template <typename T, BitUnary<T> Op>
void bit_merging_unary(VecV* out, const VecV* a, const PredV* g, const VecV* b, CpuContext* ctx) {
  merge_computed<T>(out, *a, *g, ctx, [&](unsigned i, FPSCR&) { return Op(element<T>(*b, i)); });
}

// Bit 0 of the immediate picks one of two constants as every b.
template <typename T, FpBinary<T> Op, FpConstant IfClear, FpConstant IfSet>
void fp_merging_constant(VecV* out, const VecV* a, const PredV* g, uint32_t imm, CpuContext* ctx) {
  const T b = fp_constant<T>((imm & 1) ? IfSet : IfClear);
  merge_computed<T>(out, *a, *g, ctx,
                    [&](unsigned i, FPSCR& s) { return Op(element<T>(*a, i), b, s); });
}

template <typename T, FpBinary<T> Op>
void fp_unpredicated(VecV* out, const VecV* a, const VecV* b, CpuContext* ctx) {
  compute_each<T>(
      out, ctx, [&](unsigned i, FPSCR& s) { return Op(element<T>(*a, i), element<T>(*b, i), s); });
}

template <typename T, FpUnary<T> Op>
void fp_unpredicated_unary(VecV* out, const VecV* a, CpuContext* ctx) {
  compute_each<T>(out, ctx, [&](unsigned i, FPSCR& s) { return Op(element<T>(*a, i), s); });
}

template <typename T, BitUnary<T> Op>
void bit_unpredicated_unary(VecV* out, const VecV* a, CpuContext* ctx) {
  compute_each<T>(out, ctx, [&](unsigned i, FPSCR&) { return Op(element<T>(*a, i)); });
}

template <typename T, BitBinary<T> Op>
void bit_unpredicated(VecV* out, const VecV* a, const VecV* b, CpuContext* ctx) {
  compute_each<T>(out, ctx,
                  [&](unsigned i, FPSCR&) { return Op(element<T>(*a, i), element<T>(*b, i)); });
}

// The element of the same 128-bit segment as element e, `index` from the
// segment's start: the second operand of the indexed forms.
template <typename T> unsigned segment_lane(unsigned e, unsigned index) {
  constexpr unsigned per_segment = 16 / sizeof(T);
  return (e & ~(per_segment - 1)) + index;
}

} // namespace generic
