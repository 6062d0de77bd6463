// Floating-point comparisons of the generic tier, into a predicate. An
// inactive element gives 0, and NZCV is left alone.
#pragma once

#include <cstdint>

#include "../fp/fp_compare.h"
#include "fp_vector.h"

namespace generic {

template <typename T> using FpCondition = bool (*)(T, T, FPSCR&);

template <typename T> bool not_equal(T a, T b, FPSCR& status) {
  return !FPCompareEQ<T>(a, b, status);
}
// FACGE, FACGT: the condition on the magnitudes.
template <typename T, FpCondition<T> Cond> bool by_magnitude(T a, T b, FPSCR& status) {
  return Cond(sign_cleared(a), sign_cleared(b), status);
}

template <typename T, FpCondition<T> Cond>
void fp_compare_each(PredV* out, const PredV* g, const VecV* a, const VecV* b, bool against_zero,
                     CpuContext* ctx) {
  PredV r{};
  const unsigned n = element_count(ctx, sizeof(T) * 8);
  for (unsigned i = 0; i < n; ++i) {
    bool outcome = false;
    if (active(*g, i, sizeof(T))) {
      const T x = element<T>(*a, i), y = against_zero ? T(0) : element<T>(*b, i);
      outcome = with_status(ctx, [&](FPSCR& s) { return Cond(x, y, s); });
    }
    set_group(r, i, sizeof(T), outcome);
  }
  *out = r;
}

template <typename T, FpCondition<T> Cond>
void fp_compare_vectors(PredV* out, const PredV* g, const VecV* a, const VecV* b, CpuContext* ctx) {
  fp_compare_each<T, Cond>(out, g, a, b, false, ctx);
}
template <typename T, FpCondition<T> Cond>
void fp_compare_zero(PredV* out, const PredV* g, const VecV* a, CpuContext* ctx) {
  fp_compare_each<T, Cond>(out, g, a, a, true, ctx);
}

template <typename T> struct fp_compare_family {
  static constexpr auto CmpEQVVZ = &fp_compare_vectors<T, &FPCompareEQ<T>>;
  static constexpr auto CmpNEVVZ = &fp_compare_vectors<T, &not_equal<T>>;
  static constexpr auto CmpGEVVZ = &fp_compare_vectors<T, &FPCompareGE<T>>;
  static constexpr auto CmpGTVVZ = &fp_compare_vectors<T, &FPCompareGT<T>>;
  static constexpr auto CmpUNVVZ = &fp_compare_vectors<T, &FPCompareUN<T>>;
  static constexpr auto AcGEVVZ = &fp_compare_vectors<T, &by_magnitude<T, &FPCompareGE<T>>>;
  static constexpr auto AcGTVVZ = &fp_compare_vectors<T, &by_magnitude<T, &FPCompareGT<T>>>;
  static constexpr auto CmpEQV0Z = &fp_compare_zero<T, &FPCompareEQ<T>>;
  static constexpr auto CmpNEV0Z = &fp_compare_zero<T, &not_equal<T>>;
  static constexpr auto CmpGEV0Z = &fp_compare_zero<T, &FPCompareGE<T>>;
  static constexpr auto CmpGTV0Z = &fp_compare_zero<T, &FPCompareGT<T>>;
  static constexpr auto CmpLEV0Z = &fp_compare_zero<T, &swapped<&FPCompareGE<T>, T>>;
  static constexpr auto CmpLTV0Z = &fp_compare_zero<T, &swapped<&FPCompareGT<T>, T>>;
};

// clang-format off
constexpr auto VecF16CmpEQVVZ = fp_compare_family<uint16_t>::CmpEQVVZ;
constexpr auto VecF16CmpNEVVZ = fp_compare_family<uint16_t>::CmpNEVVZ;
constexpr auto VecF16CmpGEVVZ = fp_compare_family<uint16_t>::CmpGEVVZ;
constexpr auto VecF16CmpGTVVZ = fp_compare_family<uint16_t>::CmpGTVVZ;
constexpr auto VecF16CmpUNVVZ = fp_compare_family<uint16_t>::CmpUNVVZ;
constexpr auto VecF16AcGEVVZ = fp_compare_family<uint16_t>::AcGEVVZ;
constexpr auto VecF16AcGTVVZ = fp_compare_family<uint16_t>::AcGTVVZ;
constexpr auto VecF16CmpEQV0Z = fp_compare_family<uint16_t>::CmpEQV0Z;
constexpr auto VecF16CmpNEV0Z = fp_compare_family<uint16_t>::CmpNEV0Z;
constexpr auto VecF16CmpGEV0Z = fp_compare_family<uint16_t>::CmpGEV0Z;
constexpr auto VecF16CmpGTV0Z = fp_compare_family<uint16_t>::CmpGTV0Z;
constexpr auto VecF16CmpLEV0Z = fp_compare_family<uint16_t>::CmpLEV0Z;
constexpr auto VecF16CmpLTV0Z = fp_compare_family<uint16_t>::CmpLTV0Z;

constexpr auto VecF32CmpEQVVZ = fp_compare_family<uint32_t>::CmpEQVVZ;
constexpr auto VecF32CmpNEVVZ = fp_compare_family<uint32_t>::CmpNEVVZ;
constexpr auto VecF32CmpGEVVZ = fp_compare_family<uint32_t>::CmpGEVVZ;
constexpr auto VecF32CmpGTVVZ = fp_compare_family<uint32_t>::CmpGTVVZ;
constexpr auto VecF32CmpUNVVZ = fp_compare_family<uint32_t>::CmpUNVVZ;
constexpr auto VecF32AcGEVVZ = fp_compare_family<uint32_t>::AcGEVVZ;
constexpr auto VecF32AcGTVVZ = fp_compare_family<uint32_t>::AcGTVVZ;
constexpr auto VecF32CmpEQV0Z = fp_compare_family<uint32_t>::CmpEQV0Z;
constexpr auto VecF32CmpNEV0Z = fp_compare_family<uint32_t>::CmpNEV0Z;
constexpr auto VecF32CmpGEV0Z = fp_compare_family<uint32_t>::CmpGEV0Z;
constexpr auto VecF32CmpGTV0Z = fp_compare_family<uint32_t>::CmpGTV0Z;
constexpr auto VecF32CmpLEV0Z = fp_compare_family<uint32_t>::CmpLEV0Z;
constexpr auto VecF32CmpLTV0Z = fp_compare_family<uint32_t>::CmpLTV0Z;

constexpr auto VecD64CmpEQVVZ = fp_compare_family<uint64_t>::CmpEQVVZ;
constexpr auto VecD64CmpNEVVZ = fp_compare_family<uint64_t>::CmpNEVVZ;
constexpr auto VecD64CmpGEVVZ = fp_compare_family<uint64_t>::CmpGEVVZ;
constexpr auto VecD64CmpGTVVZ = fp_compare_family<uint64_t>::CmpGTVVZ;
constexpr auto VecD64CmpUNVVZ = fp_compare_family<uint64_t>::CmpUNVVZ;
constexpr auto VecD64AcGEVVZ = fp_compare_family<uint64_t>::AcGEVVZ;
constexpr auto VecD64AcGTVVZ = fp_compare_family<uint64_t>::AcGTVVZ;
constexpr auto VecD64CmpEQV0Z = fp_compare_family<uint64_t>::CmpEQV0Z;
constexpr auto VecD64CmpNEV0Z = fp_compare_family<uint64_t>::CmpNEV0Z;
constexpr auto VecD64CmpGEV0Z = fp_compare_family<uint64_t>::CmpGEV0Z;
constexpr auto VecD64CmpGTV0Z = fp_compare_family<uint64_t>::CmpGTV0Z;
constexpr auto VecD64CmpLEV0Z = fp_compare_family<uint64_t>::CmpLEV0Z;
constexpr auto VecD64CmpLTV0Z = fp_compare_family<uint64_t>::CmpLTV0Z;
// clang-format on

} // namespace generic
