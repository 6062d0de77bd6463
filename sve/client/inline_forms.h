// The SVE forms carried out inline, in the fragment, on the register record:
// the code for one word, or nothing, when the word takes the call path.
#pragma once

#include <cstdint>

#include "inline_emit.h"

// The code for the word at pc, to run with the record in X19 (inline_emit.h
// says which registers it may change and which it reads); false when the
// word's form is not one of the inline ones, or this encoding of it is not.
bool translate_inline(uint32_t word, uint64_t pc, inline_code* code);

// Whether the form (an index of forms.inc) has inline code for some of its
// encodings: for the tables that say which tier a row takes.
bool form_is_inline(int form);
