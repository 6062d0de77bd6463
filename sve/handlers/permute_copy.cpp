// Broadcasts (DUP), predicated copies of a scalar (CPY) and select (SEL).
#include <cstdint>
#include <cstring>

#include "../state/cpu_state.h"
#include "element.h"

namespace ZORVO_LENGTH {

namespace {

// The value comes from a scalar that is read before the first store, so these
// write straight into the destination; each store keeps the value's low bits.
aarch64_decode_rc broadcast(cpu_state* s, aarch64_z_reg zd, uint64_t value) {
  by_element_size(zd.elem, [&](auto t) {
    using T = decltype(t);
    for (unsigned i = 0; i < elements_of<T>(); ++i)
      store_elem<T>(s->z[zd.num], i, static_cast<T>(value));
  });
  return AARCH64_DECODE_OK;
}

aarch64_decode_rc copy_to_active(cpu_state* s, aarch64_z_reg zd, aarch64_p_reg pg, uint64_t value,
                                 bool zero_inactive) {
  by_element_size(zd.elem, [&](auto t) {
    using T = decltype(t);
    uint8_t* d = s->z[zd.num];
    const uint8_t* p = s->p[pg.num];
    for (unsigned i = 0; i < elements_of<T>(); ++i) {
      if (active<T>(p, i))
        store_elem<T>(d, i, static_cast<T>(value));
      else if (zero_inactive)
        store_elem<T>(d, i, T{0});
    }
  });
  return AARCH64_DECODE_OK;
}

constexpr bool kMerging = false;

template <typename T>
void select(uint8_t* dst, const uint8_t* pred, const uint8_t* if_active, const uint8_t* if_not) {
  using V = typename simd128<T>::type;
  vreg out;
  for (unsigned chunk = 0; chunk < chunks(); ++chunk) {
    V p, a, b;
    std::memcpy(&p, pred + 16 * chunk, 16);
    std::memcpy(&a, if_active + 16 * chunk, 16);
    std::memcpy(&b, if_not + 16 * chunk, 16);
    // All ones in an element whose first predicate byte has bit 0 set.
    const V mask = -(p & 1);
    const V r = (a & mask) | (b & ~mask);
    std::memcpy(out.b + 16 * chunk, &r, 16);
  }
  commit(dst, out);
}

} // namespace

aarch64_decode_rc sve_dup_zi(cpu_state* s, aarch64_z_reg zd, int imm) {
  return broadcast(s, zd, static_cast<uint64_t>(int64_t{imm}));
}

aarch64_decode_rc sve_dup_zr(cpu_state* s, aarch64_z_reg zd, aarch64_i_rsp_reg rn) {
  return broadcast(s, zd, read_reg(s, rn));
}

// Sizes b to q (q is a 128-bit group); an index past the end gives 0.
aarch64_decode_rc sve_dup_zzi(cpu_state* s, aarch64_z_reg zd, aarch64_z_reg zn,
                              unsigned int index) {
  const unsigned bytes = zd.elem <= ELEM_Q ? 1u << zd.elem : 1;
  uint8_t value[16] = {};
  if (index < vector_bytes() / bytes) std::memcpy(value, s->z[zn.num] + index * bytes, bytes);
  for (unsigned at = 0; at < vector_bytes(); at += bytes)
    std::memcpy(s->z[zd.num] + at, value, bytes);
  return AARCH64_DECODE_OK;
}

aarch64_decode_rc sve_cpy_zpi(cpu_state* s, aarch64_z_reg zd, aarch64_p_reg pg, int imm) {
  return copy_to_active(s, zd, pg, static_cast<uint64_t>(int64_t{imm}), pg.elem == kPZeroing);
}

aarch64_decode_rc sve_cpy_zpr(cpu_state* s, aarch64_z_reg zd, aarch64_p_reg pg,
                              aarch64_i_rsp_reg rn) {
  return copy_to_active(s, zd, pg, read_reg(s, rn), kMerging);
}

aarch64_decode_rc sve_cpy_zpv(cpu_state* s, aarch64_z_reg zd, aarch64_p_reg pg, unsigned int vn) {
  return copy_to_active(s, zd, pg, load_elem<uint64_t>(s->z[vn], 0), kMerging);
}

aarch64_decode_rc sve_sel_zpzz(cpu_state* s, aarch64_z_reg zd, aarch64_p_reg pg, aarch64_z_reg zn,
                               aarch64_z_reg zm) {
  by_element_size(zd.elem, [&](auto t) {
    select<decltype(t)>(s->z[zd.num], s->p[pg.num], s->z[zn.num], s->z[zm.num]);
  });
  return AARCH64_DECODE_OK;
}

} // namespace ZORVO_LENGTH
