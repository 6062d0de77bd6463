// LDR and STR of whole Z and P registers: unpredicated copies between a
// register and memory, with no trace record.
#include <cstring>

#include "../memory/app_memory.h"
#include "../state/cpu_state.h"
#include "predicate_form.h"

namespace ZORVO_LENGTH {

namespace {

// Xn|SP + imm * (the register's bytes in memory), the product taken as a
// sign-extended 32-bit value.
uint64_t register_slot(const cpu_state* s, aarch64_i_rsp_reg xn, int imm, int bytes) {
  return read_reg(s, xn) + static_cast<uint64_t>(static_cast<int64_t>(imm * bytes));
}

} // namespace

aarch64_decode_rc sve_ldr_zri(cpu_state* s, aarch64_z_reg zt, aarch64_i_rsp_reg xn, int imm) {
  const unsigned bytes = vector_bytes();
  std::memcpy(s->z[zt.num], reinterpret_cast<const void*>(register_slot(s, xn, imm, bytes)), bytes);
  return AARCH64_DECODE_OK;
}

aarch64_decode_rc sve_str_zri(cpu_state* s, aarch64_z_reg zt, aarch64_i_rsp_reg xn, int imm) {
  const unsigned bytes = vector_bytes();
  std::memcpy(reinterpret_cast<void*>(register_slot(s, xn, imm, bytes)), s->z[zt.num], bytes);
  return AARCH64_DECODE_OK;
}

// In memory a predicate is one bit per register byte: an eighth of the vector
// length, always a whole number of 16-bit pieces, moved in ascending order.
aarch64_decode_rc sve_ldr_pri(cpu_state* s, aarch64_p_reg pt, aarch64_i_rsp_reg xn, int imm) {
  const unsigned bytes = vector_bytes() / 8;
  const uint64_t addr = register_slot(s, xn, imm, static_cast<int>(bytes));
  pred_bits bits{};
  for (unsigned at = 0; at < bytes; at += 2)
    bits.w[at / 8] |= uint64_t{read_app<uint16_t>(addr + at)} << (8 * (at % 8));
  unpack_predicate(s->p[pt.num], bits);
  return AARCH64_DECODE_OK;
}

aarch64_decode_rc sve_str_pri(cpu_state* s, aarch64_p_reg pt, aarch64_i_rsp_reg xn, int imm) {
  const unsigned bytes = vector_bytes() / 8;
  const uint64_t addr = register_slot(s, xn, imm, static_cast<int>(bytes));
  const pred_bits bits = pack_predicate(s->p[pt.num]);
  for (unsigned at = 0; at < bytes; at += 2)
    write_app<uint16_t>(addr + at, static_cast<uint16_t>(bits.w[at / 8] >> (8 * (at % 8))));
  return AARCH64_DECODE_OK;
}

} // namespace ZORVO_LENGTH
