// The move prefix. It is carried out as a move of its own: the instruction
// after it runs separately and reads the register the prefix wrote.
#include <cstring>

#include "../state/cpu_state.h"
#include "element.h"
#include "int_shapes.h"

namespace ZORVO_LENGTH {

namespace {

struct keep {
  template <typename T> T operator()(T v) const { return v; }
};

template <typename T>
void move_zeroing(cpu_state* s, aarch64_z_reg zd, aarch64_p_reg pg, aarch64_z_reg zn) {
  const uint8_t* n = s->z[zn.num];
  const uint8_t* p = s->p[pg.num];
  vreg out;
  for (unsigned i = 0; i < elements_of<T>(); ++i)
    store_elem<T>(out.b, i, active<T>(p, i) ? load_elem<T>(n, i) : T{0});
  commit(s->z[zd.num], out);
}

} // namespace

aarch64_decode_rc sve_movprfx_zz(cpu_state* s, aarch64_z_reg zd, aarch64_z_reg zn) {
  std::memmove(s->z[zd.num], s->z[zn.num], vector_bytes());
  return AARCH64_DECODE_OK;
}

aarch64_decode_rc sve_movprfx_zpz(cpu_state* s, aarch64_z_reg zd, aarch64_p_reg pg,
                                  aarch64_z_reg zn) {
  if (pg.elem != kPZeroing) return merge_unary_any(s, zd, pg, zn, keep{});
  by_element_size(zd.elem, [&](auto t) { move_zeroing<decltype(t)>(s, zd, pg, zn); });
  return AARCH64_DECODE_OK;
}

} // namespace ZORVO_LENGTH
