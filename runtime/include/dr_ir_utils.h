/* Generated-code helpers: spill slots, the stolen register, constants and
 * calls out of the code cache. */
#ifndef _DR_IR_UTILS_H_
#define _DR_IR_UTILS_H_ 1

#include "dr_ir_instr.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Generated code that stores reg into / loads reg from a spill slot. */
void dr_save_reg(void* drcontext, instrlist_t* ilist, instr_t* where, reg_id_t reg,
                 dr_spill_slot_t slot);
void dr_restore_reg(void* drcontext, instrlist_t* ilist, instr_t* where, reg_id_t reg,
                    dr_spill_slot_t slot);
/* A spill slot's value, read and written from a function that generated code
 * called. */
reg_t dr_read_saved_reg(void* drcontext, dr_spill_slot_t slot);
void dr_write_saved_reg(void* drcontext, dr_spill_slot_t slot, reg_t value);

/* The register the runtime keeps for itself inside generated code. */
reg_id_t dr_get_stolen_reg(void);
/* Generated code that copies the application's value of the stolen register
 * into reg, and back from reg. */
bool dr_insert_get_stolen_reg_value(void* drcontext, instrlist_t* ilist, instr_t* instr,
                                    reg_id_t reg);
bool dr_insert_set_stolen_reg_value(void* drcontext, instrlist_t* ilist, instr_t* instr,
                                    reg_id_t reg);

/* Generated code that loads a pointer-sized constant into the register dst. */
void instrlist_insert_mov_immed_ptrsz(void* drcontext, ptr_int_t val, opnd_t dst,
                                      instrlist_t* ilist, instr_t* where, instr_t** first,
                                      instr_t** last);

/* Generated code that calls callee with num_args immediate operands as its
 * arguments, on the thread's runtime stack, and returns with every register,
 * the flags and FPSR as they were. pc is the application instruction that
 * the call carries out. */
void dr_insert_call_zorvo(void* drcontext, instrlist_t* ilist, instr_t* where, app_pc pc,
                          void* callee, uint num_args, ...);

/* Zorvo's own: generated code that loads into reg the top of the current
 * thread's runtime stack, where code called from a fragment runs. */
bool dr_insert_get_runtime_stack_top(void* drcontext, instrlist_t* ilist, instr_t* where,
                                     reg_id_t reg);

/* Zorvo's own: generated code that gives the thread the runtime's thread
 * pointer (enter) or the application's back (leave), with scratch as the
 * only register it changes. In a statically linked program the program's
 * C library owns TPIDR_EL0, and code of the runtime or the client that uses
 * thread-local storage must run between the two; elsewhere both insert
 * nothing. */
bool dr_insert_runtime_thread_pointer_zorvo(void* drcontext, instrlist_t* ilist, instr_t* where,
                                            reg_id_t scratch, bool enter);

#ifdef __cplusplus
}
#endif

#endif
