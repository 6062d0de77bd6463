// Operands and registers.
#include <cstring>

#include "ir.h"

namespace {

bool in_range(reg_id_t r, int first, int last) { return r >= first && r <= last; }

const char* const kGprNames[] = {
    "x0",  "x1",  "x2",   "x3",   "x4",   "x5",       "x6",  "x7",  "x8",  "x9",  "x10", "x11",
    "x12", "x13", "x14",  "x15",  "x16",  "x17",      "x18", "x19", "x20", "x21", "x22", "x23",
    "x24", "x25", "x26",  "x27",  "x28",  "x29",      "x30", "sp",  "xzr", "w0",  "w1",  "w2",
    "w3",  "w4",  "w5",   "w6",   "w7",   "w8",       "w9",  "w10", "w11", "w12", "w13", "w14",
    "w15", "w16", "w17",  "w18",  "w19",  "w20",      "w21", "w22", "w23", "w24", "w25", "w26",
    "w27", "w28", "w29",  "w30",  "wsp",  "wzr",      "q0",  "q1",  "q2",  "q3",  "q4",  "q5",
    "q6",  "q7",  "q8",   "q9",   "q10",  "q11",      "q12", "q13", "q14", "q15", "q16", "q17",
    "q18", "q19", "q20",  "q21",  "q22",  "q23",      "q24", "q25", "q26", "q27", "q28", "q29",
    "q30", "q31", "nzcv", "fpcr", "fpsr", "tpidr_el0"};
static_assert(sizeof(kGprNames) / sizeof(kGprNames[0]) == DR_REG_TPIDR_EL0 - DR_REG_X0 + 1);

} // namespace

extern "C" {

opnd_t opnd_create_null(void) {
  opnd_t o;
  std::memset(&o, 0, sizeof o);
  return o;
}

opnd_t opnd_create_reg(reg_id_t r) {
  opnd_t o = opnd_create_null();
  o.kind = OPND_REG;
  o.reg = r;
  o.size = reg_get_size(r);
  return o;
}

opnd_t opnd_create_reg_ex(reg_id_t r, opnd_size_t subsize, dr_opnd_flags_t flags) {
  opnd_t o = opnd_create_reg(r);
  if (subsize != 0) o.size = subsize;
  o.flags = static_cast<ushort>(flags);
  return o;
}

opnd_t opnd_create_immed_int(ptr_int_t i, opnd_size_t data_size) {
  opnd_t o = opnd_create_null();
  o.kind = OPND_IMMED_INT;
  o.size = data_size;
  o.value.immed_int = i;
  return o;
}

opnd_t opnd_create_base_disp(reg_id_t base_reg, reg_id_t index_reg, int /*scale*/, int disp,
                             opnd_size_t data_size) {
  opnd_t o = opnd_create_null();
  o.kind = OPND_BASE_DISP;
  o.reg = base_reg;
  o.index = index_reg;
  o.disp = disp;
  o.size = data_size;
  return o;
}

opnd_t opnd_create_pc(app_pc pc) {
  opnd_t o = opnd_create_null();
  o.kind = OPND_PC;
  o.value.pc = pc;
  return o;
}

opnd_t opnd_create_instr(instr_t* instr) {
  opnd_t o = opnd_create_null();
  o.kind = OPND_INSTR;
  o.value.instr = instr;
  return o;
}

opnd_t opnd_add_flags(opnd_t opnd, dr_opnd_flags_t flags) {
  opnd.flags = static_cast<ushort>(opnd.flags | flags);
  return opnd;
}

dr_opnd_flags_t opnd_get_flags(opnd_t opnd) { return static_cast<dr_opnd_flags_t>(opnd.flags); }

bool opnd_is_null(opnd_t opnd) { return opnd.kind == OPND_NULL; }
bool opnd_is_reg(opnd_t opnd) { return opnd.kind == OPND_REG; }
bool opnd_is_immed_int(opnd_t opnd) { return opnd.kind == OPND_IMMED_INT; }
bool opnd_is_immed(opnd_t opnd) { return opnd.kind == OPND_IMMED_INT; }
bool opnd_is_base_disp(opnd_t opnd) { return opnd.kind == OPND_BASE_DISP; }
bool opnd_is_memory_reference(opnd_t opnd) { return opnd.kind == OPND_BASE_DISP; }
bool opnd_is_pc(opnd_t opnd) { return opnd.kind == OPND_PC; }
bool opnd_is_instr(opnd_t opnd) { return opnd.kind == OPND_INSTR; }

bool opnd_same(opnd_t a, opnd_t b) {
  if (a.kind != b.kind || a.size != b.size || a.flags != b.flags) return false;
  switch (a.kind) {
  case OPND_NULL:
    return true;
  case OPND_REG:
    return a.reg == b.reg;
  case OPND_IMMED_INT:
    return a.value.immed_int == b.value.immed_int;
  case OPND_BASE_DISP:
    return a.reg == b.reg && a.index == b.index && a.disp == b.disp;
  case OPND_PC:
    return a.value.pc == b.value.pc;
  case OPND_INSTR:
    return a.value.instr == b.value.instr;
  }
  return false;
}

reg_id_t opnd_get_reg(opnd_t opnd) {
  return opnd.kind == OPND_REG ? opnd.reg : reg_id_t(DR_REG_NULL);
}
opnd_size_t opnd_get_size(opnd_t opnd) { return opnd.size; }
reg_id_t opnd_get_base(opnd_t opnd) {
  return opnd.kind == OPND_BASE_DISP ? opnd.reg : reg_id_t(DR_REG_NULL);
}
reg_id_t opnd_get_index(opnd_t opnd) {
  return opnd.kind == OPND_BASE_DISP ? opnd.index : reg_id_t(DR_REG_NULL);
}
int opnd_get_disp(opnd_t opnd) { return opnd.kind == OPND_BASE_DISP ? opnd.disp : 0; }
ptr_int_t opnd_get_immed_int(opnd_t opnd) { return opnd.value.immed_int; }
app_pc opnd_get_pc(opnd_t opnd) { return opnd.kind == OPND_PC ? opnd.value.pc : nullptr; }
instr_t* opnd_get_instr(opnd_t opnd) {
  return opnd.kind == OPND_INSTR ? opnd.value.instr : nullptr;
}

uint opnd_size_in_bytes(opnd_size_t size) {
  switch (size) {
  case OPSZ_1:
    return 1;
  case OPSZ_2:
    return 2;
  case OPSZ_4:
    return 4;
  case OPSZ_8:
    return 8;
  case OPSZ_16:
    return 16;
  case OPSZ_32:
    return 32;
  default:
    return 0;
  }
}

bool reg_is_gpr(reg_id_t reg) { return in_range(reg, DR_REG_X0, DR_REG_WZR); }
bool reg_is_simd(reg_id_t reg) { return in_range(reg, DR_REG_Q0, DR_REG_Q31); }

opnd_size_t reg_get_size(reg_id_t reg) {
  if (in_range(reg, DR_REG_X0, DR_REG_XZR)) return OPSZ_8;
  if (in_range(reg, DR_REG_W0, DR_REG_WZR)) return OPSZ_4;
  if (in_range(reg, DR_REG_Q0, DR_REG_Q31)) return OPSZ_16;
  if (in_range(reg, DR_REG_NZCV, DR_REG_TPIDR_EL0)) return OPSZ_8;
  return OPSZ_NA;
}

reg_id_t reg_64_to_32(reg_id_t reg) {
  return in_range(reg, DR_REG_X0, DR_REG_XZR) ? reg_id_t(reg - DR_REG_X0 + DR_REG_W0) : reg;
}

reg_id_t reg_32_to_64(reg_id_t reg) {
  return in_range(reg, DR_REG_W0, DR_REG_WZR) ? reg_id_t(reg - DR_REG_W0 + DR_REG_X0) : reg;
}

reg_id_t reg_resize_to_opsz(reg_id_t reg, opnd_size_t sz) {
  if (sz == OPSZ_4) return reg_64_to_32(reg);
  if (sz == OPSZ_8) return reg_32_to_64(reg);
  return reg;
}

const char* get_register_name(reg_id_t reg) {
  return in_range(reg, DR_REG_X0, DR_REG_TPIDR_EL0) ? kGprNames[reg - DR_REG_X0] : "<invalid>";
}

} // extern "C"
