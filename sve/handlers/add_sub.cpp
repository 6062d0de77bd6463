// Integer add and subtract: merging, unpredicated and immediate forms.
#include "../state/cpu_state.h"
#include "element.h"
#include "int_shapes.h"
#include "whole_vector.h"

namespace ZORVO_LENGTH {

namespace {

struct add_op {
  template <typename T> T operator()(T a, T b) const { return static_cast<T>(a + b); }
};
struct sub_op {
  template <typename T> T operator()(T a, T b) const { return static_cast<T>(a - b); }
};

template <typename Op>
aarch64_decode_rc unpredicated_any(cpu_state* s, aarch64_z_reg zd, aarch64_z_reg zn,
                                   aarch64_z_reg zm, Op op) {
  by_element_size(zd.elem, [&](auto t) {
    unpredicated_simd<decltype(t)>(s->z[zd.num], s->z[zn.num], s->z[zm.num], op);
  });
  return AARCH64_DECODE_OK;
}

} // namespace

aarch64_decode_rc sve_add_zpz(cpu_state* s, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm) {
  by_element_size(zdn.rw_elem,
                  [&](auto t) { merge_whole<decltype(t)>(s, zdn.num, pg.num, zm.num, add_op{}); });
  return AARCH64_DECODE_OK;
}

aarch64_decode_rc sve_sub_zpz(cpu_state* s, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm) {
  by_element_size(zdn.rw_elem,
                  [&](auto t) { merge_whole<decltype(t)>(s, zdn.num, pg.num, zm.num, sub_op{}); });
  return AARCH64_DECODE_OK;
}

aarch64_decode_rc sve_add_zzz(cpu_state* s, aarch64_z_reg zd, aarch64_z_reg zn, aarch64_z_reg zm) {
  return unpredicated_any(s, zd, zn, zm, add_op{});
}

aarch64_decode_rc sve_sub_zzz(cpu_state* s, aarch64_z_reg zd, aarch64_z_reg zn, aarch64_z_reg zm) {
  return unpredicated_any(s, zd, zn, zm, sub_op{});
}

aarch64_decode_rc sve_add_zi(cpu_state* s, aarch64_z_reg zdn, unsigned int imm) {
  return immediate_any(s, zdn, imm, add_op{});
}

aarch64_decode_rc sve_sub_zi(cpu_state* s, aarch64_z_reg zdn, unsigned int imm) {
  return immediate_any(s, zdn, imm, sub_op{});
}

} // namespace ZORVO_LENGTH
