// The lean rewriting of a block (runs.cpp).
#pragma once

#include "dr_api.h"

// Rewrites every run of SVE words the decode tables know in bb; words it does
// not know stay as they are.
dr_emit_flags_t rewrite_runs(void* drcontext, instrlist_t* bb);
