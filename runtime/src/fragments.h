// The per-thread map from block start address to fragment, and the code
// cache the fragments live in.
#pragma once

#include "thread.h"

fragment* find_fragment(rt_thread* t, app_pc tag);
// Returns null when no memory is left for the table.
fragment* add_fragment(rt_thread* t, app_pc tag, byte* code);
void release_fragments(rt_thread* t);
// What the block at tag holds now, to compare with a fragment's fingerprint.
uint64_t code_fingerprint(app_pc tag);
// The fragment no longer stands for the code at its address: it is never
// found again, and its room in the cache serves a later fragment. Only the
// thread itself retires its fragments, from its signal handler, where it
// runs none of them.
void retire_fragment(rt_thread* t, fragment* f);
// Retires the thread's fragments of blocks that start in [start, end).
void retire_fragments_in(rt_thread* t, app_pc start, app_pc end);

// Room for size bytes of code whose last word branches to target. *reaches
// says whether that branch can be direct; when no memory near target is
// free the room lies anywhere. Null when memory ran out.
byte* reserve_code(rt_thread* t, size_t size, app_pc target, bool* reaches);
// Whether code at [start, start + size) can branch directly to target.
bool within_branch_reach(const byte* start, size_t size, app_pc target);
// New executable memory within branch reach of target; null when none is
// free there.
byte* map_code_near(size_t size, app_pc target);
// Whether pc lies in the thread's code cache.
bool in_code_cache(rt_thread* t, app_pc pc);
void release_code_cache(rt_thread* t);
