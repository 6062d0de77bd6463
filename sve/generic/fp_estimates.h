// Estimates, Newton steps, scaling and the trigonometric and exponential
// helpers of the generic tier.
#pragma once

#include <cstdint>

#include "../fp/fp_estimate.h"
#include "../fp/fp_trig_exp.h"
#include "fp_vector.h"

namespace generic {

// FSCALE: b is a signed integer of the element's width.
template <typename T> T scale_by(T a, T b, FPSCR& status) {
  if constexpr (sizeof(T) == 2)
    return FPScale16(a, static_cast<short>(b), status);
  else if constexpr (sizeof(T) == 4)
    return FPScale32(a, static_cast<int>(b), status);
  else
    return FPScale64(a, static_cast<long>(b), status);
}

// FTSSEL: bit 0 of b picks 1.0 over a, bit 1 of b flips the sign. A pure
// bit operation, with no status.
template <typename T> T trig_select(T a, T b) {
  const T chosen = (b & 1) ? fp_constant<T>(FpConstant::one) : a;
  return (b & 2) ? sign_flipped(chosen) : chosen;
}

// FTMAD: the coefficient `imm` of the series, with a the Zdn element and b
// the Zm element.
template <typename T>
void trig_multiply_add(VecV* out, const VecV* a, const VecV* b, uint32_t imm, CpuContext* ctx) {
  compute_each<T>(out, ctx, [&](unsigned i, FPSCR& s) {
    return FPTRIMADD<T>(imm, element<T>(*a, i), element<T>(*b, i), s);
  });
}

template <typename T> struct fp_estimate_family {
  static constexpr auto RecpEV = &fp_unpredicated_unary<T, &FPRecipEstimate<T>>;
  static constexpr auto RSqrtEV = &fp_unpredicated_unary<T, &FPRSqrtEstimate<T>>;
  static constexpr auto RecpSVV = &fp_unpredicated<T, &FPRecipStepFused<T>>;
  static constexpr auto RSqrtSVV = &fp_unpredicated<T, &FPRSqrtStepFused<T>>;
  static constexpr auto RecpXVM = &fp_merging_unary<T, &FPRecpX<T>>;
  static constexpr auto ScaleVVM = &fp_merging<T, &scale_by<T>>;
  static constexpr auto EXPAV = &bit_unpredicated_unary<T, &FPEXPA<T>>;
  static constexpr auto TRIMADDVVI = &trig_multiply_add<T>;
  static constexpr auto TRISMULVV = &fp_unpredicated<T, &FPTRISMUL<T>>;
  static constexpr auto TRISSELVV = &bit_unpredicated<T, &trig_select<T>>;
};

// clang-format off
constexpr auto VecF16RecpEV = fp_estimate_family<uint16_t>::RecpEV;
constexpr auto VecF16RSqrtEV = fp_estimate_family<uint16_t>::RSqrtEV;
constexpr auto VecF16RecpSVV = fp_estimate_family<uint16_t>::RecpSVV;
constexpr auto VecF16RSqrtSVV = fp_estimate_family<uint16_t>::RSqrtSVV;
constexpr auto VecF16RecpXVM = fp_estimate_family<uint16_t>::RecpXVM;
constexpr auto VecF16ScaleVVM = fp_estimate_family<uint16_t>::ScaleVVM;
constexpr auto VecF16EXPAV = fp_estimate_family<uint16_t>::EXPAV;
constexpr auto VecF16TRIMADDVVI = fp_estimate_family<uint16_t>::TRIMADDVVI;
constexpr auto VecF16TRISMULVV = fp_estimate_family<uint16_t>::TRISMULVV;
constexpr auto VecF16TRISSELVV = fp_estimate_family<uint16_t>::TRISSELVV;

constexpr auto VecF32RecpEV = fp_estimate_family<uint32_t>::RecpEV;
constexpr auto VecF32RSqrtEV = fp_estimate_family<uint32_t>::RSqrtEV;
constexpr auto VecF32RecpSVV = fp_estimate_family<uint32_t>::RecpSVV;
constexpr auto VecF32RSqrtSVV = fp_estimate_family<uint32_t>::RSqrtSVV;
constexpr auto VecF32RecpXVM = fp_estimate_family<uint32_t>::RecpXVM;
constexpr auto VecF32ScaleVVM = fp_estimate_family<uint32_t>::ScaleVVM;
constexpr auto VecF32EXPAV = fp_estimate_family<uint32_t>::EXPAV;
constexpr auto VecF32TRIMADDVVI = fp_estimate_family<uint32_t>::TRIMADDVVI;
constexpr auto VecF32TRISMULVV = fp_estimate_family<uint32_t>::TRISMULVV;
constexpr auto VecF32TRISSELVV = fp_estimate_family<uint32_t>::TRISSELVV;

constexpr auto VecD64RecpEV = fp_estimate_family<uint64_t>::RecpEV;
constexpr auto VecD64RSqrtEV = fp_estimate_family<uint64_t>::RSqrtEV;
constexpr auto VecD64RecpSVV = fp_estimate_family<uint64_t>::RecpSVV;
constexpr auto VecD64RSqrtSVV = fp_estimate_family<uint64_t>::RSqrtSVV;
constexpr auto VecD64RecpXVM = fp_estimate_family<uint64_t>::RecpXVM;
constexpr auto VecD64ScaleVVM = fp_estimate_family<uint64_t>::ScaleVVM;
constexpr auto VecD64EXPAV = fp_estimate_family<uint64_t>::EXPAV;
constexpr auto VecD64TRIMADDVVI = fp_estimate_family<uint64_t>::TRIMADDVVI;
constexpr auto VecD64TRISMULVV = fp_estimate_family<uint64_t>::TRISMULVV;
constexpr auto VecD64TRISSELVV = fp_estimate_family<uint64_t>::TRISSELVV;
// clang-format on

} // namespace generic
