// Runs the code that the inline tier emits for a word, on a register record,
// the way a fragment runs it inside a run of SVE words.
#pragma once

#include <cstdint>

#include "state/cpu_state.h"

// False when the word has no inline code (it takes the call path). Otherwise
// runs that code with the record in X19 and the host FPCR at `fpcr`.
bool run_inline(uint32_t word, uint64_t fpcr, cpu_state* s);
