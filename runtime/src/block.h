// Turning the block at an address into a fragment of the code cache.
#pragma once

#include "thread.h"

// Whether the word lies in the SVE part of the A64 encoding space.
bool is_sve_word(uint32_t word);
// Whether the word is a plain data-processing instruction (add, sub,
// logical, move wide, bitfield) that names neither X28 nor the pc: a block
// goes on over such words between SVE words.
bool is_plain_data_word(uint32_t word);
// Whether word is a b.cond, and where the one at address at goes.
bool is_conditional_branch(uint32_t word);
app_pc conditional_branch_target(uint32_t word, app_pc at);
// Whether word, at address at, is a b.cond to target.
bool is_conditional_branch_to(uint32_t word, app_pc at, app_pc target);
// How many words the block starting at pc holds: SVE words, and plain
// data-processing words and conditional branches out between them (each
// branch leaves by an exit of its own); or, when such words run up to a
// conditional branch back to pc, all of them and that branch (a loop).
int block_words(app_pc pc);
// Builds, encodes and records the fragment for the block at tag, with the
// code lock held. Its code is null when the client kept the block's first
// word, whose signal is then the application's own.
fragment* build_fragment(rt_thread* t, app_pc tag);
// The code of the process's fragment for the block at tag, for thread t,
// which is in the runtime's signal handler: found, or built by t when
// may_build (another thread may just have built it), and with link its site
// patched to lead there. Null when the block's first word is the
// application's own; null with *none when there is no fragment and none may
// be built.
byte* fragment_for(rt_thread* t, app_pc tag, bool may_build, bool link, bool* none);
