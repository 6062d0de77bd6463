// Floating-point conversions and rounding to integral of the generic tier.
// A conversion runs over the wider container C of its two sides; the
// narrower side sits in the container's low bits, the result is
// zero-extended, and an inactive element keeps its whole container.
#pragma once

#include <cstdint>
#include <type_traits>

#include "../fp/fp_convert.h"
#include "fp_vector.h"

namespace generic {

inline FPRounding rounding_of(FPSCR status) {
  return FPRounding((status >> FPSCR_RMODE_SHIFT) & 3);
}

// SCVTF, UCVTF: Source is the integer type of the low bits, extended to 64
// bits by its sign; the rounding is the controls'.
template <typename C, typename Result, typename Source> C from_integer(C x, FPSCR& status) {
  constexpr bool is_unsigned = std::is_unsigned_v<Source>;
  const uint64_t extended = is_unsigned ? uint64_t(Source(x)) : uint64_t(int64_t(Source(x)));
  return fplibFixedToFP<Result>(extended, 0, is_unsigned, rounding_of(status), status);
}

// FCVTZS, FCVTZU: towards zero, saturating.
template <typename C, typename Source, typename Result, bool Unsigned>
C to_integer(C x, FPSCR& status) {
  return fplibFPToFixed<Source, Result>(Source(x), 0, Unsigned, FPRounding_ZERO, status);
}

// FCVT to and from half: source and target are always IEEE half precision,
// and half denormals are kept, whatever AHP and FZ16 say.
template <typename C, typename Source, typename Result> C between_formats(C x, FPSCR& status) {
  status &= ~(FPSCR_AHP | FPSCR_FZ16);
  return FPConvert<Source, Result>(Source(x), rounding_of(status), status);
}

// FRINT<letter>: a fixed rounding, or the controls' one.
constexpr int kControlsRounding = -1;
template <typename T, int Rounding, bool Exact> T round_to_integral(T x, FPSCR& status) {
  const FPRounding rounding =
      Rounding == kControlsRounding ? rounding_of(status) : FPRounding(Rounding);
  return FPRoundInt<T>(x, rounding, Exact, status);
}

template <typename T> struct fp_round_family {
  static constexpr auto FRIntAVM =
      &fp_merging_unary<T, &round_to_integral<T, FPRounding_TIEAWAY, false>>;
  static constexpr auto FRIntIVM =
      &fp_merging_unary<T, &round_to_integral<T, kControlsRounding, false>>;
  static constexpr auto FRIntMVM =
      &fp_merging_unary<T, &round_to_integral<T, FPRounding_NEGINF, false>>;
  static constexpr auto FRIntNVM =
      &fp_merging_unary<T, &round_to_integral<T, FPRounding_TIEEVEN, false>>;
  static constexpr auto FRIntPVM =
      &fp_merging_unary<T, &round_to_integral<T, FPRounding_POSINF, false>>;
  static constexpr auto FRIntXVM =
      &fp_merging_unary<T, &round_to_integral<T, kControlsRounding, true>>;
  static constexpr auto FRIntZVM =
      &fp_merging_unary<T, &round_to_integral<T, FPRounding_ZERO, false>>;
};

// clang-format off
constexpr auto VecF16FRIntAVM = fp_round_family<uint16_t>::FRIntAVM;
constexpr auto VecF16FRIntIVM = fp_round_family<uint16_t>::FRIntIVM;
constexpr auto VecF16FRIntMVM = fp_round_family<uint16_t>::FRIntMVM;
constexpr auto VecF16FRIntNVM = fp_round_family<uint16_t>::FRIntNVM;
constexpr auto VecF16FRIntPVM = fp_round_family<uint16_t>::FRIntPVM;
constexpr auto VecF16FRIntXVM = fp_round_family<uint16_t>::FRIntXVM;
constexpr auto VecF16FRIntZVM = fp_round_family<uint16_t>::FRIntZVM;

constexpr auto VecF32FRIntAVM = fp_round_family<uint32_t>::FRIntAVM;
constexpr auto VecF32FRIntIVM = fp_round_family<uint32_t>::FRIntIVM;
constexpr auto VecF32FRIntMVM = fp_round_family<uint32_t>::FRIntMVM;
constexpr auto VecF32FRIntNVM = fp_round_family<uint32_t>::FRIntNVM;
constexpr auto VecF32FRIntPVM = fp_round_family<uint32_t>::FRIntPVM;
constexpr auto VecF32FRIntXVM = fp_round_family<uint32_t>::FRIntXVM;
constexpr auto VecF32FRIntZVM = fp_round_family<uint32_t>::FRIntZVM;

constexpr auto VecD64FRIntAVM = fp_round_family<uint64_t>::FRIntAVM;
constexpr auto VecD64FRIntIVM = fp_round_family<uint64_t>::FRIntIVM;
constexpr auto VecD64FRIntMVM = fp_round_family<uint64_t>::FRIntMVM;
constexpr auto VecD64FRIntNVM = fp_round_family<uint64_t>::FRIntNVM;
constexpr auto VecD64FRIntPVM = fp_round_family<uint64_t>::FRIntPVM;
constexpr auto VecD64FRIntXVM = fp_round_family<uint64_t>::FRIntXVM;
constexpr auto VecD64FRIntZVM = fp_round_family<uint64_t>::FRIntZVM;
// clang-format on

// clang-format off
constexpr auto VecF16FromS2VM = &fp_merging_unary<uint16_t, &from_integer<uint16_t, uint16_t, int16_t>>;
constexpr auto VecF16FromU2VM = &fp_merging_unary<uint16_t, &from_integer<uint16_t, uint16_t, uint16_t>>;
constexpr auto VecF16FromS4VM = &fp_merging_unary<uint32_t, &from_integer<uint32_t, uint16_t, int32_t>>;
constexpr auto VecF16FromU4VM = &fp_merging_unary<uint32_t, &from_integer<uint32_t, uint16_t, uint32_t>>;
constexpr auto VecF16FromS8VM = &fp_merging_unary<uint64_t, &from_integer<uint64_t, uint16_t, int64_t>>;
constexpr auto VecF16FromU8VM = &fp_merging_unary<uint64_t, &from_integer<uint64_t, uint16_t, uint64_t>>;
constexpr auto VecF64FromU8VM = &fp_merging_unary<uint64_t, &from_integer<uint64_t, uint32_t, uint64_t>>;

constexpr auto VecS16_2FromHVM = &fp_merging_unary<uint16_t, &to_integer<uint16_t, uint16_t, uint16_t, false>>;
constexpr auto VecU16_2FromHVM = &fp_merging_unary<uint16_t, &to_integer<uint16_t, uint16_t, uint16_t, true>>;
constexpr auto VecS32_4FromHVM = &fp_merging_unary<uint32_t, &to_integer<uint32_t, uint16_t, uint32_t, false>>;
constexpr auto VecU32_4FromHVM = &fp_merging_unary<uint32_t, &to_integer<uint32_t, uint16_t, uint32_t, true>>;
constexpr auto VecS64_8FromHVM = &fp_merging_unary<uint64_t, &to_integer<uint64_t, uint16_t, uint64_t, false>>;
constexpr auto VecU64_8FromHVM = &fp_merging_unary<uint64_t, &to_integer<uint64_t, uint16_t, uint64_t, true>>;
constexpr auto VecU32_4FromFVM = &fp_merging_unary<uint32_t, &to_integer<uint32_t, uint32_t, uint32_t, true>>;
constexpr auto VecU64_8FromFVM = &fp_merging_unary<uint64_t, &to_integer<uint64_t, uint32_t, uint64_t, true>>;

constexpr auto VecF32ExtndHVM = &fp_merging_unary<uint32_t, &between_formats<uint32_t, uint16_t, uint32_t>>;
constexpr auto VecD64ExtndHVM = &fp_merging_unary<uint64_t, &between_formats<uint64_t, uint16_t, uint64_t>>;
constexpr auto VecH32TruncFVM = &fp_merging_unary<uint32_t, &between_formats<uint32_t, uint32_t, uint16_t>>;
constexpr auto VecH64TruncDVM = &fp_merging_unary<uint64_t, &between_formats<uint64_t, uint64_t, uint16_t>>;
// clang-format on

} // namespace generic
