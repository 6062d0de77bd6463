/* Instructions and instruction lists. */
#ifndef _DR_IR_INSTR_H_
#define _DR_IR_INSTR_H_ 1

#include "dr_ir_opnd.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Instructions live on the heap of the context that creates them: a
 * thread's context frees them all when its block has been built. */
instr_t* instr_create(void* drcontext);
void instr_destroy(void* drcontext, instr_t* instr);
instr_t* instr_build(void* drcontext, int opcode, int num_dsts, int num_srcs);

instr_t* instr_create_0dst_0src(void* drcontext, int opcode);
instr_t* instr_create_0dst_1src(void* drcontext, int opcode, opnd_t src);
instr_t* instr_create_0dst_2src(void* drcontext, int opcode, opnd_t src1, opnd_t src2);
instr_t* instr_create_1dst_1src(void* drcontext, int opcode, opnd_t dst, opnd_t src);
instr_t* instr_create_1dst_2src(void* drcontext, int opcode, opnd_t dst, opnd_t src1, opnd_t src2);
instr_t* instr_create_1dst_3src(void* drcontext, int opcode, opnd_t dst, opnd_t src1, opnd_t src2,
                                opnd_t src3);
instr_t* instr_create_1dst_4src(void* drcontext, int opcode, opnd_t dst, opnd_t src1, opnd_t src2,
                                opnd_t src3, opnd_t src4);
instr_t* instr_create_2dst_1src(void* drcontext, int opcode, opnd_t dst1, opnd_t dst2, opnd_t src);

int instr_get_opcode(instr_t* instr);
void instr_set_opcode(instr_t* instr, int opcode);
int instr_num_dsts(instr_t* instr);
int instr_num_srcs(instr_t* instr);
opnd_t instr_get_dst(instr_t* instr, uint pos);
opnd_t instr_get_src(instr_t* instr, uint pos);
void instr_set_dst(instr_t* instr, uint pos, opnd_t opnd);
void instr_set_src(instr_t* instr, uint pos, opnd_t opnd);

byte* instr_get_raw_bits(instr_t* instr);
void instr_set_raw_bits(instr_t* instr, byte* addr, uint length);
void instr_set_raw_bits_valid(instr_t* instr, bool valid);
/* Raw bits of the instruction's own, living as long as the IR of the block
 * being built, and one 32-bit word of them. */
void instr_allocate_raw_bits(void* drcontext, instr_t* instr, uint num_bytes);
instr_t* instr_set_raw_word(instr_t* instr, uint pos, uint word);
bool instr_raw_bits_valid(instr_t* instr);
int instr_length(void* drcontext, instr_t* instr);

app_pc instr_get_app_pc(instr_t* instr);
app_pc instr_get_translation(instr_t* instr);
instr_t* instr_set_translation(instr_t* instr, app_pc addr);

bool instr_is_app(instr_t* instr);
bool instr_is_meta(instr_t* instr);
void instr_set_meta(instr_t* instr);
void instr_set_app(instr_t* instr);
bool instr_is_label(instr_t* instr);
void* instr_get_note(instr_t* instr);
void instr_set_note(instr_t* instr, void* value);

instr_t* instr_get_next(instr_t* instr);
instr_t* instr_get_prev(instr_t* instr);
instr_t* instr_get_next_app(instr_t* instr);

/* Encodes instr as if it stood at final_pc, writing the bytes at copy_pc.
 * Returns the byte after the encoding, or NULL if instr has no encoding. */
byte* instr_encode_to_copy(void* drcontext, instr_t* instr, byte* copy_pc, byte* final_pc);
byte* instr_encode(void* drcontext, instr_t* instr, byte* pc);

instrlist_t* instrlist_create(void* drcontext);
void instrlist_destroy(void* drcontext, instrlist_t* ilist);
void instrlist_clear_and_destroy(void* drcontext, instrlist_t* ilist);
instr_t* instrlist_first(instrlist_t* ilist);
instr_t* instrlist_last(instrlist_t* ilist);
instr_t* instrlist_first_app(instrlist_t* ilist);
void instrlist_append(instrlist_t* ilist, instr_t* instr);
void instrlist_prepend(instrlist_t* ilist, instr_t* instr);
void instrlist_preinsert(instrlist_t* ilist, instr_t* where, instr_t* instr);
void instrlist_postinsert(instrlist_t* ilist, instr_t* where, instr_t* instr);
void instrlist_meta_preinsert(instrlist_t* ilist, instr_t* where, instr_t* instr);
void instrlist_meta_append(instrlist_t* ilist, instr_t* instr);
void instrlist_remove(instrlist_t* ilist, instr_t* instr);

#ifdef __cplusplus
}
#endif

#endif
