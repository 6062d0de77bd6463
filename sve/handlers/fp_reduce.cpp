// Floating-point reductions to a scalar: the pairwise trees of fmaxnmv,
// fminnmv and faddv, and the strictly ordered fadda.
#include "../state/cpu_state.h"
#include "fp_element.h"

namespace ZORVO_LENGTH {

namespace {

// The elements fill the slots of the vector length rounded up to a power of
// two, an inactive element and the padding holding the identity. Neighbours are combined level by
// level (0 with 1, 2 with 3, ...), the identity taking part in real operations: that decides the
// flags and the flushing of denormals, as on the reference.
template <typename T, typename Op>
T tree_reduce(const cpu_state* s, aarch64_p_reg pg, aarch64_z_reg zn, T identity, Op op) {
  const unsigned elements = elements_of<T>();
  unsigned slots = 1;
  while (slots < elements) slots *= 2;
  const uint8_t* n = s->z[zn.num];
  const uint8_t* p = s->p[pg.num];
  T slot[kMaxVectorBytes / sizeof(T)];
  for (unsigned i = 0; i < slots; ++i)
    slot[i] = i < elements && active<T>(p, i) ? load_elem<T>(n, i) : identity;
  for (unsigned width = slots; width > 1; width /= 2)
    for (unsigned k = 0; k < width / 2; ++k) slot[k] = op(slot[2 * k], slot[2 * k + 1]);
  return slot[0];
}

template <typename Op>
aarch64_decode_rc tree_to_scalar(cpu_state* s, unsigned vd, aarch64_p_reg pg, aarch64_z_reg zn,
                                 bool identity_is_nan, Op op) {
  by_fp_size(zn.elem, [&](auto t) {
    using T = decltype(t);
    const T identity = identity_is_nan ? default_nan<T>() : T{};
    write_scalar<T>(s, vd, tree_reduce<T>(s, pg, zn, identity, op));
  });
  return AARCH64_DECODE_OK;
}

constexpr bool kNanIdentity = true, kZeroIdentity = false;

} // namespace

aarch64_decode_rc sve_fmaxnmv_vpz(cpu_state* s, unsigned int vd, aarch64_p_reg pg,
                                  aarch64_z_reg zn) {
  return tree_to_scalar(s, vd, pg, zn, kNanIdentity, fmaxnm_op{});
}

aarch64_decode_rc sve_fminnmv_vpz(cpu_state* s, unsigned int vd, aarch64_p_reg pg,
                                  aarch64_z_reg zn) {
  return tree_to_scalar(s, vd, pg, zn, kNanIdentity, fminnm_op{});
}

aarch64_decode_rc sve_faddv_vpz(cpu_state* s, unsigned int vd, aarch64_p_reg pg, aarch64_z_reg zn) {
  return tree_to_scalar(s, vd, pg, zn, kZeroIdentity, fadd_op{});
}

// In element order, skipping inactive elements altogether: with none
// active the initial value comes back bit for bit.
aarch64_decode_rc sve_fadda_vpz(cpu_state* s, unsigned int vdn, aarch64_p_reg pg,
                                aarch64_z_reg zm) {
  by_fp_size(zm.elem, [&](auto t) {
    using T = decltype(t);
    const uint8_t* m = s->z[zm.num];
    const uint8_t* p = s->p[pg.num];
    T acc = load_elem<T>(s->z[vdn], 0);
    for (unsigned i = 0; i < elements_of<T>(); ++i)
      if (active<T>(p, i)) acc = host_fadd(acc, load_elem<T>(m, i));
    write_scalar<T>(s, vdn, acc);
  });
  return AARCH64_DECODE_OK;
}

} // namespace ZORVO_LENGTH
