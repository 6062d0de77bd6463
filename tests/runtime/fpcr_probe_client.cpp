// A client for testing the runtime, not the emulator: it records the FPCR
// value that each block presents in its opening msr fpcr, x0, and lets every
// SVE word go as if it did nothing. At exit it prints what it saw.
#include <cstdio>

#include "dr_api.h"
#include "drmgr.h"

namespace {

uint64_t seen[64];
int seen_count;

void record_fpcr() {
  if (seen_count < 64)
    seen[seen_count++] = dr_read_saved_reg(dr_get_current_drcontext(), SPILL_SLOT_4);
}

dr_emit_flags_t on_block(void* dc, void*, instrlist_t* bb, bool, bool) {
  instr_t* probe = instrlist_first_app(bb);
  if (instr_get_opcode(probe) != OP_msr || opnd_get_reg(instr_get_dst(probe, 0)) != DR_REG_FPCR)
    return DR_EMIT_DEFAULT;
  const reg_id_t src = opnd_get_reg(instr_get_src(probe, 0));
  dr_save_reg(dc, bb, probe, src, SPILL_SLOT_4);
  dr_insert_call_zorvo(dc, bb, probe, instr_get_app_pc(probe), reinterpret_cast<void*>(record_fpcr),
                       0);
  instr_t* next;
  for (instr_t* i = instr_get_next_app(probe); i != nullptr; i = next) {
    next = instr_get_next_app(i);
    instrlist_remove(bb, i);
    instr_destroy(dc, i);
  }
  return DR_EMIT_DEFAULT;
}

void on_exit() {
  for (int i = 0; i < seen_count; ++i)
    dr_fprintf(STDERR, "fpcr at block start: %08llx\n", static_cast<unsigned long long>(seen[i]));
}

} // namespace

DR_EXPORT void dr_client_main(client_id_t, int, const char*[]) {
  drmgr_init();
  drmgr_register_bb_app2app_event(on_block, nullptr);
  dr_register_exit_event(on_exit);
}
