// The runtime's own generated code around a block.
#pragma once

#include "ir.h"

// Opens a block: saves the application's X0 and reads FPCR into it, so that
// the msr fpcr, x0 the client sees at the block's start stores what is there.
void prepend_fpcr_probe(void* drcontext, instrlist_t* bb);
// Stands in for that msr: X0 gets the application's value back.
instr_t* fpcr_probe_end(void* drcontext);
// The msr fpcr, x0 itself, with pc as its address.
instr_t* fpcr_probe(void* drcontext, app_pc pc);

// Closes a block: the application's X28 back in place, then a direct branch
// to target, or, when the fragment is too far from target, a trap word that
// the signal handler finishes (see exit_trap_target). A block that ends in a
// conditional branch back to its start (loop_target) goes there instead of
// to target when loop_condition holds.
void append_exit(void* drcontext, instrlist_t* bb, app_pc target, bool direct,
                 app_pc loop_target = nullptr, uint32_t loop_condition = 0);
// If pc holds the trap word of an exit, its target; null otherwise.
app_pc exit_trap_target(app_pc pc);
