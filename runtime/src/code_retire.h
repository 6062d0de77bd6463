// Code that leaves the process (a library closed, a range unmapped) takes
// its translations with it: its patched sites are forgotten at once, and
// each thread drops its fragments of that code, and reuses their room, the
// next time it enters the runtime.
#pragma once

#include "thread.h"

// The thread joins or leaves the set whose site entries a retirement clears.
void register_thread(rt_thread* t);
void unregister_thread(rt_thread* t);
// A fragment was built for a block at tag: retirements of ranges that hold
// no such block cost nothing.
void note_translated(app_pc tag);
// The code in [start, end) is gone, or, still_mapped, may change before it
// runs again (its protection is changing).
void retire_code(app_pc start, app_pc end, bool still_mapped = false);
// Retires the calling thread's fragments of code gone since it last asked.
void apply_code_retirements(rt_thread* t);
