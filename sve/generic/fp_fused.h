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
  VecV r;
  const unsigned count = element_count(ctx, sizeof(T) * 8);
  for (unsigned i = 0; i < count; ++i) {
    const T dv = element<T>(*d, i);
    if (!active(*g, i, sizeof(T))) {
      set_element<T>(r, i, dv);
      continue;
    }
    const T nv = element<T>(*n, i), mv = element<T>(*m, i);
    T addend = Where == Addend::destination ? dv : mv;
    T factor = Where == Addend::destination ? nv : dv;
    const T other = Where == Addend::destination ? mv : nv;
    if (NegateAddend) addend = sign_flipped(addend);
    if (NegateProduct) factor = sign_flipped(factor);
    set_element<T>(
        r, i, with_status(ctx, [&](FPSCR& s) { return FPMulAdd<T>(addend, factor, other, s); }));
  }
  *out = r;
}

// Indexed forms: the second factor is one element of each 128-bit segment.
template <typename T>
void fp_mul_indexed(VecV* out, const VecV* n, const VecV* m, uint32_t index, CpuContext* ctx) {
  VecV r;
  const unsigned count = element_count(ctx, sizeof(T) * 8);
  for (unsigned i = 0; i < count; ++i) {
    const T x = element<T>(*n, i), y = element<T>(*m, segment_lane<T>(i, index));
    set_element<T>(r, i, with_status(ctx, [&](FPSCR& s) { return FPMul<T>(x, y, s); }));
  }
  *out = r;
}

template <typename T, bool NegateProduct>
void fp_fused_indexed(VecV* out, const VecV* n, const VecV* m, const VecV* d, uint32_t index,
                      CpuContext* ctx) {
  VecV r;
  const unsigned count = element_count(ctx, sizeof(T) * 8);
  for (unsigned i = 0; i < count; ++i) {
    const T addend = element<T>(*d, i), y = element<T>(*m, segment_lane<T>(i, index));
    const T x = NegateProduct ? sign_flipped(element<T>(*n, i)) : element<T>(*n, i);
    set_element<T>(r, i, with_status(ctx, [&](FPSCR& s) { return FPMulAdd<T>(addend, x, y, s); }));
  }
  *out = r;
}

// ---- Complex numbers: the even element is the real part, the odd one the
// imaginary part. Each element has its own predicate test. ----

// FCADD: rotation 0 adds b * i, rotation 1 adds b * -i.
template <typename T>
void fp_complex_add(VecV* out, const VecV* a, const PredV* g, const VecV* b, uint32_t rotation,
                    CpuContext* ctx) {
  VecV r = *a;
  const unsigned count = element_count(ctx, sizeof(T) * 8);
  for (unsigned i = 0; i + 1 < count; i += 2) {
    const T ar = element<T>(*a, i), ai = element<T>(*a, i + 1);
    const T br = element<T>(*b, i), bi = element<T>(*b, i + 1);
    const T real_term = rotation ? bi : sign_flipped(bi);
    const T imaginary_term = rotation ? sign_flipped(br) : br;
    if (active(*g, i, sizeof(T)))
      set_element<T>(r, i, with_status(ctx, [&](FPSCR& s) { return FPAdd<T>(ar, real_term, s); }));
    if (active(*g, i + 1, sizeof(T)))
      set_element<T>(r, i + 1,
                     with_status(ctx, [&](FPSCR& s) { return FPAdd<T>(ai, imaginary_term, s); }));
  }
  *out = r;
}

// One step of a complex multiply-add of the pair at n_pair and m_pair into
// the pair at i: rotations 0 and 2 take the real part of n, 1 and 3 the
// imaginary part, and the rotation says which part of m goes where and
// which is negated.
template <typename T>
void complex_mla_pair(VecV& r, const VecV& d, const VecV& n, unsigned n_pair, const VecV& m,
                      unsigned m_pair, unsigned i, uint32_t rotation, bool real_active,
                      bool imaginary_active, CpuContext* ctx) {
  const unsigned sel = rotation & 1;
  const T n_part = element<T>(n, n_pair + sel);
  T m_real = element<T>(m, m_pair + sel), m_imaginary = element<T>(m, m_pair + 1 - sel);
  if (rotation == 1 || rotation == 2) m_real = sign_flipped(m_real);
  if (rotation == 2 || rotation == 3) m_imaginary = sign_flipped(m_imaginary);
  const T dr = element<T>(d, i), di = element<T>(d, i + 1);
  if (real_active)
    set_element<T>(r, i,
                   with_status(ctx, [&](FPSCR& s) { return FPMulAdd<T>(dr, n_part, m_real, s); }));
  if (imaginary_active)
    set_element<T>(r, i + 1, with_status(ctx, [&](FPSCR& s) {
                     return FPMulAdd<T>(di, n_part, m_imaginary, s);
                   }));
}

template <typename T>
void fp_complex_mla(VecV* out, const VecV* d, const PredV* g, const VecV* n, const VecV* m,
                    uint32_t rotation, CpuContext* ctx) {
  VecV r = *d;
  const unsigned count = element_count(ctx, sizeof(T) * 8);
  for (unsigned i = 0; i + 1 < count; i += 2)
    complex_mla_pair<T>(r, *d, *n, i, *m, i, i, rotation, active(*g, i, sizeof(T)),
                        active(*g, i + 1, sizeof(T)), ctx);
  *out = r;
}

// The indexed form: the m pair is pair `index` of each 128-bit segment.
template <typename T>
void fp_complex_mla_indexed(VecV* out, const VecV* n, const VecV* m, const VecV* d,
                            uint32_t rotation, uint32_t index, CpuContext* ctx) {
  VecV r = *d;
  const unsigned count = element_count(ctx, sizeof(T) * 8);
  for (unsigned i = 0; i + 1 < count; i += 2)
    complex_mla_pair<T>(r, *d, *n, i, *m, segment_lane<T>(i, 2 * index), i, rotation, true, true,
                        ctx);
  *out = r;
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
