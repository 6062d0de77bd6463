/* The opcodes the runtime knows. An application instruction that the small
 * decoder does not recognise reports OP_UNDECODED and is carried as raw bits. */
#ifndef _DR_IR_OPCODES_AARCH64_H_
#define _DR_IR_OPCODES_AARCH64_H_ 1

enum {
  OP_INVALID,
  OP_UNDECODED,
  OP_CONTD,
  OP_LABEL,
  OP_add,
  OP_sub,
  OP_ldr,
  OP_str,
  OP_ldur,
  OP_stur,
  OP_ldp,
  OP_stp,
  OP_mrs,
  OP_msr,
  OP_movz,
  OP_movk,
  OP_b,
  OP_br,
  OP_blr,
  OP_ret,
  OP_nop,
  OP_cbz,
  OP_LAST,
};

#endif
