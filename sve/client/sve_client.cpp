// The instrumentation client: start-up and shutdown under the runtime, one
// register record per thread, and the rewriting of every block: the lean way
// of runs.cpp, or, with ZORVO_CALL_PER_WORD, each SVE instruction the decode
// tables know through emulate_instruction.
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <string>

#include "dr_api.h"
#include "drmgr.h"
#include "droption.h"
#include "drreg.h"

#include "../decode/sve_utils.h"
#include "../memory/sve_fault.h"
#include "../state/vector_length.h"
#include "../trace/tracesink.h"
#include "emulate.h"
#include "mix.h"
#include "rewrite_ir.h"
#include "runs.h"

namespace {

drmgr_priority_t block_priority = {sizeof(drmgr_priority_t), "emulate_instruction", nullptr,
                                   nullptr, 0};

void event_thread_init(void* drcontext) {
  void* state = dr_thread_alloc(drcontext, sizeof(cpu_state) + mix_table_bytes());
  drmgr_set_tls_field(drcontext, tls_idx, state);
  mix_thread_start(static_cast<cpu_state*>(state));
}

// A signal handler interrupted the thread on the runtime's stack: the
// application's stack pointer, and its vectors while a run is emulated.
bool app_registers_in_record(const void* record, uint64_t* sp, void* vectors) {
  const auto* state = static_cast<const cpu_state*>(record);
  *sp = state->regs[31];
  if (!state->emulating) return false;
  for (int v = 0; v < 32; ++v) std::memcpy(static_cast<char*>(vectors) + 16 * v, state->z[v], 16);
  return true;
}

void event_thread_exit(void* drcontext) {
  void* data = drmgr_get_tls_field(drcontext, tls_idx);
  DR_ASSERT(data != NULL);
  mix_thread_end(static_cast<cpu_state*>(data));
  dr_thread_free(drcontext, data, sizeof(cpu_state) + mix_table_bytes());
}

// Stores SP, X0 to X25, X29, X30, Q0 to Q31, NZCV and FPSR into the record at
// X27, with X26 as scratch; X26 to X28 themselves travel through spill slots.
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
           INSTR_CREATE_str(
               dc, state_field(record_offset::z + record_offset::z_stride * v, OPSZ_16), q(v)));
  insert(bb, where, pc, INSTR_CREATE_mrs(dc, x(26), reg(DR_REG_NZCV)));
  insert(bb, where, pc,
         INSTR_CREATE_str(dc, state_field(offsetof(cpu_state, nzcv), OPSZ_8), x(26)));
  insert(bb, where, pc, INSTR_CREATE_mrs(dc, x(26), reg(DR_REG_FPSR)));
  insert(bb, where, pc,
         INSTR_CREATE_str(dc, state_field(offsetof(cpu_state, fpsr), OPSZ_4), reg(DR_REG_W26)));
}

// Loads back from the record at X27 all that store_registers put there.
void load_registers(void* dc, instrlist_t* bb, instr_t* where, app_pc pc) {
  insert(bb, where, pc,
         INSTR_CREATE_ldr(dc, reg(DR_REG_W26), state_field(offsetof(cpu_state, fpsr), OPSZ_4)));
  insert(bb, where, pc, INSTR_CREATE_msr(dc, reg(DR_REG_FPSR), x(26)));
  insert(bb, where, pc,
         INSTR_CREATE_ldr(dc, x(26), state_field(offsetof(cpu_state, nzcv), OPSZ_8)));
  insert(bb, where, pc, INSTR_CREATE_msr(dc, reg(DR_REG_NZCV), x(26)));
  for (int v = 0; v < 32; ++v)
    insert(bb, where, pc,
           INSTR_CREATE_ldr(dc, q(v),
                            state_field(record_offset::z + record_offset::z_stride * v, OPSZ_16)));
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

  mark_emulation_start(dc, bb, instr, pc);

  dr_save_reg(dc, bb, instr, DR_REG_X26, SPILL_SLOT_1);
  dr_save_reg(dc, bb, instr, DR_REG_X27, SPILL_SLOT_2);
  dr_insert_get_stolen_reg_value(dc, bb, instr, DR_REG_X27);
  dr_save_reg(dc, bb, instr, DR_REG_X27, SPILL_SLOT_3);
  // The record is the running thread's, read through X28: the code serves
  // every thread.
  drmgr_insert_read_tls_field(dc, tls_idx, bb, instr, DR_REG_X27);
  mix_insert_count(dc, bb, instr, pc, word, DR_REG_X27, DR_REG_X26);
  store_registers(dc, bb, instr, pc);
  dr_insert_call_zorvo(dc, bb, instr, pc, reinterpret_cast<void*>(emulate_instruction), 3,
                       OPND_CREATE_INT32(word), OPND_CREATE_INTPTR(pc),
                       OPND_CREATE_INTPTR(decoder));
  drmgr_insert_read_tls_field(dc, tls_idx, bb, instr, DR_REG_X27);
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
  dr_save_reg(dc, bb, instr, scratch, SPILL_SLOT_3);
  drmgr_insert_read_tls_field(dc, tls_idx, bb, instr, scratch);
  insert(bb, instr, pc,
         INSTR_CREATE_str(dc, field(scratch, offsetof(cpu_state, fpcr), OPSZ_4),
                          reg(reg_64_to_32(src))));
  dr_restore_reg(dc, bb, instr, scratch, SPILL_SLOT_3);
}

// The reference sequence, one call of emulate_instruction per word, when
// ZORVO_CALL_PER_WORD is set: slower, kept to measure and check against.
bool call_per_word = false;

dr_emit_flags_t event_instruction_change(void* drcontext, void* /*tag*/, instrlist_t* bb,
                                         bool /*for_trace*/, bool /*translating*/) {
  if (!call_per_word) return rewrite_runs(drcontext, bb);
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

// `--no-inline` keeps every word on the call path; it leaves argv.
int take_inline_option(int argc, const char* argv[]) {
  int kept = 1;
  bool options = true;
  for (int i = 1; i < argc; ++i) {
    if (std::strcmp(argv[i], "--") == 0) options = false;
    if (options && std::strcmp(argv[i], "--no-inline") == 0)
      set_inline_translation(false);
    else
      argv[kept++] = argv[i];
  }
  return kept;
}

void event_exit() {
  if (!call_per_word) log_translation_tiers();
  dr_log(NULL, DR_LOG_ALL, 1, "SVE client exiting\n");
  sve_exit();
  mix_report();
  if (!drmgr_unregister_bb_app2app_event(event_instruction_change) || drreg_exit() != DRREG_SUCCESS)
    DR_ASSERT(false);
  drmgr_exit();
}

// --vector-bytes N, from the launcher's --vl: the one length of the process.
int take_vector_length_option(int argc, const char* argv[], std::string* error) {
  int kept = 1;
  for (int i = 1; i < argc; ++i) {
    if (std::strcmp(argv[i], "--vector-bytes") != 0) {
      argv[kept++] = argv[i];
      continue;
    }
    char* end = nullptr;
    const long bytes = i + 1 < argc ? std::strtol(argv[i + 1], &end, 10) : 0;
    if (end == nullptr || *end != '\0' || bytes <= 0 ||
        !set_vector_bytes(static_cast<unsigned>(bytes))) {
      *error = "--vector-bytes needs a multiple of 16 from 16 to 256";
      return -1;
    }
    ++i;
  }
  return kept;
}

} // namespace

DR_EXPORT void dr_client_main(client_id_t /*id*/, int argc, const char* argv[]) {
  dr_set_client_name("Zorvo SVE emulation client", "zorvo-maintainers@example.org");
  std::string parse_err;
  argc = take_mix_options(take_inline_option(argc, argv), argv, &parse_err);
  if (argc >= 0) argc = take_vector_length_option(argc, argv, &parse_err);
  if (argc < 0 ||
      !droption_parser_t::parse_argv(DROPTION_SCOPE_CLIENT, argc, argv, &parse_err, NULL)) {
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
  dr_register_interrupted_record_zorvo(tls_idx, sizeof(cpu_state), app_registers_in_record);
  // The runtime tells which faults of emulated accesses the application takes.
  application_handles_fault = dr_app_handles_signal_zorvo;
  this_thread_record = thread_record_for_faults;
  sve_vector_length(vector_bytes());
  if (!sve_init(0, dr_get_application_name())) DR_ASSERT(false);
  dr_log(NULL, DR_LOG_ALL, 1, "SVE client initializing\n");
}
