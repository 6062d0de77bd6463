// Floating-point add, subtract and multiply of the generic tier, element by
// element on the library, with the sign-bit operations and the copy of an
// immediate.
#pragma once

#include <cstdint>

#include "../fp/fp_add_mul.h"
#include "fp_vector.h"

namespace generic {

template <typename T> T abs_difference(T a, T b, FPSCR& status) {
  return sign_cleared(FPSub<T>(a, b, status));
}

// Immediate forms: the two constants that bit 5 chooses between.
template <typename T, FpBinary<T> Op>
constexpr auto half_or_one = &fp_merging_constant<T, Op, FpConstant::half, FpConstant::one>;
template <typename T, FpBinary<T> Op>
constexpr auto half_or_two = &fp_merging_constant<T, Op, FpConstant::half, FpConstant::two>;

// FCPY: the immediate, already at the element's width, into active elements.
template <typename T>
void fp_copy_immediate(VecV* out, const VecV* a, const PredV* g, uint64_t imm, CpuContext* ctx) {
  merge_computed<T>(out, *a, *g, ctx, [&](unsigned, FPSCR&) { return T(imm); });
}

// The family for one element type; each kind below names its members.
template <typename T> struct fp_add_mul_family {
  static constexpr auto AddVVM = &fp_merging<T, &FPAdd<T>>;
  static constexpr auto SubVVM = &fp_merging<T, &FPSub<T>>;
  static constexpr auto MulVVM = &fp_merging<T, &FPMul<T>>;
  static constexpr auto SubRVVM = &fp_merging<T, &swapped<&FPSub<T>, T>>;
  static constexpr auto MulXVVM = &fp_merging<T, &FPMulX<T>>;
  static constexpr auto AbdVVM = &fp_merging<T, &abs_difference<T>>;
  static constexpr auto AddVVX = &fp_unpredicated<T, &FPAdd<T>>;
  static constexpr auto SubVVX = &fp_unpredicated<T, &FPSub<T>>;
  static constexpr auto MulVVX = &fp_unpredicated<T, &FPMul<T>>;
  static constexpr auto AddVIM = half_or_one<T, &FPAdd<T>>;
  static constexpr auto SubVIM = half_or_one<T, &FPSub<T>>;
  static constexpr auto SubRVIM = half_or_one<T, &swapped<&FPSub<T>, T>>;
  static constexpr auto MulVIM = half_or_two<T, &FPMul<T>>;
  static constexpr auto AbsVM = &bit_merging_unary<T, &sign_cleared<T>>;
  static constexpr auto NegVM = &bit_merging_unary<T, &sign_flipped<T>>;
  static constexpr auto DupIM = &fp_copy_immediate<T>;
};

// clang-format off
constexpr auto VecF16AddVVM = fp_add_mul_family<uint16_t>::AddVVM;
constexpr auto VecF16SubVVM = fp_add_mul_family<uint16_t>::SubVVM;
constexpr auto VecF16MulVVM = fp_add_mul_family<uint16_t>::MulVVM;
constexpr auto VecF16SubRVVM = fp_add_mul_family<uint16_t>::SubRVVM;
constexpr auto VecF16MulXVVM = fp_add_mul_family<uint16_t>::MulXVVM;
constexpr auto VecF16AbdVVM = fp_add_mul_family<uint16_t>::AbdVVM;
constexpr auto VecF16AddVVX = fp_add_mul_family<uint16_t>::AddVVX;
constexpr auto VecF16SubVVX = fp_add_mul_family<uint16_t>::SubVVX;
constexpr auto VecF16MulVVX = fp_add_mul_family<uint16_t>::MulVVX;
constexpr auto VecF16AddVIM = fp_add_mul_family<uint16_t>::AddVIM;
constexpr auto VecF16SubVIM = fp_add_mul_family<uint16_t>::SubVIM;
constexpr auto VecF16SubRVIM = fp_add_mul_family<uint16_t>::SubRVIM;
constexpr auto VecF16MulVIM = fp_add_mul_family<uint16_t>::MulVIM;
constexpr auto VecF16AbsVM = fp_add_mul_family<uint16_t>::AbsVM;
constexpr auto VecF16NegVM = fp_add_mul_family<uint16_t>::NegVM;
constexpr auto VecF16DupIM = fp_add_mul_family<uint16_t>::DupIM;

constexpr auto VecF32AddVVM = fp_add_mul_family<uint32_t>::AddVVM;
constexpr auto VecF32SubVVM = fp_add_mul_family<uint32_t>::SubVVM;
constexpr auto VecF32MulVVM = fp_add_mul_family<uint32_t>::MulVVM;
constexpr auto VecF32SubRVVM = fp_add_mul_family<uint32_t>::SubRVVM;
constexpr auto VecF32MulXVVM = fp_add_mul_family<uint32_t>::MulXVVM;
constexpr auto VecF32AbdVVM = fp_add_mul_family<uint32_t>::AbdVVM;
constexpr auto VecF32AddVVX = fp_add_mul_family<uint32_t>::AddVVX;
constexpr auto VecF32SubVVX = fp_add_mul_family<uint32_t>::SubVVX;
constexpr auto VecF32MulVVX = fp_add_mul_family<uint32_t>::MulVVX;
constexpr auto VecF32AddVIM = fp_add_mul_family<uint32_t>::AddVIM;
constexpr auto VecF32SubVIM = fp_add_mul_family<uint32_t>::SubVIM;
constexpr auto VecF32SubRVIM = fp_add_mul_family<uint32_t>::SubRVIM;
constexpr auto VecF32MulVIM = fp_add_mul_family<uint32_t>::MulVIM;
constexpr auto VecF32AbsVM = fp_add_mul_family<uint32_t>::AbsVM;
constexpr auto VecF32NegVM = fp_add_mul_family<uint32_t>::NegVM;
constexpr auto VecF32DupIM = fp_add_mul_family<uint32_t>::DupIM;

constexpr auto VecD64AddVVM = fp_add_mul_family<uint64_t>::AddVVM;
constexpr auto VecD64SubVVM = fp_add_mul_family<uint64_t>::SubVVM;
constexpr auto VecD64MulVVM = fp_add_mul_family<uint64_t>::MulVVM;
constexpr auto VecD64SubRVVM = fp_add_mul_family<uint64_t>::SubRVVM;
constexpr auto VecD64MulXVVM = fp_add_mul_family<uint64_t>::MulXVVM;
constexpr auto VecD64AbdVVM = fp_add_mul_family<uint64_t>::AbdVVM;
constexpr auto VecD64AddVVX = fp_add_mul_family<uint64_t>::AddVVX;
constexpr auto VecD64SubVVX = fp_add_mul_family<uint64_t>::SubVVX;
constexpr auto VecD64MulVVX = fp_add_mul_family<uint64_t>::MulVVX;
constexpr auto VecD64AddVIM = fp_add_mul_family<uint64_t>::AddVIM;
constexpr auto VecD64SubVIM = fp_add_mul_family<uint64_t>::SubVIM;
constexpr auto VecD64SubRVIM = fp_add_mul_family<uint64_t>::SubRVIM;
constexpr auto VecD64MulVIM = fp_add_mul_family<uint64_t>::MulVIM;
constexpr auto VecD64AbsVM = fp_add_mul_family<uint64_t>::AbsVM;
constexpr auto VecD64NegVM = fp_add_mul_family<uint64_t>::NegVM;
constexpr auto VecD64DupIM = fp_add_mul_family<uint64_t>::DupIM;
// clang-format on

} // namespace generic
