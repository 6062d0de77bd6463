// Sign and zero extension of the low part of each element, bit reversal and
// word swap: unary merging forms, where Zd supplies only inactive elements.
#include <arm_acle.h>

#include "../state/cpu_state.h"
#include "element.h"
#include "int_shapes.h"

namespace ZORVO_LENGTH {

namespace {

// The element converted through Src: its low bits, sign- or zero-extended
// by Src's signedness. The bits above them have no influence.
template <typename Src> struct extend_from {
  template <typename T> T operator()(T v) const { return static_cast<T>(static_cast<Src>(v)); }
};

// Paths for the element sizes wider than Src: d, s when Src is a byte, and
// otherwise the narrowest one.
template <typename Src>
aarch64_decode_rc extend_any(cpu_state* s, aarch64_z_reg zd, aarch64_p_reg pg, aarch64_z_reg zn) {
  using narrowest = typename uint_of<2 * sizeof(Src)>::type;
  const extend_from<Src> op;
  if (zd.elem == ELEM_D)
    merge_unary<uint64_t>(s, zd, pg, zn, op);
  else if (zd.elem == ELEM_S && sizeof(Src) == 1)
    merge_unary<uint32_t>(s, zd, pg, zn, op);
  else
    merge_unary<narrowest>(s, zd, pg, zn, op);
  return AARCH64_DECODE_OK;
}

struct reverse_bits {
  template <typename T> T operator()(T v) const {
    return static_cast<T>(__rbitll(v) >> (64 - 8 * sizeof(T)));
  }
};

struct swap_words {
  uint64_t operator()(uint64_t v) const { return v >> 32 | v << 32; }
};

} // namespace

aarch64_decode_rc sve_sxtb_zpz(cpu_state* s, aarch64_z_reg zd, aarch64_p_reg pg, aarch64_z_reg zn) {
  return extend_any<int8_t>(s, zd, pg, zn);
}

aarch64_decode_rc sve_sxth_zpz(cpu_state* s, aarch64_z_reg zd, aarch64_p_reg pg, aarch64_z_reg zn) {
  return extend_any<int16_t>(s, zd, pg, zn);
}

aarch64_decode_rc sve_sxtw_zpz(cpu_state* s, aarch64_z_reg zd, aarch64_p_reg pg, aarch64_z_reg zn) {
  return extend_any<int32_t>(s, zd, pg, zn);
}

aarch64_decode_rc sve_uxth_zpz(cpu_state* s, aarch64_z_reg zd, aarch64_p_reg pg, aarch64_z_reg zn) {
  return extend_any<uint16_t>(s, zd, pg, zn);
}

aarch64_decode_rc sve_uxtw_zpz(cpu_state* s, aarch64_z_reg zd, aarch64_p_reg pg, aarch64_z_reg zn) {
  return extend_any<uint32_t>(s, zd, pg, zn);
}

aarch64_decode_rc sve_rbit_zpz(cpu_state* s, aarch64_z_reg zd, aarch64_p_reg pg, aarch64_z_reg zn) {
  return merge_unary_any(s, zd, pg, zn, reverse_bits{});
}

aarch64_decode_rc sve_revw_zpz(cpu_state* s, aarch64_z_reg zd, aarch64_p_reg pg, aarch64_z_reg zn) {
  merge_unary<uint64_t>(s, zd, pg, zn, swap_words{});
  return AARCH64_DECODE_OK;
}

} // namespace ZORVO_LENGTH
