// Runs the code that the inline tier emits for a word, on a register record,
// the way a fragment runs it inside a run of SVE words.
#pragma once

#include <cstdint>

#include "client/inline_emit.h"
#include "state/cpu_state.h"

// False when the word has no inline code (it takes the call path). Otherwise
// runs the code for the word at pc with the record in X19, the host FPCR at
// `fpcr`, and the trace gate open when `tracing` (memory forms then leave
// their work to the call path).
bool run_inline(uint32_t word, uint64_t pc, uint64_t fpcr, bool tracing, cpu_state* s);

// The same for code put together by hand.
void run_inline_code(const inline_code& code, uint64_t fpcr, bool tracing, cpu_state* s);
