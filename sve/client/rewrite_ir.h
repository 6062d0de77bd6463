// Small pieces of IR that both ways of rewriting a block use.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "dr_api.h"
#include "drmgr.h"

inline opnd_t reg(reg_id_t r) { return opnd_create_reg(r); }
inline opnd_t x(int n) { return opnd_create_reg(reg_id_t(DR_REG_X0 + n)); }
inline opnd_t q(int n) { return opnd_create_reg(reg_id_t(DR_REG_Q0 + n)); }
inline opnd_t field(reg_id_t base, size_t offset, opnd_size_t size) {
  return opnd_create_base_disp(base, DR_REG_NULL, 0, static_cast<int>(offset), size);
}
inline opnd_t state_field(size_t offset, opnd_size_t size) {
  return field(DR_REG_X27, offset, size);
}

// The rewriter's own instructions carry the application address of the
// instruction they stand for, so a fault inside them maps back to it.
inline void insert(instrlist_t* bb, instr_t* where, app_pc pc, instr_t* instr) {
  instrlist_preinsert(bb, where, instr_set_translation(instr, pc));
}

// The label before the code that stands for the application's word at pc.
inline void mark_emulation_start(void* dc, instrlist_t* bb, instr_t* where, app_pc pc) {
  emulated_instr_t emulated = {};
  emulated.size = sizeof(emulated);
  emulated.pc = pc;
  emulated.instr = instr_create(dc);
  instr_set_raw_bits(emulated.instr, dr_app_pc_for_decoding(pc), 4);
  instr_set_raw_bits_valid(emulated.instr, true);
  drmgr_insert_emulation_start(dc, bb, where, &emulated);
}

inline uint32_t word_of(instr_t* instr) {
  uint32_t word;
  std::memcpy(&word, instr_get_raw_bits(instr), sizeof word);
  return word;
}
