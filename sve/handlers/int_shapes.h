// Element shapes shared by the integer handlers. The merging ones apply an
// operation to the active elements and keep the destination's own element
// where the predicate is off.
#pragma once

#include "element.h"

namespace ZORVO_LENGTH {

// Zdn = op(Zdn, sources...) on the active elements, the sources being the
// other vector operands in instruction order.
template <typename T, typename Op, typename... Sources>
inline void merge_into(cpu_state* s, aarch64_z_reg zdn, aarch64_p_reg pg, Op op,
                       Sources... sources) {
  const uint8_t* d = s->z[zdn.num];
  const uint8_t* p = s->p[pg.num];
  vreg out;
  for (unsigned i = 0; i < elements_of<T>(); ++i) {
    T v = load_elem<T>(d, i);
    if (active<T>(p, i)) v = op(v, load_elem<T>(s->z[sources.num], i)...);
    store_elem<T>(out.b, i, v);
  }
  commit(s->z[zdn.num], out);
}

template <typename Op, typename... Sources>
inline aarch64_decode_rc merge_any(cpu_state* s, aarch64_z_reg zdn, aarch64_p_reg pg, Op op,
                                   Sources... sources) {
  by_element_size(zdn.rw_elem,
                  [&](auto t) { merge_into<decltype(t)>(s, zdn, pg, op, sources...); });
  return AARCH64_DECODE_OK;
}

// Zd = op(Zn) on the active elements; Zd supplies only the inactive ones.
template <typename T, typename Op>
inline void merge_unary(cpu_state* s, aarch64_z_reg zd, aarch64_p_reg pg, aarch64_z_reg zn, Op op) {
  const uint8_t* d = s->z[zd.num];
  const uint8_t* n = s->z[zn.num];
  const uint8_t* p = s->p[pg.num];
  vreg out;
  for (unsigned i = 0; i < elements_of<T>(); ++i)
    store_elem<T>(out.b, i, active<T>(p, i) ? op(load_elem<T>(n, i)) : load_elem<T>(d, i));
  commit(s->z[zd.num], out);
}

template <typename Op>
inline aarch64_decode_rc merge_unary_any(cpu_state* s, aarch64_z_reg zd, aarch64_p_reg pg,
                                         aarch64_z_reg zn, Op op) {
  by_element_size(zd.elem, [&](auto t) { merge_unary<decltype(t)>(s, zd, pg, zn, op); });
  return AARCH64_DECODE_OK;
}

// Zdn = op(Zdn, immediate) on all elements. The immediate is converted to the
// element type: an unsigned one is zero-extended and a signed one
// sign-extended to the element, and only its low 8 or 16 bits count for b
// and h.
template <typename Imm, typename Op>
inline aarch64_decode_rc immediate_any(cpu_state* s, aarch64_z_reg zdn, Imm imm, Op op) {
  by_element_size(zdn.rw_elem, [&](auto t) {
    using T = decltype(t);
    const T value = static_cast<T>(imm);
    const uint8_t* d = s->z[zdn.num];
    vreg out;
    for (unsigned i = 0; i < elements_of<T>(); ++i)
      store_elem<T>(out.b, i, op(load_elem<T>(d, i), value));
    commit(s->z[zdn.num], out);
  });
  return AARCH64_DECODE_OK;
}

} // namespace ZORVO_LENGTH
