// Floating-point reductions of the generic tier: the strictly ordered sum,
// and the balanced trees of FADDV, FMAXV, FMINV, FMAXNMV and FMINNMV.
#pragma once

#include <cstdint>

#include "../fp/fp_add_mul.h"
#include "fp_vector.h"

namespace generic {

// FADDA: the initial value plus each active element in turn. Inactive
// elements take no part at all, so with none active the initial value comes
// back bit for bit.
template <typename T>
uint64_t fp_ordered_sum(const PredV* g, uint64_t initial, const VecV* a, CpuContext* ctx) {
  T sum = T(initial);
  const unsigned n = element_count(ctx, sizeof(T) * 8);
  for (unsigned i = 0; i < n; ++i)
    if (active(*g, i, sizeof(T))) {
      const T x = element<T>(*a, i);
      sum = with_status(ctx, [&](FPSCR& s) { return FPAdd<T>(sum, x, s); });
    }
  return sum;
}

// The elements, inactive ones replaced by the identity, padded with it to a
// power of two and combined in neighbouring pairs, level by level. The
// identity takes part in real library calls (a -0 plus +0 gives +0, a
// denormal may be flushed).
template <typename T, FpBinary<T> Op, FpConstant Identity>
uint64_t fp_tree_reduce(const PredV* g, const VecV* a, CpuContext* ctx) {
  constexpr unsigned kMaxElements = sizeof(VecV) / sizeof(T);
  T slots[kMaxElements];
  const unsigned n = element_count(ctx, sizeof(T) * 8);
  unsigned p = 1;
  while (p < n) p *= 2;
  const T identity = fp_constant<T>(Identity);
  for (unsigned i = 0; i < p; ++i)
    slots[i] = i < n && active(*g, i, sizeof(T)) ? element<T>(*a, i) : identity;
  for (; p > 1; p /= 2)
    for (unsigned k = 0; k < p / 2; ++k) {
      const T left = slots[2 * k], right = slots[2 * k + 1];
      slots[k] = with_status(ctx, [&](FPSCR& s) { return Op(left, right, s); });
    }
  return slots[0];
}

template <typename T> struct fp_sum_family {
  static constexpr auto AddReduceAV = &fp_ordered_sum<T>;
  static constexpr auto AddReduceFV = &fp_tree_reduce<T, &FPAdd<T>, FpConstant::zero>;
};

// clang-format off
constexpr auto VecF16AddReduceAV = fp_sum_family<uint16_t>::AddReduceAV;
constexpr auto VecF16AddReduceFV = fp_sum_family<uint16_t>::AddReduceFV;

constexpr auto VecF32AddReduceAV = fp_sum_family<uint32_t>::AddReduceAV;
constexpr auto VecF32AddReduceFV = fp_sum_family<uint32_t>::AddReduceFV;

constexpr auto VecD64AddReduceAV = fp_sum_family<uint64_t>::AddReduceAV;
constexpr auto VecD64AddReduceFV = fp_sum_family<uint64_t>::AddReduceFV;
// clang-format on

} // namespace generic
