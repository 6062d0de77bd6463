// Decoders of integer add and subtract.
#include "../handlers/handlers.h"
#include "decoders.h"
#include "fields.h"

namespace {

using zpz_handler = aarch64_decode_rc (*)(cpu_state*, aarch64_z_reg, aarch64_p_reg, aarch64_z_reg);
using zzz_handler = aarch64_decode_rc (*)(cpu_state*, aarch64_z_reg, aarch64_z_reg, aarch64_z_reg);
using zi_handler = aarch64_decode_rc (*)(cpu_state*, aarch64_z_reg, unsigned int);

// Zdn (4:0), Pg/M (12:10), Zm (9:5)
template <uint32_t E, zpz_handler H> aarch64_decode_rc zdn_pgm_zm(cpu_state* s, uint32_t w) {
  s->raw_instr = w;
  return H(s, z_destructive(w, 4, 0, E), p_operand(w, 12, 10, kPMerging), z_operand(w, 9, 5, E));
}

// Zd (4:0), Zn (9:5), Zm (20:16)
template <uint32_t E, zzz_handler H> aarch64_decode_rc zd_zn_zm(cpu_state* s, uint32_t w) {
  s->raw_instr = w;
  return H(s, z_operand(w, 4, 0, E), z_operand(w, 9, 5, E), z_operand(w, 20, 16, E));
}

// Zdn (4:0), uimm8 with optional shift
template <uint32_t E, zi_handler H> aarch64_decode_rc zdn_uimm8sh(cpu_state* s, uint32_t w) {
  s->raw_instr = w;
  return H(s, z_destructive(w, 4, 0, E), uimm8_shifted(w));
}

} // namespace

aarch64_decode_rc VecU8AddVVM(cpu_state* s, uint32_t w) { return zdn_pgm_zm<0, sve_add_zpz>(s, w); }
aarch64_decode_rc VecU16AddVVM(cpu_state* s, uint32_t w) {
  return zdn_pgm_zm<1, sve_add_zpz>(s, w);
}
aarch64_decode_rc VecU32AddVVM(cpu_state* s, uint32_t w) {
  return zdn_pgm_zm<2, sve_add_zpz>(s, w);
}
aarch64_decode_rc VecU64AddVVM(cpu_state* s, uint32_t w) {
  return zdn_pgm_zm<3, sve_add_zpz>(s, w);
}
aarch64_decode_rc VecU8SubVVM(cpu_state* s, uint32_t w) { return zdn_pgm_zm<0, sve_sub_zpz>(s, w); }
aarch64_decode_rc VecU16SubVVM(cpu_state* s, uint32_t w) {
  return zdn_pgm_zm<1, sve_sub_zpz>(s, w);
}
aarch64_decode_rc VecU32SubVVM(cpu_state* s, uint32_t w) {
  return zdn_pgm_zm<2, sve_sub_zpz>(s, w);
}
aarch64_decode_rc VecU64SubVVM(cpu_state* s, uint32_t w) {
  return zdn_pgm_zm<3, sve_sub_zpz>(s, w);
}

aarch64_decode_rc VecU8AddVVX(cpu_state* s, uint32_t w) { return zd_zn_zm<0, sve_add_zzz>(s, w); }
aarch64_decode_rc VecU16AddVVX(cpu_state* s, uint32_t w) { return zd_zn_zm<1, sve_add_zzz>(s, w); }
aarch64_decode_rc VecU32AddVVX(cpu_state* s, uint32_t w) { return zd_zn_zm<2, sve_add_zzz>(s, w); }
aarch64_decode_rc VecU64AddVVX(cpu_state* s, uint32_t w) { return zd_zn_zm<3, sve_add_zzz>(s, w); }
aarch64_decode_rc VecU8SubVVX(cpu_state* s, uint32_t w) { return zd_zn_zm<0, sve_sub_zzz>(s, w); }
aarch64_decode_rc VecU16SubVVX(cpu_state* s, uint32_t w) { return zd_zn_zm<1, sve_sub_zzz>(s, w); }
aarch64_decode_rc VecU32SubVVX(cpu_state* s, uint32_t w) { return zd_zn_zm<2, sve_sub_zzz>(s, w); }
aarch64_decode_rc VecU64SubVVX(cpu_state* s, uint32_t w) { return zd_zn_zm<3, sve_sub_zzz>(s, w); }

aarch64_decode_rc VecU8AddVIX(cpu_state* s, uint32_t w) { return zdn_uimm8sh<0, sve_add_zi>(s, w); }
aarch64_decode_rc VecU16AddVIX(cpu_state* s, uint32_t w) {
  return zdn_uimm8sh<1, sve_add_zi>(s, w);
}
aarch64_decode_rc VecU32AddVIX(cpu_state* s, uint32_t w) {
  return zdn_uimm8sh<2, sve_add_zi>(s, w);
}
aarch64_decode_rc VecU64AddVIX(cpu_state* s, uint32_t w) {
  return zdn_uimm8sh<3, sve_add_zi>(s, w);
}
aarch64_decode_rc VecU8SubVIX(cpu_state* s, uint32_t w) { return zdn_uimm8sh<0, sve_sub_zi>(s, w); }
aarch64_decode_rc VecU16SubVIX(cpu_state* s, uint32_t w) {
  return zdn_uimm8sh<1, sve_sub_zi>(s, w);
}
aarch64_decode_rc VecU32SubVIX(cpu_state* s, uint32_t w) {
  return zdn_uimm8sh<2, sve_sub_zi>(s, w);
}
aarch64_decode_rc VecU64SubVIX(cpu_state* s, uint32_t w) {
  return zdn_uimm8sh<3, sve_sub_zi>(s, w);
}
