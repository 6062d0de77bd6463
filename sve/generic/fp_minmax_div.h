// Floating-point divide, square root, minimum and maximum of the generic
// tier, with the minimum and maximum reductions.
#pragma once

#include <cstdint>

#include "../fp/fp_compare.h"
#include "../fp/fp_div_sqrt.h"
#include "fp_reductions.h"
#include "fp_vector.h"

namespace generic {

template <typename T, FpBinary<T> Op>
constexpr auto zero_or_one = &fp_merging_constant<T, Op, FpConstant::zero, FpConstant::one>;

template <typename T> struct fp_minmax_div_family {
  static constexpr auto DivVVM = &fp_merging<T, &FPDiv<T>>;
  static constexpr auto DivRVVM = &fp_merging<T, &swapped<&FPDiv<T>, T>>;
  static constexpr auto SqrtVM = &fp_merging_unary<T, &FPSqrt<T>>;
  static constexpr auto MaxVVM = &fp_merging<T, &FPMax<T>>;
  static constexpr auto MinVVM = &fp_merging<T, &FPMin<T>>;
  static constexpr auto MaxNumVVM = &fp_merging<T, &FPMaxNum<T>>;
  static constexpr auto MinNumVVM = &fp_merging<T, &FPMinNum<T>>;
  static constexpr auto MaxVIM = zero_or_one<T, &FPMax<T>>;
  static constexpr auto MinVIM = zero_or_one<T, &FPMin<T>>;
  static constexpr auto MaxNumVIM = zero_or_one<T, &FPMaxNum<T>>;
  static constexpr auto MinNumVIM = zero_or_one<T, &FPMinNum<T>>;
  static constexpr auto MaxReduceFV = &fp_tree_reduce<T, &FPMax<T>, FpConstant::minus_infinity>;
  static constexpr auto MinReduceFV = &fp_tree_reduce<T, &FPMin<T>, FpConstant::plus_infinity>;
  static constexpr auto MaxNumReduceFV = &fp_tree_reduce<T, &FPMaxNum<T>, FpConstant::default_nan>;
  static constexpr auto MinNumReduceFV = &fp_tree_reduce<T, &FPMinNum<T>, FpConstant::default_nan>;
};

// clang-format off
constexpr auto VecF16DivVVM = fp_minmax_div_family<uint16_t>::DivVVM;
constexpr auto VecF16DivRVVM = fp_minmax_div_family<uint16_t>::DivRVVM;
constexpr auto VecF16SqrtVM = fp_minmax_div_family<uint16_t>::SqrtVM;
constexpr auto VecF16MaxVVM = fp_minmax_div_family<uint16_t>::MaxVVM;
constexpr auto VecF16MinVVM = fp_minmax_div_family<uint16_t>::MinVVM;
constexpr auto VecF16MaxNumVVM = fp_minmax_div_family<uint16_t>::MaxNumVVM;
constexpr auto VecF16MinNumVVM = fp_minmax_div_family<uint16_t>::MinNumVVM;
constexpr auto VecF16MaxVIM = fp_minmax_div_family<uint16_t>::MaxVIM;
constexpr auto VecF16MinVIM = fp_minmax_div_family<uint16_t>::MinVIM;
constexpr auto VecF16MaxNumVIM = fp_minmax_div_family<uint16_t>::MaxNumVIM;
constexpr auto VecF16MinNumVIM = fp_minmax_div_family<uint16_t>::MinNumVIM;
constexpr auto VecF16MaxReduceFV = fp_minmax_div_family<uint16_t>::MaxReduceFV;
constexpr auto VecF16MinReduceFV = fp_minmax_div_family<uint16_t>::MinReduceFV;
constexpr auto VecF16MaxNumReduceFV = fp_minmax_div_family<uint16_t>::MaxNumReduceFV;
constexpr auto VecF16MinNumReduceFV = fp_minmax_div_family<uint16_t>::MinNumReduceFV;

constexpr auto VecF32DivVVM = fp_minmax_div_family<uint32_t>::DivVVM;
constexpr auto VecF32DivRVVM = fp_minmax_div_family<uint32_t>::DivRVVM;
constexpr auto VecF32SqrtVM = fp_minmax_div_family<uint32_t>::SqrtVM;
constexpr auto VecF32MaxVVM = fp_minmax_div_family<uint32_t>::MaxVVM;
constexpr auto VecF32MinVVM = fp_minmax_div_family<uint32_t>::MinVVM;
constexpr auto VecF32MaxNumVVM = fp_minmax_div_family<uint32_t>::MaxNumVVM;
constexpr auto VecF32MinNumVVM = fp_minmax_div_family<uint32_t>::MinNumVVM;
constexpr auto VecF32MaxVIM = fp_minmax_div_family<uint32_t>::MaxVIM;
constexpr auto VecF32MinVIM = fp_minmax_div_family<uint32_t>::MinVIM;
constexpr auto VecF32MaxNumVIM = fp_minmax_div_family<uint32_t>::MaxNumVIM;
constexpr auto VecF32MinNumVIM = fp_minmax_div_family<uint32_t>::MinNumVIM;
constexpr auto VecF32MaxReduceFV = fp_minmax_div_family<uint32_t>::MaxReduceFV;
constexpr auto VecF32MinReduceFV = fp_minmax_div_family<uint32_t>::MinReduceFV;
constexpr auto VecF32MaxNumReduceFV = fp_minmax_div_family<uint32_t>::MaxNumReduceFV;
constexpr auto VecF32MinNumReduceFV = fp_minmax_div_family<uint32_t>::MinNumReduceFV;

constexpr auto VecD64DivVVM = fp_minmax_div_family<uint64_t>::DivVVM;
constexpr auto VecD64DivRVVM = fp_minmax_div_family<uint64_t>::DivRVVM;
constexpr auto VecD64SqrtVM = fp_minmax_div_family<uint64_t>::SqrtVM;
constexpr auto VecD64MaxVVM = fp_minmax_div_family<uint64_t>::MaxVVM;
constexpr auto VecD64MinVVM = fp_minmax_div_family<uint64_t>::MinVVM;
constexpr auto VecD64MaxNumVVM = fp_minmax_div_family<uint64_t>::MaxNumVVM;
constexpr auto VecD64MinNumVVM = fp_minmax_div_family<uint64_t>::MinNumVVM;
constexpr auto VecD64MaxVIM = fp_minmax_div_family<uint64_t>::MaxVIM;
constexpr auto VecD64MinVIM = fp_minmax_div_family<uint64_t>::MinVIM;
constexpr auto VecD64MaxNumVIM = fp_minmax_div_family<uint64_t>::MaxNumVIM;
constexpr auto VecD64MinNumVIM = fp_minmax_div_family<uint64_t>::MinNumVIM;
constexpr auto VecD64MaxReduceFV = fp_minmax_div_family<uint64_t>::MaxReduceFV;
constexpr auto VecD64MinReduceFV = fp_minmax_div_family<uint64_t>::MinReduceFV;
constexpr auto VecD64MaxNumReduceFV = fp_minmax_div_family<uint64_t>::MaxNumReduceFV;
constexpr auto VecD64MinNumReduceFV = fp_minmax_div_family<uint64_t>::MinNumReduceFV;
// clang-format on

} // namespace generic
