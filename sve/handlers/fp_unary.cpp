// Floating-point operations of one element: sign changes, square root,
// rounding, the reciprocal estimate and step, and the immediate broadcast.
#include <cmath>

#include "../state/cpu_state.h"
#include "fp_element.h"

namespace ZORVO_LENGTH {

namespace {

// Sign changes are bit operations: a NaN keeps its payload, nothing is
// flushed and no flag is raised, whatever FPCR says.
template <typename Change>
aarch64_decode_rc change_sign(cpu_state* s, aarch64_z_reg zd, aarch64_p_reg pg, aarch64_z_reg zn,
                              Change change) {
  by_fp_size(zd.elem, [&](auto t) {
    using U = bits_of<decltype(t)>;
    const uint8_t* n = s->z[zn.num];
    merge_elements<U>(s, zd, pg, [&](unsigned i) { return change(load_elem<U>(n, i)); });
  });
  return AARCH64_DECODE_OK;
}

template <typename Op>
aarch64_decode_rc unary(cpu_state* s, aarch64_z_reg zd, aarch64_p_reg pg, aarch64_z_reg zn, Op op) {
  by_fp_size(zd.elem, [&](auto t) {
    using T = decltype(t);
    const uint8_t* n = s->z[zn.num];
    merge_elements<T>(s, zd, pg, [&](unsigned i) { return op(load_elem<T>(n, i)); });
  });
  return AARCH64_DECODE_OK;
}

// Below zero: negative and neither a zero nor a NaN, told from the bits so
// that the test itself raises nothing.
template <typename T> bool below_zero(T v) {
  const bits_of<T> bits = to_bits(v);
  const bits_of<T> magnitude = bits & ~sign_bit<T>();
  const bits_of<T> infinity = sizeof(T) == 4 ? 0x7f800000u : 0x7ff0000000000000u;
  return (bits & sign_bit<T>()) && magnitude != 0 && magnitude <= infinity;
}

struct fsqrt_op {
  template <typename T> T operator()(T v) const {
    // The mathematics library sees a negative operand too, as a library call
    // in the application would; its result (the same NaN) is dropped.
    if (below_zero(v)) {
      volatile T dropped = std::sqrt(v);
      (void)dropped;
    }
    return host_fsqrt(v);
  }
};
struct frinta_op {
  template <typename T> T operator()(T v) const { return host_frinta(v); }
};

} // namespace

aarch64_decode_rc sve_fabs_zpz(cpu_state* s, aarch64_z_reg zd, aarch64_p_reg pg, aarch64_z_reg zn) {
  return change_sign(s, zd, pg, zn, [](auto bits) { return bits & ~sign_bit<decltype(bits)>(); });
}

aarch64_decode_rc sve_fneg_zpz(cpu_state* s, aarch64_z_reg zd, aarch64_p_reg pg, aarch64_z_reg zn) {
  return change_sign(s, zd, pg, zn, [](auto bits) { return bits ^ sign_bit<decltype(bits)>(); });
}

aarch64_decode_rc sve_fsqrt_zpz(cpu_state* s, aarch64_z_reg zd, aarch64_p_reg pg,
                                aarch64_z_reg zn) {
  return unary(s, zd, pg, zn, fsqrt_op{});
}

aarch64_decode_rc sve_frinta_zpz(cpu_state* s, aarch64_z_reg zd, aarch64_p_reg pg,
                                 aarch64_z_reg zn) {
  return unary(s, zd, pg, zn, frinta_op{});
}

aarch64_decode_rc sve_frecpe_zz(cpu_state* s, aarch64_z_reg zd, aarch64_z_reg zn) {
  by_fp_size(zd.elem, [&](auto t) {
    using T = decltype(t);
    const uint8_t* n = s->z[zn.num];
    all_elements<T>(s, zd, [&](unsigned i) { return host_frecpe(load_elem<T>(n, i)); });
  });
  return AARCH64_DECODE_OK;
}

aarch64_decode_rc sve_frecps_zzz(cpu_state* s, aarch64_z_reg zd, aarch64_z_reg zn,
                                 aarch64_z_reg zm) {
  by_fp_size(zd.elem, [&](auto t) {
    using T = decltype(t);
    const uint8_t* n = s->z[zn.num];
    const uint8_t* m = s->z[zm.num];
    all_elements<T>(
        s, zd, [&](unsigned i) { return host_frecps(load_elem<T>(n, i), load_elem<T>(m, i)); });
  });
  return AARCH64_DECODE_OK;
}

// The decoder has expanded the immediate to all three widths; the size picks
// one, and the half-precision pattern serves the 16-bit form.
aarch64_decode_rc sve_fdup_zi(cpu_state* s, aarch64_z_reg zd, aarch64_sve_fp_dup_imm imm) {
  auto broadcast = [&](auto pattern) {
    all_elements<decltype(pattern)>(s, zd, [pattern](unsigned) { return pattern; });
  };
  if (zd.elem == ELEM_S)
    broadcast(imm.single);
  else if (zd.elem == ELEM_D)
    broadcast(imm.dbl);
  else
    broadcast(imm.half);
  return AARCH64_DECODE_OK;
}

} // namespace ZORVO_LENGTH
