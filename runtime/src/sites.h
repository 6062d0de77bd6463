// Patched sites: block starts whose first word the runtime has replaced by a
// branch to a stub, so that a thread enters the block's fragment without a
// signal. The stub finds the fragment in the process's table of entries by
// site number, which every thread block points to.
#pragma once

#include "thread.h"

// The application's own word at pc: what is in memory, or, at a patched
// site, the word the branch replaced.
uint32_t application_word(app_pc pc);
// If pc is the trap word of a stub (reached by a thread that has no
// fragment for the site yet), the site; null otherwise.
app_pc site_of_stub(app_pc pc);
// The table of fragment entries by site number, for the thread blocks; null
// when no memory was left for it.
byte** site_entry_table();
// Makes the fragment code for the block at site reachable by branch:
// patches the site unless done before, and records code as its entry. False
// when the site cannot be patched: the signal keeps bringing threads to the
// fragment. With the code lock held (t is the thread that patches).
bool link_site(rt_thread* t, app_pc site, byte* code);
// The stub entry for site, if any, leads to no fragment any more.
void unlink_site(app_pc site);
// The code in [start, end) is gone or about to change: its sites are
// forgotten (where it stays mapped, each gets its own word back), their
// entries cleared, and numbers and stubs serve new sites once every thread
// is past retirement retired_after (a thread may have taken a site's branch
// just before it went). With the code lock held.
void retire_sites_in(app_pc start, app_pc end, bool still_mapped, uint64_t retired_after);
// In a child made by fork: the patch lock is free.
void sites_after_fork();
