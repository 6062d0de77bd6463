// The memory forms of the inline tier: contiguous loads and stores, and
// first-fault loads.
#pragma once

#include "inline_parts.h"

bool emit_contiguous(inline_op op, a64::simd_size size, uint32_t word, uint64_t pc, inline_code& c);
bool emit_first_fault_load(a64::simd_size size, uint32_t word, uint64_t pc, inline_code& c);
