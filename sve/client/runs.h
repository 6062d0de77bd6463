// The lean rewriting of a block (runs.cpp).
#pragma once

#include "dr_api.h"

// Rewrites every run of SVE words the decode tables know in bb; words it does
// not know stay as they are.
dr_emit_flags_t rewrite_runs(void* drcontext, instrlist_t* bb);

// With false, every word takes the call path, also those that have inline
// code (`zorvo --no-inline`).
void set_inline_translation(bool on);

// How many words each way of translating took so far, in the log (level 1).
void log_translation_tiers();
