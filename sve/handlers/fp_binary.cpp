// Floating-point arithmetic of two operands: predicated with a vector or an
// immediate, reversed, and unpredicated.
#include <type_traits>

#include "../state/cpu_state.h"
#include "fp_element.h"
#include "whole_vector.h"

namespace ZORVO_LENGTH {

namespace {

// The reversed forms: the same instruction with its operands swapped.
template <typename Op> struct reversed {
  Op op;
  template <typename T> T operator()(T a, T b) const { return op(b, a); }
};

// The operations that have a 128-bit host form (host_fp.h).
template <typename Op>
constexpr bool kHasSimd =
    std::is_same_v<Op, fadd_op> || std::is_same_v<Op, fsub_op> || std::is_same_v<Op, fmul_op>;
template <typename Op> constexpr bool kHasSimd<reversed<Op>> = kHasSimd<Op>;

// With every element active the vector form computes the same elements and
// raises the same exceptions as one instruction per element; an inactive
// element must raise nothing, so a partial predicate goes element by element.
template <typename Op>
aarch64_decode_rc with_vector(cpu_state* s, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm,
                              Op op) {
  by_fp_size(zdn.rw_elem, [&](auto t) {
    using T = decltype(t);
    uint8_t* d = s->z[zdn.num];
    const uint8_t* m = s->z[zm.num];
    if constexpr (kHasSimd<Op>)
      if (all_active<typename uint_of<sizeof(T)>::type>(s->p[pg.num]))
        return unpredicated_simd<T>(d, d, m, op);
    merge_elements<T>(s, zdn, pg,
                      [&](unsigned i) { return op(load_elem<T>(d, i), load_elem<T>(m, i)); });
  });
  return AARCH64_DECODE_OK;
}

// The one-bit immediate picks 0.5 or 1.0, or for multiplies 0.5 or 2.0. The
// constants are chosen, not computed: no host conversion runs.
constexpr bool kMultiply = true;

template <bool Multiply = false, typename Op>
aarch64_decode_rc with_immediate(cpu_state* s, aarch64_z_reg zdn, aarch64_p_reg pg,
                                 aarch64_sve_fp_arith_imm imm, Op op) {
  by_fp_size(zdn.rw_elem, [&](auto t) {
    using T = decltype(t);
    const T value = imm.i1 ? (Multiply ? T(2.0) : T(1.0)) : T(0.5);
    const uint8_t* d = s->z[zdn.num];
    merge_elements<T>(s, zdn, pg, [&](unsigned i) { return op(load_elem<T>(d, i), value); });
  });
  return AARCH64_DECODE_OK;
}

template <typename Op>
aarch64_decode_rc unpredicated(cpu_state* s, aarch64_z_reg zd, aarch64_z_reg zn, aarch64_z_reg zm,
                               Op op) {
  by_fp_size(zd.elem, [&](auto t) {
    unpredicated_simd<decltype(t)>(s->z[zd.num], s->z[zn.num], s->z[zm.num], op);
  });
  return AARCH64_DECODE_OK;
}

} // namespace

aarch64_decode_rc sve_fadd_zpz(cpu_state* s, aarch64_z_reg zdn, aarch64_p_reg pg,
                               aarch64_z_reg zm) {
  return with_vector(s, zdn, pg, zm, fadd_op{});
}
aarch64_decode_rc sve_fsub_zpz(cpu_state* s, aarch64_z_reg zdn, aarch64_p_reg pg,
                               aarch64_z_reg zm) {
  return with_vector(s, zdn, pg, zm, fsub_op{});
}
aarch64_decode_rc sve_fmul_zpz(cpu_state* s, aarch64_z_reg zdn, aarch64_p_reg pg,
                               aarch64_z_reg zm) {
  return with_vector(s, zdn, pg, zm, fmul_op{});
}
aarch64_decode_rc sve_fdiv_zpz(cpu_state* s, aarch64_z_reg zdn, aarch64_p_reg pg,
                               aarch64_z_reg zm) {
  return with_vector(s, zdn, pg, zm, fdiv_op{});
}
aarch64_decode_rc sve_fmax_zpz(cpu_state* s, aarch64_z_reg zdn, aarch64_p_reg pg,
                               aarch64_z_reg zm) {
  return with_vector(s, zdn, pg, zm, fmax_op{});
}
aarch64_decode_rc sve_fmaxnm_zpz(cpu_state* s, aarch64_z_reg zdn, aarch64_p_reg pg,
                                 aarch64_z_reg zm) {
  return with_vector(s, zdn, pg, zm, fmaxnm_op{});
}
aarch64_decode_rc sve_fminnm_zpz(cpu_state* s, aarch64_z_reg zdn, aarch64_p_reg pg,
                                 aarch64_z_reg zm) {
  return with_vector(s, zdn, pg, zm, fminnm_op{});
}
aarch64_decode_rc sve_fsubr_zpz(cpu_state* s, aarch64_z_reg zdn, aarch64_p_reg pg,
                                aarch64_z_reg zm) {
  return with_vector(s, zdn, pg, zm, reversed<fsub_op>{});
}
aarch64_decode_rc sve_fdivr_zpz(cpu_state* s, aarch64_z_reg zdn, aarch64_p_reg pg,
                                aarch64_z_reg zm) {
  return with_vector(s, zdn, pg, zm, reversed<fdiv_op>{});
}

aarch64_decode_rc sve_fadd_zpi(cpu_state* s, aarch64_z_reg zdn, aarch64_p_reg pg,
                               aarch64_sve_fp_arith_imm imm) {
  return with_immediate(s, zdn, pg, imm, fadd_op{});
}
aarch64_decode_rc sve_fsub_zpi(cpu_state* s, aarch64_z_reg zdn, aarch64_p_reg pg,
                               aarch64_sve_fp_arith_imm imm) {
  return with_immediate(s, zdn, pg, imm, fsub_op{});
}
aarch64_decode_rc sve_fsubr_zpi(cpu_state* s, aarch64_z_reg zdn, aarch64_p_reg pg,
                                aarch64_sve_fp_arith_imm imm) {
  return with_immediate(s, zdn, pg, imm, reversed<fsub_op>{});
}
aarch64_decode_rc sve_fmul_zpi(cpu_state* s, aarch64_z_reg zdn, aarch64_p_reg pg,
                               aarch64_sve_fp_arith_imm imm) {
  return with_immediate<kMultiply>(s, zdn, pg, imm, fmul_op{});
}

aarch64_decode_rc sve_fadd_zzz(cpu_state* s, aarch64_z_reg zd, aarch64_z_reg zn, aarch64_z_reg zm) {
  return unpredicated(s, zd, zn, zm, fadd_op{});
}
aarch64_decode_rc sve_fsub_zzz(cpu_state* s, aarch64_z_reg zd, aarch64_z_reg zn, aarch64_z_reg zm) {
  return unpredicated(s, zd, zn, zm, fsub_op{});
}
aarch64_decode_rc sve_fmul_zzz(cpu_state* s, aarch64_z_reg zd, aarch64_z_reg zn, aarch64_z_reg zm) {
  return unpredicated(s, zd, zn, zm, fmul_op{});
}

} // namespace ZORVO_LENGTH
