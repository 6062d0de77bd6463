// The compare forms of the inline tier: integer compares of two vectors or of
// a vector with an immediate, and floating-point compares of two vectors or
// with zero, into a predicate.
#pragma once

#include "inline_parts.h"

bool emit_compare(a64::simd_size size, uint32_t word, uint64_t pc, inline_code& c);
bool emit_compare_imm(a64::simd_size size, uint32_t word, uint64_t pc, inline_code& c);
bool emit_fp_compare(a64::simd_size size, uint32_t word, bool with_zero, inline_code& c);
