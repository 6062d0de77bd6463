// The process's map from block start address to fragment, and the code
// cache the fragments live in. One fragment serves every thread: its code
// reaches the thread only through X28. Everything here but in_code_cache is
// called with the code lock held (code_retire.h).
#pragma once

#include "thread.h"

fragment* find_fragment(app_pc tag);
// Returns null when no memory is left for the table.
fragment* add_fragment(app_pc tag, byte* code);
// What the block at tag holds now, to compare with a fragment's fingerprint.
uint64_t code_fingerprint(app_pc tag);
// The fragment no longer stands for the code at its address: it is never
// found again, its site leads to no fragment, and its room in the cache
// serves a later fragment once every thread has been seen outside the
// fragments since (retired_after tells which retirement that is).
void retire_fragment(fragment* f, uint64_t retired_after);
// Retires the fragments of blocks that start in [start, end).
void retire_fragments_in(app_pc start, app_pc end, uint64_t retired_after);

// Room for size bytes of code whose last word branches to target. *reaches
// says whether that branch can be direct; when no memory near target is
// free the room lies anywhere. Null when memory ran out. Rooms of retired
// fragments are reused when no thread can be in them: every thread has
// been seen outside the fragments since their retirement. With the code
// lock held.
byte* reserve_code(size_t size, app_pc target, bool* reaches);
// Whether code at [start, start + size) can branch directly to target.
bool within_branch_reach(const byte* start, size_t size, app_pc target);
// New executable memory within branch reach of target; null when none is
// free there.
byte* map_code_near(size_t size, app_pc target);
// Whether pc lies in the code cache. Takes no lock.
bool in_code_cache(app_pc pc);
// Bytes of retired fragments waiting until no thread can be in them.
size_t retired_bytes_waiting();
