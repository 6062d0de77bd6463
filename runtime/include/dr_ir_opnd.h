/* Registers, operand sizes and operands of the instruction representation. */
#ifndef _DR_IR_OPND_H_
#define _DR_IR_OPND_H_ 1

#include "dr_defines.h"

typedef ushort reg_id_t;
typedef byte opnd_size_t;

/* AArch64 registers. X31 is two registers, XSP and XZR, by context. */
/* clang-format off */
enum {
  DR_REG_NULL = 0,
  DR_REG_INVALID,
  DR_REG_X0, DR_REG_X1, DR_REG_X2, DR_REG_X3, DR_REG_X4, DR_REG_X5, DR_REG_X6, DR_REG_X7,
  DR_REG_X8, DR_REG_X9, DR_REG_X10, DR_REG_X11, DR_REG_X12, DR_REG_X13, DR_REG_X14,
  DR_REG_X15, DR_REG_X16, DR_REG_X17, DR_REG_X18, DR_REG_X19, DR_REG_X20, DR_REG_X21,
  DR_REG_X22, DR_REG_X23, DR_REG_X24, DR_REG_X25, DR_REG_X26, DR_REG_X27, DR_REG_X28,
  DR_REG_X29, DR_REG_X30, DR_REG_XSP, DR_REG_XZR,
  DR_REG_W0, DR_REG_W1, DR_REG_W2, DR_REG_W3, DR_REG_W4, DR_REG_W5, DR_REG_W6, DR_REG_W7,
  DR_REG_W8, DR_REG_W9, DR_REG_W10, DR_REG_W11, DR_REG_W12, DR_REG_W13, DR_REG_W14,
  DR_REG_W15, DR_REG_W16, DR_REG_W17, DR_REG_W18, DR_REG_W19, DR_REG_W20, DR_REG_W21,
  DR_REG_W22, DR_REG_W23, DR_REG_W24, DR_REG_W25, DR_REG_W26, DR_REG_W27, DR_REG_W28,
  DR_REG_W29, DR_REG_W30, DR_REG_WSP, DR_REG_WZR,
  DR_REG_Q0, DR_REG_Q1, DR_REG_Q2, DR_REG_Q3, DR_REG_Q4, DR_REG_Q5, DR_REG_Q6, DR_REG_Q7,
  DR_REG_Q8, DR_REG_Q9, DR_REG_Q10, DR_REG_Q11, DR_REG_Q12, DR_REG_Q13, DR_REG_Q14,
  DR_REG_Q15, DR_REG_Q16, DR_REG_Q17, DR_REG_Q18, DR_REG_Q19, DR_REG_Q20, DR_REG_Q21,
  DR_REG_Q22, DR_REG_Q23, DR_REG_Q24, DR_REG_Q25, DR_REG_Q26, DR_REG_Q27, DR_REG_Q28,
  DR_REG_Q29, DR_REG_Q30, DR_REG_Q31,
  DR_REG_NZCV,
  DR_REG_FPCR,
  DR_REG_FPSR,
  DR_REG_TPIDR_EL0,
  DR_REG_LAST_VALID_ENUM = DR_REG_TPIDR_EL0,
  DR_REG_SP = DR_REG_XSP,
  DR_REG_LR = DR_REG_X30,
};
/* clang-format on */

/* Operand sizes. */
enum {
  OPSZ_NA = 0,
  OPSZ_0,
  OPSZ_1,
  OPSZ_2,
  OPSZ_4,
  OPSZ_8,
  OPSZ_16,
  OPSZ_32,
  OPSZ_PTR = OPSZ_8,
};

/* Shift kinds, as the operand after a shifted register or immediate. */
typedef enum {
  DR_SHIFT_LSL = 0,
  DR_SHIFT_LSR = 1,
  DR_SHIFT_ASR = 2,
  DR_SHIFT_ROR = 3,
  DR_SHIFT_NONE = 4,
} dr_shift_type_t;

typedef enum {
  DR_OPND_NEGATED = 0x01,
  DR_OPND_SHIFTED = 0x02,
  DR_OPND_MULTI_PART = 0x04,
  DR_OPND_IS_SHIFT = 0x08,
  DR_OPND_IN_LIST = 0x10,
  DR_OPND_EXTENDED = 0x20,
  DR_OPND_IS_EXTEND = 0x40,
  DR_OPND_DEFAULT = 0x00,
} dr_opnd_flags_t;

/* Passed by value; the fields are private to the runtime. */
typedef struct _opnd_t {
  byte kind;
  opnd_size_t size;
  ushort flags;
  reg_id_t reg; /* the register, or the base of a memory operand */
  reg_id_t index;
  int disp;
  union {
    ptr_int_t immed_int;
    app_pc pc;
    instr_t* instr;
  } value;
} opnd_t;

#ifdef __cplusplus
extern "C" {
#endif

opnd_t opnd_create_null(void);
opnd_t opnd_create_reg(reg_id_t r);
opnd_t opnd_create_reg_ex(reg_id_t r, opnd_size_t subsize, dr_opnd_flags_t flags);
opnd_t opnd_create_immed_int(ptr_int_t i, opnd_size_t data_size);
opnd_t opnd_create_base_disp(reg_id_t base_reg, reg_id_t index_reg, int scale, int disp,
                             opnd_size_t data_size);
opnd_t opnd_create_pc(app_pc pc);
opnd_t opnd_create_instr(instr_t* instr);
opnd_t opnd_add_flags(opnd_t opnd, dr_opnd_flags_t flags);
dr_opnd_flags_t opnd_get_flags(opnd_t opnd);

bool opnd_is_null(opnd_t opnd);
bool opnd_is_reg(opnd_t opnd);
bool opnd_is_immed_int(opnd_t opnd);
bool opnd_is_immed(opnd_t opnd);
bool opnd_is_base_disp(opnd_t opnd);
bool opnd_is_memory_reference(opnd_t opnd);
bool opnd_is_pc(opnd_t opnd);
bool opnd_is_instr(opnd_t opnd);
bool opnd_same(opnd_t op1, opnd_t op2);

reg_id_t opnd_get_reg(opnd_t opnd);
opnd_size_t opnd_get_size(opnd_t opnd);
reg_id_t opnd_get_base(opnd_t opnd);
reg_id_t opnd_get_index(opnd_t opnd);
int opnd_get_disp(opnd_t opnd);
ptr_int_t opnd_get_immed_int(opnd_t opnd);
app_pc opnd_get_pc(opnd_t opnd);
instr_t* opnd_get_instr(opnd_t opnd);
uint opnd_size_in_bytes(opnd_size_t size);

/* Register helpers. */
bool reg_is_gpr(reg_id_t reg);
bool reg_is_simd(reg_id_t reg);
opnd_size_t reg_get_size(reg_id_t reg);
reg_id_t reg_64_to_32(reg_id_t reg);
reg_id_t reg_32_to_64(reg_id_t reg);
reg_id_t reg_resize_to_opsz(reg_id_t reg, opnd_size_t sz);
const char* get_register_name(reg_id_t reg);

#ifdef __cplusplus
}
#endif

#endif
