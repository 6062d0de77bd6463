// The instruction mix (`zorvo --mix`): how often each emulated instruction
// ran, counted by the generated code itself, and printed at exit by form and
// by address.
//
// Counting: each thread's cpu_state is followed by a table of 64-bit
// counters, one per instruction address rewritten in the process (the same
// index in every thread, since the code serves them all). In front
// of each emulated instruction, where a register holds the thread's
// cpu_state and another is free, three instructions add one to its counter
// (ldr, add, str). With --mix off nothing is inserted and the table has no
// room.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "dr_api.h"

#include "../state/cpu_state.h"

// Takes --mix and --mix-out FILE out of the client's arguments, in place;
// returns the new count, or -1 with *error set.
int take_mix_options(int argc, const char* argv[], std::string* error);

bool mix_enabled();

// Bytes each thread's cpu_state allocation needs on top of the record.
size_t mix_table_bytes();

void mix_thread_start(cpu_state* state);
// Adds the thread's counts to the process's, before its state is freed.
void mix_thread_end(cpu_state* state);

// Inserts the count of the instruction at `pc` (whose word is `word`) before
// `where`, for the running thread, whose cpu_state address the generated code
// holds in `record` there; `scratch` is free. Nothing when the mix is off.
void mix_insert_count(void* drcontext, instrlist_t* bb, instr_t* where, app_pc pc, uint32_t word,
                      reg_id_t record, reg_id_t scratch);

// At exit: the table on standard error, and the --mix-out file.
void mix_report();

// The number of counters after each cpu_state: what an immediate offset from
// the record can reach.
constexpr size_t kMixCountersOffset = (sizeof(cpu_state) + 15) / 16 * 16;
constexpr size_t kMixCounters = (32760 - kMixCountersOffset) / 8 + 1;
