// The instrumentation client: start-up and shutdown under the runtime, one
// register record per thread, and the rewriting of every block so that each
// SVE instruction the decode tables know runs through emulate_instruction.
#include <atomic>
#include <climits>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <string>

#include "dr_api.h"
#include "drmgr.h"
#include "droption.h"
#include "drreg.h"

#include "../decode/decoders.h"
#include "../decode/sve_utils.h"
#include "../trace/tracesink.h"
#include "emulate.h"
#include "record_words.h"
#include "transfer.h"

namespace {

drmgr_priority_t block_priority = {sizeof(drmgr_priority_t), "emulate_instruction", nullptr,
                                   nullptr, 0};

opnd_t reg(reg_id_t r) { return opnd_create_reg(r); }
opnd_t x(int n) { return opnd_create_reg(reg_id_t(DR_REG_X0 + n)); }
opnd_t q(int n) { return opnd_create_reg(reg_id_t(DR_REG_Q0 + n)); }
opnd_t field(reg_id_t base, size_t offset, opnd_size_t size) {
  return opnd_create_base_disp(base, DR_REG_NULL, 0, static_cast<int>(offset), size);
}
opnd_t state_field(size_t offset, opnd_size_t size) { return field(DR_REG_X27, offset, size); }

// The rewriter's own instructions carry the application address of the
// instruction they stand for, so a fault inside them maps back to it.
void insert(instrlist_t* bb, instr_t* where, app_pc pc, instr_t* instr) {
  instrlist_preinsert(bb, where, instr_set_translation(instr, pc));
}

// The label before the code that stands for the application's word at pc.
void mark_emulation_start(void* dc, instrlist_t* bb, instr_t* where, app_pc pc) {
  emulated_instr_t emulated = {};
  emulated.size = sizeof(emulated);
  emulated.pc = pc;
  emulated.instr = instr_create(dc);
  instr_set_raw_bits(emulated.instr, dr_app_pc_for_decoding(pc), 4);
  instr_set_raw_bits_valid(emulated.instr, true);
  drmgr_insert_emulation_start(dc, bb, where, &emulated);
}

void event_thread_init(void* drcontext) {
  void* state = dr_thread_alloc(drcontext, sizeof(cpu_state));
  drmgr_set_tls_field(drcontext, tls_idx, state);
}

void event_thread_exit(void* drcontext) {
  void* data = drmgr_get_tls_field(drcontext, tls_idx);
  DR_ASSERT(data != NULL);
  dr_thread_free(drcontext, data, sizeof(cpu_state));
}

// Steps 7 to 15: the application's registers into the record at X27.
void store_registers(void* dc, instrlist_t* bb, instr_t* where, app_pc pc) {
  insert(bb, where, pc, INSTR_CREATE_add(dc, x(26), reg(DR_REG_XSP), OPND_CREATE_INT(0)));
  insert(bb, where, pc,
         INSTR_CREATE_str(dc, state_field(offsetof(cpu_state, regs[31]), OPSZ_8), x(26)));
  for (int r = 0; r < 26; r += 2)
    insert(bb, where, pc,
           INSTR_CREATE_stp(dc, state_field(offsetof(cpu_state, regs) + 8 * r, OPSZ_16), x(r),
                            x(r + 1)));
  insert(bb, where, pc,
         INSTR_CREATE_stp(dc, state_field(offsetof(cpu_state, regs[29]), OPSZ_16), x(29), x(30)));
  for (int v = 0; v < 32; ++v)
    insert(bb, where, pc,
           INSTR_CREATE_str(dc, state_field(offsetof(cpu_state, z) + 48 * v, OPSZ_16), q(v)));
  insert(bb, where, pc, INSTR_CREATE_mrs(dc, x(26), reg(DR_REG_NZCV)));
  insert(bb, where, pc,
         INSTR_CREATE_str(dc, state_field(offsetof(cpu_state, nzcv), OPSZ_8), x(26)));
  insert(bb, where, pc, INSTR_CREATE_mrs(dc, x(26), reg(DR_REG_FPSR)));
  insert(bb, where, pc,
         INSTR_CREATE_str(dc, state_field(offsetof(cpu_state, fpsr), OPSZ_4), reg(DR_REG_W26)));
}

// Steps 18 to 26: everything back from the record at X27.
void load_registers(void* dc, instrlist_t* bb, instr_t* where, app_pc pc) {
  insert(bb, where, pc,
         INSTR_CREATE_ldr(dc, reg(DR_REG_W26), state_field(offsetof(cpu_state, fpsr), OPSZ_4)));
  insert(bb, where, pc, INSTR_CREATE_msr(dc, reg(DR_REG_FPSR), x(26)));
  insert(bb, where, pc,
         INSTR_CREATE_ldr(dc, x(26), state_field(offsetof(cpu_state, nzcv), OPSZ_8)));
  insert(bb, where, pc, INSTR_CREATE_msr(dc, reg(DR_REG_NZCV), x(26)));
  for (int v = 0; v < 32; ++v)
    insert(bb, where, pc,
           INSTR_CREATE_ldr(dc, q(v), state_field(offsetof(cpu_state, z) + 48 * v, OPSZ_16)));
  for (int r = 0; r < 26; r += 2)
    insert(bb, where, pc,
           INSTR_CREATE_ldp(dc, x(r), x(r + 1),
                            state_field(offsetof(cpu_state, regs) + 8 * r, OPSZ_16)));
  insert(bb, where, pc,
         INSTR_CREATE_ldp(dc, x(29), x(30), state_field(offsetof(cpu_state, regs[29]), OPSZ_16)));
  insert(bb, where, pc,
         INSTR_CREATE_ldr(dc, x(26), state_field(offsetof(cpu_state, regs[31]), OPSZ_8)));
  insert(bb, where, pc, INSTR_CREATE_add(dc, reg(DR_REG_XSP), x(26), OPND_CREATE_INT(0)));
}

// The 31 steps that stand in for one SVE instruction.
void replace_instruction(void* dc, instrlist_t* bb, instr_t* instr, sve_decoder decoder) {
  const app_pc pc = instr_get_app_pc(instr);
  // The runtime may have put a branch over the word in memory; it hands the
  // application's own word to the block and keeps a copy of it.
  uint32_t word;
  std::memcpy(&word, instr_get_raw_bits(instr), sizeof word);
  DR_ASSERT(dr_get_stolen_reg() == DR_REG_X28);
  const auto state = reinterpret_cast<ptr_int_t>(drmgr_get_tls_field(dc, tls_idx));

  mark_emulation_start(dc, bb, instr, pc);

  dr_save_reg(dc, bb, instr, DR_REG_X26, SPILL_SLOT_1);
  dr_save_reg(dc, bb, instr, DR_REG_X27, SPILL_SLOT_2);
  dr_insert_get_stolen_reg_value(dc, bb, instr, DR_REG_X27);
  dr_save_reg(dc, bb, instr, DR_REG_X27, SPILL_SLOT_3);
  instrlist_insert_mov_immed_ptrsz(dc, state, x(27), bb, instr, NULL, NULL);
  store_registers(dc, bb, instr, pc);
  dr_insert_call_zorvo(dc, bb, instr, pc, reinterpret_cast<void*>(emulate_instruction), 3,
                       OPND_CREATE_INT32(word), OPND_CREATE_INTPTR(pc),
                       OPND_CREATE_INTPTR(decoder));
  instrlist_insert_mov_immed_ptrsz(dc, state, x(27), bb, instr, NULL, NULL);
  load_registers(dc, bb, instr, pc);
  dr_restore_reg(dc, bb, instr, DR_REG_X27, SPILL_SLOT_3);
  dr_insert_set_stolen_reg_value(dc, bb, instr, DR_REG_X27);
  dr_restore_reg(dc, bb, instr, DR_REG_X27, SPILL_SLOT_2);
  dr_restore_reg(dc, bb, instr, DR_REG_X26, SPILL_SLOT_1);
  drmgr_insert_emulation_end(dc, bb, instr);

  instrlist_remove(bb, instr);
  instr_destroy(dc, instr);
}

bool is_fpcr_write(instr_t* instr) {
  if (instr_get_opcode(instr) != OP_msr || instr_num_dsts(instr) != 1) return false;
  const opnd_t dst = instr_get_dst(instr, 0);
  return opnd_is_reg(dst) && opnd_get_reg(dst) == DR_REG_FPCR;
}

// The msr stays; the record's copy of FPCR is written just before it.
void shadow_fpcr_write(void* dc, instrlist_t* bb, instr_t* instr) {
  const app_pc pc = instr_get_app_pc(instr);
  const reg_id_t src = opnd_get_reg(instr_get_src(instr, 0));
  const reg_id_t scratch = src == DR_REG_X21 ? DR_REG_X22 : DR_REG_X21;
  const auto state = reinterpret_cast<ptr_int_t>(drmgr_get_tls_field(dc, tls_idx));
  dr_save_reg(dc, bb, instr, scratch, SPILL_SLOT_3);
  instrlist_insert_mov_immed_ptrsz(dc, state, reg(scratch), bb, instr, NULL, NULL);
  insert(bb, instr, pc,
         INSTR_CREATE_str(dc, field(scratch, offsetof(cpu_state, fpcr), OPSZ_4),
                          reg(reg_64_to_32(src))));
  dr_restore_reg(dc, bb, instr, scratch, SPILL_SLOT_3);
}

// ---- The lean path: one register transfer for a run of SVE words ----

uint32_t word_of(instr_t* instr) {
  uint32_t word;
  std::memcpy(&word, instr_get_raw_bits(instr), sizeof word);
  return word;
}

// The decode cascade's answers, remembered for every thread: a word met in
// one block (or by one thread) is met again in the next. Each entry is one
// atomic 64-bit value, the word and its decoder's distance from a function of
// this library, so that threads need no lock.
constexpr unsigned kDecoderCacheSize = 4096;
std::atomic<uint64_t> decoder_cache[kDecoderCacheSize];
constexpr int32_t kNoDecoder = INT32_MIN;

intptr_t decoder_base() { return reinterpret_cast<intptr_t>(&sve_prefetch_nop); }

sve_decoder find_decoder(uint32_t word) {
  std::atomic<uint64_t>& entry = decoder_cache[(word * 0x9e3779b1u) >> 20];
  const uint64_t cached = entry.load(std::memory_order_relaxed);
  // An empty entry (0) matches only word 0, which no decoder takes either.
  if (cached != 0 && uint32_t(cached) == word) {
    const int32_t offset = int32_t(cached >> 32);
    return offset == kNoDecoder ? nullptr : reinterpret_cast<sve_decoder>(decoder_base() + offset);
  }
  const sve_decoder decoder = get_sve_handler(word);
  const intptr_t offset =
      decoder ? reinterpret_cast<intptr_t>(decoder) - decoder_base() : intptr_t{kNoDecoder};
  if (offset >= INT32_MIN && offset <= INT32_MAX)
    entry.store(uint64_t(uint32_t(int32_t(offset))) << 32 | word, std::memory_order_relaxed);
  return decoder;
}

void call_routine(void* dc, instrlist_t* bb, instr_t* where, app_pc pc, void (*routine)()) {
  instrlist_insert_mov_immed_ptrsz(dc, reinterpret_cast<ptr_int_t>(routine), x(29), bb, where, NULL,
                                   NULL);
  insert(bb, where, pc, INSTR_CREATE_blr(dc, x(29)));
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
  dr_insert_get_runtime_stack_top(dc, bb, where, DR_REG_X26);
  call_routine(dc, bb, where, pc, zorvo_transfer_in);
}

// Everything back; an emulated word may have written X26..X30 too.
void close_run(void* dc, instrlist_t* bb, instr_t* where, app_pc pc) {
  call_routine(dc, bb, where, pc, zorvo_transfer_out);
  insert(bb, where, pc,
         INSTR_CREATE_ldr(dc, x(30), state_field(offsetof(cpu_state, regs[28]), OPSZ_8)));
  dr_insert_set_stolen_reg_value(dc, bb, where, DR_REG_X30);
  insert(bb, where, pc,
         INSTR_CREATE_ldp(dc, x(29), x(30), state_field(offsetof(cpu_state, regs[29]), OPSZ_16)));
  insert(bb, where, pc,
         INSTR_CREATE_ldr(dc, x(27), state_field(offsetof(cpu_state, regs[27]), OPSZ_8)));
}

// Inside a run X19 holds the record, X20 zorvo_call_word and X21
// zorvo_call_thin_word, which read the word, its address and its decoder
// from the code after the blr.
void call_decoder(void* dc, instrlist_t* bb, instr_t* instr, sve_decoder decoder) {
  const app_pc pc = instr_get_app_pc(instr);
  mark_emulation_start(dc, bb, instr, pc);
  const decode_row* row = find_decode_row(word_of(instr));
  const bool thin = row != nullptr && row->kind == DECODER_THIN && row->decoder == decoder;
  insert(bb, instr, pc, INSTR_CREATE_blr(dc, x(thin ? 21 : 20)));
  const word_call constants = {decoder, pc, word_of(instr), 0};
  instr_t* data = instr_create(dc);
  instr_allocate_raw_bits(dc, data, sizeof constants);
  std::memcpy(instr_get_raw_bits(data), &constants, sizeof constants);
  insert(bb, instr, pc, data);
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

void loop_back(void* dc, instrlist_t* bb, instr_t* instr, instr_t* head) {
  const app_pc pc = instr_get_app_pc(instr);
  insert(bb, instr, pc,
         INSTR_CREATE_ldr(dc, x(12), field(DR_REG_X19, offsetof(cpu_state, nzcv), OPSZ_8)));
  insert(bb, instr, pc, INSTR_CREATE_msr(dc, reg(DR_REG_NZCV), x(12)));
  instr_t* branch = instr_create(dc);
  instr_allocate_raw_bits(dc, branch, 4);
  insert(bb, instr, pc, branch);
  int distance = 0;
  for (instr_t* i = instr_get_next(head); i != branch; i = instr_get_next(i))
    distance += instr_length(dc, i);
  const uint32_t imm19 = static_cast<uint32_t>(-distance / 4) & 0x7ffff;
  instr_set_raw_word(branch, 0, 0x54000000u | imm19 << 5 | (word_of(instr) & 0xf));
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
  insert(bb, instr, pc,
         INSTR_CREATE_ldr(dc, x(12), field(DR_REG_X19, offsetof(cpu_state, nzcv), OPSZ_8)));
  insert(bb, instr, pc, INSTR_CREATE_msr(dc, reg(DR_REG_NZCV), x(12)));
  instr_t* skip = instr_create(dc);
  instr_allocate_raw_bits(dc, skip, 4);
  insert(bb, instr, pc, skip);
  close_run(dc, bb, instr, pc);
  int distance = instr_length(dc, skip);
  for (instr_t* i = instr_get_next(skip); i != instr_get_next(instr); i = instr_get_next(i))
    distance += instr_length(dc, i);
  const uint32_t inverted = (word_of(instr) & 0xf) ^ 1;
  instr_set_raw_word(skip, 0, 0x54000000u | (uint32_t(distance / 4) & 0x7ffff) << 5 | inverted);
}

dr_emit_flags_t lean_instruction_change(void* drcontext, instrlist_t* bb) {
  instr_t* next;
  bool in_run = false;
  instr_t* run_head = NULL;
  app_pc run_start = NULL;
  for (instr_t* instr = instrlist_first_app(bb); instr != NULL; instr = next) {
    next = instr_get_next_app(instr);
    const sve_decoder decoder = find_decoder(word_of(instr));
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
    call_decoder(drcontext, bb, instr, decoder);
    if (next == NULL) close_run(drcontext, bb, NULL, pc);
  }
  return DR_EMIT_DEFAULT;
}

// The reference sequence, one call of emulate_instruction per word, when
// ZORVO_CALL_PER_WORD is set: slower, kept to measure and check against.
bool call_per_word = false;

dr_emit_flags_t event_instruction_change(void* drcontext, void* /*tag*/, instrlist_t* bb,
                                         bool /*for_trace*/, bool /*translating*/) {
  if (!call_per_word) return lean_instruction_change(drcontext, bb);
  instr_t* next;
  for (instr_t* instr = instrlist_first_app(bb); instr != NULL; instr = next) {
    next = instr_get_next_app(instr);
    const sve_decoder decoder = get_sve_handler(word_of(instr));
    if (decoder != nullptr)
      replace_instruction(drcontext, bb, instr, decoder);
    else if (is_fpcr_write(instr))
      shadow_fpcr_write(drcontext, bb, instr);
  }
  return DR_EMIT_DEFAULT;
}

void event_exit() {
  dr_log(NULL, DR_LOG_ALL, 1, "SVE client exiting\n");
  sve_exit();
  if (!drmgr_unregister_bb_app2app_event(event_instruction_change) || drreg_exit() != DRREG_SUCCESS)
    DR_ASSERT(false);
  drmgr_exit();
}

} // namespace

DR_EXPORT void dr_client_main(client_id_t /*id*/, int argc, const char* argv[]) {
  dr_set_client_name("Zorvo SVE emulation client", "zorvo-maintainers@example.org");
  std::string parse_err;
  if (!droption_parser_t::parse_argv(DROPTION_SCOPE_CLIENT, argc, argv, &parse_err, NULL)) {
    dr_fprintf(STDERR, "SVE emulation client usage error: %s\n", parse_err.c_str());
    dr_abort();
  }
  const char* per_word = std::getenv("ZORVO_CALL_PER_WORD");
  call_per_word = per_word != nullptr && *per_word != '\0' && *per_word != '0';
  if (!drmgr_init()) DR_ASSERT(false);
  drmgr_register_thread_init_event(event_thread_init);
  drmgr_register_thread_exit_event(event_thread_exit);
  dr_register_exit_event(event_exit);
  if (!drmgr_register_bb_app2app_event(event_instruction_change, &block_priority)) DR_ASSERT(false);
  tls_idx = drmgr_register_tls_field();
  if (!sve_init(0, dr_get_application_name())) DR_ASSERT(false);
  dr_log(NULL, DR_LOG_ALL, 1, "SVE client initializing\n");
}
