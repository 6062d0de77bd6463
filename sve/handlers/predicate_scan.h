// Scans over one predicate at an element stride: where its last active
// element is, how many are active, and the flags of a result that no
// governing predicate narrows (while, brkns).
#pragma once

#include "predicate_form.h"

namespace ZORVO_LENGTH {

// Index of the last active element at stride sizeof(T), or -1 when there is none.
template <typename T> inline int last_active(const uint8_t* pred) {
  const int last = last_set(pack_predicate(pred) & element_starts<T>());
  return last < 0 ? -1 : last / static_cast<int>(sizeof(T));
}

template <typename T> inline unsigned count_active(const uint8_t* pred) {
  return count_set(pack_predicate(pred) & element_starts<T>());
}

// The predicate test against an all-true mask, without reading one: N is the
// first element, Z says no element is true, C is the inverse of the last.
template <typename T> inline nzcv_flags unmasked_flags(const uint8_t* result) {
  const pred_bits r = pack_predicate(result) & element_starts<T>();
  return {bit_set(r, 0), none_set(r), !active<T>(result, elements_of<T>() - 1), false};
}

} // namespace ZORVO_LENGTH
