// The AArch64 encoder: every form that a client or the runtime itself builds.
// A form it does not know, or an operand out of the form's range, encodes to
// nothing rather than to a wrong word.
#include <cstring>

#include "ir.h"

namespace {

enum reg_class { RC_NONE, RC_X, RC_W, RC_Q, RC_SYS };

struct reg_fields {
  reg_class cls;
  uint32_t num;
  bool sp; // number 31 means SP
  bool zr; // number 31 means the zero register
};

reg_fields fields_of(reg_id_t r) {
  if (r >= DR_REG_X0 && r <= DR_REG_X30) return {RC_X, uint32_t(r - DR_REG_X0), false, false};
  if (r == DR_REG_XSP) return {RC_X, 31, true, false};
  if (r == DR_REG_XZR) return {RC_X, 31, false, true};
  if (r >= DR_REG_W0 && r <= DR_REG_W30) return {RC_W, uint32_t(r - DR_REG_W0), false, false};
  if (r == DR_REG_WSP) return {RC_W, 31, true, false};
  if (r == DR_REG_WZR) return {RC_W, 31, false, true};
  if (r >= DR_REG_Q0 && r <= DR_REG_Q31) return {RC_Q, uint32_t(r - DR_REG_Q0), false, false};
  if (r == DR_REG_NZCV) return {RC_SYS, 0x5a10, false, false};
  if (r == DR_REG_FPCR) return {RC_SYS, 0x5a20, false, false};
  if (r == DR_REG_FPSR) return {RC_SYS, 0x5a21, false, false};
  if (r == DR_REG_TPIDR_EL0) return {RC_SYS, 0x5e82, false, false};
  return {RC_NONE, 0, false, false};
}

bool is_reg(opnd_t o) { return o.kind == OPND_REG; }
bool is_gpr(const reg_fields& f) { return f.cls == RC_X || f.cls == RC_W; }
// A general register where number 31 is SP, or where it is the zero register.
bool sp_form(const reg_fields& f) { return is_gpr(f) && !f.zr; }
bool zr_form(const reg_fields& f) { return is_gpr(f) && !f.sp; }

// add/sub (immediate): Rd|SP, Rn|SP, #imm12{, lsl #12}; (shifted register):
// Rd, Rn, Rm{, shift #amount}.
bool encode_add_sub(instr_t* in, uint32_t* word) {
  if (in->num_dsts != 1 || in->num_srcs != 4 || !is_reg(in->dsts[0]) || !is_reg(in->srcs[0]))
    return false;
  const reg_fields d = fields_of(in->dsts[0].reg), n = fields_of(in->srcs[0].reg);
  const opnd_t shift = in->srcs[2], amount = in->srcs[3];
  if (!is_gpr(d) || d.cls != n.cls || shift.kind != OPND_IMMED_INT ||
      !(shift.flags & DR_OPND_IS_SHIFT) || amount.kind != OPND_IMMED_INT)
    return false;
  const uint32_t sf = d.cls == RC_X ? 1u << 31 : 0, sub = in->opcode == OP_sub ? 1u << 30 : 0;
  const ptr_int_t shift_type = shift.value.immed_int, shift_amount = amount.value.immed_int;
  if (in->srcs[1].kind == OPND_IMMED_INT) {
    const ptr_int_t imm = in->srcs[1].value.immed_int;
    if (!sp_form(d) || !sp_form(n) || shift_type != DR_SHIFT_LSL || imm < 0 || imm > 4095 ||
        (shift_amount != 0 && shift_amount != 12))
      return false;
    *word = sf | sub | 0x11000000u | (shift_amount == 12 ? 1u << 22 : 0) | uint32_t(imm) << 10 |
            n.num << 5 | d.num;
    return true;
  }
  if (!is_reg(in->srcs[1])) return false;
  const reg_fields m = fields_of(in->srcs[1].reg);
  const ptr_int_t width = d.cls == RC_X ? 64 : 32;
  if (m.cls != d.cls || !zr_form(d) || !zr_form(n) || !zr_form(m) || shift_type < 0 ||
      shift_type > DR_SHIFT_ASR || shift_amount < 0 || shift_amount >= width)
    return false;
  *word = sf | sub | 0x0b000000u | uint32_t(shift_type) << 22 | m.num << 16 |
          uint32_t(shift_amount) << 10 | n.num << 5 | d.num;
  return true;
}

// The register and memory operand of a single load or store, in either order.
bool load_store_operands(instr_t* in, bool load, opnd_t* reg, opnd_t* mem) {
  if (in->num_dsts != 1 || in->num_srcs != 1) return false;
  *reg = load ? in->dsts[0] : in->srcs[0];
  *mem = load ? in->srcs[0] : in->dsts[0];
  return is_reg(*reg) && mem->kind == OPND_BASE_DISP && mem->index == DR_REG_NULL;
}

// ldr/str (unsigned offset, scaled) and ldur/stur (signed 9-bit offset) of
// W, X and Q registers.
bool encode_load_store(instr_t* in, uint32_t* word) {
  const bool load = in->opcode == OP_ldr || in->opcode == OP_ldur;
  const bool unscaled_only = in->opcode == OP_ldur || in->opcode == OP_stur;
  opnd_t reg, mem;
  if (!load_store_operands(in, load, &reg, &mem)) return false;
  const reg_fields t = fields_of(reg.reg), n = fields_of(mem.reg);
  if (n.cls != RC_X || !sp_form(n)) return false;
  uint32_t scaled, unscaled, bytes;
  switch (t.cls) {
  case RC_X:
    scaled = 0xf9000000, unscaled = 0xf8000000, bytes = 8;
    break;
  case RC_W:
    scaled = 0xb9000000, unscaled = 0xb8000000, bytes = 4;
    break;
  case RC_Q:
    scaled = 0x3d800000, unscaled = 0x3c800000, bytes = 16;
    break;
  default:
    return false;
  }
  if (t.sp || opnd_size_in_bytes(mem.size) != bytes) return false;
  const uint32_t load_bit = load ? 0x00400000 : 0;
  const int disp = mem.disp;
  if (!unscaled_only && disp >= 0 && disp % int(bytes) == 0 && disp / int(bytes) < 4096) {
    *word = scaled | load_bit | uint32_t(disp / int(bytes)) << 10 | n.num << 5 | t.num;
    return true;
  }
  if (disp < -256 || disp > 255) return false;
  *word = unscaled | load_bit | (uint32_t(disp) & 0x1ff) << 12 | n.num << 5 | t.num;
  return true;
}

// ldp/stp (signed offset) of W, X and Q pairs.
bool encode_pair(instr_t* in, uint32_t* word) {
  const bool load = in->opcode == OP_ldp;
  if (load ? (in->num_dsts != 2 || in->num_srcs != 1) : (in->num_dsts != 1 || in->num_srcs != 2))
    return false;
  const opnd_t r1 = load ? in->dsts[0] : in->srcs[0], r2 = load ? in->dsts[1] : in->srcs[1];
  const opnd_t mem = load ? in->srcs[0] : in->dsts[0];
  if (!is_reg(r1) || !is_reg(r2) || mem.kind != OPND_BASE_DISP || mem.index != DR_REG_NULL)
    return false;
  const reg_fields t1 = fields_of(r1.reg), t2 = fields_of(r2.reg), n = fields_of(mem.reg);
  if (t1.cls != t2.cls || n.cls != RC_X || !sp_form(n) || t1.sp || t2.sp) return false;
  // A pair load into one register has no defined result.
  if (load && t1.num == t2.num) return false;
  uint32_t base, bytes;
  switch (t1.cls) {
  case RC_X:
    base = 0xa9000000, bytes = 8;
    break;
  case RC_W:
    base = 0x29000000, bytes = 4;
    break;
  case RC_Q:
    base = 0xad000000, bytes = 16;
    break;
  default:
    return false;
  }
  const int disp = mem.disp;
  if (opnd_size_in_bytes(mem.size) != 2 * bytes || disp % int(bytes) != 0 ||
      disp / int(bytes) < -64 || disp / int(bytes) > 63)
    return false;
  *word = base | (load ? 1u << 22 : 0) | (uint32_t(disp / int(bytes)) & 0x7f) << 15 | t2.num << 10 |
          n.num << 5 | t1.num;
  return true;
}

bool encode_system_move(instr_t* in, uint32_t* word) {
  if (in->num_dsts != 1 || in->num_srcs != 1 || !is_reg(in->dsts[0]) || !is_reg(in->srcs[0]))
    return false;
  const bool read = in->opcode == OP_mrs;
  const reg_fields sys = fields_of(read ? in->srcs[0].reg : in->dsts[0].reg);
  const reg_fields t = fields_of(read ? in->dsts[0].reg : in->srcs[0].reg);
  if (sys.cls != RC_SYS || t.cls != RC_X || t.sp) return false;
  *word = (read ? 0xd5300000u : 0xd5100000u) | sys.num << 5 | t.num;
  return true;
}

// movz Rd, #imm16, lsl #s and movk Rd, #imm16, lsl #s (movk names Rd twice).
bool encode_move_wide(instr_t* in, uint32_t* word) {
  const bool keep = in->opcode == OP_movk;
  const int first = keep ? 1 : 0;
  if (in->num_dsts != 1 || in->num_srcs != first + 3 || !is_reg(in->dsts[0])) return false;
  const opnd_t imm = in->srcs[first], shift = in->srcs[first + 1], amount = in->srcs[first + 2];
  const reg_fields d = fields_of(in->dsts[0].reg);
  if (!zr_form(d) || imm.kind != OPND_IMMED_INT || amount.kind != OPND_IMMED_INT ||
      shift.kind != OPND_IMMED_INT || shift.value.immed_int != DR_SHIFT_LSL)
    return false;
  if (keep && (!is_reg(in->srcs[0]) || in->srcs[0].reg != in->dsts[0].reg)) return false;
  const ptr_int_t value = imm.value.immed_int, lsl = amount.value.immed_int;
  if (value < 0 || value > 0xffff || lsl < 0 || lsl % 16 != 0 || lsl >= (d.cls == RC_X ? 64 : 32))
    return false;
  *word = (d.cls == RC_X ? 1u << 31 : 0) | (keep ? 0x72800000u : 0x52800000u) |
          uint32_t(lsl / 16) << 21 | uint32_t(value) << 5 | d.num;
  return true;
}

bool encode_branch_register(instr_t* in, uint32_t* word) {
  if (in->num_srcs != 1 || !is_reg(in->srcs[0])) return false;
  const reg_fields n = fields_of(in->srcs[0].reg);
  if (n.cls != RC_X || n.sp) return false;
  const uint32_t base = in->opcode == OP_br    ? 0xd61f0000u
                        : in->opcode == OP_blr ? 0xd63f0000u
                                               : 0xd65f0000u;
  *word = base | n.num << 5;
  return true;
}

bool encode_branch(instr_t* in, const byte* final_pc, uint32_t* word) {
  if (in->num_srcs != 1 || in->srcs[0].kind != OPND_PC) return false;
  const ptrdiff_t offset = in->srcs[0].value.pc - final_pc;
  if (offset % 4 != 0 || offset < -(ptrdiff_t(1) << 27) || offset >= (ptrdiff_t(1) << 27))
    return false;
  *word = 0x14000000u | (uint32_t(offset / 4) & 0x3ffffff);
  return true;
}

// cbz Rt, label: the label within a megabyte either way.
bool encode_compare_branch(instr_t* in, const byte* final_pc, uint32_t* word) {
  if (in->num_srcs != 2 || in->srcs[0].kind != OPND_PC || !is_reg(in->srcs[1])) return false;
  const reg_fields t = fields_of(in->srcs[1].reg);
  const ptrdiff_t offset = in->srcs[0].value.pc - final_pc;
  if (!zr_form(t) || offset % 4 != 0 || offset < -(ptrdiff_t(1) << 20) ||
      offset >= (ptrdiff_t(1) << 20))
    return false;
  *word =
      (t.cls == RC_X ? 0xb4000000u : 0x34000000u) | (uint32_t(offset / 4) & 0x7ffff) << 5 | t.num;
  return true;
}

bool encode_word(instr_t* in, const byte* final_pc, uint32_t* word) {
  switch (in->opcode) {
  case OP_add:
  case OP_sub:
    return encode_add_sub(in, word);
  case OP_ldr:
  case OP_str:
  case OP_ldur:
  case OP_stur:
    return encode_load_store(in, word);
  case OP_ldp:
  case OP_stp:
    return encode_pair(in, word);
  case OP_mrs:
  case OP_msr:
    return encode_system_move(in, word);
  case OP_movz:
  case OP_movk:
    return encode_move_wide(in, word);
  case OP_br:
  case OP_blr:
  case OP_ret:
    return encode_branch_register(in, word);
  case OP_b:
    return encode_branch(in, final_pc, word);
  case OP_cbz:
    return encode_compare_branch(in, final_pc, word);
  case OP_nop:
    *word = 0xd503201f;
    return true;
  default:
    return false;
  }
}

} // namespace

int encoded_length(instr_t* instr) {
  if (instr->flags & INSTR_RAW_VALID) return int(instr->raw_length);
  return instr->opcode == OP_LABEL ? 0 : 4;
}

extern "C" {

byte* instr_encode_to_copy(void*, instr_t* instr, byte* copy_pc, byte* final_pc) {
  if (instr->flags & INSTR_RAW_VALID) {
    std::memcpy(copy_pc, instr->raw_bits, instr->raw_length);
    return copy_pc + instr->raw_length;
  }
  if (instr->opcode == OP_LABEL) return copy_pc;
  uint32_t word;
  if (!encode_word(instr, final_pc, &word)) return nullptr;
  std::memcpy(copy_pc, &word, 4);
  return copy_pc + 4;
}

byte* instr_encode(void* drcontext, instr_t* instr, byte* pc) {
  return instr_encode_to_copy(drcontext, instr, pc, pc);
}

} // extern "C"
