#include "fake_runtime.h"

#include "drmgr.h"

fake_thread* fake_current_thread;
app_pc fake_patched_pc;
uint32_t fake_original_word;

extern "C" {

void* dr_get_current_drcontext(void) { return fake_current_thread; }

void* drmgr_get_tls_field(void* drcontext, int) {
  return static_cast<fake_thread*>(drcontext)->state;
}

reg_t dr_read_saved_reg(void* drcontext, dr_spill_slot_t slot) {
  return static_cast<fake_thread*>(drcontext)->slots[slot];
}

void dr_write_saved_reg(void* drcontext, dr_spill_slot_t slot, reg_t value) {
  static_cast<fake_thread*>(drcontext)->slots[slot] = value;
}

app_pc dr_app_pc_for_decoding(app_pc pc) {
  return pc == fake_patched_pc ? reinterpret_cast<app_pc>(&fake_original_word) : pc;
}
}
