// The small decoder: the runtime tells a client only what it needs of an
// application instruction, which is the system-register moves. Everything else
// reports OP_UNDECODED and travels as raw bits.
#include <cstring>

#include "ir.h"

namespace {

constexpr uint32_t kMsrRegisterMask = 0xfff00000;
constexpr uint32_t kMsrRegister = 0xd5100000; // msr <sysreg>, Xt
constexpr uint32_t kMrsRegister = 0xd5300000; // mrs Xt, <sysreg>

// The o0:op1:CRn:CRm:op2 field of the three registers the runtime names.
reg_id_t system_register(uint32_t word) {
  switch ((word >> 5) & 0x7fff) {
  case 0x5a10:
    return DR_REG_NZCV;
  case 0x5a20:
    return DR_REG_FPCR;
  case 0x5a21:
    return DR_REG_FPSR;
  default:
    return DR_REG_INVALID;
  }
}

reg_id_t x_register(uint32_t number) {
  return number == 31 ? reg_id_t(DR_REG_XZR) : reg_id_t(DR_REG_X0 + number);
}

} // namespace

void decode_app_instr(instr_t* instr) {
  instr->opcode = OP_UNDECODED;
  instr->num_dsts = instr->num_srcs = 0;
  if (instr->raw_length == 4) {
    uint32_t word;
    std::memcpy(&word, instr->raw_bits, 4);
    const opnd_t sysreg = opnd_create_reg(system_register(word));
    const opnd_t rt = opnd_create_reg(x_register(word & 31));
    if ((word & kMsrRegisterMask) == kMsrRegister) {
      instr->opcode = OP_msr;
      instr->num_dsts = instr->num_srcs = 1;
      instr->dsts[0] = sysreg;
      instr->srcs[0] = rt;
    } else if ((word & kMsrRegisterMask) == kMrsRegister) {
      instr->opcode = OP_mrs;
      instr->num_dsts = instr->num_srcs = 1;
      instr->dsts[0] = rt;
      instr->srcs[0] = sysreg;
    }
  }
  instr->flags |= INSTR_OPERANDS_VALID;
}
