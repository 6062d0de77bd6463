// The lean way from generated code into the emulator: one register transfer
// for a whole run of consecutive SVE words, and a direct call of each word's
// decoder in between.
#pragma once

#include <cstdint>

#include "../decode/cpu_state.h"

extern "C" {

// Entered by blr with X27 holding the thread's cpu_state and X26 the top of
// its runtime stack; the application's X26..X30 are already in the record.
// Stores X0..X25, SP, NZCV, FPSR, FPCR and Q0..Q31 into the record, moves SP
// to the runtime stack, and leaves the record in X19 and zorvo_run_word in
// X20 for the calls that follow.
void zorvo_transfer_in();
// Entered by blr with X27 holding the record: FPSR, NZCV, Q0..Q31, SP and
// X0..X26 back from it. X27..X30 are left to the caller.
void zorvo_transfer_out();

// One word: what emulate_instruction does, without the spill slots, which the
// transfer has already folded into the record.
void zorvo_run_word(cpu_state* state, uint32_t word, uint8_t* pc, sve_decoder decoder);
}
