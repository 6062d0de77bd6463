/* Convenience macros that build AArch64 operands and instructions. */
#ifndef _DR_IR_MACROS_AARCH64_H_
#define _DR_IR_MACROS_AARCH64_H_ 1

#include "dr_ir_instr.h"
#include "dr_ir_opcodes_aarch64.h"

#define OPND_CREATE_INTPTR(val) opnd_create_immed_int((ptr_int_t)(val), OPSZ_PTR)
#define OPND_CREATE_INT64(val) opnd_create_immed_int((ptr_int_t)(val), OPSZ_8)
#define OPND_CREATE_INT32(val) opnd_create_immed_int((ptr_int_t)(val), OPSZ_4)
#define OPND_CREATE_INT16(val) opnd_create_immed_int((ptr_int_t)(val), OPSZ_2)
#define OPND_CREATE_INT8(val) opnd_create_immed_int((ptr_int_t)(val), OPSZ_1)
/* The size of an immediate does not change its encoding on AArch64. */
#define OPND_CREATE_INT(val) OPND_CREATE_INTPTR(val)
#define OPND_CREATE_ZR(reg) opnd_create_reg(opnd_get_size(reg) == OPSZ_4 ? DR_REG_WZR : DR_REG_XZR)
#define OPND_CREATE_LSL() opnd_add_flags(OPND_CREATE_INT(DR_SHIFT_LSL), DR_OPND_IS_SHIFT)

#define OPND_CREATE_MEMPTR(base, disp) opnd_create_base_disp(base, DR_REG_NULL, 0, disp, OPSZ_PTR)
#define OPND_CREATE_MEM64(base, disp) opnd_create_base_disp(base, DR_REG_NULL, 0, disp, OPSZ_8)
#define OPND_CREATE_MEM32(base, disp) opnd_create_base_disp(base, DR_REG_NULL, 0, disp, OPSZ_4)

#define INSTR_CREATE_label(dc) instr_create_0dst_0src((dc), OP_LABEL)
#define INSTR_CREATE_nop(dc) instr_create_0dst_0src((dc), OP_nop)

#define INSTR_CREATE_add_shift(dc, rd, rn, rm_or_imm, sht, sha)                                    \
  (opnd_is_reg(rm_or_imm)                                                                          \
       ? instr_create_1dst_4src((dc), OP_add, (rd), (rn),                                          \
                                opnd_create_reg_ex(opnd_get_reg(rm_or_imm), 0, DR_OPND_SHIFTED),   \
                                opnd_add_flags((sht), DR_OPND_IS_SHIFT), (sha))                    \
       : instr_create_1dst_4src((dc), OP_add, (rd), (rn), (rm_or_imm), (sht), (sha)))
#define INSTR_CREATE_sub_shift(dc, rd, rn, rm_or_imm, sht, sha)                                    \
  (opnd_is_reg(rm_or_imm)                                                                          \
       ? instr_create_1dst_4src((dc), OP_sub, (rd), (rn),                                          \
                                opnd_create_reg_ex(opnd_get_reg(rm_or_imm), 0, DR_OPND_SHIFTED),   \
                                opnd_add_flags((sht), DR_OPND_IS_SHIFT), (sha))                    \
       : instr_create_1dst_4src((dc), OP_sub, (rd), (rn), (rm_or_imm), (sht), (sha)))
#define INSTR_CREATE_add(dc, rd, rn, rm_or_imm)                                                    \
  INSTR_CREATE_add_shift(dc, rd, rn, rm_or_imm, OPND_CREATE_LSL(), OPND_CREATE_INT(0))
#define INSTR_CREATE_sub(dc, rd, rn, rm_or_imm)                                                    \
  INSTR_CREATE_sub_shift(dc, rd, rn, rm_or_imm, OPND_CREATE_LSL(), OPND_CREATE_INT(0))

#define INSTR_CREATE_ldr(dc, Rd, mem) instr_create_1dst_1src((dc), OP_ldr, (Rd), (mem))
#define INSTR_CREATE_str(dc, mem, rt) instr_create_1dst_1src((dc), OP_str, (mem), (rt))
#define INSTR_CREATE_ldur(dc, Rd, mem) instr_create_1dst_1src((dc), OP_ldur, (Rd), (mem))
#define INSTR_CREATE_stur(dc, mem, rt) instr_create_1dst_1src((dc), OP_stur, (mem), (rt))
#define INSTR_CREATE_ldp(dc, rt1, rt2, mem)                                                        \
  instr_create_2dst_1src((dc), OP_ldp, (rt1), (rt2), (mem))
#define INSTR_CREATE_stp(dc, mem, rt1, rt2)                                                        \
  instr_create_1dst_2src((dc), OP_stp, (mem), (rt1), (rt2))

#define INSTR_CREATE_mrs(dc, Xt, sysreg) instr_create_1dst_1src((dc), OP_mrs, (Xt), (sysreg))
#define INSTR_CREATE_msr(dc, sysreg, Xt) instr_create_1dst_1src((dc), OP_msr, (sysreg), (Xt))

#define INSTR_CREATE_movz(dc, rt, imm16, lsl)                                                      \
  instr_create_1dst_3src((dc), OP_movz, (rt), (imm16), OPND_CREATE_LSL(), (lsl))
#define INSTR_CREATE_movk(dc, rt, imm16, lsl)                                                      \
  instr_create_1dst_4src((dc), OP_movk, (rt), (rt), (imm16), OPND_CREATE_LSL(), (lsl))

#define INSTR_CREATE_b(dc, pc) instr_create_0dst_1src((dc), OP_b, (pc))
#define INSTR_CREATE_cbz(dc, pc, reg) instr_create_0dst_2src((dc), OP_cbz, (pc), (reg))
#define INSTR_CREATE_br(dc, xn) instr_create_0dst_1src((dc), OP_br, (xn))
#define INSTR_CREATE_blr(dc, xn) instr_create_0dst_1src((dc), OP_blr, (xn))
#define INSTR_CREATE_ret(dc, Rn) instr_create_0dst_1src((dc), OP_ret, (Rn))

#define XINST_CREATE_load(dc, r, m) INSTR_CREATE_ldr((dc), (r), (m))
#define XINST_CREATE_store(dc, m, r) INSTR_CREATE_str((dc), (m), (r))
#define XINST_CREATE_load_simd(dc, r, m) INSTR_CREATE_ldr((dc), (r), (m))
#define XINST_CREATE_store_simd(dc, m, r) INSTR_CREATE_str((dc), (m), (r))
#define XINST_CREATE_jump(dc, t) INSTR_CREATE_b((dc), (t))
#define XINST_CREATE_jump_reg(dc, r) INSTR_CREATE_br((dc), (r))
#define XINST_CREATE_return(dc) INSTR_CREATE_ret(dc, opnd_create_reg(DR_REG_X30))
#define XINST_CREATE_add_2src(dc, d, s1, s2)                                                       \
  INSTR_CREATE_add_shift(dc, d, s1, s2, OPND_CREATE_LSL(), OPND_CREATE_INT(0))

#endif
