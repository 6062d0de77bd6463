// Bitwise AND, OR, XOR and AND NOT: merging, unpredicated and bitmask
// immediate forms, and the bitmask broadcast.
#include "../state/cpu_state.h"
#include "element.h"
#include "int_shapes.h"

namespace ZORVO_LENGTH {

namespace {

// Each works on scalar elements and on host vectors alike.
struct and_op {
  template <typename T> T operator()(T a, T b) const { return static_cast<T>(a & b); }
};
struct orr_op {
  template <typename T> T operator()(T a, T b) const { return static_cast<T>(a | b); }
};
struct eor_op {
  template <typename T> T operator()(T a, T b) const { return static_cast<T>(a ^ b); }
};
struct bic_op {
  template <typename T> T operator()(T a, T b) const { return static_cast<T>(a & ~b); }
};

// Bitwise operations do not see element boundaries: the whole register at
// once, as 64-bit lanes.
template <typename Op>
aarch64_decode_rc whole_register(cpu_state* s, aarch64_z_reg zd, aarch64_z_reg zn, aarch64_z_reg zm,
                                 Op op) {
  unpredicated_simd<uint64_t>(s->z[zd.num], s->z[zn.num], s->z[zm.num], op);
  return AARCH64_DECODE_OK;
}

vreg replicated(aarch64_sve_logical64_imm imm) {
  vreg v;
  for (unsigned i = 0; i < elements_of<uint64_t>(); ++i) store_elem<uint64_t>(v.b, i, imm.value);
  return v;
}

template <typename Op>
aarch64_decode_rc with_pattern(cpu_state* s, aarch64_z_reg zdn, aarch64_sve_logical64_imm imm,
                               Op op) {
  const vreg pattern = replicated(imm);
  unpredicated_simd<uint64_t>(s->z[zdn.num], s->z[zdn.num], pattern.b, op);
  return AARCH64_DECODE_OK;
}

} // namespace

aarch64_decode_rc sve_and_zpz(cpu_state* s, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm) {
  return merge_any(s, zdn, pg, and_op{}, zm);
}

aarch64_decode_rc sve_orr_zpz(cpu_state* s, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm) {
  return merge_any(s, zdn, pg, orr_op{}, zm);
}

aarch64_decode_rc sve_eor_zpz(cpu_state* s, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm) {
  return merge_any(s, zdn, pg, eor_op{}, zm);
}

aarch64_decode_rc sve_bic_zpz(cpu_state* s, aarch64_z_reg zdn, aarch64_p_reg pg, aarch64_z_reg zm) {
  return merge_any(s, zdn, pg, bic_op{}, zm);
}

aarch64_decode_rc sve_and_zzz(cpu_state* s, aarch64_z_reg zd, aarch64_z_reg zn, aarch64_z_reg zm) {
  return whole_register(s, zd, zn, zm, and_op{});
}

aarch64_decode_rc sve_orr_zzz(cpu_state* s, aarch64_z_reg zd, aarch64_z_reg zn, aarch64_z_reg zm) {
  return whole_register(s, zd, zn, zm, orr_op{});
}

aarch64_decode_rc sve_eor_zzz(cpu_state* s, aarch64_z_reg zd, aarch64_z_reg zn, aarch64_z_reg zm) {
  return whole_register(s, zd, zn, zm, eor_op{});
}

aarch64_decode_rc sve_bic_zzz(cpu_state* s, aarch64_z_reg zd, aarch64_z_reg zn, aarch64_z_reg zm) {
  return whole_register(s, zd, zn, zm, bic_op{});
}

aarch64_decode_rc sve_and_zi(cpu_state* s, aarch64_z_reg zdn, aarch64_sve_logical64_imm imm) {
  return with_pattern(s, zdn, imm, and_op{});
}

aarch64_decode_rc sve_orr_zi(cpu_state* s, aarch64_z_reg zdn, aarch64_sve_logical64_imm imm) {
  return with_pattern(s, zdn, imm, orr_op{});
}

aarch64_decode_rc sve_eor_zi(cpu_state* s, aarch64_z_reg zdn, aarch64_sve_logical64_imm imm) {
  return with_pattern(s, zdn, imm, eor_op{});
}

aarch64_decode_rc sve_dupm_zi(cpu_state* s, aarch64_z_reg zd, aarch64_sve_logical64_imm imm) {
  commit(s->z[zd.num], replicated(imm));
  return AARCH64_DECODE_OK;
}

} // namespace ZORVO_LENGTH
