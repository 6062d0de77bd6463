#include "fake_runtime.h"

#include "drmgr.h"

fake_thread* fake_current_thread;

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
}
