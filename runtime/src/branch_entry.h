// Reaching a block's fragment by branch instead of by signal: the stub a
// patched site branches to, and the fragment's entry for arrivals from it.
#pragma once

#include "ir.h"

// The fragment's branch entry lies this far before its code: it counts the
// entry and takes back the X0 and X1 that the stub put aside.
constexpr int kBranchEntryLength = 20;
inline byte* branch_entry_of(byte* code) { return code - kBranchEntryLength; }
void prepend_branch_entry(void* drcontext, instrlist_t* bb);

// A stub: the current thread's block, and through it the fragment entry
// for site number `number`, then, for a thread the runtime has not met or a
// site with no entry, a copy of the site's original word (which traps as the
// site did), then the site's address.
constexpr int kStubSize = 80;
constexpr int kStubTrapOffset = 64;
constexpr int kStubSiteOffset = 72;
// Writes the stub for site at stub; false when an operand is out of reach of
// the stub's forms.
bool write_site_stub(void* drcontext, byte* stub, app_pc site, uint32_t word, uint32_t number,
                     ptrdiff_t tls_offset);

// The word `b to`, placed at from.
uint32_t branch_word(void* drcontext, app_pc from, byte* to);
