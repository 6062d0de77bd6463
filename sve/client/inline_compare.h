// The compare forms of the inline tier: integer and floating-point compares
// of two vectors into a predicate.
#pragma once

#include "inline_parts.h"

bool emit_compare(a64::simd_size size, uint32_t word, uint64_t pc, inline_code& c);
bool emit_fp_compare(a64::simd_size size, uint32_t word, bool with_zero, inline_code& c);
