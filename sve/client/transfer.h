// The lean way from generated code into the emulator: one register transfer
// for a whole run of consecutive SVE words, and a direct call of each word's
// decoder in between.
#pragma once

#include <cstdint>

#include "../state/cpu_state.h"

extern "C" {

// Entered by blr with X27 holding the thread's cpu_state and X26 the top of
// its runtime stack; the application's X26..X30 are already in the record.
// Stores X0..X25, SP, NZCV, FPSR, FPCR and Q0..Q31 into the record, moves SP
// to the runtime stack, and leaves the record in X19, zorvo_call_word in X20
// and zorvo_call_thin_word in X21 for the calls that follow.
void zorvo_transfer_in();
// Entered by blr with X27 holding the record: FPSR, NZCV, Q0..Q31, SP and
// X0..X26 back from it. X27..X30 are left to the caller.
void zorvo_transfer_out();

// One word: what emulate_instruction does, without the spill slots, which the
// transfer has already folded into the record. Entered by `blr x20` that is
// followed in the code by the word's word_call; returns past it.
void zorvo_call_word();
// The same for a thin decoder, whose fast handler cannot fail: the decoder
// returns straight past the word_call, with no check of its result.
void zorvo_call_thin_word();
}

// The constants of one word's call, placed in the code right after its blr.
struct word_call {
  sve_decoder decoder;
  const uint8_t* pc;
  uint32_t word;
  uint32_t padding;
};
