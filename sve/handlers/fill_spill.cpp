// LDR and STR of whole Z and P registers: unpredicated copies between a
// register and memory, with no trace record.
#include <cstring>

#include "../memory/app_memory.h"
#include "../state/cpu_state.h"
#include "predicate_form.h"

namespace {

// Xn|SP + imm * (the register's bytes in memory), the product taken as a
// sign-extended 32-bit value.
uint64_t register_slot(const cpu_state* s, aarch64_i_rsp_reg xn, int imm, int bytes) {
  return read_reg(s, xn) + static_cast<uint64_t>(static_cast<int64_t>(imm * bytes));
}

} // namespace

aarch64_decode_rc sve_ldr_zri(cpu_state* s, aarch64_z_reg zt, aarch64_i_rsp_reg xn, int imm) {
  std::memcpy(s->z[zt.num], reinterpret_cast<const void*>(register_slot(s, xn, imm, 48)), 48);
  return AARCH64_DECODE_OK;
}

aarch64_decode_rc sve_str_zri(cpu_state* s, aarch64_z_reg zt, aarch64_i_rsp_reg xn, int imm) {
  std::memcpy(reinterpret_cast<void*>(register_slot(s, xn, imm, 48)), s->z[zt.num], 48);
  return AARCH64_DECODE_OK;
}

// In memory a predicate is 6 bytes, one bit per register byte. Six bytes are
// moved as two overlapping 32-bit accesses at +0 and +2.
aarch64_decode_rc sve_ldr_pri(cpu_state* s, aarch64_p_reg pt, aarch64_i_rsp_reg xn, int imm) {
  const uint64_t addr = register_slot(s, xn, imm, 6);
  const uint64_t low = read_app<uint32_t>(addr) & 0xffff;
  const uint64_t high = read_app<uint32_t>(addr + 2);
  const uint64_t bits = low | high << 16;
  unpack_predicate(s->p[pt.num], bits);
  return AARCH64_DECODE_OK;
}

aarch64_decode_rc sve_str_pri(cpu_state* s, aarch64_p_reg pt, aarch64_i_rsp_reg xn, int imm) {
  const uint64_t addr = register_slot(s, xn, imm, 6);
  const uint64_t bits = pack_predicate(s->p[pt.num]);
  write_app<uint32_t>(addr, static_cast<uint32_t>(bits));
  write_app<uint32_t>(addr + 2, static_cast<uint32_t>(bits >> 16));
  return AARCH64_DECODE_OK;
}
