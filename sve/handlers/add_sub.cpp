// Integer add and subtract: merging, unpredicated and immediate forms.
#include "../trace/roi.h"
#include "element.h"
#include "handlers.h"

namespace {

struct add_op {
  template <typename T> T operator()(T a, T b) const { return static_cast<T>(a + b); }
};
struct sub_op {
  template <typename T> T operator()(T a, T b) const { return static_cast<T>(a - b); }
};

template <typename T, typename Op>
void merging(cpu_state* s, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm, Op op) {
  const uint8_t* d = s->z[zdn.num];
  const uint8_t* m = s->z[zm.num];
  const uint8_t* p = s->p[pg.num];
  vec48 out;
  for (unsigned i = 0; i < 48 / sizeof(T); ++i) {
    T v = load_elem<T>(d, i);
    if (active<T>(p, i)) v = op(v, load_elem<T>(m, i));
    store_elem<T>(out.b, i, v);
  }
  commit(s->z[zdn.num], out);
}

template <typename Op>
aarch64_decode_rc merging_any(cpu_state* s, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm,
                              Op op) {
  by_element_size(zdn.rw_elem, [&](auto t) { merging<decltype(t)>(s, zdn, pg, zm, op); });
  return AARCH64_DECODE_OK;
}

template <typename Op>
aarch64_decode_rc unpredicated_any(cpu_state* s, aarch64_z_reg zd, aarch64_z_reg zn,
                                   aarch64_z_reg zm, Op op) {
  by_element_size(zd.elem, [&](auto t) {
    unpredicated_simd<decltype(t)>(s->z[zd.num], s->z[zn.num], s->z[zm.num], op);
  });
  return AARCH64_DECODE_OK;
}

// The immediate is replicated at the element width: only its low 8 or 16
// bits count for b and h, and it is zero-extended for d.
template <typename Op>
aarch64_decode_rc immediate_any(cpu_state* s, aarch64_z_reg zdn, unsigned int imm, Op op) {
  by_element_size(zdn.rw_elem, [&](auto t) {
    using T = decltype(t);
    const T value = static_cast<T>(imm);
    const uint8_t* d = s->z[zdn.num];
    vec48 out;
    for (unsigned i = 0; i < 48 / sizeof(T); ++i)
      store_elem<T>(out.b, i, op(load_elem<T>(d, i), value));
    commit(s->z[zdn.num], out);
  });
  return AARCH64_DECODE_OK;
}

} // namespace

aarch64_decode_rc sve_add_zpz(cpu_state* s, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm) {
  return merging_any(s, zdn, pg, zm, add_op{});
}

aarch64_decode_rc sve_sub_zpz(cpu_state* s, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm) {
  return merging_any(s, zdn, pg, zm, sub_op{});
}

aarch64_decode_rc sve_add_zzz(cpu_state* s, aarch64_z_reg zd, aarch64_z_reg zn, aarch64_z_reg zm) {
  return unpredicated_any(s, zd, zn, zm, add_op{});
}

aarch64_decode_rc sve_sub_zzz(cpu_state* s, aarch64_z_reg zd, aarch64_z_reg zn, aarch64_z_reg zm) {
  return unpredicated_any(s, zd, zn, zm, sub_op{});
}

aarch64_decode_rc sve_add_zi(cpu_state* s, aarch64_z_reg zdn, unsigned int imm) {
  // A byte add of exactly 256 or 512 is a region-of-interest marker. Its low
  // eight bits are zero, so the add that follows leaves the register as it was.
  if (zdn.rw_elem == ELEM_B && (imm == 256 || imm == 512)) roi_marker(imm == 256);
  return immediate_any(s, zdn, imm, add_op{});
}

aarch64_decode_rc sve_sub_zi(cpu_state* s, aarch64_z_reg zdn, unsigned int imm) {
  return immediate_any(s, zdn, imm, sub_op{});
}
