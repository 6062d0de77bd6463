// The last active element of a vector into a general or SIMD&FP register:
// lastb, and clastb into a general register, which keeps the register's own
// value when no element is active.
#include "../state/cpu_state.h"
#include "fp_element.h"
#include "predicate_scan.h"

namespace ZORVO_LENGTH {

namespace {

// Element `last_active` of Zn, or the vector's last element when none is
// active, zero-extended.
template <typename T>
uint64_t last_or_final(const cpu_state* s, aarch64_p_reg pg, aarch64_z_reg zn) {
  const int last = last_active<T>(s->p[pg.num]);
  const unsigned i = last < 0 ? elements_of<T>() - 1 : static_cast<unsigned>(last);
  return load_elem<T>(s->z[zn.num], i);
}

} // namespace

aarch64_decode_rc sve_lastb_rpz(cpu_state* s, aarch64_i_reg rd, aarch64_p_reg pg,
                                aarch64_z_reg zn) {
  by_element_size(zn.elem,
                  [&](auto t) { write_reg(s, rd, last_or_final<decltype(t)>(s, pg, zn)); });
  return AARCH64_DECODE_OK;
}

// The element at its own width in the low bytes of Z[vd], 0 above it.
aarch64_decode_rc sve_lastb_vpz(cpu_state* s, unsigned int vd, aarch64_p_reg pg, aarch64_z_reg zn) {
  by_element_size(zn.elem, [&](auto t) {
    using T = decltype(t);
    write_scalar<T>(s, vd, static_cast<T>(last_or_final<T>(s, pg, zn)));
  });
  return AARCH64_DECODE_OK;
}

// Without an active element the register keeps its low element-sized bits
// and loses the rest; the cut follows the element size alone.
aarch64_decode_rc sve_clastb_rpz(cpu_state* s, aarch64_i_reg rdn, aarch64_p_reg pg,
                                 aarch64_z_reg zm) {
  by_element_size(zm.elem, [&](auto t) {
    using T = decltype(t);
    const int last = last_active<T>(s->p[pg.num]);
    const T value = last < 0 ? static_cast<T>(read_reg(s, rdn))
                             : load_elem<T>(s->z[zm.num], static_cast<unsigned>(last));
    write_reg(s, rdn, value);
  });
  return AARCH64_DECODE_OK;
}

} // namespace ZORVO_LENGTH
