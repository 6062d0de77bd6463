// The inside of instructions and lists, shared by the IR, the encoder and the
// block builder.
#pragma once

#include "dr_api.h"
#include "drmgr.h"

constexpr int kMaxDsts = 2;
constexpr int kMaxSrcs = 5;

enum instr_flag : uint16_t {
  INSTR_META = 1 << 0,
  INSTR_RAW_VALID = 1 << 1,
  INSTR_OPERANDS_VALID = 1 << 2, // opcode and operands say what the instruction is
  INSTR_FROM_APP = 1 << 3,       // read from the application's code by the block builder
  INSTR_FPCR_PROBE = 1 << 4,     // the msr fpcr that opens every block
  INSTR_EMULATION_START = 1 << 5,
  INSTR_EMULATION_END = 1 << 6,
  INSTR_ON_MALLOC_HEAP = 1 << 7,
};

struct _instr_t {
  instr_t* prev;
  instr_t* next;
  int opcode;
  uint16_t flags;
  uint8_t num_dsts;
  uint8_t num_srcs;
  opnd_t dsts[kMaxDsts];
  opnd_t srcs[kMaxSrcs];
  byte* raw_bits;
  uint raw_length;
  app_pc translation;
  void* note;
  emulated_instr_t emulated; // for an emulation start label
};

struct _instrlist_t {
  instr_t* first;
  instr_t* last;
  bool on_malloc_heap;
};

// Operand kinds inside opnd_t.
enum opnd_kind : byte {
  OPND_NULL = 0,
  OPND_REG,
  OPND_IMMED_INT,
  OPND_BASE_DISP,
  OPND_PC,
  OPND_INSTR,
};

// Memory for IR objects of the given context: a thread's build arena, or the
// C heap for GLOBAL_DCONTEXT.
void* ir_alloc(void* drcontext, size_t size, bool* on_malloc_heap);

// Fills in opcode and operands of an instruction that has only raw bits.
void decode_app_instr(instr_t* instr);

// One 32-bit word or a run of raw bytes: the size of an instruction's
// encoding, 0 for a label.
int encoded_length(instr_t* instr);
