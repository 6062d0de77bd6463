// Fused multiply-add: the accumulating forms (fmla family, the result
// replaces the addend), the multiplicand forms (fmad family, the result
// replaces the first factor) and the complex fcmla.
#include "../state/cpu_state.h"
#include "fp_element.h"
#include "whole_vector.h"

namespace ZORVO_LENGTH {

namespace {

// Negation is the sign flip of fneg, before the fmadd: a NaN operand comes
// out of the fmadd with its sign flipped, as the instruction set wants.
template <typename T> T negate(T v) { return from_bits<T>(to_bits(v) ^ sign_bit<T>()); }

constexpr bool kNegate = true, kKeep = false;

// acc + n * m, lane by lane, each with a single rounding: the vector fmla
// computes what fmadd computes for each lane, flags included.
inline lanes128<float> host_fmla(lanes128<float> acc, lanes128<float> n, lanes128<float> m) {
  asm volatile("fmla %0.4s, %1.4s, %2.4s" : "+w"(acc) : "w"(n), "w"(m));
  return acc;
}
inline lanes128<double> host_fmla(lanes128<double> acc, lanes128<double> n, lanes128<double> m) {
  asm volatile("fmla %0.2d, %1.2d, %2.2d" : "+w"(acc) : "w"(n), "w"(m));
  return acc;
}

template <typename T> lanes128<T> negate_lanes(lanes128<T> v) {
  using B = lanes128<bits_of<T>>;
  return reinterpret_cast<lanes128<T>>(reinterpret_cast<B>(v) ^ sign_bit<T>());
}

// Every element active: one vector fmla per 16 bytes. With inactive
// elements the lanes could raise flags that the instruction does not.
template <typename T, bool NegateAddend, bool NegateFactor1>
void fused_whole(cpu_state* s, unsigned dest, unsigned addend, unsigned factor1, unsigned factor2) {
  vreg out;
  for (unsigned chunk = 0; chunk < chunks(); ++chunk) {
    lanes128<T> acc = load_chunk<T>(s->z[addend], chunk), x = load_chunk<T>(s->z[factor1], chunk);
    if (NegateAddend) acc = negate_lanes<T>(acc);
    if (NegateFactor1) x = negate_lanes<T>(x);
    store_chunk<T>(out.b, chunk, host_fmla(acc, x, load_chunk<T>(s->z[factor2], chunk)));
  }
  commit(s->z[dest], out);
}

// dest = (+-addend) + (+-factor1) x factor2, where Pg is active.
template <bool NegateAddend, bool NegateFactor1>
aarch64_decode_rc fused(cpu_state* s, aarch64_z_reg dest, aarch64_p_reg pg, aarch64_z_reg addend,
                        aarch64_z_reg factor1, aarch64_z_reg factor2) {
  by_fp_size(dest.rw_elem, [&](auto t) {
    using T = decltype(t);
    if (all_active<bits_of<T>>(s->p[pg.num]))
      return fused_whole<T, NegateAddend, NegateFactor1>(s, dest.num, addend.num, factor1.num,
                                                         factor2.num);
    const uint8_t* a = s->z[addend.num];
    const uint8_t* n = s->z[factor1.num];
    const uint8_t* m = s->z[factor2.num];
    merge_elements<T>(s, dest, pg, [&](unsigned i) {
      T acc = load_elem<T>(a, i), x = load_elem<T>(n, i);
      if (NegateAddend) acc = negate(acc);
      if (NegateFactor1) x = negate(x);
      return host_fmadd(x, load_elem<T>(m, i), acc);
    });
  });
  return AARCH64_DECODE_OK;
}

// One pair (real at 2k, imaginary at 2k + 1) of the complex multiply-add.
// Rotation bit 0 picks which Zn element multiplies and swaps Zm's elements;
// the table of negations follows the rotation by 0, 90, 180 or 270 degrees.
template <typename T>
void complex_pair(const uint8_t* acc, const uint8_t* n, const uint8_t* m, const uint8_t* p,
                  unsigned k, unsigned rotation, uint8_t* out) {
  const unsigned sel = rotation & 1;
  const bool negate_real = (rotation & 1) != (rotation >> 1 & 1);
  const bool negate_imaginary = (rotation >> 1 & 1) != 0;
  const T factor = load_elem<T>(n, 2 * k + sel);
  T m_real = load_elem<T>(m, 2 * k + sel), m_imaginary = load_elem<T>(m, 2 * k + (sel ^ 1));
  if (negate_real) m_real = negate(m_real);
  if (negate_imaginary) m_imaginary = negate(m_imaginary);
  const T real = load_elem<T>(acc, 2 * k), imaginary = load_elem<T>(acc, 2 * k + 1);
  store_elem<T>(out, 2 * k, active<T>(p, 2 * k) ? host_fmadd(factor, m_real, real) : real);
  store_elem<T>(out, 2 * k + 1,
                active<T>(p, 2 * k + 1) ? host_fmadd(factor, m_imaginary, imaginary) : imaginary);
}

} // namespace

aarch64_decode_rc sve_fmla_zpzz(cpu_state* s, aarch64_z_reg zda, aarch64_p_reg pg, aarch64_z_reg zn,
                                aarch64_z_reg zm) {
  return fused<kKeep, kKeep>(s, zda, pg, zda, zn, zm);
}
aarch64_decode_rc sve_fmls_zpzz(cpu_state* s, aarch64_z_reg zda, aarch64_p_reg pg, aarch64_z_reg zn,
                                aarch64_z_reg zm) {
  return fused<kKeep, kNegate>(s, zda, pg, zda, zn, zm);
}
aarch64_decode_rc sve_fnmla_zpzz(cpu_state* s, aarch64_z_reg zda, aarch64_p_reg pg,
                                 aarch64_z_reg zn, aarch64_z_reg zm) {
  return fused<kNegate, kNegate>(s, zda, pg, zda, zn, zm);
}
aarch64_decode_rc sve_fnmls_zpzz(cpu_state* s, aarch64_z_reg zda, aarch64_p_reg pg,
                                 aarch64_z_reg zn, aarch64_z_reg zm) {
  return fused<kNegate, kKeep>(s, zda, pg, zda, zn, zm);
}

aarch64_decode_rc sve_fmad_zpzz(cpu_state* s, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm,
                                aarch64_z_reg za) {
  return fused<kKeep, kKeep>(s, zdn, pg, za, zdn, zm);
}
aarch64_decode_rc sve_fmsb_zpzz(cpu_state* s, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm,
                                aarch64_z_reg za) {
  return fused<kKeep, kNegate>(s, zdn, pg, za, zdn, zm);
}
aarch64_decode_rc sve_fnmad_zpzz(cpu_state* s, aarch64_z_reg zdn, aarch64_p_reg pg,
                                 aarch64_z_reg zm, aarch64_z_reg za) {
  return fused<kNegate, kNegate>(s, zdn, pg, za, zdn, zm);
}
aarch64_decode_rc sve_fnmsb_zpzz(cpu_state* s, aarch64_z_reg zdn, aarch64_p_reg pg,
                                 aarch64_z_reg zm, aarch64_z_reg za) {
  return fused<kNegate, kKeep>(s, zdn, pg, za, zdn, zm);
}

aarch64_decode_rc sve_fcmla_zpzzr(cpu_state* s, aarch64_z_reg zda, aarch64_p_reg pg,
                                  aarch64_z_reg zn, aarch64_z_reg zm, unsigned int rotation) {
  by_fp_size(zda.rw_elem, [&](auto t) {
    using T = decltype(t);
    vreg out;
    const unsigned count = elements_of<T>() / 2;
#pragma GCC unroll 6
    for (unsigned k = 0; k < count; ++k)
      complex_pair<T>(s->z[zda.num], s->z[zn.num], s->z[zm.num], s->p[pg.num], k, rotation & 3,
                      out.b);
    commit(s->z[zda.num], out);
  });
  return AARCH64_DECODE_OK;
}

} // namespace ZORVO_LENGTH
