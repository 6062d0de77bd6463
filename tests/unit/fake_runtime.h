// A stand-in for the runtime's per-thread services, for tests of the entry.
#pragma once

#include "state/cpu_state.h"
#include "dr_api.h"

struct fake_thread {
  cpu_state* state;
  reg_t slots[SPILL_SLOT_MAX + 1];
};

// The thread that the fake runtime reports as current.
extern fake_thread* fake_current_thread;

// A word the fake runtime reports as patched: dr_app_pc_for_decoding sends
// readers of fake_patched_pc to fake_original_word.
extern app_pc fake_patched_pc;
extern uint32_t fake_original_word;
