// Entry from generated code: carries out one emulated instruction.
#pragma once

#include <cstdint>

#include "../state/cpu_state.h"

// The per-thread storage slot that holds each thread's cpu_state.
extern int tls_idx;

// The calling thread's register record, or null where the thread has none.
cpu_state* thread_record_for_faults();

// Called with the word, its address and its decoder as constants. On entry
// all of the thread's cpu_state is current except pc and X26..X28, which lie
// in spill slots 1 to 3.
void emulate_instruction(uint32_t word, uint8_t* pc, sve_decoder decoder);

// The message for a word whose decoder failed, naming the application's word
// at pc.
extern "C" void report_failure_to_emulate(const uint8_t* pc);
