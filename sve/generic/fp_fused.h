// Fused multiply-add of the generic tier: the predicated forms, the
// indexed forms and the complex forms on pairs of elements.
#pragma once

#include <cstdint>

#include "../fp/fp_add_mul.h"
#include "../fp/fp_muladd.h"
#include "fp_vector.h"

namespace generic {

// Which register holds the addend: the destination (FMLA and its kin), or
// the one in bits 20:16 with the destination as the first factor (FMAD and
// its kin). Negations are done before the call, so a NaN operand reaches
// the library with its sign already flipped.
enum class Addend { destination, last };

template <typename T, Addend Where, bool NegateAddend, bool NegateProduct>
void fp_fused(VecV* out, const VecV* d, const PredV* g, const VecV* n, const VecV* m,
              CpuContext* ctx) {
  merge_computed<T>(out, *d, *g, ctx, [&](unsigned i, FPSCR& s) {
    const T dv = element<T>(*d, i), nv = element<T>(*n, i), mv = element<T>(*m, i);
    const T addend = Where == Addend::destination ? dv : mv;
    const T factor = Where == Addend::destination ? nv : dv;
    return FPMulAdd<T>(NegateAddend ? sign_flipped(addend) : addend,
                       NegateProduct ? sign_flipped(factor) : factor,
                       Where == Addend::destination ? mv : nv, s);
  });
}

// Indexed forms: the second factor is one element of each 128-bit segment.
template <typename T>
void fp_mul_indexed(VecV* out, const VecV* n, const VecV* m, uint32_t index, CpuContext* ctx) {
  compute_each<T>(out, ctx, [&](unsigned i, FPSCR& s) {
    return FPMul<T>(element<T>(*n, i), element<T>(*m, segment_lane<T>(i, index)), s);
  });
}

template <typename T, bool NegateProduct>
void fp_fused_indexed(VecV* out, const VecV* n, const VecV* m, const VecV* d, uint32_t index,
                      CpuContext* ctx) {
  compute_each<T>(out, ctx, [&](unsigned i, FPSCR& s) {
    const T x = element<T>(*n, i);
    return FPMulAdd<T>(element<T>(*d, i), NegateProduct ? sign_flipped(x) : x,
                       element<T>(*m, segment_lane<T>(i, index)), s);
  });
}

// ---- Complex numbers: the even element of a pair is the real part, the
// odd one the imaginary part. Each element has its own predicate test. ----

// FCADD: rotation 0 adds b * i, rotation 1 adds b * -i: the real part gains
// -b.imaginary (or +), the imaginary part +b.real (or -).
template <typename T>
void fp_complex_add(VecV* out, const VecV* a, const PredV* g, const VecV* b, uint32_t rotation,
                    CpuContext* ctx) {
  merge_computed<T>(out, *a, *g, ctx, [&](unsigned i, FPSCR& s) {
    const bool real = (i & 1) == 0;
    const T other = element<T>(*b, real ? i + 1 : i - 1);
    const bool negate = real == (rotation == 0);
    return FPAdd<T>(element<T>(*a, i), negate ? sign_flipped(other) : other, s);
  });
}

// FCMLA, element i of the pair at `i & ~1`, whose m pair starts at m_pair:
// rotations 0 and 2 multiply by the real part of n, 1 and 3 by the
// imaginary part, and the rotation says which part of m goes to which
// element and which is negated.
template <typename T>
T complex_mla_element(const VecV& d, const VecV& n, const VecV& m, unsigned i, unsigned m_pair,
                      uint32_t rotation, FPSCR& s) {
  const unsigned sel = rotation & 1, pair = i & ~1u;
  const bool real = (i & 1) == 0;
  const T m_part = element<T>(m, m_pair + (real ? sel : 1 - sel));
  const bool negate = real ? rotation == 1 || rotation == 2 : rotation == 2 || rotation == 3;
  return FPMulAdd<T>(element<T>(d, i), element<T>(n, pair + sel),
                     negate ? sign_flipped(m_part) : m_part, s);
}

template <typename T>
void fp_complex_mla(VecV* out, const VecV* d, const PredV* g, const VecV* n, const VecV* m,
                    uint32_t rotation, CpuContext* ctx) {
  merge_computed<T>(out, *d, *g, ctx, [&](unsigned i, FPSCR& s) {
    return complex_mla_element<T>(*d, *n, *m, i, i & ~1u, rotation, s);
  });
}

// The indexed form: the m pair is pair `index` of each 128-bit segment.
template <typename T>
void fp_complex_mla_indexed(VecV* out, const VecV* n, const VecV* m, const VecV* d,
                            uint32_t rotation, uint32_t index, CpuContext* ctx) {
  compute_each<T>(out, ctx, [&](unsigned i, FPSCR& s) {
    return complex_mla_element<T>(*d, *n, *m, i, segment_lane<T>(i & ~1u, 2 * index), rotation, s);
  });
}

template <typename T> struct fp_fused_family {
  static constexpr auto FMAVVVM = &fp_fused<T, Addend::destination, false, false>;
  static constexpr auto FMSVVVM = &fp_fused<T, Addend::destination, false, true>;
  static constexpr auto FNMAVVVM = &fp_fused<T, Addend::destination, true, true>;
  static constexpr auto FNMSVVVM = &fp_fused<T, Addend::destination, true, false>;
  static constexpr auto FMADDVVVM = &fp_fused<T, Addend::last, false, false>;
  static constexpr auto FMSUBVVVM = &fp_fused<T, Addend::last, false, true>;
  static constexpr auto FNMADDVVVM = &fp_fused<T, Addend::last, true, true>;
  static constexpr auto FNMSUBVVVM = &fp_fused<T, Addend::last, true, false>;
  static constexpr auto MulVVIX = &fp_mul_indexed<T>;
  static constexpr auto FMAVVVIX = &fp_fused_indexed<T, false>;
  static constexpr auto FMSVVVIX = &fp_fused_indexed<T, true>;
  static constexpr auto FCADDVVM = &fp_complex_add<T>;
  static constexpr auto FCMLAVVVM = &fp_complex_mla<T>;
};

// clang-format off
constexpr auto VecF16FMAVVVM = fp_fused_family<uint16_t>::FMAVVVM;
constexpr auto VecF16FMSVVVM = fp_fused_family<uint16_t>::FMSVVVM;
constexpr auto VecF16FNMAVVVM = fp_fused_family<uint16_t>::FNMAVVVM;
constexpr auto VecF16FNMSVVVM = fp_fused_family<uint16_t>::FNMSVVVM;
constexpr auto VecF16FMADDVVVM = fp_fused_family<uint16_t>::FMADDVVVM;
constexpr auto VecF16FMSUBVVVM = fp_fused_family<uint16_t>::FMSUBVVVM;
constexpr auto VecF16FNMADDVVVM = fp_fused_family<uint16_t>::FNMADDVVVM;
constexpr auto VecF16FNMSUBVVVM = fp_fused_family<uint16_t>::FNMSUBVVVM;
constexpr auto VecF16MulVVIX = fp_fused_family<uint16_t>::MulVVIX;
constexpr auto VecF16FMAVVVIX = fp_fused_family<uint16_t>::FMAVVVIX;
constexpr auto VecF16FMSVVVIX = fp_fused_family<uint16_t>::FMSVVVIX;
constexpr auto VecF16FCADDVVM = fp_fused_family<uint16_t>::FCADDVVM;
constexpr auto VecF16FCMLAVVVM = fp_fused_family<uint16_t>::FCMLAVVVM;

constexpr auto VecF32FMAVVVM = fp_fused_family<uint32_t>::FMAVVVM;
constexpr auto VecF32FMSVVVM = fp_fused_family<uint32_t>::FMSVVVM;
constexpr auto VecF32FNMAVVVM = fp_fused_family<uint32_t>::FNMAVVVM;
constexpr auto VecF32FNMSVVVM = fp_fused_family<uint32_t>::FNMSVVVM;
constexpr auto VecF32FMADDVVVM = fp_fused_family<uint32_t>::FMADDVVVM;
constexpr auto VecF32FMSUBVVVM = fp_fused_family<uint32_t>::FMSUBVVVM;
constexpr auto VecF32FNMADDVVVM = fp_fused_family<uint32_t>::FNMADDVVVM;
constexpr auto VecF32FNMSUBVVVM = fp_fused_family<uint32_t>::FNMSUBVVVM;
constexpr auto VecF32MulVVIX = fp_fused_family<uint32_t>::MulVVIX;
constexpr auto VecF32FMAVVVIX = fp_fused_family<uint32_t>::FMAVVVIX;
constexpr auto VecF32FMSVVVIX = fp_fused_family<uint32_t>::FMSVVVIX;
constexpr auto VecF32FCADDVVM = fp_fused_family<uint32_t>::FCADDVVM;
constexpr auto VecF32FCMLAVVVM = fp_fused_family<uint32_t>::FCMLAVVVM;

constexpr auto VecD64FMAVVVM = fp_fused_family<uint64_t>::FMAVVVM;
constexpr auto VecD64FMSVVVM = fp_fused_family<uint64_t>::FMSVVVM;
constexpr auto VecD64FNMAVVVM = fp_fused_family<uint64_t>::FNMAVVVM;
constexpr auto VecD64FNMSVVVM = fp_fused_family<uint64_t>::FNMSVVVM;
constexpr auto VecD64FMADDVVVM = fp_fused_family<uint64_t>::FMADDVVVM;
constexpr auto VecD64FMSUBVVVM = fp_fused_family<uint64_t>::FMSUBVVVM;
constexpr auto VecD64FNMADDVVVM = fp_fused_family<uint64_t>::FNMADDVVVM;
constexpr auto VecD64FNMSUBVVVM = fp_fused_family<uint64_t>::FNMSUBVVVM;
constexpr auto VecD64MulVVIX = fp_fused_family<uint64_t>::MulVVIX;
constexpr auto VecD64FMAVVVIX = fp_fused_family<uint64_t>::FMAVVVIX;
constexpr auto VecD64FMSVVVIX = fp_fused_family<uint64_t>::FMSVVVIX;
constexpr auto VecD64FCADDVVM = fp_fused_family<uint64_t>::FCADDVVM;
constexpr auto VecD64FCMLAVVVM = fp_fused_family<uint64_t>::FCMLAVVVM;
// clang-format on

// No double precision form of the indexed complex multiply-add exists.
constexpr auto VecF16FCMLAVVVIX = &fp_complex_mla_indexed<uint16_t>;
constexpr auto VecF32FCMLAVVVIX = &fp_complex_mla_indexed<uint32_t>;

} // namespace generic
