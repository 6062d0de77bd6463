// The lean rewriting of a block: one register transfer for a run of SVE
// words, with each word's decoder called directly, plain data-processing
// words carried out on the register record, and the block's conditional
// branches taken on the record's flags.
#include "runs.h"

#include <atomic>
#include <cstddef>
#include <cstring>

#include "drmgr.h"

#include "../decode/decoders.h"
#include "../decode/sve_utils.h"
#include "../trace/roi.h"
#include "emulate.h"
#include "inline_forms.h"
#include "mix.h"
#include "record_words.h"
#include "rewrite_ir.h"
#include "transfer.h"

namespace {

void call_routine(void* dc, instrlist_t* bb, instr_t* where, app_pc pc, void (*routine)()) {
  instrlist_insert_mov_immed_ptrsz(dc, reinterpret_cast<ptr_int_t>(routine), x(29), bb, where, NULL,
                                   NULL);
  insert(bb, where, pc, INSTR_CREATE_blr(dc, x(29)));
}

void insert_words(void* dc, instrlist_t* bb, instr_t* where, app_pc pc, const uint32_t* words,
                  unsigned count) {
  instr_t* raw = instr_create(dc);
  instr_allocate_raw_bits(dc, raw, 4 * count);
  std::memcpy(instr_get_raw_bits(raw), words, 4 * count);
  insert(bb, where, pc, raw);
}

// Where the running thread's gate lies from its thread pointer: the same
// for every thread (static TLS), so that one fragment serves them all.
uint32_t trace_gate_tls_offset() {
  const uintptr_t offset = reinterpret_cast<uintptr_t>(&enable_trace) -
                           reinterpret_cast<uintptr_t>(__builtin_thread_pointer());
  // Static TLS lies just past the thread pointer; two 12-bit fields reach it.
  DR_ASSERT_MSG(offset < (uintptr_t{1} << 24), "the trace gate is out of reach");
  return uint32_t(offset);
}

// X22 gets the thread's trace gate, which inline memory code tests: a run
// reads it as it opens and again after a word that may be a marker, the only
// words that change it. Inside a run the thread pointer is the runtime's.
void load_trace_gate(void* dc, instrlist_t* bb, instr_t* where, app_pc pc) {
  static const uint32_t offset = trace_gate_tls_offset();
  constexpr uint32_t gate = kInlineTraceGate;
  const uint32_t words[] = {
      0xd53bd040 | gate,                                      // mrs x22, tpidr_el0
      0x91400000 | (offset >> 12) << 10 | gate << 5 | gate,   // add x22, x22, #hi, lsl #12
      0x39400000 | (offset & 0xfff) << 10 | gate << 5 | gate, // ldrb w22, [x22, #lo]
  };
  insert_words(dc, bb, where, pc, words, 3);
}

// X27 gets the thread's record; the application's X26..X30 go straight into
// it, the rest in zorvo_transfer_in.
void open_run(void* dc, instrlist_t* bb, instr_t* where, app_pc pc) {
  dr_save_reg(dc, bb, where, DR_REG_X27, SPILL_SLOT_1);
  drmgr_insert_read_tls_field(dc, tls_idx, bb, where, DR_REG_X27);
  insert(bb, where, pc,
         INSTR_CREATE_stp(dc, state_field(offsetof(cpu_state, regs[29]), OPSZ_16), x(29), x(30)));
  dr_restore_reg(dc, bb, where, DR_REG_X30, SPILL_SLOT_1);
  insert(bb, where, pc,
         INSTR_CREATE_stp(dc, state_field(offsetof(cpu_state, regs[26]), OPSZ_16), x(26), x(30)));
  dr_insert_get_stolen_reg_value(dc, bb, where, DR_REG_X30);
  insert(bb, where, pc,
         INSTR_CREATE_str(dc, state_field(offsetof(cpu_state, regs[28]), OPSZ_8), x(30)));
  // The handlers' thread-local state is the runtime's, also in a static
  // program, whose C library owns the thread pointer.
  dr_insert_runtime_thread_pointer_zorvo(dc, bb, where, DR_REG_X30, true);
  dr_insert_get_runtime_stack_top(dc, bb, where, DR_REG_X26);
  call_routine(dc, bb, where, pc, zorvo_transfer_in);
  load_trace_gate(dc, bb, where, pc);
}

// Everything back; an emulated word may have written X26..X30 too.
void close_run(void* dc, instrlist_t* bb, instr_t* where, app_pc pc) {
  call_routine(dc, bb, where, pc, zorvo_transfer_out);
  dr_insert_runtime_thread_pointer_zorvo(dc, bb, where, DR_REG_X30, false);
  insert(bb, where, pc,
         INSTR_CREATE_ldr(dc, x(30), state_field(offsetof(cpu_state, regs[28]), OPSZ_8)));
  dr_insert_set_stolen_reg_value(dc, bb, where, DR_REG_X30);
  insert(bb, where, pc,
         INSTR_CREATE_ldp(dc, x(29), x(30), state_field(offsetof(cpu_state, regs[29]), OPSZ_16)));
  insert(bb, where, pc,
         INSTR_CREATE_ldr(dc, x(27), state_field(offsetof(cpu_state, regs[27]), OPSZ_8)));
}

bool inline_translation = true;
std::atomic<uint64_t> words_inline{0}, words_called{0};

// The word's own code in place of the call, when it has some: on the record at
// X19, with X9 to X15 and the vector registers free.
bool insert_inline(void* dc, instrlist_t* bb, instr_t* instr) {
  inline_code code;
  const app_pc pc = instr_get_app_pc(instr);
  if (!inline_translation ||
      !translate_inline(word_of(instr), reinterpret_cast<uint64_t>(pc), &code))
    return false;
  mark_emulation_start(dc, bb, instr, pc);
  mix_insert_count(dc, bb, instr, pc, word_of(instr), DR_REG_X19, DR_REG_X12);
  insert_words(dc, bb, instr, pc, code.words, code.count);
  drmgr_insert_emulation_end(dc, bb, instr);
  words_inline.fetch_add(1, std::memory_order_relaxed);
  instrlist_remove(bb, instr);
  instr_destroy(dc, instr);
  return true;
}

// Inside a run X19 holds the record, X20 zorvo_call_word and X21
// zorvo_call_thin_word, which read the word, its address and its decoder
// from the code after the blr.
void call_decoder(void* dc, instrlist_t* bb, instr_t* instr, sve_decoder decoder) {
  const app_pc pc = instr_get_app_pc(instr);
  mark_emulation_start(dc, bb, instr, pc);
  words_called.fetch_add(1, std::memory_order_relaxed);
  const int form = find_form(word_of(instr));
  // The decoder is the row's own: rewrite_runs asked the same lookup.
  const bool thin = form >= 0 && form_is_thin(form);
  // Between calls nothing but X19 to X21 is live, so X12 is free.
  mix_insert_count(dc, bb, instr, pc, word_of(instr), DR_REG_X19, DR_REG_X12);
  insert(bb, instr, pc, INSTR_CREATE_blr(dc, x(thin ? 21 : 20)));
  const word_call constants = {decoder, pc, word_of(instr), 0};
  instr_t* data = instr_create(dc);
  instr_allocate_raw_bits(dc, data, sizeof constants);
  std::memcpy(instr_get_raw_bits(data), &constants, sizeof constants);
  insert(bb, instr, pc, data);
  if (is_roi_marker_word(word_of(instr))) load_trace_gate(dc, bb, instr, pc);
  drmgr_insert_emulation_end(dc, bb, instr);
  instrlist_remove(bb, instr);
  instr_destroy(dc, instr);
}

opnd_t record_slot(int r) { return field(DR_REG_X19, offsetof(cpu_state, regs) + 8 * r, OPSZ_8); }

// A plain data-processing word inside a run, on the record at X19.
void run_on_record(void* dc, instrlist_t* bb, instr_t* instr, const record_word_plan& plan) {
  const app_pc pc = instr_get_app_pc(instr);
  for (int f = 0; f < 3; ++f)
    if (plan.loads[f] >= 0)
      insert(bb, instr, pc, INSTR_CREATE_ldr(dc, x(kRecordScratch[f]), record_slot(plan.loads[f])));
  instr_t* renamed = instr_create(dc);
  instr_allocate_raw_bits(dc, renamed, 4);
  instr_set_raw_word(renamed, 0, plan.word);
  insert(bb, instr, pc, renamed);
  if (plan.store >= 0)
    insert(bb, instr, pc, INSTR_CREATE_str(dc, record_slot(plan.store), x(kRecordScratch[2])));
  if (plan.sets_flags) {
    insert(bb, instr, pc, INSTR_CREATE_mrs(dc, x(12), reg(DR_REG_NZCV)));
    insert(bb, instr, pc,
           INSTR_CREATE_str(dc, state_field(offsetof(cpu_state, nzcv), OPSZ_8), x(12)));
  }
  instrlist_remove(bb, instr);
  instr_destroy(dc, instr);
}

// A conditional branch back to the run's first word: the loop goes on inside
// the run, on the flags in the record, with no transfer per iteration. `head`
// is the last instruction before the first word's call.
bool is_loop_back(instr_t* instr, app_pc run_start) {
  const uint32_t word = word_of(instr);
  if ((word & 0xff000010) != 0x54000000) return false;
  const int32_t imm19 = static_cast<int32_t>(word << 8) >> 13;
  return instr_get_app_pc(instr) + 4 * int64_t{imm19} == run_start;
}

// The record's flags into NZCV, then room for a b.cond whose offset is set
// once the code it jumps over or back to is in place.
instr_t* branch_on_record_flags(void* dc, instrlist_t* bb, instr_t* where, app_pc pc) {
  insert(bb, where, pc,
         INSTR_CREATE_ldr(dc, x(12), field(DR_REG_X19, offsetof(cpu_state, nzcv), OPSZ_8)));
  insert(bb, where, pc, INSTR_CREATE_msr(dc, reg(DR_REG_NZCV), x(12)));
  instr_t* branch = instr_create(dc);
  instr_allocate_raw_bits(dc, branch, 4);
  insert(bb, where, pc, branch);
  return branch;
}

void set_conditional_branch(instr_t* branch, int offset, uint32_t condition) {
  const uint32_t imm19 = static_cast<uint32_t>(offset / 4) & 0x7ffff;
  instr_set_raw_word(branch, 0, 0x54000000u | imm19 << 5 | condition);
}

void loop_back(void* dc, instrlist_t* bb, instr_t* instr, instr_t* head) {
  instr_t* branch = branch_on_record_flags(dc, bb, instr, instr_get_app_pc(instr));
  int distance = 0;
  for (instr_t* i = instr_get_next(head); i != branch; i = instr_get_next(i))
    distance += instr_length(dc, i);
  set_conditional_branch(branch, -distance, word_of(instr) & 0xf);
  instrlist_remove(bb, instr);
  instr_destroy(dc, instr);
}

// A conditional branch out of the run: when it is not taken the run goes on
// (a b.cond on the record's flags, inverted, jumps over the way out); when it
// is, the run closes and the application's b.cond, left in place, takes the
// runtime's exit for it.
bool is_side_branch(instr_t* instr) {
  const uint32_t word = word_of(instr);
  return (word & 0xff000010) == 0x54000000 && (word & 0xf) < 14;
}

void side_exit(void* dc, instrlist_t* bb, instr_t* instr) {
  const app_pc pc = instr_get_app_pc(instr);
  instr_t* skip = branch_on_record_flags(dc, bb, instr, pc);
  close_run(dc, bb, instr, pc);
  int distance = instr_length(dc, skip);
  for (instr_t* i = instr_get_next(skip); i != instr_get_next(instr); i = instr_get_next(i))
    distance += instr_length(dc, i);
  set_conditional_branch(skip, distance, (word_of(instr) & 0xf) ^ 1);
}

} // namespace

void set_inline_translation(bool on) { inline_translation = on; }

void log_translation_tiers() {
  dr_log(NULL, DR_LOG_ALL, 1, "SVE words translated: %llu inline, %llu by calls\n",
         static_cast<unsigned long long>(words_inline.load()),
         static_cast<unsigned long long>(words_called.load()));
}

dr_emit_flags_t rewrite_runs(void* drcontext, instrlist_t* bb) {
  instr_t* next;
  bool in_run = false;
  instr_t* run_head = NULL;
  app_pc run_start = NULL;
  for (instr_t* instr = instrlist_first_app(bb); instr != NULL; instr = next) {
    next = instr_get_next_app(instr);
    const sve_decoder decoder = get_sve_handler(word_of(instr));
    if (decoder == nullptr && in_run && is_loop_back(instr, run_start)) {
      const app_pc pc = instr_get_app_pc(instr);
      loop_back(drcontext, bb, instr, run_head);
      if (next == NULL) close_run(drcontext, bb, NULL, pc);
      continue;
    }
    if (decoder == nullptr && in_run && is_side_branch(instr)) {
      side_exit(drcontext, bb, instr);
      if (next == NULL) close_run(drcontext, bb, NULL, instr_get_app_pc(instr));
      continue;
    }
    record_word_plan plan;
    if (decoder == nullptr && in_run && plan_record_word(word_of(instr), &plan)) {
      const app_pc pc = instr_get_app_pc(instr);
      run_on_record(drcontext, bb, instr, plan);
      if (next == NULL) close_run(drcontext, bb, NULL, pc);
      continue;
    }
    if (decoder == nullptr) {
      if (in_run) close_run(drcontext, bb, instr, instr_get_app_pc(instr));
      in_run = false;
      continue;
    }
    const app_pc pc = instr_get_app_pc(instr);
    if (!in_run) {
      open_run(drcontext, bb, instr, pc);
      run_head = instr_get_prev(instr);
      run_start = pc;
    }
    in_run = true;
    if (!insert_inline(drcontext, bb, instr)) call_decoder(drcontext, bb, instr, decoder);
    if (next == NULL) close_run(drcontext, bb, NULL, pc);
  }
  return DR_EMIT_DEFAULT;
}
