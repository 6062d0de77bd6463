// The predicate, first-fault and flag-setting forms carried out inline: the
// loops that search with first-fault loads (setffr, ldff1, rdffr, a compare
// with an immediate, then brkb and cntp) run without a call.
#pragma once

#include <cstdint>

#include "inline_emit.h"

// These forms number their operations from here on, after the other inline
// operations (inline_forms.cpp keeps both in one byte per form).
constexpr uint8_t kPredicateOpFirst = 128;

// The operation of the row whose decoder has this name, or 0 when the row is
// none of these forms.
uint8_t predicate_op_of(const char* decoder);

// Whether the operation has inline code at the process's vector length: the
// forms that find a predicate's first or last element number its bytes in
// byte lanes, which hold up to 255.
bool predicate_op_at_this_length(uint8_t op);

// The code for one word of such a row, or false when this encoding of it
// takes the call path.
bool emit_predicate_op(uint8_t op, element_size elem, uint32_t word, uint64_t pc, inline_code& c);
