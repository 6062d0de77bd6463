// Element loops of the floating-point handlers. Elements are read and
// written as float or double by plain copies, which move bits and raise
// nothing; only the host instructions of host_fp.h compute.
#pragma once

#include <cstdint>

#include "element.h"
#include "host_fp.h"

namespace ZORVO_LENGTH {

// Calls fn with a double for size d and a float for anything else: the
// floating-point handlers exist at s and d only.
template <typename Fn> inline void by_fp_size(uint32_t size, Fn&& fn) {
  if (size == ELEM_D)
    fn(double{});
  else
    fn(float{});
}

template <typename T> using bits_of = typename uint_of<sizeof(T)>::type;

template <typename T> constexpr bits_of<T> sign_bit() {
  return bits_of<T>{1} << (8 * sizeof(T) - 1);
}

template <typename T> inline T from_bits(bits_of<T> bits) {
  T v;
  std::memcpy(&v, &bits, sizeof v);
  return v;
}
template <typename T> inline bits_of<T> to_bits(T v) {
  bits_of<T> bits;
  std::memcpy(&bits, &v, sizeof bits);
  return bits;
}

// The default NaN of the format, positive and quiet with an empty payload.
template <typename T> inline T default_nan() {
  return from_bits<T>(sizeof(T) == 4 ? 0x7fc00000u : 0x7ff8000000000000u);
}

// The two-operand instructions as function objects, for the loops below;
// the arithmetic ones also take 128-bit vectors of either format.
#define HOST_FP_OP(name)                                                                           \
  struct name##_op {                                                                               \
    template <typename T> T operator()(T a, T b) const { return host_##name(a, b); }               \
  };
HOST_FP_OP(fadd)
HOST_FP_OP(fsub)
HOST_FP_OP(fmul)
HOST_FP_OP(fdiv)
HOST_FP_OP(fmax)
HOST_FP_OP(fmaxnm)
HOST_FP_OP(fminnm)
#undef HOST_FP_OP

// Zd element i becomes value(i) where Pg is active and keeps its bits where
// not. value(i) reads its sources straight from the register file: the
// result goes to a local buffer, so Zd may be any of them.
template <typename T, typename Value>
inline void merge_elements(cpu_state* s, aarch64_z_reg zd, aarch64_p_reg pg, Value value) {
  const uint8_t* d = s->z[zd.num];
  const uint8_t* p = s->p[pg.num];
  vreg out;
  const unsigned count = elements_of<T>();
#pragma GCC unroll 12
  for (unsigned i = 0; i < count; ++i)
    store_elem<T>(out.b, i, active<T>(p, i) ? value(i) : load_elem<T>(d, i));
  commit(s->z[zd.num], out);
}

// Every element of Zd becomes value(i).
template <typename T, typename Value>
inline void all_elements(cpu_state* s, aarch64_z_reg zd, Value value) {
  vreg out;
  const unsigned count = elements_of<T>();
#pragma GCC unroll 12
  for (unsigned i = 0; i < count; ++i) store_elem<T>(out.b, i, value(i));
  commit(s->z[zd.num], out);
}

// Writes a scalar result to V register vd: its low element, and zeros in
// the rest of the register, as any write to a SIMD&FP scalar does.
template <typename T> inline void write_scalar(cpu_state* s, unsigned vd, T value) {
  vreg out{};
  store_elem<T>(out.b, 0, value);
  commit(s->z[vd], out);
}

} // namespace ZORVO_LENGTH
