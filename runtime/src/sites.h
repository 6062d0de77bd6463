// Patched sites: block starts whose first word the runtime has replaced by a
// branch to a stub, so that a thread that has a fragment for the block
// enters it without a signal. Fragments stay per thread: the stub picks the
// current thread's.
#pragma once

#include "thread.h"

// The application's own word at pc: what is in memory, or, at a patched
// site, the word the branch replaced.
uint32_t application_word(app_pc pc);
// If pc is the trap word of a stub (reached by a thread that has no
// fragment for the site yet), the site; null otherwise.
app_pc site_of_stub(app_pc pc);
// Makes the thread's fragment code for the block at site reachable by
// branch: patches the site unless done before, and records code as the
// thread's. False when the site cannot be patched: the signal keeps
// bringing the thread to the fragment.
bool link_site(rt_thread* t, app_pc site, byte* code);
// The thread's stub entry for site, if any, leads to no fragment any more.
void unlink_site(rt_thread* t, app_pc site);
void release_site_entries(rt_thread* t);
// The code in [start, end) is gone or about to change: its sites are
// forgotten (where it stays mapped, each gets its own word back),
// clear_entries drops every thread's entry for each one's number, and
// numbers and stubs serve new sites. A thread still inside such a stub (it
// branched from code being unmapped) is not waited for.
void retire_sites_in(app_pc start, app_pc end, bool still_mapped,
                     void (*clear_entries)(uint32_t number));
// A child made by fork starts with the lock free.
void site_patching_init();
