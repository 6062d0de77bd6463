// Element permutes on plain register-sized buffers, shared by the vector handlers
// and the predicate ones (a predicate element is as many bytes as a vector
// element). `dst` is the caller's own buffer and must not overlap a source;
// the caller copies it to the destination register afterwards.
#pragma once

#include "../state/cpu_state.h"
#include "../state/vector_length.h"

namespace ZORVO_LENGTH {

// Even elements of a, then even elements of b.
void sve_uzp1(char* dst, const char* a, const char* b, element_size size);
// Pairs a[i], b[i] from the low halves.
void sve_zip1(char* dst, const char* a, const char* b, element_size size);
// Pairs a[i], b[i] from the high halves.
void sve_zip2(char* dst, const char* a, const char* b, element_size size);
// The elements of a in reverse order.
void sve_rev(char* dst, const char* a, element_size size);

} // namespace ZORVO_LENGTH
