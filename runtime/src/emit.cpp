// Generated code: spill slots, the stolen register, constants, calls, and the
// runtime's code around each block.
#include "emit.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "thread.h"

namespace {

constexpr uint32_t kFpcrProbeWord = 0xd51b4400; // msr fpcr, x0
// udf #0x5a4f: the end of a fragment that cannot branch to its target.
constexpr uint32_t kExitTrapWord = 0x00005a4f;

// The argument registers of a call, and the frame that keeps the registers a
// callee may change: X0-X18, X30, NZCV, FPSR and all of Q0-Q31.
constexpr int kMaxCallArgs = 8;
constexpr int kFlagsOffset = 160;
constexpr int kVectorOffset = 176;
constexpr int kCallFrame = kVectorOffset + 32 * 16;
static_assert(kCallFrame % 16 == 0);

opnd_t x(int n) { return opnd_create_reg(reg_id_t(DR_REG_X0 + n)); }
opnd_t q(int n) { return opnd_create_reg(reg_id_t(DR_REG_Q0 + n)); }
opnd_t reg(reg_id_t r) { return opnd_create_reg(r); }
opnd_t block_word(int offset) { return OPND_CREATE_MEM64(DR_REG_X28, offset); }
opnd_t stack_pair(int offset, opnd_size_t size) {
  return opnd_create_base_disp(DR_REG_XSP, DR_REG_NULL, 0, offset, size);
}

int spill_offset(dr_spill_slot_t slot) { return kSpillOffset + int(slot) * int(sizeof(reg_t)); }

struct emitter {
  void* dc;
  instrlist_t* ilist;
  instr_t* where;
  app_pc translation;
  void operator()(instr_t* instr) const {
    instr_set_translation(instr, translation);
    instrlist_meta_preinsert(ilist, where, instr);
  }
};

void mov_immed(const emitter& emit, reg_id_t dst, uint64_t value) {
  instr_t *first, *last;
  instrlist_insert_mov_immed_ptrsz(emit.dc, static_cast<ptr_int_t>(value), reg(dst), emit.ilist,
                                   emit.where, &first, &last);
  for (instr_t* i = first;; i = instr_get_next(i)) {
    instr_set_meta(i);
    instr_set_translation(i, emit.translation);
    if (i == last) break;
  }
}

// SP moves to the runtime stack and back through X30, whose own value waits
// in the thread block meanwhile.
void switch_to_runtime_stack(const emitter& emit) {
  void* dc = emit.dc;
  emit(INSTR_CREATE_str(dc, block_word(kCallScratchOffset), x(30)));
  emit(INSTR_CREATE_add(dc, x(30), reg(DR_REG_XSP), OPND_CREATE_INT(0)));
  emit(INSTR_CREATE_str(dc, block_word(kCallAppSpOffset), x(30)));
  emit(INSTR_CREATE_ldr(dc, x(30), block_word(kStackTopOffset)));
  emit(INSTR_CREATE_add(dc, reg(DR_REG_XSP), x(30), OPND_CREATE_INT(0)));
  emit(INSTR_CREATE_ldr(dc, x(30), block_word(kCallScratchOffset)));
}

void switch_to_app_stack(const emitter& emit) {
  void* dc = emit.dc;
  emit(INSTR_CREATE_str(dc, block_word(kCallScratchOffset), x(30)));
  emit(INSTR_CREATE_ldr(dc, x(30), block_word(kCallAppSpOffset)));
  emit(INSTR_CREATE_add(dc, reg(DR_REG_XSP), x(30), OPND_CREATE_INT(0)));
  emit(INSTR_CREATE_ldr(dc, x(30), block_word(kCallScratchOffset)));
}

void save_caller_saved(const emitter& emit) {
  void* dc = emit.dc;
  emit(INSTR_CREATE_sub(dc, reg(DR_REG_XSP), reg(DR_REG_XSP), OPND_CREATE_INT(kCallFrame)));
  for (int r = 0; r < 18; r += 2)
    emit(INSTR_CREATE_stp(dc, stack_pair(r * 8, OPSZ_16), x(r), x(r + 1)));
  emit(INSTR_CREATE_stp(dc, stack_pair(144, OPSZ_16), x(18), x(30)));
  emit(INSTR_CREATE_mrs(dc, x(0), reg(DR_REG_NZCV)));
  emit(INSTR_CREATE_mrs(dc, x(1), reg(DR_REG_FPSR)));
  emit(INSTR_CREATE_stp(dc, stack_pair(kFlagsOffset, OPSZ_16), x(0), x(1)));
  for (int v = 0; v < 32; v += 2)
    emit(INSTR_CREATE_stp(dc, stack_pair(kVectorOffset + v * 16, OPSZ_32), q(v), q(v + 1)));
}

void restore_caller_saved(const emitter& emit) {
  void* dc = emit.dc;
  for (int v = 0; v < 32; v += 2)
    emit(INSTR_CREATE_ldp(dc, q(v), q(v + 1), stack_pair(kVectorOffset + v * 16, OPSZ_32)));
  emit(INSTR_CREATE_ldp(dc, x(0), x(1), stack_pair(kFlagsOffset, OPSZ_16)));
  emit(INSTR_CREATE_msr(dc, reg(DR_REG_NZCV), x(0)));
  emit(INSTR_CREATE_msr(dc, reg(DR_REG_FPSR), x(1)));
  for (int r = 0; r < 18; r += 2)
    emit(INSTR_CREATE_ldp(dc, x(r), x(r + 1), stack_pair(r * 8, OPSZ_16)));
  emit(INSTR_CREATE_ldp(dc, x(18), x(30), stack_pair(144, OPSZ_16)));
  emit(INSTR_CREATE_add(dc, reg(DR_REG_XSP), reg(DR_REG_XSP), OPND_CREATE_INT(kCallFrame)));
}

[[noreturn]] void unsupported(const char* what) {
  std::fprintf(stderr, "zorvo: %s\n", what);
  dr_abort();
}

} // namespace

extern "C" {

void dr_save_reg(void* drcontext, instrlist_t* ilist, instr_t* where, reg_id_t reg,
                 dr_spill_slot_t slot) {
  instrlist_meta_preinsert(
      ilist, where,
      INSTR_CREATE_str(
          drcontext,
          opnd_create_base_disp(DR_REG_X28, DR_REG_NULL, 0, spill_offset(slot), reg_get_size(reg)),
          opnd_create_reg(reg)));
}

void dr_restore_reg(void* drcontext, instrlist_t* ilist, instr_t* where, reg_id_t reg,
                    dr_spill_slot_t slot) {
  instrlist_meta_preinsert(
      ilist, where,
      INSTR_CREATE_ldr(drcontext, opnd_create_reg(reg),
                       opnd_create_base_disp(DR_REG_X28, DR_REG_NULL, 0, spill_offset(slot),
                                             reg_get_size(reg))));
}

reg_t dr_read_saved_reg(void* drcontext, dr_spill_slot_t slot) {
  return static_cast<rt_thread*>(drcontext)->block.spill[slot];
}

void dr_write_saved_reg(void* drcontext, dr_spill_slot_t slot, reg_t value) {
  static_cast<rt_thread*>(drcontext)->block.spill[slot] = value;
}

reg_id_t dr_get_stolen_reg(void) { return DR_REG_X28; }

bool dr_insert_get_stolen_reg_value(void* drcontext, instrlist_t* ilist, instr_t* instr,
                                    reg_id_t reg) {
  if (reg_get_size(reg) != OPSZ_8 || reg == DR_REG_X28 || !reg_is_gpr(reg)) return false;
  instrlist_meta_preinsert(
      ilist, instr, INSTR_CREATE_ldr(drcontext, opnd_create_reg(reg), block_word(kAppX28Offset)));
  return true;
}

bool dr_insert_set_stolen_reg_value(void* drcontext, instrlist_t* ilist, instr_t* instr,
                                    reg_id_t reg) {
  if (reg_get_size(reg) != OPSZ_8 || reg == DR_REG_X28 || !reg_is_gpr(reg)) return false;
  instrlist_meta_preinsert(
      ilist, instr, INSTR_CREATE_str(drcontext, block_word(kAppX28Offset), opnd_create_reg(reg)));
  return true;
}

bool dr_insert_get_runtime_stack_top(void* drcontext, instrlist_t* ilist, instr_t* where,
                                     reg_id_t reg) {
  if (reg_get_size(reg) != OPSZ_8 || reg == DR_REG_X28 || !reg_is_gpr(reg)) return false;
  instrlist_meta_preinsert(
      ilist, where, INSTR_CREATE_ldr(drcontext, opnd_create_reg(reg), block_word(kStackTopOffset)));
  return true;
}

bool dr_insert_runtime_thread_pointer_zorvo(void* drcontext, instrlist_t* ilist, instr_t* where,
                                            reg_id_t scratch, bool enter) {
  if (reg_get_size(scratch) != OPSZ_8 || scratch == DR_REG_X28 || !reg_is_gpr(scratch))
    return false;
  if (!separate_thread_pointer()) return true;
  const opnd_t r = opnd_create_reg(scratch);
  const opnd_t tp = opnd_create_reg(DR_REG_TPIDR_EL0);
  if (enter) {
    instrlist_meta_preinsert(ilist, where, INSTR_CREATE_mrs(drcontext, r, tp));
    instrlist_meta_preinsert(ilist, where,
                             INSTR_CREATE_str(drcontext, block_word(kAppTpOffset), r));
    instrlist_meta_preinsert(ilist, where,
                             INSTR_CREATE_ldr(drcontext, r, block_word(kRuntimeTpOffset)));
  } else {
    instrlist_meta_preinsert(ilist, where,
                             INSTR_CREATE_ldr(drcontext, r, block_word(kAppTpOffset)));
  }
  instrlist_meta_preinsert(ilist, where, INSTR_CREATE_msr(drcontext, tp, r));
  return true;
}

void instrlist_insert_mov_immed_ptrsz(void* drcontext, ptr_int_t val, opnd_t dst,
                                      instrlist_t* ilist, instr_t* where, instr_t** first,
                                      instr_t** last) {
  instr_t* before = where ? instr_get_prev(where) : instrlist_last(ilist);
  const uint64_t value = static_cast<uint64_t>(val);
  const reg_id_t rd = opnd_get_reg(dst);
  instrlist_preinsert(ilist, where,
                      INSTR_CREATE_movz(drcontext, opnd_create_reg(rd),
                                        OPND_CREATE_INT(value & 0xffff), OPND_CREATE_INT(0)));
  for (int shift = 16; shift < 64; shift += 16)
    if ((value >> shift) & 0xffff)
      instrlist_preinsert(ilist, where,
                          INSTR_CREATE_movk(drcontext, opnd_create_reg(rd),
                                            OPND_CREATE_INT((value >> shift) & 0xffff),
                                            OPND_CREATE_INT(shift)));
  if (first) *first = before ? instr_get_next(before) : instrlist_first(ilist);
  if (last) *last = where ? instr_get_prev(where) : instrlist_last(ilist);
}

void dr_insert_call_zorvo(void* drcontext, instrlist_t* ilist, instr_t* where, app_pc pc,
                          void* callee, uint num_args, ...) {
  if (num_args > kMaxCallArgs) unsupported("a call takes at most 8 arguments");
  const emitter emit{drcontext, ilist, where, pc};
  switch_to_runtime_stack(emit);
  save_caller_saved(emit);
  va_list ap;
  va_start(ap, num_args);
  for (uint i = 0; i < num_args; ++i) {
    const opnd_t arg = va_arg(ap, opnd_t);
    if (!opnd_is_immed_int(arg)) unsupported("call arguments must be immediates");
    mov_immed(emit, reg_id_t(DR_REG_X0 + i), static_cast<uint64_t>(opnd_get_immed_int(arg)));
  }
  va_end(ap);
  // A static program's thread pointer is its own C library's; the callee
  // runs with the runtime's (X16 is saved with the others).
  const bool switch_tp = separate_thread_pointer();
  if (switch_tp) {
    emit(INSTR_CREATE_mrs(drcontext, x(16), reg(DR_REG_TPIDR_EL0)));
    emit(INSTR_CREATE_str(drcontext, block_word(kAppTpOffset), x(16)));
    emit(INSTR_CREATE_ldr(drcontext, x(16), block_word(kRuntimeTpOffset)));
    emit(INSTR_CREATE_msr(drcontext, reg(DR_REG_TPIDR_EL0), x(16)));
  }
  mov_immed(emit, DR_REG_X16, reinterpret_cast<uint64_t>(callee));
  emit(INSTR_CREATE_blr(drcontext, x(16)));
  if (switch_tp) {
    emit(INSTR_CREATE_ldr(drcontext, x(16), block_word(kAppTpOffset)));
    emit(INSTR_CREATE_msr(drcontext, reg(DR_REG_TPIDR_EL0), x(16)));
  }
  restore_caller_saved(emit);
  switch_to_app_stack(emit);
}

} // extern "C"

instr_t* fpcr_probe(void* drcontext, app_pc pc) {
  static uint32_t word = kFpcrProbeWord;
  instr_t* probe = instr_create(drcontext);
  instr_set_raw_bits(probe, reinterpret_cast<byte*>(&word), 4);
  instr_set_translation(probe, pc);
  probe->flags |= INSTR_FROM_APP | INSTR_FPCR_PROBE;
  return probe;
}

void prepend_fpcr_probe(void* drcontext, instrlist_t* bb) {
  const emitter emit{drcontext, bb, instrlist_first(bb), nullptr};
  emit(INSTR_CREATE_str(drcontext, block_word(kProbeSaveOffset), x(0)));
  emit(INSTR_CREATE_mrs(drcontext, x(0), reg(DR_REG_FPCR)));
}

instr_t* fpcr_probe_end(void* drcontext) {
  instr_t* restore = INSTR_CREATE_ldr(drcontext, x(0), block_word(kProbeSaveOffset));
  instr_set_meta(restore);
  return restore;
}

namespace {

// A word (or a trap word and its target) of the fragment's own.
void emit_raw(const emitter& emit, const void* bits, uint length) {
  bool on_heap = false;
  auto* copy = static_cast<byte*>(ir_alloc(emit.dc, length, &on_heap));
  std::memcpy(copy, bits, length);
  instr_t* raw = instr_create(emit.dc);
  instr_set_raw_bits(raw, copy, length);
  emit(raw);
}

void jump_to(const emitter& emit, app_pc target, bool direct) {
  if (direct) {
    emit(INSTR_CREATE_b(emit.dc, opnd_create_pc(target)));
    return;
  }
  byte trap[12];
  std::memcpy(trap, &kExitTrapWord, 4);
  std::memcpy(trap + 4, &target, 8);
  emit_raw(emit, trap, 12);
}

} // namespace

void append_exit(void* drcontext, instrlist_t* bb, app_pc target, bool direct, app_pc loop_target,
                 uint32_t loop_condition) {
  const emitter emit{drcontext, bb, nullptr, nullptr};
  emit(INSTR_CREATE_ldr(drcontext, reg(DR_REG_X28), block_word(kAppX28Offset)));
  if (loop_target != nullptr) {
    // b.cond over the way out to the way back; neither touches the flags.
    const uint32_t skip = direct ? 8 : 16;
    const uint32_t b_cond = 0x54000000u | (skip / 4) << 5 | (loop_condition & 0xf);
    emit_raw(emit, &b_cond, 4);
  }
  jump_to(emit, target, direct);
  if (loop_target != nullptr) jump_to(emit, loop_target, direct);
}

app_pc exit_trap_target(app_pc pc) {
  uint32_t word;
  std::memcpy(&word, pc, 4);
  if (word != kExitTrapWord) return nullptr;
  app_pc target;
  std::memcpy(&target, pc + 4, 8);
  return target;
}
